// Factorisation of symmetric indefinite and Hermitian matrices by diagonal pivoting.
#pragma once
#include "lapack/kernel/source/indefinite/symmetry.hpp"

namespace nxl {

/// A = U D U^T or L D L^T, or with adjoints; blocks of D are of order 1 and 2.
template <class T, Symmetry kind>
void sytrf(const char& uplo, const i64& n, T* a, const i64& lda, i64* ipiv, T* work, const i64& lwork, i64& info,
           int uplo_length = 1);
inline constexpr auto nxl_lapack_dsytrf = sytrf<double, Symmetry::symmetric>;
inline constexpr auto nxl_lapack_zsytrf = sytrf<zcomplex, Symmetry::symmetric>;
inline constexpr auto nxl_lapack_zhetrf = sytrf<zcomplex, Symmetry::hermitian>;

} // namespace nxl
