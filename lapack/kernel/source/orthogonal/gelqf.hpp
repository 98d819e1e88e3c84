// LQ factorisation.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// A = L Q. The published form of Q: ... H2^H H1^H, conjugated vectors to the right of the diagonal.
template <class T>
void gelqf(const i64& m, const i64& n, T* a, const i64& lda, T* tau, T* work, const i64& lwork, i64& info);
inline constexpr auto nxl_lapack_dgelqf = gelqf<double>;
inline constexpr auto nxl_lapack_zgelqf = gelqf<zcomplex>;

/// The same of a view. False when there was no memory, with nothing changed.
template <class T> bool factor_lq(const Matrix<T>& a, T* tau);

} // namespace nxl
