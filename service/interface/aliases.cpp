// Upper-case aliases: each is a separate export made of one jump to the lower-case entry.
#include "nxl.h"
#include "service/export.hpp"

extern "C" {

NXL_EXPORT void DAXPY(const int* n, const double* alpha, const double* x, const int* incx, double* y,
                      const int* incy) noexcept {
    [[clang::musttail]] return daxpy(n, alpha, x, incx, y, incy);
}

NXL_EXPORT void DCOPY(const int* n, const double* x, const int* incx, double* y, const int* incy) noexcept {
    [[clang::musttail]] return dcopy(n, x, incx, y, incy);
}

NXL_EXPORT double DDOT(const int* n, const double* x, const int* incx, const double* y, const int* incy) noexcept {
    [[clang::musttail]] return ddot(n, x, incx, y, incy);
}

NXL_EXPORT double DNRM2(const int* n, const double* x, const int* incx) noexcept {
    [[clang::musttail]] return dnrm2(n, x, incx);
}

NXL_EXPORT void DSCAL(const int* n, const double* alpha, double* x, const int* incx) noexcept {
    [[clang::musttail]] return dscal(n, alpha, x, incx);
}

NXL_EXPORT void DSWAP(const int* n, double* x, const int* incx, double* y, const int* incy) noexcept {
    [[clang::musttail]] return dswap(n, x, incx, y, incy);
}

NXL_EXPORT int IDAMAX(const int* n, const double* x, const int* incx) noexcept {
    [[clang::musttail]] return idamax(n, x, incx);
}

NXL_EXPORT int IZAMAX(const int* n, const nxl_z* x, const int* incx) noexcept {
    [[clang::musttail]] return izamax(n, x, incx);
}

NXL_EXPORT void ZDSCAL(const int* n, const double* alpha, nxl_z* x, const int* incx) noexcept {
    [[clang::musttail]] return zdscal(n, alpha, x, incx);
}

NXL_EXPORT void ZSCAL(const int* n, const nxl_z* alpha, nxl_z* x, const int* incx) noexcept {
    [[clang::musttail]] return zscal(n, alpha, x, incx);
}

NXL_EXPORT void ZSWAP(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy) noexcept {
    [[clang::musttail]] return zswap(n, x, incx, y, incy);
}

} // extern "C"
