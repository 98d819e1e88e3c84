// QR factorisation.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// A = Q R. The published form of Q: H1 H2 ..., vectors below the diagonal.
template <class T>
void geqrf(const i64& m, const i64& n, T* a, const i64& lda, T* tau, T* work, const i64& lwork, i64& info);
inline constexpr auto nxl_lapack_dgeqrf = geqrf<double>;
inline constexpr auto nxl_lapack_zgeqrf = geqrf<zcomplex>;

/// The same of a view. False when there was no memory, with nothing changed.
template <class T> bool factor_qr(const Matrix<T>& a, T* tau);

} // namespace nxl
