// Drivers of the LU family: factorisation, solution, inverse, row interchanges. Arguments as published, with integers
// of 64 bits; option characters have their hidden lengths at the end, which nobody looks at.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// P A = L U with partial pivoting, over threads where that pays.
template <class T> void getrf(const i64& m, const i64& n, T* a, const i64& lda, i64* ipiv, i64& info);
inline constexpr auto nxl_lapack_dgetrf = getrf<double>;
inline constexpr auto nxl_lapack_zgetrf = getrf<zcomplex>;

/// op(A) X = B from the factors of getrf.
template <class T>
void getrs(const char& trans, const i64& n, const i64& nrhs, const T* a, const i64& lda, const i64* ipiv, T* b,
           const i64& ldb, i64& info, int trans_length);
inline constexpr auto nxl_lapack_dgetrs = getrs<double>;
inline constexpr auto nxl_lapack_zgetrs = getrs<zcomplex>;

/// The inverse from the factors of getrf.
template <class T>
void getri(const i64& n, T* a, const i64& lda, const i64* ipiv, T* work, const i64& lwork, i64& info);
inline constexpr auto nxl_lapack_dgetri = getri<double>;
inline constexpr auto nxl_lapack_zgetri = getri<zcomplex>;

/// Interchanges rows i and ipiv(i) of the n columns of a, for i from k1 to k2, or backwards for a negative incx.
template <class T>
void laswp(const i64& n, T* a, const i64& lda, const i64& k1, const i64& k2, const i64* ipiv, const i64& incx);
inline constexpr auto nxl_lapack_dlaswp = laswp<double>;
inline constexpr auto nxl_lapack_zlaswp = laswp<zcomplex>;

} // namespace nxl
