// Products with Q of a QR or an LQ factorisation.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// C := op(Q) C or C op(Q), Q = H1 ... Hk from geqrf.
template <class T>
void ormqr(const char& side, const char& trans, const i64& m, const i64& n, const i64& k, const T* a, const i64& lda,
           const T* tau, T* c, const i64& ldc, T* work, const i64& lwork, i64& info, int side_length = 1,
           int trans_length = 1);
inline constexpr auto nxl_lapack_dormqr = ormqr<double>;
inline constexpr auto nxl_lapack_zunmqr = ormqr<zcomplex>;

/// The same for Q = Hk^H ... H1^H from gelqf.
template <class T>
void ormlq(const char& side, const char& trans, const i64& m, const i64& n, const i64& k, const T* a, const i64& lda,
           const T* tau, T* c, const i64& ldc, T* work, const i64& lwork, i64& info, int side_length = 1,
           int trans_length = 1);
inline constexpr auto nxl_lapack_dormlq = ormlq<double>;
inline constexpr auto nxl_lapack_zunmlq = ormlq<zcomplex>;

} // namespace nxl
