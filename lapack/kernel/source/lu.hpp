// Drivers of the LU family: factorisation, solution, inverse, row interchanges. Arguments as published, with integers
// of 64 bits; option characters have their hidden lengths at the end.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// P A = L U with partial pivoting, over threads where that pays.
void nxl_lapack_dgetrf(const i64* m, const i64* n, double* a, const i64* lda, i64* ipiv, i64* info);
void nxl_lapack_zgetrf(const i64* m, const i64* n, zcomplex* a, const i64* lda, i64* ipiv, i64* info);

/// op(A) X = B from the factors of getrf.
void nxl_lapack_dgetrs(const char* trans, const i64* n, const i64* nrhs, const double* a, const i64* lda,
                       const i64* ipiv, double* b, const i64* ldb, i64* info, int trans_length);
void nxl_lapack_zgetrs(const char* trans, const i64* n, const i64* nrhs, const zcomplex* a, const i64* lda,
                       const i64* ipiv, zcomplex* b, const i64* ldb, i64* info, int trans_length);

/// The inverse from the factors of getrf.
void nxl_lapack_dgetri(const i64* n, double* a, const i64* lda, const i64* ipiv, double* work, const i64* lwork,
                       i64* info);
void nxl_lapack_zgetri(const i64* n, zcomplex* a, const i64* lda, const i64* ipiv, zcomplex* work, const i64* lwork,
                       i64* info);

/// Interchanges rows i and ipiv(i) of the n columns of a, for i from k1 to k2, or backwards for a negative incx.
void nxl_lapack_dlaswp(const i64* n, double* a, const i64* lda, const i64* k1, const i64* k2, const i64* ipiv,
                       const i64* incx);
void nxl_lapack_zlaswp(const i64* n, zcomplex* a, const i64* lda, const i64* k1, const i64* k2, const i64* ipiv,
                       const i64* incx);

} // namespace nxl
