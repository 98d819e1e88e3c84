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

NXL_EXPORT void DGEMM(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                      const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
                      const double* beta, double* c, const int* ldc) noexcept {
    [[clang::musttail]] return dgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

NXL_EXPORT void DGEMV(const char* trans, const int* m, const int* n, const double* alpha, const double* a,
                      const int* lda, const double* x, const int* incx, const double* beta, double* y,
                      const int* incy) noexcept {
    [[clang::musttail]] return dgemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}

NXL_EXPORT void DGER(const int* m, const int* n, const double* alpha, const double* x, const int* incx, const double* y,
                     const int* incy, double* a, const int* lda) noexcept {
    [[clang::musttail]] return dger(m, n, alpha, x, incx, y, incy, a, lda);
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

NXL_EXPORT void DSYR(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx, double* a,
                     const int* lda) noexcept {
    [[clang::musttail]] return dsyr(uplo, n, alpha, x, incx, a, lda);
}

NXL_EXPORT void DTRSM(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                      const int* n, const double* alpha, const double* a, const int* lda, double* b,
                      const int* ldb) noexcept {
    [[clang::musttail]] return dtrsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
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

NXL_EXPORT void ZGEMM(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                      const nxl_z* alpha, const nxl_z* a, const int* lda, const nxl_z* b, const int* ldb,
                      const nxl_z* beta, nxl_z* c, const int* ldc) noexcept {
    [[clang::musttail]] return zgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

NXL_EXPORT void ZGEMV(const char* trans, const int* m, const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda,
                      const nxl_z* x, const int* incx, const nxl_z* beta, nxl_z* y, const int* incy) noexcept {
    [[clang::musttail]] return zgemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}

NXL_EXPORT void ZGERU(const int* m, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, const nxl_z* y,
                      const int* incy, nxl_z* a, const int* lda) noexcept {
    [[clang::musttail]] return zgeru(m, n, alpha, x, incx, y, incy, a, lda);
}

NXL_EXPORT void ZHER(const char* uplo, const int* n, const double* alpha, const nxl_z* x, const int* incx, nxl_z* a,
                     const int* lda) noexcept {
    [[clang::musttail]] return zher(uplo, n, alpha, x, incx, a, lda);
}

NXL_EXPORT void ZSCAL(const int* n, const nxl_z* alpha, nxl_z* x, const int* incx) noexcept {
    [[clang::musttail]] return zscal(n, alpha, x, incx);
}

NXL_EXPORT void ZSWAP(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy) noexcept {
    [[clang::musttail]] return zswap(n, x, incx, y, incy);
}

NXL_EXPORT void ZTRSM(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                      const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda, nxl_z* b,
                      const int* ldb) noexcept {
    [[clang::musttail]] return ztrsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

} // extern "C"
