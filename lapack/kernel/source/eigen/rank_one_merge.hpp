// The step of divide and conquer: eigenvalues and vectors of a tridiagonal matrix from those of its halves.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// What merges of a matrix of order n work with; one of rows `start` on takes what begins at `start` of each, and the
/// matrices at start * n.
struct MergeSpace {
    static constexpr i64 vectors_of_reals = 4, vectors_of_integers = 5;
    i64 n;
    double *copies, *factors; // n by n each
    double* reals;            // vectors of n
    i64* integers;            // vectors of n
};

/// T, of order q.rows, is T1 and T2, the first of order n1, on its diagonal, and |rho| added to each of the four
/// elements where they meet, with the sign of rho off the diagonal. The columns of q hold the vectors of both, and d
/// their values, of which order(0 .. n1 - 1), and the rest of it, gives the ascending order, counted in each from 0.
/// They become those of T, with the order of all. `start`: T's place in the space. T is of a norm not far from 1.
void merge_halves(const Matrix<double>& q, i64 n1, double rho, double* d, i64* order, i64 start,
                  const MergeSpace& space);

} // namespace nxl
