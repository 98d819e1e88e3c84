// Drivers for triangular matrices: inverse and solution. Arguments as published, with integers of 64 bits; option
// characters have their hidden lengths at the end.
#pragma once
#include "service/types.hpp"

namespace nxl {

void nxl_lapack_dtrtri(const char* uplo, const char* diag, const i64* n, double* a, const i64* lda, i64* info,
                       int uplo_length, int diag_length);
void nxl_lapack_ztrtri(const char* uplo, const char* diag, const i64* n, zcomplex* a, const i64* lda, i64* info,
                       int uplo_length, int diag_length);

/// op(A) X = B, after a look for zeros on the diagonal.
void nxl_lapack_dtrtrs(const char* uplo, const char* trans, const char* diag, const i64* n, const i64* nrhs,
                       const double* a, const i64* lda, double* b, const i64* ldb, i64* info, int uplo_length,
                       int trans_length, int diag_length);
void nxl_lapack_ztrtrs(const char* uplo, const char* trans, const char* diag, const i64* n, const i64* nrhs,
                       const zcomplex* a, const i64* lda, zcomplex* b, const i64* ldb, i64* info, int uplo_length,
                       int trans_length, int diag_length);

} // namespace nxl
