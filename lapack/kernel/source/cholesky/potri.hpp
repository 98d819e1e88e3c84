// Inverse of a positive definite matrix from its Cholesky factor.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// One triangle of the inverse from the factor of potrf.
template <class T>
void potri(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int uplo_length = 1);
inline constexpr auto nxl_lapack_dpotri = potri<double>;
inline constexpr auto nxl_lapack_zpotri = potri<zcomplex>;

} // namespace nxl
