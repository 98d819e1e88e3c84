// Inverse of a general matrix from its LU factors.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The inverse from the factors of getrf.
template <class T>
void getri(const i64& n, T* a, const i64& lda, const i64* ipiv, T* work, const i64& lwork, i64& info);
inline constexpr auto nxl_lapack_dgetri = getri<double>;
inline constexpr auto nxl_lapack_zgetri = getri<zcomplex>;

} // namespace nxl
