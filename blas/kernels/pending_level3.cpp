// Kernels of level 3 that are not written yet.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {

// clang-format off
void dtrmm(const char&, const char&, const char&, const char&, const i64&, const i64&, const double&, const double*, const i64&, double*, const i64&) {}
void ztrmm(const char&, const char&, const char&, const char&, const i64&, const i64&, const zcomplex&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void dtrsm(const char&, const char&, const char&, const char&, const i64&, const i64&, const double&, const double*, const i64&, double*, const i64&) {}
void ztrsm(const char&, const char&, const char&, const char&, const i64&, const i64&, const zcomplex&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
// clang-format on

} // namespace nxl::NXL_TARGET
