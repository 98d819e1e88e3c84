// Upper-case aliases: each is a separate export made of one jump to the lower-case entry. Where arguments lie on the
// stack the jump is written out, for a tail call would copy them onto themselves.
#include "nxl.h"
#include "service/export.hpp"

extern "C" {

// ---- Level 1 ----

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

// ---- Levels 2 and 3 ----

[[gnu::naked]] NXL_EXPORT void DGEMM(const char*, const char*, const int*, const int*, const int*, const double*,
                                     const double*, const int*, const double*, const int*, const double*, double*,
                                     const int*) noexcept {
    asm("jmp dgemm");
}

[[gnu::naked]] NXL_EXPORT void DGEMV(const char*, const int*, const int*, const double*, const double*, const int*,
                                     const double*, const int*, const double*, double*, const int*) noexcept {
    asm("jmp dgemv");
}

[[gnu::naked]] NXL_EXPORT void DGER(const int*, const int*, const double*, const double*, const int*, const double*,
                                    const int*, double*, const int*) noexcept {
    asm("jmp dger");
}

[[gnu::naked]] NXL_EXPORT void DSYR(const char*, const int*, const double*, const double*, const int*, double*,
                                    const int*) noexcept {
    asm("jmp dsyr");
}

[[gnu::naked]] NXL_EXPORT void DTRSM(const char*, const char*, const char*, const char*, const int*, const int*,
                                     const double*, const double*, const int*, double*, const int*) noexcept {
    asm("jmp dtrsm");
}

[[gnu::naked]] NXL_EXPORT void ZGEMM(const char*, const char*, const int*, const int*, const int*, const nxl_z*,
                                     const nxl_z*, const int*, const nxl_z*, const int*, const nxl_z*, nxl_z*,
                                     const int*) noexcept {
    asm("jmp zgemm");
}

[[gnu::naked]] NXL_EXPORT void ZGEMV(const char*, const int*, const int*, const nxl_z*, const nxl_z*, const int*,
                                     const nxl_z*, const int*, const nxl_z*, nxl_z*, const int*) noexcept {
    asm("jmp zgemv");
}

[[gnu::naked]] NXL_EXPORT void ZGERU(const int*, const int*, const nxl_z*, const nxl_z*, const int*, const nxl_z*,
                                     const int*, nxl_z*, const int*) noexcept {
    asm("jmp zgeru");
}

[[gnu::naked]] NXL_EXPORT void ZHER(const char*, const int*, const double*, const nxl_z*, const int*, nxl_z*,
                                    const int*) noexcept {
    asm("jmp zher");
}

[[gnu::naked]] NXL_EXPORT void ZTRSM(const char*, const char*, const char*, const char*, const int*, const int*,
                                     const nxl_z*, const nxl_z*, const int*, nxl_z*, const int*) noexcept {
    asm("jmp ztrsm");
}

// ---- LAPACK ----

NXL_EXPORT void DGETRF(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info) noexcept {
    [[clang::musttail]] return dgetrf(m, n, a, lda, ipiv, info);
}

NXL_EXPORT void DPOTRF(const char* uplo, const int* n, double* a, const int* lda, int* info, int uplo_length) noexcept {
    [[clang::musttail]] return dpotrf(uplo, n, a, lda, info, uplo_length);
}

NXL_EXPORT void ZGETRF(const int* m, const int* n, nxl_z* a, const int* lda, int* ipiv, int* info) noexcept {
    [[clang::musttail]] return zgetrf(m, n, a, lda, ipiv, info);
}

} // extern "C"
