// LU factorisation of a band.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// P A = L U of an m by n band with kl and ku diagonals below and above the main one, which lies from row kl of ab on:
/// the rows above it are for U. See band_lu.hpp for L. info: the first zero pivot, from 1, or 0.
template <class T>
void gbtrf(const i64& m, const i64& n, const i64& kl, const i64& ku, T* ab, const i64& ldab, i64* ipiv, i64& info);
inline constexpr auto nxl_lapack_dgbtrf = gbtrf<double>;
inline constexpr auto nxl_lapack_zgbtrf = gbtrf<zcomplex>;

} // namespace nxl
