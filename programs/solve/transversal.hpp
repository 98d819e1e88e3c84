// A transversal of a sparse matrix: an order of its rows that leaves no 0 on the diagonal.
#pragma once

#include "sparse_matrix.hpp"

#include <vector>

namespace solve {

/// For each column i the row p(i) that is to take place i, so that the entry at (p(i), i) is not 0; every row once.
/// Rows whose diagonal entry is not 0 stay where they are, as far as the others can do without their places; within a
/// row large entries come first. Empty when there is no such order: then the matrix is singular, whatever its values.
/// Method: depth-first search for augmenting paths with lookahead, Duff, On algorithms for obtaining a maximum
/// transversal, ACM Trans. Math. Software 7 (1981). At most n times the entries, in practice a few times the entries.
std::vector<int> transversal(const SparseMatrix<double>& a);

} // namespace solve
