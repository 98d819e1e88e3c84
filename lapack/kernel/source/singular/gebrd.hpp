// Reduction of a general matrix to bidiagonal form.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// A = Q B P^H, B upper bidiagonal for m >= n, else lower: d(min(m,n)), e(min(m,n)-1). Q = H1 H2 ..., P = G1 G2 ...;
/// vectors of Q below the bidiagonal, those of P conjugated beyond it.
template <class T>
void gebrd(const i64& m, const i64& n, T* a, const i64& lda, double* d, double* e, T* tauq, T* taup, T* work,
           const i64& lwork, i64& info);
inline constexpr auto nxl_lapack_dgebrd = gebrd<double>;
inline constexpr auto nxl_lapack_zgebrd = gebrd<zcomplex>;

/// The same of a view with no fewer rows than columns. False when there was no memory, with nothing changed.
template <class T> bool bidiagonalise(const Matrix<T>& a, double* d, double* e, T* tauq, T* taup);

} // namespace nxl
