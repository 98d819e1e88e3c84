// Eigenvalues and eigenvectors of a symmetric tridiagonal matrix by multiple relatively robust representations.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// The values of diagonal d(n) and off-diagonal e(n-1), which are left as they are, come in w(n), ascending, the
/// vectors in z(n,n): vector j is zero but for rows isuppz(2j) .. isuppz(2j + 1), from 1, which is told where isuppz is
/// not null. Returns 0, 1 when representations were not to be found that are good enough, or -1000 when there was no
/// memory.
template <class T>
i64 stemr(i64 n, const double* d, const double* e, double* w, const Matrix<T>& z, i64* isuppz);

} // namespace nxl
