// All singular values and vectors of a bidiagonal matrix by divide and conquer.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// B = U S V^T, B upper bidiagonal with diagonal d(n), which becomes S, descending, and superdiagonal e(n-1), which is
/// destroyed. u, v: n by n. Returns 0; a number above 0 when values have not converged; or -1 when there was no memory.
i64 divide_bidiagonal(i64 n, double* d, double* e, const Matrix<double>& u, const Matrix<double>& v);

} // namespace nxl
