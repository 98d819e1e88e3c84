// Error bounds of solutions of triangular systems.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The forward bound and the backward error of each column of X, for op(A) X = B. work: 3n real, or 2n complex
/// elements.
void nxl_lapack_dtrrfs(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& nrhs,
                       const double* a, const i64& lda, const double* b, const i64& ldb, const double* x,
                       const i64& ldx, double* ferr, double* berr, double* work, i64* iwork, i64& info,
                       int uplo_length = 1, int trans_length = 1, int diag_length = 1);
void nxl_lapack_ztrrfs(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& nrhs,
                       const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb, const zcomplex* x,
                       const i64& ldx, double* ferr, double* berr, zcomplex* work, double* rwork, i64& info,
                       int uplo_length = 1, int trans_length = 1, int diag_length = 1);

} // namespace nxl
