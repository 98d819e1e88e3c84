// Condition of band matrices.
#pragma once
#include "lapack/kernel/source/condition/estimate_space.hpp"

namespace nxl {

/// 1 / (anorm |A^-1|) from the factors that gbtrf has left, in the norm '1' (or O) or I, which is anorm's as well.
/// work: 3n real elements, or 2n complex ones and n in rwork, which is `spare`.
template <class T>
void gbcon(const char& norm, const i64& n, const i64& kl, const i64& ku, const T* ab, const i64& ldab, const i64* ipiv,
           const double& anorm, double& rcond, T* work, Spare<T>* spare, i64& info, int = 1);
inline constexpr auto nxl_lapack_dgbcon = gbcon<double>;
inline constexpr auto nxl_lapack_zgbcon = gbcon<zcomplex>;

/// The same in the norm 1 from the factor that pbtrf has left.
template <class T>
void pbcon(const char& uplo, const i64& n, const i64& kd, const T* ab, const i64& ldab, const double& anorm,
           double& rcond, T* work, Spare<T>* spare, i64& info, int = 1);
inline constexpr auto nxl_lapack_dpbcon = pbcon<double>;
inline constexpr auto nxl_lapack_zpbcon = pbcon<zcomplex>;

} // namespace nxl
