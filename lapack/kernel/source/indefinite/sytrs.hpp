// Solution of symmetric indefinite and Hermitian systems from their factors.
#pragma once
#include "lapack/kernel/source/indefinite/symmetry.hpp"

namespace nxl {

/// A X = B from the factors of sytrf or hetrf.
template <class T, Symmetry kind>
void sytrs(const char& uplo, const i64& n, const i64& nrhs, const T* a, const i64& lda, const i64* ipiv, T* b,
           const i64& ldb, i64& info, int uplo_length = 1);
inline constexpr auto nxl_lapack_dsytrs = sytrs<double, Symmetry::symmetric>;
inline constexpr auto nxl_lapack_zsytrs = sytrs<zcomplex, Symmetry::symmetric>;
inline constexpr auto nxl_lapack_zhetrs = sytrs<zcomplex, Symmetry::hermitian>;

} // namespace nxl
