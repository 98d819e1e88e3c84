// Condition of the eigenvalues and eigenvectors of Schur forms.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Options are capitals. select is looked at for howmny S alone. See dtrsna in nxl.h.
template <class T>
void trsna(const char& job, const char& howmny, const i64* select, const i64& n, const T* t, const i64& ldt,
           const T* vl, const i64& ldvl, const T* vr, const i64& ldvr, double* s, double* sep, const i64& mm, i64& m,
           const i64& ldwork, i64& info);
inline constexpr auto nxl_lapack_dtrsna = trsna<double>;
inline constexpr auto nxl_lapack_ztrsna = trsna<zcomplex>;

} // namespace nxl
