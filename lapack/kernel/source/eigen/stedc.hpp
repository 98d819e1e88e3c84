// Eigenvalues and eigenvectors of a symmetric tridiagonal matrix by divide and conquer.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// The vectors come in z(n,n), the values take the place of d(n), ascending; e(n-1) is destroyed. Returns 0, the first
/// row times n + 1 plus the last of a part, from 1, whose values have not been found, or -1000 when there was no
/// memory.
template <class T> i64 stedc(i64 n, double* d, double* e, const Matrix<T>& z);

} // namespace nxl
