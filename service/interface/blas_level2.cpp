// BLAS level 2: entries. ZSYR alone checks nothing.
#include "blas/kernel/default_em64t/level2/gemv_omp.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/blas_checks.hpp"
#include "service/kernel_slot.hpp"
#include "service/letters.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dgemv(const char* trans, const int* m, const int* n, const double* alpha, const double* a,
                      const int* lda, const double* x, const int* incx, const double* beta, double* y,
                      const int* incy) noexcept {
    if (check_gemv("DGEMV ", *trans, *m, *n, *lda, *incx, *incy)) return;
    nxl_blas_dgemv(capital(*trans), *m, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}

NXL_EXPORT void dger(const int* m, const int* n, const double* alpha, const double* x, const int* incx, const double* y,
                     const int* incy, double* a, const int* lda) noexcept {
    if (check_ger("DGER  ", *m, *n, *incx, *incy, *lda)) return;
    slot<&KernelTable::dger>(*m, *n, *alpha, x, *incx, y, *incy, a, *lda);
}

NXL_EXPORT void dsymv(const char* uplo, const int* n, const double* alpha, const double* a, const int* lda,
                      const double* x, const int* incx, const double* beta, double* y, const int* incy) noexcept {
    if (check_symv("DSYMV ", *uplo, *n, *lda, *incx, *incy)) return;
    slot<&KernelTable::dsymv>(capital(*uplo), *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}

NXL_EXPORT void dsyr(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx, double* a,
                     const int* lda) noexcept {
    if (check_syr("DSYR  ", *uplo, *n, *incx, *lda)) return;
    slot<&KernelTable::dsyr>(capital(*uplo), *n, *alpha, x, *incx, a, *lda);
}

NXL_EXPORT void dsyr2(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
                      const double* y, const int* incy, double* a, const int* lda) noexcept {
    if (check_syr2("DSYR2 ", *uplo, *n, *incx, *incy, *lda)) return;
    slot<&KernelTable::dsyr2>(capital(*uplo), *n, *alpha, x, *incx, y, *incy, a, *lda);
}

NXL_EXPORT void dtrmv(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
                      const int* lda, double* x, const int* incx) noexcept {
    if (check_trv("DTRMV ", *uplo, *trans, *diag, *n, *lda, *incx)) return;
    slot<&KernelTable::dtrmv>(capital(*uplo), capital(*trans), capital(*diag), *n, a, *lda, x, *incx);
}

NXL_EXPORT void dtrsv(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
                      const int* lda, double* x, const int* incx) noexcept {
    if (check_trv("DTRSV ", *uplo, *trans, *diag, *n, *lda, *incx)) return;
    slot<&KernelTable::dtrsv>(capital(*uplo), capital(*trans), capital(*diag), *n, a, *lda, x, *incx);
}

NXL_EXPORT void zgemv(const char* trans, const int* m, const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda,
                      const nxl_z* x, const int* incx, const nxl_z* beta, nxl_z* y, const int* incy) noexcept {
    if (check_gemv("ZGEMV ", *trans, *m, *n, *lda, *incx, *incy)) return;
    nxl_blas_zgemv(capital(*trans), *m, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}

NXL_EXPORT void zgerc(const int* m, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, const nxl_z* y,
                      const int* incy, nxl_z* a, const int* lda) noexcept {
    if (check_ger("ZGERC ", *m, *n, *incx, *incy, *lda)) return;
    slot<&KernelTable::zgerc>(*m, *n, *alpha, x, *incx, y, *incy, a, *lda);
}

NXL_EXPORT void zgeru(const int* m, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, const nxl_z* y,
                      const int* incy, nxl_z* a, const int* lda) noexcept {
    if (check_ger("ZGERU ", *m, *n, *incx, *incy, *lda)) return;
    slot<&KernelTable::zgeru>(*m, *n, *alpha, x, *incx, y, *incy, a, *lda);
}

NXL_EXPORT void zhemv(const char* uplo, const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda,
                      const nxl_z* x, const int* incx, const nxl_z* beta, nxl_z* y, const int* incy) noexcept {
    if (check_symv("ZHEMV ", *uplo, *n, *lda, *incx, *incy)) return;
    slot<&KernelTable::zhemv>(capital(*uplo), *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}

NXL_EXPORT void zher(const char* uplo, const int* n, const double* alpha, const nxl_z* x, const int* incx, nxl_z* a,
                     const int* lda) noexcept {
    if (check_syr("ZHER  ", *uplo, *n, *incx, *lda)) return;
    slot<&KernelTable::zher>(capital(*uplo), *n, *alpha, x, *incx, a, *lda);
}

NXL_EXPORT void zher2(const char* uplo, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx,
                      const nxl_z* y, const int* incy, nxl_z* a, const int* lda) noexcept {
    if (check_syr2("ZHER2 ", *uplo, *n, *incx, *incy, *lda)) return;
    slot<&KernelTable::zher2>(capital(*uplo), *n, *alpha, x, *incx, y, *incy, a, *lda);
}

NXL_EXPORT void ZSYR(const char* uplo, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, nxl_z* a,
                     const int* lda) noexcept {
    slot<&KernelTable::zsyr>(capital(*uplo), *n, *alpha, x, *incx, a, *lda);
}

NXL_EXPORT void ztrmv(const char* uplo, const char* trans, const char* diag, const int* n, const nxl_z* a,
                      const int* lda, nxl_z* x, const int* incx) noexcept {
    if (check_trv("ZTRMV ", *uplo, *trans, *diag, *n, *lda, *incx)) return;
    slot<&KernelTable::ztrmv>(capital(*uplo), capital(*trans), capital(*diag), *n, a, *lda, x, *incx);
}

NXL_EXPORT void ztrsv(const char* uplo, const char* trans, const char* diag, const int* n, const nxl_z* a,
                      const int* lda, nxl_z* x, const int* incx) noexcept {
    if (check_trv("ZTRSV ", *uplo, *trans, *diag, *n, *lda, *incx)) return;
    slot<&KernelTable::ztrsv>(capital(*uplo), capital(*trans), capital(*diag), *n, a, *lda, x, *incx);
}

} // extern "C"
