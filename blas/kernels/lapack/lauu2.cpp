// dlauu2, zlauu2: unblocked product of a triangle and its conjugate transpose.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/lapack/scalars.hpp"

namespace nxl::NXL_TARGET {

void dlauu2(const char&, const i64&, double*, const i64&) {}
void zlauu2(const char&, const i64&, zcomplex*, const i64&) {}

} // namespace nxl::NXL_TARGET
