// Kernels of level 2 that are not written yet.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {

// clang-format off
void dgemv(const char&, const i64&, const i64&, const double&, const double*, const i64&, const double*, const i64&, const double&, double*, const i64&) {}
void dger(const i64&, const i64&, const double&, const double*, const i64&, const double*, const i64&, double*, const i64&) {}
void dsymv(const char&, const i64&, const double&, const double*, const i64&, const double*, const i64&, const double&, double*, const i64&) {}
void dsyr(const char&, const i64&, const double&, const double*, const i64&, double*, const i64&) {}
void dsyr2(const char&, const i64&, const double&, const double*, const i64&, const double*, const i64&, double*, const i64&) {}
void dtrmv(const char&, const char&, const char&, const i64&, const double*, const i64&, double*, const i64&) {}
void dtrsv(const char&, const char&, const char&, const i64&, const double*, const i64&, double*, const i64&) {}
void zgemv(const char&, const i64&, const i64&, const zcomplex&, const zcomplex*, const i64&, const zcomplex*, const i64&, const zcomplex&, zcomplex*, const i64&) {}
void zgerc(const i64&, const i64&, const zcomplex&, const zcomplex*, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void zgeru(const i64&, const i64&, const zcomplex&, const zcomplex*, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void zhemv(const char&, const i64&, const zcomplex&, const zcomplex*, const i64&, const zcomplex*, const i64&, const zcomplex&, zcomplex*, const i64&) {}
void zher(const char&, const i64&, const double&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void zher2(const char&, const i64&, const zcomplex&, const zcomplex*, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void zsyr(const char&, const i64&, const zcomplex&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void ztrmv(const char&, const char&, const char&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void ztrsv(const char&, const char&, const char&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
// clang-format on

} // namespace nxl::NXL_TARGET
