// LU factorisation over threads.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// P A = L U with partial pivoting, over threads where that pays.
template <class T> void getrf(const i64& m, const i64& n, T* a, const i64& lda, i64* ipiv, i64& info);
inline constexpr auto nxl_lapack_dgetrf = getrf<double>;
inline constexpr auto nxl_lapack_zgetrf = getrf<zcomplex>;

} // namespace nxl
