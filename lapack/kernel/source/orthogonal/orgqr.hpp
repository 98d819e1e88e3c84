// Q of a QR or an LQ factorisation, formed.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The first n columns of Q = H1 ... Hk from geqrf; m >= n >= k.
template <class T>
void orgqr(const i64& m, const i64& n, const i64& k, T* a, const i64& lda, const T* tau, T* work, const i64& lwork,
           i64& info);
inline constexpr auto nxl_lapack_dorgqr = orgqr<double>;
inline constexpr auto nxl_lapack_zungqr = orgqr<zcomplex>;

/// The first m rows of Q = Hk^H ... H1^H from gelqf; n >= m >= k.
template <class T>
void orglq(const i64& m, const i64& n, const i64& k, T* a, const i64& lda, const T* tau, T* work, const i64& lwork,
           i64& info);
inline constexpr auto nxl_lapack_dorglq = orglq<double>;
inline constexpr auto nxl_lapack_zunglq = orglq<zcomplex>;

} // namespace nxl
