// Eigenvalues and vectors of positive definite tridiagonal matrices.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// T = Z diag(d) Z^T; compz N: values alone, I: z becomes Z, V: z becomes z Z.
template <class T>
void pteqr(const char& compz, const i64& n, double* d, double* e, T* z, const i64& ldz, double* work, i64& info,
           int compz_length = 1);
inline constexpr auto nxl_lapack_dpteqr = pteqr<double>;
inline constexpr auto nxl_lapack_zpteqr = pteqr<zcomplex>;

} // namespace nxl
