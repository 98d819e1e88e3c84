// Reduction to Hessenberg form.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// A = Q H Q^H on rows and columns ilo to ihi, from 1; it is triangular outside of them.
template <class T>
void gehrd(const i64& n, const i64& ilo, const i64& ihi, T* a, const i64& lda, T* tau, T* work, const i64& lwork,
           i64& info);
inline constexpr auto nxl_lapack_dgehrd = gehrd<double>;
inline constexpr auto nxl_lapack_zgehrd = gehrd<zcomplex>;

/// The same on rows and columns first .. end - 1, from 0. False when there was no memory, with nothing changed.
template <class T> bool reduce_to_hessenberg(const Matrix<T>& a, i64 first, i64 end, T* tau);

} // namespace nxl
