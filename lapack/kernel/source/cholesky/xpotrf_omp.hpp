// Cholesky factorisation over threads.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// A = U^H U or L L^H, over threads where that pays.
template <class T>
void potrf(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int uplo_length = 1);
inline constexpr auto nxl_lapack_dpotrf = potrf<double>;
inline constexpr auto nxl_lapack_zpotrf = potrf<zcomplex>;

/// The same for small matrices, on one thread, without blocks.
void nxl_lapack_zpotf2(const char& uplo, const i64& n, zcomplex* a, const i64& lda, i64& info, int uplo_length = 1);

} // namespace nxl
