// Solutions from the factors of a band.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// B := op(A)^-1 B from the factors that gbtrf has left.
template <class T>
void gbtrs(const char& trans, const i64& n, const i64& kl, const i64& ku, const i64& nrhs, const T* ab, const i64& ldab,
           const i64* ipiv, T* b, const i64& ldb, i64& info, int = 1);
inline constexpr auto nxl_lapack_dgbtrs = gbtrs<double>;
inline constexpr auto nxl_lapack_zgbtrs = gbtrs<zcomplex>;

/// B := A^-1 B from the factor that pbtrf has left.
template <class T>
void pbtrs(const char& uplo, const i64& n, const i64& kd, const i64& nrhs, const T* ab, const i64& ldab, T* b,
           const i64& ldb, i64& info, int = 1);
inline constexpr auto nxl_lapack_dpbtrs = pbtrs<double>;
inline constexpr auto nxl_lapack_zpbtrs = pbtrs<zcomplex>;

} // namespace nxl
