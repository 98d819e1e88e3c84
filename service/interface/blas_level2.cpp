// BLAS level 2: entries. ZSYR alone checks nothing.
#include "blas/kernel/default_em64t/level2/gemv_omp.hpp"
#include "blas/kernel/default_em64t/level2/slots.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/blas_checks.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dgemv(const char* trans, const int* m, const int* n, const double* alpha, const double* a,
                      const int* lda, const double* x, const int* incx, const double* beta, double* y,
                      const int* incy) noexcept {
    const i64 m64 = *m, n64 = *n, lda64 = *lda, incx64 = *incx, incy64 = *incy;
    if (check_gemv("DGEMV ", trans, m64, n64, lda64, incx64, incy64)) return;
    nxl_blas_dgemv(trans, &m64, &n64, alpha, a, &lda64, x, &incx64, beta, y, &incy64);
}

NXL_EXPORT void dger(const int* m, const int* n, const double* alpha, const double* x, const int* incx, const double* y,
                     const int* incy, double* a, const int* lda) noexcept {
    const i64 m64 = *m, n64 = *n, incx64 = *incx, incy64 = *incy, lda64 = *lda;
    if (check_ger("DGER  ", m64, n64, incx64, incy64, lda64)) return;
    dger_slot(m64, n64, *alpha, x, incx64, y, incy64, a, lda64);
}

NXL_EXPORT void dsymv(const char* uplo, const int* n, const double* alpha, const double* a, const int* lda,
                      const double* x, const int* incx, const double* beta, double* y, const int* incy) noexcept {
    const i64 n64 = *n, lda64 = *lda, incx64 = *incx, incy64 = *incy;
    if (check_symv("DSYMV ", uplo, n64, lda64, incx64, incy64)) return;
    dsymv_slot(*uplo, n64, *alpha, a, lda64, x, incx64, *beta, y, incy64);
}

NXL_EXPORT void dsyr(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx, double* a,
                     const int* lda) noexcept {
    const i64 n64 = *n, incx64 = *incx, lda64 = *lda;
    if (check_syr("DSYR  ", uplo, n64, incx64, lda64)) return;
    dsyr_slot(*uplo, n64, *alpha, x, incx64, a, lda64);
}

NXL_EXPORT void dsyr2(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
                      const double* y, const int* incy, double* a, const int* lda) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy, lda64 = *lda;
    if (check_syr2("DSYR2 ", uplo, n64, incx64, incy64, lda64)) return;
    dsyr2_slot(*uplo, n64, *alpha, x, incx64, y, incy64, a, lda64);
}

NXL_EXPORT void dtrmv(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
                      const int* lda, double* x, const int* incx) noexcept {
    const i64 n64 = *n, lda64 = *lda, incx64 = *incx;
    if (check_trv("DTRMV ", uplo, trans, diag, n64, lda64, incx64)) return;
    dtrmv_slot(*uplo, *trans, *diag, n64, a, lda64, x, incx64);
}

NXL_EXPORT void dtrsv(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
                      const int* lda, double* x, const int* incx) noexcept {
    const i64 n64 = *n, lda64 = *lda, incx64 = *incx;
    if (check_trv("DTRSV ", uplo, trans, diag, n64, lda64, incx64)) return;
    dtrsv_slot(*uplo, *trans, *diag, n64, a, lda64, x, incx64);
}

NXL_EXPORT void zgemv(const char* trans, const int* m, const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda,
                      const nxl_z* x, const int* incx, const nxl_z* beta, nxl_z* y, const int* incy) noexcept {
    const i64 m64 = *m, n64 = *n, lda64 = *lda, incx64 = *incx, incy64 = *incy;
    if (check_gemv("ZGEMV ", trans, m64, n64, lda64, incx64, incy64)) return;
    nxl_blas_zgemv(trans, &m64, &n64, alpha, a, &lda64, x, &incx64, beta, y, &incy64);
}

NXL_EXPORT void zgerc(const int* m, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, const nxl_z* y,
                      const int* incy, nxl_z* a, const int* lda) noexcept {
    const i64 m64 = *m, n64 = *n, incx64 = *incx, incy64 = *incy, lda64 = *lda;
    if (check_ger("ZGERC ", m64, n64, incx64, incy64, lda64)) return;
    zgerc_slot(m64, n64, *alpha, x, incx64, y, incy64, a, lda64);
}

NXL_EXPORT void zgeru(const int* m, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, const nxl_z* y,
                      const int* incy, nxl_z* a, const int* lda) noexcept {
    const i64 m64 = *m, n64 = *n, incx64 = *incx, incy64 = *incy, lda64 = *lda;
    if (check_ger("ZGERU ", m64, n64, incx64, incy64, lda64)) return;
    zgeru_slot(m64, n64, *alpha, x, incx64, y, incy64, a, lda64);
}

NXL_EXPORT void zhemv(const char* uplo, const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda,
                      const nxl_z* x, const int* incx, const nxl_z* beta, nxl_z* y, const int* incy) noexcept {
    const i64 n64 = *n, lda64 = *lda, incx64 = *incx, incy64 = *incy;
    if (check_symv("ZHEMV ", uplo, n64, lda64, incx64, incy64)) return;
    zhemv_slot(*uplo, n64, *alpha, a, lda64, x, incx64, *beta, y, incy64);
}

NXL_EXPORT void zher(const char* uplo, const int* n, const double* alpha, const nxl_z* x, const int* incx, nxl_z* a,
                     const int* lda) noexcept {
    const i64 n64 = *n, incx64 = *incx, lda64 = *lda;
    if (check_syr("ZHER  ", uplo, n64, incx64, lda64)) return;
    zher_slot(*uplo, n64, *alpha, x, incx64, a, lda64);
}

NXL_EXPORT void zher2(const char* uplo, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx,
                      const nxl_z* y, const int* incy, nxl_z* a, const int* lda) noexcept {
    const i64 n64 = *n, incx64 = *incx, incy64 = *incy, lda64 = *lda;
    if (check_syr2("ZHER2 ", uplo, n64, incx64, incy64, lda64)) return;
    zher2_slot(*uplo, n64, *alpha, x, incx64, y, incy64, a, lda64);
}

NXL_EXPORT void ZSYR(const char* uplo, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, nxl_z* a,
                     const int* lda) noexcept {
    const i64 n64 = *n, incx64 = *incx, lda64 = *lda;
    zsyr_slot(*uplo, n64, *alpha, x, incx64, a, lda64);
}

NXL_EXPORT void ztrmv(const char* uplo, const char* trans, const char* diag, const int* n, const nxl_z* a,
                      const int* lda, nxl_z* x, const int* incx) noexcept {
    const i64 n64 = *n, lda64 = *lda, incx64 = *incx;
    if (check_trv("ZTRMV ", uplo, trans, diag, n64, lda64, incx64)) return;
    ztrmv_slot(*uplo, *trans, *diag, n64, a, lda64, x, incx64);
}

NXL_EXPORT void ztrsv(const char* uplo, const char* trans, const char* diag, const int* n, const nxl_z* a,
                      const int* lda, nxl_z* x, const int* incx) noexcept {
    const i64 n64 = *n, lda64 = *lda, incx64 = *incx;
    if (check_trv("ZTRSV ", uplo, trans, diag, n64, lda64, incx64)) return;
    ztrsv_slot(*uplo, *trans, *diag, n64, a, lda64, x, incx64);
}

} // extern "C"
