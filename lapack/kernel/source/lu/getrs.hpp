// Solution of a general system from its LU factors.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// op(A) X = B from the factors of getrf.
template <class T>
void getrs(const char& trans, const i64& n, const i64& nrhs, const T* a, const i64& lda, const i64* ipiv, T* b,
           const i64& ldb, i64& info, int trans_length = 1);
inline constexpr auto nxl_lapack_dgetrs = getrs<double>;
inline constexpr auto nxl_lapack_zgetrs = getrs<zcomplex>;

} // namespace nxl
