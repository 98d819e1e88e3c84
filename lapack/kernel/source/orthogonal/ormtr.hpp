// Products with Q of the reductions to condensed form: tridiagonal, bidiagonal.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// C := op(Q) C or C op(Q), Q of sytrd with the same uplo.
template <class T>
void ormtr(const char& side, const char& uplo, const char& trans, const i64& m, const i64& n, const T* a,
           const i64& lda, const T* tau, T* c, const i64& ldc, T* work, const i64& lwork, i64& info,
           int side_length = 1, int uplo_length = 1, int trans_length = 1);
inline constexpr auto nxl_lapack_dormtr = ormtr<double>;
inline constexpr auto nxl_lapack_zunmtr = ormtr<zcomplex>;

/// The same for Q (vect Q) or P (P) of gebrd, of a matrix of k columns, or k rows.
template <class T>
void ormbr(const char& vect, const char& side, const char& trans, const i64& m, const i64& n, const i64& k, const T* a,
           const i64& lda, const T* tau, T* c, const i64& ldc, T* work, const i64& lwork, i64& info,
           int vect_length = 1, int side_length = 1, int trans_length = 1);
inline constexpr auto nxl_lapack_dormbr = ormbr<double>;

} // namespace nxl
