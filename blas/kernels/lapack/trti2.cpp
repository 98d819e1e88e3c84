// dtrti2, ztrti2: unblocked inverse of a triangle.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/lapack/scalars.hpp"

namespace nxl::NXL_TARGET {

void dtrti2(const char&, const char&, const i64&, double*, const i64&) {}
void ztrti2(const char&, const char&, const i64&, zcomplex*, const i64&) {}

} // namespace nxl::NXL_TARGET
