// QR factorisation with column pivoting.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// A P = Q R. jpvt: columns marked by a number other than 0 come first; afterwards, from where each column came,
/// from 1.
template <class T>
void geqp3(const i64& m, const i64& n, T* a, const i64& lda, i64* jpvt, T* tau, T* work, const i64& lwork, i64& info);
inline constexpr auto nxl_lapack_dgeqp3 = geqp3<double>;

/// The same of a view. False when there was no memory.
template <class T> bool factor_qr_pivoted(const Matrix<T>& a, i64* jpvt, T* tau);

} // namespace nxl
