// Reduction of a symmetric or Hermitian matrix to tridiagonal form.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// A = Q T Q^H, Q = H1 ... Hn-1 (uplo L) or Hn-1 ... H1 (U): the diagonal and off-diagonal of T in d(n) and e(n-1), the
/// vectors of the reflectors beyond the off-diagonal of the triangle, their scalars in tau(n-1).
template <class T>
void sytrd(const char& uplo, const i64& n, T* a, const i64& lda, double* d, double* e, T* tau, T* work,
           const i64& lwork, i64& info, int uplo_length = 1);

inline constexpr auto nxl_lapack_dsytrd = sytrd<double>;
inline constexpr auto nxl_lapack_zhetrd = sytrd<zcomplex>;

} // namespace nxl
