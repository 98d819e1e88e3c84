// Singular value decomposition of a bidiagonal matrix.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// B = Q S P^T: VT := P^T VT, U := U Q, C := Q^T C; d: S, descending.
template <class T>
void bdsqr(const char& uplo, const i64& n, const i64& ncvt, const i64& nru, const i64& ncc, double* d, double* e, T* vt,
           const i64& ldvt, T* u, const i64& ldu, T* c, const i64& ldc, double* work, i64& info, int uplo_length = 1);
inline constexpr auto nxl_lapack_dbdsqr = bdsqr<double>;
inline constexpr auto nxl_lapack_zbdsqr = bdsqr<zcomplex>;

} // namespace nxl
