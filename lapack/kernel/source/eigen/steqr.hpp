// Eigenvalues and eigenvectors of a symmetric tridiagonal matrix by implicit QL or QR.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// compz N: values alone; V: the columns of z(n,n) are turned by what makes T diagonal; I: z becomes that. The values
/// take the place of d(n), ascending; e(n-1) is destroyed. info: 0, -1 compz, -2 n, -6 ldz, or the number of
/// off-diagonal elements that have not become 0 in 30 n steps.
template <class T>
void steqr(const char& compz, const i64& n, double* d, double* e, T* z, const i64& ldz, double* work, i64& info, int);

inline constexpr auto nxl_lapack_dsteqr = steqr<double>;
inline constexpr auto nxl_lapack_zsteqr = steqr<zcomplex>;

} // namespace nxl
