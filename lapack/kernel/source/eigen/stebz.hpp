// Selected eigenvalues of a symmetric tridiagonal matrix by bisection.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Options are capitals. See dstebz in nxl.h.
void nxl_lapack_dstebz(const char& range, const char& order, const i64& n, const double& vl, const double& vu,
                       const i64& il, const i64& iu, const double& abstol, const double* d, const double* e, i64& m,
                       i64& nsplit, double* w, i64* iblock, i64* isplit, double* work, i64* iwork, i64& info, int, int);

} // namespace nxl
