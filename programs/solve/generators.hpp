// Test problems made on the spot: grids with a stencil, a truss bridge, random sparsity, dense ones, and some
// that are not square.
#pragma once

#include "sparse_matrix.hpp"

#include <string>
#include <vector>

namespace solve {

struct Problem {
    SparseMatrix<double> matrix;
    std::vector<double> load; // the right-hand side that belongs to the problem
};

/// Makes the problem named by "KIND:SIZE"; throws UsageError when there is none of that name or size.
Problem generate(const std::string& description);

/// One line per kind, for --help.
std::string list_of_problems();

/// A bridge of `bays` bays, as a pin-jointed space truss: see truss.cpp.
Problem truss_bridge(int bays);

/// Covariances of `sites` measurements, a polynomial through them, and flow around a cylinder by `panels` panels: see
/// dense_problems.cpp.
Problem kriging(int sites);
Problem surface(int sites);
Problem source_panels(int panels);

} // namespace solve
