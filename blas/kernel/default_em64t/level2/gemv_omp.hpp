// Drivers of the matrix-vector product, the threaded members of level 2.
#pragma once
#include "service/types.hpp"

namespace nxl {

void nxl_blas_dgemv(const char* trans, const i64* m, const i64* n, const double* alpha, const double* a, const i64* lda,
                    const double* x, const i64* incx, const double* beta, double* y, const i64* incy);
void nxl_blas_zgemv(const char* trans, const i64* m, const i64* n, const zcomplex* alpha, const zcomplex* a,
                    const i64* lda, const zcomplex* x, const i64* incx, const zcomplex* beta, zcomplex* y,
                    const i64* incy);

} // namespace nxl
