// The step of divide and conquer: singular values and vectors of a bidiagonal matrix from those of its parts.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// What merges of a matrix of order n work with.
struct BidiagonalMergeSpace {
    static constexpr i64 vectors_of_reals = 5, vectors_of_integers = 5;
    double *of_left, *of_right, *factors; // (n + 1)^2 each
    double* reals;                        // vectors of n + 1
    i64* integers;                        // vectors of n + 1
};

/// B, n by n or n by n + 1, is
///
///     B1                      k by k + 1
///        alpha  beta          row k; alpha below the last column of B1, beta above the first of B2
///               B2
///
/// u, n by n, holds the left vectors of B1 and B2 in its blocks on the diagonal, v, of as many rows as B has columns,
/// the right ones, in each the one of the value 0, if any, in its last column; d their values, in any order, with room
/// at k. They become those of B. B is of a norm not far from 1.
void merge_bidiagonals(const Matrix<double>& u, const Matrix<double>& v, i64 k, double alpha, double beta, double* d,
                       const BidiagonalMergeSpace& space);

} // namespace nxl
