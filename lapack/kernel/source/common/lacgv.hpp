// Conjugation of a vector.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// x := conj(x); n elements incx apart, from the far end for a negative incx.
void nxl_lapack_zlacgv(const i64& n, zcomplex* x, const i64& incx);

} // namespace nxl
