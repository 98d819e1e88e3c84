// Solution of a triangular system.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// op(A) X = B, after a look for zeros on the diagonal.
template <class T>
void trtrs(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& nrhs, const T* a,
           const i64& lda, T* b, const i64& ldb, i64& info, int uplo_length = 1, int trans_length = 1,
           int diag_length = 1);
inline constexpr auto nxl_lapack_dtrtrs = trtrs<double>;
inline constexpr auto nxl_lapack_ztrtrs = trtrs<zcomplex>;

} // namespace nxl
