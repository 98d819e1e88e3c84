// Drivers of the general matrix product.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// C := alpha op(A) op(B) + beta C, over threads where that pays.
void nxl_blas_dgemm(const char* transa, const char* transb, const i64* m, const i64* n, const i64* k,
                    const double* alpha, const double* a, const i64* lda, const double* b, const i64* ldb,
                    const double* beta, double* c, const i64* ldc);
void nxl_blas_zgemm(const char* transa, const char* transb, const i64* m, const i64* n, const i64* k,
                    const zcomplex* alpha, const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb,
                    const zcomplex* beta, zcomplex* c, const i64* ldc);

} // namespace nxl
