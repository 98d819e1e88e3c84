// Drivers of the general matrix product.
#include "blas/kernel/default_em64t/level3/gemm_omp.hpp"
#include "blas/kernel/default_em64t/level3/slots.hpp"

namespace nxl {

void nxl_blas_dgemm(const char* transa, const char* transb, const i64* m, const i64* n, const i64* k,
                    const double* alpha, const double* a, const i64* lda, const double* b, const i64* ldb,
                    const double* beta, double* c, const i64* ldc) {
    xdgemm_slot(*transa, *transb, *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

void nxl_blas_zgemm(const char* transa, const char* transb, const i64* m, const i64* n, const i64* k,
                    const zcomplex* alpha, const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb,
                    const zcomplex* beta, zcomplex* c, const i64* ldc) {
    xzgemm_slot(*transa, *transb, *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc);
}

} // namespace nxl
