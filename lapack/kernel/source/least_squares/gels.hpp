// Least squares and minimum norm solutions of full rank, by QR or LQ.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// min |B - op(A) X|, or the X of least norm when op(A) has more columns than rows.
template <class T>
void gels(const char& trans, const i64& m, const i64& n, const i64& nrhs, T* a, const i64& lda, T* b, const i64& ldb,
          T* work, const i64& lwork, i64& info, int trans_length = 1);
inline constexpr auto nxl_lapack_dgels = gels<double>;
inline constexpr auto nxl_lapack_zgels = gels<zcomplex>;

} // namespace nxl
