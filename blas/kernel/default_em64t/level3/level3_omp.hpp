// Drivers of level 3 beside the general matrix product: trsm_omp.cpp, symm_omp.cpp and rank_update_omp.cpp.
#pragma once
#include "service/types.hpp"

namespace nxl {

void nxl_blas_dsymm(const char* side, const char* uplo, const i64* m, const i64* n, const double* alpha,
                    const double* a, const i64* lda, const double* b, const i64* ldb, const double* beta, double* c,
                    const i64* ldc);
void nxl_blas_zsymm(const char* side, const char* uplo, const i64* m, const i64* n, const zcomplex* alpha,
                    const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb, const zcomplex* beta,
                    zcomplex* c, const i64* ldc);
void nxl_blas_zhemm(const char* side, const char* uplo, const i64* m, const i64* n, const zcomplex* alpha,
                    const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb, const zcomplex* beta,
                    zcomplex* c, const i64* ldc);
void nxl_blas_dsyrk(const char* uplo, const char* trans, const i64* n, const i64* k, const double* alpha,
                    const double* a, const i64* lda, const double* beta, double* c, const i64* ldc);
void nxl_blas_zsyrk(const char* uplo, const char* trans, const i64* n, const i64* k, const zcomplex* alpha,
                    const zcomplex* a, const i64* lda, const zcomplex* beta, zcomplex* c, const i64* ldc);
void nxl_blas_zherk(const char* uplo, const char* trans, const i64* n, const i64* k, const double* alpha,
                    const zcomplex* a, const i64* lda, const double* beta, zcomplex* c, const i64* ldc);
void nxl_blas_dsyr2k(const char* uplo, const char* trans, const i64* n, const i64* k, const double* alpha,
                     const double* a, const i64* lda, const double* b, const i64* ldb, const double* beta, double* c,
                     const i64* ldc);
void nxl_blas_zsyr2k(const char* uplo, const char* trans, const i64* n, const i64* k, const zcomplex* alpha,
                     const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb, const zcomplex* beta,
                     zcomplex* c, const i64* ldc);
void nxl_blas_zher2k(const char* uplo, const char* trans, const i64* n, const i64* k, const zcomplex* alpha,
                     const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb, const double* beta,
                     zcomplex* c, const i64* ldc);
void nxl_blas_dtrmm(const char* side, const char* uplo, const char* transa, const char* diag, const i64* m,
                    const i64* n, const double* alpha, const double* a, const i64* lda, double* b, const i64* ldb);
void nxl_blas_ztrmm(const char* side, const char* uplo, const char* transa, const char* diag, const i64* m,
                    const i64* n, const zcomplex* alpha, const zcomplex* a, const i64* lda, zcomplex* b,
                    const i64* ldb);
void nxl_blas_dtrsm(const char* side, const char* uplo, const char* transa, const char* diag, const i64* m,
                    const i64* n, const double* alpha, const double* a, const i64* lda, double* b, const i64* ldb);
void nxl_blas_ztrsm(const char* side, const char* uplo, const char* transa, const char* diag, const i64* m,
                    const i64* n, const zcomplex* alpha, const zcomplex* a, const i64* lda, zcomplex* b,
                    const i64* ldb);

} // namespace nxl
