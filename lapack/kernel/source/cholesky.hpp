// Drivers of the Cholesky family: factorisation, solution, inverse. Arguments as published, with integers of 64 bits;
// option characters have their hidden lengths at the end.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// A = U^H U or L L^H, over threads where that pays.
void nxl_lapack_dpotrf(const char* uplo, const i64* n, double* a, const i64* lda, i64* info, int uplo_length);
void nxl_lapack_zpotrf(const char* uplo, const i64* n, zcomplex* a, const i64* lda, i64* info, int uplo_length);

/// The same for small matrices, on one thread, without blocks.
void nxl_lapack_zpotf2(const char* uplo, const i64* n, zcomplex* a, const i64* lda, i64* info, int uplo_length);

/// A X = B from the factor of potrf.
void nxl_lapack_dpotrs(const char* uplo, const i64* n, const i64* nrhs, const double* a, const i64* lda, double* b,
                       const i64* ldb, i64* info, int uplo_length);
void nxl_lapack_zpotrs(const char* uplo, const i64* n, const i64* nrhs, const zcomplex* a, const i64* lda, zcomplex* b,
                       const i64* ldb, i64* info, int uplo_length);

/// One triangle of the inverse from the factor of potrf.
void nxl_lapack_dpotri(const char* uplo, const i64* n, double* a, const i64* lda, i64* info, int uplo_length);
void nxl_lapack_zpotri(const char* uplo, const i64* n, zcomplex* a, const i64* lda, i64* info, int uplo_length);

/// U U^H or L^H L, in place of the factor's triangle.
void nxl_lapack_dlauum(const char* uplo, const i64* n, double* a, const i64* lda, i64* info, int uplo_length);
void nxl_lapack_zlauum(const char* uplo, const i64* n, zcomplex* a, const i64* lda, i64* info, int uplo_length);

} // namespace nxl
