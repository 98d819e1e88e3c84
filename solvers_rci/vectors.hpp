// Vector work of the solvers on contiguous columns, through the exported entries.
#pragma once
#include "nxl.h"

namespace nxl::rci {

inline constexpr int unit_stride = 1;

inline void copy(int n, const double* x, double* y) { DCOPY(&n, x, &unit_stride, y, &unit_stride); }

inline double dot(int n, const double* x, const double* y) { return DDOT(&n, x, &unit_stride, y, &unit_stride); }

inline double norm(int n, const double* x) { return DNRM2(&n, x, &unit_stride); }

/// y += alpha x
inline void axpy(int n, double alpha, const double* x, double* y) {
    DAXPY(&n, &alpha, x, &unit_stride, y, &unit_stride);
}

/// y := beta y + x
inline void scale_and_add(int n, double beta, double* y, const double* x) {
    DSCAL(&n, &beta, y, &unit_stride);
    axpy(n, 1.0, x, y);
}

/// x := alpha x
inline void scale(int n, double alpha, double* x) { DSCAL(&n, &alpha, x, &unit_stride); }

} // namespace nxl::rci
