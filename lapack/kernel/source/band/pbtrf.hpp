// Cholesky factorisation of a band.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// A = U^H U or L L^H of a band of order n with kd diagonals beside the main one, of which triangle uplo is stored and
/// becomes the factor. info: 0, or the order of the first leading minor that is not positive.
template <class T> void pbtrf(const char& uplo, const i64& n, const i64& kd, T* ab, const i64& ldab, i64& info,
                              int = 1);
inline constexpr auto nxl_lapack_dpbtrf = pbtrf<double>;
inline constexpr auto nxl_lapack_zpbtrf = pbtrf<zcomplex>;

} // namespace nxl
