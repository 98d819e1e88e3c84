// The residual b - A x, evaluated: what the iterative methods are judged by.
#pragma once

#include "sparse_matrix.hpp"

#include <string>

namespace solve {

/// r = b - A x; returns its 2-norm.
double evaluate_residual(const SparseMatrix<double>& a, const double* b, const double* x, double* r);

/// A norm relative to the initial one; 0 where that is 0, infinite beyond the range of doubles.
double relative_norm(double norm, double initial);

/// Whether r is no larger than what rounding makes of b - A x, whatever the method: some units in the last place of
/// |A| |x| + |b|, in infinity norms.
bool is_rounding(const SparseMatrix<double>& a, const double* b, const double* x, const double* r);

/// What to say of an iteration whose evaluated residual has stopped falling.
inline const char* reason_of_standstill(bool rounding) {
    return rounding ? "rounding leaves no more to gain" : "the computed residual no longer falls";
}

} // namespace solve
