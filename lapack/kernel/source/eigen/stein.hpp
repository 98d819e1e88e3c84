// Eigenvectors of a symmetric tridiagonal matrix, whose eigenvalues are known, by inverse iteration.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// z(n,m): the vectors of w(m), which stand in order within their blocks, as dstebz leaves them. See dstein in nxl.h.
template <class T>
void stein(const i64& n, const double* d, const double* e, const i64& m, const double* w, const i64* iblock,
           const i64* isplit, T* z, const i64& ldz, double* work, i64* iwork, i64* ifail, i64& info);

inline constexpr auto nxl_lapack_dstein = stein<double>;
inline constexpr auto nxl_lapack_zstein = stein<zcomplex>;

} // namespace nxl
