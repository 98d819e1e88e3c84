// Condition of symmetric indefinite and Hermitian matrices.
#pragma once
#include "lapack/kernel/source/indefinite/symmetry.hpp"

namespace nxl {

/// 1 / (anorm |A^-1|) in the largest column sums, from the factors of sytrf or hetrf. work: 2n elements.
template <class T, Symmetry kind>
void sycon(const char& uplo, const i64& n, const T* a, const i64& lda, const i64* ipiv, const double& anorm,
           double& rcond, T* work, i64& info, int uplo_length = 1);
inline constexpr auto nxl_lapack_dsycon = sycon<double, Symmetry::symmetric>;
inline constexpr auto nxl_lapack_zsycon = sycon<zcomplex, Symmetry::symmetric>;
inline constexpr auto nxl_lapack_zhecon = sycon<zcomplex, Symmetry::hermitian>;

} // namespace nxl
