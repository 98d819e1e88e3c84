// Condition of a general matrix.
#pragma once
#include "lapack/kernel/source/condition/estimate_space.hpp"

namespace nxl {

/// 1 / (anorm |A^-1|) from the factors that getrf has left, in the norm '1' (or O) or I, which is anorm's as well.
/// work: 4n real elements, or 2n complex ones and 2n in rwork, which is `spare`.
template <class T>
void gecon(const char& norm, const i64& n, const T* a, const i64& lda, const double& anorm, double& rcond, T* work,
           Spare<T>* spare, i64& info, int = 1);
inline constexpr auto nxl_lapack_dgecon = gecon<double>;
inline constexpr auto nxl_lapack_zgecon = gecon<zcomplex>;

} // namespace nxl
