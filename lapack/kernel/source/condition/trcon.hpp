// Condition of a triangular matrix.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// 1 / (|A| |A^-1|) in the norm '1' (or O) or I, the norm of the inverse being estimated. work: 3n real, or 2n complex
/// elements.
void nxl_lapack_dtrcon(const char& norm, const char& uplo, const char& diag, const i64& n, const double* a,
                       const i64& lda, double& rcond, double* work, i64* iwork, i64& info, int norm_length = 1,
                       int uplo_length = 1, int diag_length = 1);
void nxl_lapack_ztrcon(const char& norm, const char& uplo, const char& diag, const i64& n, const zcomplex* a,
                       const i64& lda, double& rcond, zcomplex* work, double* rwork, i64& info, int norm_length = 1,
                       int uplo_length = 1, int diag_length = 1);

} // namespace nxl
