// Drivers of level 3 beside the general matrix product.
#include "blas/kernel/default_em64t/level3/level3_omp.hpp"
#include "blas/kernel/default_em64t/level3/slots.hpp"

namespace nxl {

void nxl_blas_dsymm(const char* side, const char* uplo, const i64* m, const i64* n, const double* alpha,
                    const double* a, const i64* lda, const double* b, const i64* ldb, const double* beta, double* c,
                    const i64* ldc) {
    dsymm_slot(*side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

void nxl_blas_zsymm(const char* side, const char* uplo, const i64* m, const i64* n, const zcomplex* alpha,
                    const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb, const zcomplex* beta,
                    zcomplex* c, const i64* ldc) {
    zsymm_slot(*side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

void nxl_blas_zhemm(const char* side, const char* uplo, const i64* m, const i64* n, const zcomplex* alpha,
                    const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb, const zcomplex* beta,
                    zcomplex* c, const i64* ldc) {
    zhemm_slot(*side, *uplo, *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

void nxl_blas_dsyrk(const char* uplo, const char* trans, const i64* n, const i64* k, const double* alpha,
                    const double* a, const i64* lda, const double* beta, double* c, const i64* ldc) {
    dsyrk_slot(*uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc);
}

void nxl_blas_zsyrk(const char* uplo, const char* trans, const i64* n, const i64* k, const zcomplex* alpha,
                    const zcomplex* a, const i64* lda, const zcomplex* beta, zcomplex* c, const i64* ldc) {
    zsyrk_slot(*uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc);
}

void nxl_blas_zherk(const char* uplo, const char* trans, const i64* n, const i64* k, const double* alpha,
                    const zcomplex* a, const i64* lda, const double* beta, zcomplex* c, const i64* ldc) {
    zherk_slot(*uplo, *trans, *n, *k, *alpha, a, *lda, *beta, c, *ldc);
}

void nxl_blas_dsyr2k(const char* uplo, const char* trans, const i64* n, const i64* k, const double* alpha,
                     const double* a, const i64* lda, const double* b, const i64* ldb, const double* beta, double* c,
                     const i64* ldc) {
    dsyr2k_slot(*uplo, *trans, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

void nxl_blas_zsyr2k(const char* uplo, const char* trans, const i64* n, const i64* k, const zcomplex* alpha,
                     const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb, const zcomplex* beta,
                     zcomplex* c, const i64* ldc) {
    zsyr2k_slot(*uplo, *trans, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

void nxl_blas_zher2k(const char* uplo, const char* trans, const i64* n, const i64* k, const zcomplex* alpha,
                     const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb, const double* beta,
                     zcomplex* c, const i64* ldc) {
    zher2k_slot(*uplo, *trans, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

void nxl_blas_dtrmm(const char* side, const char* uplo, const char* transa, const char* diag, const i64* m,
                    const i64* n, const double* alpha, const double* a, const i64* lda, double* b, const i64* ldb) {
    dtrmm_slot(*side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb);
}

void nxl_blas_ztrmm(const char* side, const char* uplo, const char* transa, const char* diag, const i64* m,
                    const i64* n, const zcomplex* alpha, const zcomplex* a, const i64* lda, zcomplex* b,
                    const i64* ldb) {
    ztrmm_slot(*side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb);
}

void nxl_blas_dtrsm(const char* side, const char* uplo, const char* transa, const char* diag, const i64* m,
                    const i64* n, const double* alpha, const double* a, const i64* lda, double* b, const i64* ldb) {
    dtrsm_slot(*side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb);
}

void nxl_blas_ztrsm(const char* side, const char* uplo, const char* transa, const char* diag, const i64* m,
                    const i64* n, const zcomplex* alpha, const zcomplex* a, const i64* lda, zcomplex* b,
                    const i64* ldb) {
    ztrsm_slot(*side, *uplo, *transa, *diag, *m, *n, *alpha, a, *lda, b, *ldb);
}

} // namespace nxl
