// Row interchanges.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Interchanges rows i and ipiv(i) of the n columns of a, for i from k1 to k2, or backwards for a negative incx.
template <class T>
void laswp(const i64& n, T* a, const i64& lda, const i64& k1, const i64& k2, const i64* ipiv, const i64& incx);
inline constexpr auto nxl_lapack_dlaswp = laswp<double>;
inline constexpr auto nxl_lapack_zlaswp = laswp<zcomplex>;

} // namespace nxl
