// Toeplitz systems with a general right-hand side, real and complex, by the Levinson recursion.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// T x = b for T(i,j) = a1(j-i+1), j >= i, and a2(i-j), i > j; c1 and c2 are work. a1, b, x: m elements, the others m
/// - 1. x may be b. Every leading principal minor of T has to be non-zero; behind one that is zero x is not finite.
void nxl_tsld1(const double* a1, const double* a2, const double* b, double* x, double* c1, double* c2, const i64* m);
void nxl_tslz1(const zcomplex* a1, const zcomplex* a2, const zcomplex* b, zcomplex* x, zcomplex* c1, zcomplex* c2,
               const i64* m);

} // namespace nxl
