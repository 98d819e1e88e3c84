// Drivers for triangular matrices: inverse and solution. Arguments as published, with integers of 64 bits; option
// characters have their hidden lengths at the end, which nobody looks at.
#pragma once
#include "service/types.hpp"

namespace nxl {

template <class T>
void trtri(const char& uplo, const char& diag, const i64& n, T* a, const i64& lda, i64& info, int uplo_length,
           int diag_length);
inline constexpr auto nxl_lapack_dtrtri = trtri<double>;
inline constexpr auto nxl_lapack_ztrtri = trtri<zcomplex>;

/// op(A) X = B, after a look for zeros on the diagonal.
template <class T>
void trtrs(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& nrhs, const T* a,
           const i64& lda, T* b, const i64& ldb, i64& info, int uplo_length, int trans_length, int diag_length);
inline constexpr auto nxl_lapack_dtrtrs = trtrs<double>;
inline constexpr auto nxl_lapack_ztrtrs = trtrs<zcomplex>;

} // namespace nxl
