// Condition of a positive definite matrix.
#pragma once
#include "lapack/kernel/source/condition/estimate_space.hpp"

namespace nxl {

/// 1 / (anorm |A^-1|) in the norm 1, from the factor that potrf has left. work: 3n real elements, or 2n complex ones
/// and n in rwork, which is `spare`.
template <class T>
void pocon(const char& uplo, const i64& n, const T* a, const i64& lda, const double& anorm, double& rcond, T* work,
           Spare<T>* spare, i64& info, int = 1);
inline constexpr auto nxl_lapack_dpocon = pocon<double>;
inline constexpr auto nxl_lapack_zpocon = pocon<zcomplex>;

} // namespace nxl
