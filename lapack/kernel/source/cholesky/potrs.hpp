// Solution of a positive definite system from its Cholesky factor.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// A X = B from the factor of potrf.
template <class T>
void potrs(const char& uplo, const i64& n, const i64& nrhs, const T* a, const i64& lda, T* b, const i64& ldb, i64& info,
           int uplo_length = 1);
inline constexpr auto nxl_lapack_dpotrs = potrs<double>;
inline constexpr auto nxl_lapack_zpotrs = potrs<zcomplex>;

} // namespace nxl
