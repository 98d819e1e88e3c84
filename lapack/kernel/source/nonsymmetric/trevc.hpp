// Eigenvectors of Schur forms.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// Options are capitals. select is a null pointer where it is not looked at. See dtrevc in nxl.h.
template <class T>
void trevc(const char& side, const char& howmny, i64* select, const i64& n, const T* t, const i64& ldt, T* vl,
           const i64& ldvl, T* vr, const i64& ldvr, const i64& mm, i64& m, i64& info);
inline constexpr auto nxl_lapack_dtrevc = trevc<double>;
inline constexpr auto nxl_lapack_ztrevc = trevc<zcomplex>;

/// The vectors of a side, into the columns of v: those that `select` has, or all where it is a null pointer; with
/// `transform`, which wants all, multiplied by what v holds. False when there was no memory, with nothing changed.
template <class T>
bool find_schur_vectors(bool left, const Matrix<const T>& t, const i64* select, bool transform, const Matrix<T>& v);

/// The columns that vectors of the eigenvalues in `select` take. Of a conjugate pair either of the two selects both.
template <class T> i64 count_selected(const Matrix<const T>& t, const i64* select);

} // namespace nxl
