// How good a solution is, by its residual and the condition of the matrix.
#pragma once

#include "matrix_market.hpp"
#include "sparse_matrix.hpp"

namespace solve {

struct ErrorBounds {
    double condition = 0.0; // |A| |A^-1|, infinity norms; 0 when it is not known
    double forward = 0.0;   // no column's |x - exact| / |x| is larger, if the condition is not larger
    double backward = 0.0;  // the largest relative change of A's entries and b's that a column would solve exactly
};

/// Of all columns together. Every residual is taken with what rounding may make of it. Oettli and Prager, Numer. Math.
/// 6 (1964); Higham, Accuracy and Stability of Numerical Algorithms, 2nd ed., section 7.
template <class T>
ErrorBounds error_bounds(const SparseMatrix<T>& a, const Block<T>& b, const Block<T>& x, double condition);

} // namespace solve
