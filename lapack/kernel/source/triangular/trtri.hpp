// Inverse of a triangular matrix.
#pragma once
#include "service/types.hpp"

namespace nxl {

template <class T>
void trtri(const char& uplo, const char& diag, const i64& n, T* a, const i64& lda, i64& info, int uplo_length = 1,
           int diag_length = 1);
inline constexpr auto nxl_lapack_dtrtri = trtri<double>;
inline constexpr auto nxl_lapack_ztrtri = trtri<zcomplex>;

} // namespace nxl
