// Kernels of level 3 that are not written yet.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {

// clang-format off
void dsymm(const char&, const char&, const i64&, const i64&, const double&, const double*, const i64&, const double*, const i64&, const double&, double*, const i64&) {}
void zsymm(const char&, const char&, const i64&, const i64&, const zcomplex&, const zcomplex*, const i64&, const zcomplex*, const i64&, const zcomplex&, zcomplex*, const i64&) {}
void zhemm(const char&, const char&, const i64&, const i64&, const zcomplex&, const zcomplex*, const i64&, const zcomplex*, const i64&, const zcomplex&, zcomplex*, const i64&) {}
void dsyrk(const char&, const char&, const i64&, const i64&, const double&, const double*, const i64&, const double&, double*, const i64&) {}
void zsyrk(const char&, const char&, const i64&, const i64&, const zcomplex&, const zcomplex*, const i64&, const zcomplex&, zcomplex*, const i64&) {}
void zherk(const char&, const char&, const i64&, const i64&, const double&, const zcomplex*, const i64&, const double&, zcomplex*, const i64&) {}
void dsyr2k(const char&, const char&, const i64&, const i64&, const double&, const double*, const i64&, const double*, const i64&, const double&, double*, const i64&) {}
void zsyr2k(const char&, const char&, const i64&, const i64&, const zcomplex&, const zcomplex*, const i64&, const zcomplex*, const i64&, const zcomplex&, zcomplex*, const i64&) {}
void zher2k(const char&, const char&, const i64&, const i64&, const zcomplex&, const zcomplex*, const i64&, const zcomplex*, const i64&, const double&, zcomplex*, const i64&) {}
// clang-format on

} // namespace nxl::NXL_TARGET
