// Inverse of a symmetric indefinite or Hermitian matrix from its factors.
#pragma once
#include "lapack/kernel/source/indefinite/symmetry.hpp"

namespace nxl {

/// One triangle of the inverse from the factors of sytrf or hetrf. The workspace is not used.
template <class T, Symmetry kind>
void sytri(const char& uplo, const i64& n, T* a, const i64& lda, const i64* ipiv, T* work, i64& info,
           int uplo_length = 1);
inline constexpr auto nxl_lapack_dsytri = sytri<double, Symmetry::symmetric>;
inline constexpr auto nxl_lapack_zsytri = sytri<zcomplex, Symmetry::symmetric>;
inline constexpr auto nxl_lapack_zhetri = sytri<zcomplex, Symmetry::hermitian>;

} // namespace nxl
