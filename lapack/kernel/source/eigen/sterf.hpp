// Eigenvalues of a symmetric tridiagonal matrix.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The eigenvalues take the place of d(n), ascending; e(n-1) is destroyed. info: 0, -1 for n below 0, or the number of
/// off-diagonal elements that have not become 0 in 30 n steps.
void nxl_lapack_dsterf(const i64& n, double* d, double* e, i64& info);

} // namespace nxl
