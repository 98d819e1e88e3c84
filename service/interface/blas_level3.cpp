// BLAS level 3: entries.
#include "blas/kernel/default_em64t/level3/gemm_omp.hpp"
#include "blas/kernel/default_em64t/level3/rank_update_omp.hpp"
#include "blas/kernel/default_em64t/level3/symm_omp.hpp"
#include "blas/kernel/default_em64t/level3/trsm_omp.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/blas_checks.hpp"
#include "service/letters.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                      const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
                      const double* beta, double* c, const int* ldc) noexcept {
    const char of_a = capital(*transa), of_b = capital(*transb);
    if (check_gemm("DGEMM ", of_a, of_b, *m, *n, *k, *lda, *ldb, *ldc)) return;
    nxl_blas_dgemm(of_a, of_b, *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

NXL_EXPORT void dsymm(const char* side, const char* uplo, const int* m, const int* n, const double* alpha,
                      const double* a, const int* lda, const double* b, const int* ldb, const double* beta, double* c,
                      const int* ldc) noexcept {
    if (check_symm("DSYMM ", *side, *uplo, *m, *n, *lda, *ldb, *ldc)) return;
    nxl_blas_dsymm(capital(*side), capital(*uplo), *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

NXL_EXPORT void dsyr2k(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
                       const double* a, const int* lda, const double* b, const int* ldb, const double* beta, double* c,
                       const int* ldc) noexcept {
    if (check_syr2k("DSYR2K", dsyrk_trans, *uplo, *trans, *n, *k, *lda, *ldb, *ldc)) return;
    nxl_blas_dsyr2k(capital(*uplo), capital(*trans), *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

NXL_EXPORT void dsyrk(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
                      const double* a, const int* lda, const double* beta, double* c, const int* ldc) noexcept {
    if (check_syrk("DSYRK ", dsyrk_trans, *uplo, *trans, *n, *k, *lda, *ldc)) return;
    nxl_blas_dsyrk(capital(*uplo), capital(*trans), *n, *k, *alpha, a, *lda, *beta, c, *ldc);
}

NXL_EXPORT void dtrmm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                      const int* n, const double* alpha, const double* a, const int* lda, double* b,
                      const int* ldb) noexcept {
    if (check_trm("DTRMM ", *side, *uplo, *transa, *diag, *m, *n, *lda, *ldb)) return;
    nxl_blas_dtrmm(capital(*side), capital(*uplo), capital(*transa), capital(*diag), *m, *n, *alpha, a, *lda, b, *ldb);
}

NXL_EXPORT void dtrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                      const int* n, const double* alpha, const double* a, const int* lda, double* b,
                      const int* ldb) noexcept {
    if (check_trm("DTRSM ", *side, *uplo, *transa, *diag, *m, *n, *lda, *ldb)) return;
    nxl_blas_dtrsm(capital(*side), capital(*uplo), capital(*transa), capital(*diag), *m, *n, *alpha, a, *lda, b, *ldb);
}

NXL_EXPORT void zgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                      const nxl_z* alpha, const nxl_z* a, const int* lda, const nxl_z* b, const int* ldb,
                      const nxl_z* beta, nxl_z* c, const int* ldc) noexcept {
    const char of_a = capital(*transa), of_b = capital(*transb);
    if (check_gemm("ZGEMM ", of_a, of_b, *m, *n, *k, *lda, *ldb, *ldc)) return;
    nxl_blas_zgemm(of_a, of_b, *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

NXL_EXPORT void zhemm(const char* side, const char* uplo, const int* m, const int* n, const nxl_z* alpha,
                      const nxl_z* a, const int* lda, const nxl_z* b, const int* ldb, const nxl_z* beta, nxl_z* c,
                      const int* ldc) noexcept {
    if (check_symm("ZHEMM ", *side, *uplo, *m, *n, *lda, *ldb, *ldc)) return;
    nxl_blas_zhemm(capital(*side), capital(*uplo), *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

NXL_EXPORT void zher2k(const char* uplo, const char* trans, const int* n, const int* k, const nxl_z* alpha,
                       const nxl_z* a, const int* lda, const nxl_z* b, const int* ldb, const double* beta, nxl_z* c,
                       const int* ldc) noexcept {
    if (check_syr2k("ZHER2K", zherk_trans, *uplo, *trans, *n, *k, *lda, *ldb, *ldc)) return;
    nxl_blas_zher2k(capital(*uplo), capital(*trans), *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

NXL_EXPORT void zherk(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
                      const nxl_z* a, const int* lda, const double* beta, nxl_z* c, const int* ldc) noexcept {
    if (check_syrk("ZHERK ", zherk_trans, *uplo, *trans, *n, *k, *lda, *ldc)) return;
    nxl_blas_zherk(capital(*uplo), capital(*trans), *n, *k, *alpha, a, *lda, *beta, c, *ldc);
}

NXL_EXPORT void zsymm(const char* side, const char* uplo, const int* m, const int* n, const nxl_z* alpha,
                      const nxl_z* a, const int* lda, const nxl_z* b, const int* ldb, const nxl_z* beta, nxl_z* c,
                      const int* ldc) noexcept {
    if (check_symm("ZSYMM ", *side, *uplo, *m, *n, *lda, *ldb, *ldc)) return;
    nxl_blas_zsymm(capital(*side), capital(*uplo), *m, *n, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

NXL_EXPORT void zsyr2k(const char* uplo, const char* trans, const int* n, const int* k, const nxl_z* alpha,
                       const nxl_z* a, const int* lda, const nxl_z* b, const int* ldb, const nxl_z* beta, nxl_z* c,
                       const int* ldc) noexcept {
    if (check_syr2k("ZSYR2K", zsyrk_trans, *uplo, *trans, *n, *k, *lda, *ldb, *ldc)) return;
    nxl_blas_zsyr2k(capital(*uplo), capital(*trans), *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

NXL_EXPORT void zsyrk(const char* uplo, const char* trans, const int* n, const int* k, const nxl_z* alpha,
                      const nxl_z* a, const int* lda, const nxl_z* beta, nxl_z* c, const int* ldc) noexcept {
    if (check_syrk("ZSYRK ", zsyrk_trans, *uplo, *trans, *n, *k, *lda, *ldc)) return;
    nxl_blas_zsyrk(capital(*uplo), capital(*trans), *n, *k, *alpha, a, *lda, *beta, c, *ldc);
}

NXL_EXPORT void ztrmm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                      const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda, nxl_z* b,
                      const int* ldb) noexcept {
    if (check_trm("ZTRMM ", *side, *uplo, *transa, *diag, *m, *n, *lda, *ldb)) return;
    nxl_blas_ztrmm(capital(*side), capital(*uplo), capital(*transa), capital(*diag), *m, *n, *alpha, a, *lda, b, *ldb);
}

NXL_EXPORT void ztrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                      const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda, nxl_z* b,
                      const int* ldb) noexcept {
    if (check_trm("ZTRSM ", *side, *uplo, *transa, *diag, *m, *n, *lda, *ldb)) return;
    nxl_blas_ztrsm(capital(*side), capital(*uplo), capital(*transa), capital(*diag), *m, *n, *alpha, a, *lda, b, *ldb);
}

} // extern "C"
