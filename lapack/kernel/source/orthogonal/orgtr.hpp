// Q of the reductions to condensed form, formed: tridiagonal, Hessenberg, bidiagonal.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Q, n by n, of sytrd: Hn-1 ... H1 for uplo U, H1 ... Hn-1 for L.
template <class T>
void orgtr(const char& uplo, const i64& n, T* a, const i64& lda, const T* tau, T* work, const i64& lwork, i64& info,
           int uplo_length = 1);
inline constexpr auto nxl_lapack_dorgtr = orgtr<double>;
inline constexpr auto nxl_lapack_zungtr = orgtr<zcomplex>;

/// Q, n by n, of gehrd on rows and columns ilo to ihi, from 1.
template <class T>
void orghr(const i64& n, const i64& ilo, const i64& ihi, T* a, const i64& lda, const T* tau, T* work, const i64& lwork,
           i64& info);
inline constexpr auto nxl_lapack_dorghr = orghr<double>;
inline constexpr auto nxl_lapack_zunghr = orghr<zcomplex>;

/// Q (vect Q) or P^H (P) of gebrd, of a matrix of k columns, or k rows.
template <class T>
void orgbr(const char& vect, const i64& m, const i64& n, const i64& k, T* a, const i64& lda, const T* tau, T* work,
           const i64& lwork, i64& info, int vect_length = 1);
inline constexpr auto nxl_lapack_dorgbr = orgbr<double>;
inline constexpr auto nxl_lapack_zungbr = orgbr<zcomplex>;

} // namespace nxl
