// Elementary reflectors H = I - tau (1; v) (1; v)^H, of which all orthogonal factorisations are made.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// The reflector with H^H (alpha; x) = (beta; 0) and beta real: alpha becomes beta, x becomes v, the result is tau. x:
/// n elements, `incx` > 0 apart. For x = 0 and a real alpha tau is 0, H the identity; else 1 <= re tau <= 2. Columns
/// near the limits of the range are scaled before their norm is taken, by a power of two. Golub and Van Loan, Matrix
/// Computations, 4th ed., section 5.1; complex: Lehoucq, ACM TOMS 22 (1996).
template <class T> T make_reflector(i64 n, T& alpha, T* x, i64 incx);

/// The same where the norm of x is known, and neither it nor its square leaves the range: alpha becomes beta, tau is
/// set, and v = `scale` x is left to the caller.
template <class T> struct ReflectorScalars {
    T tau, scale;
};
template <class T> ReflectorScalars<T> reflector_scalars(T& alpha, double norm_of_x);

/// Whether that may be done with inner products of x, before it is scaled, in place of those of v: neither they nor the
/// square of its norm leave the range, nor does a product with a much smaller vector fall out of it.
template <class T> bool may_scale_later(const T& alpha, double norm_of_x, i64 n, const T* products);

/// C := C - factor w w^H C (side L) or C - C factor w w^H (R), where w = (1; v), all its elements in memory, `incw` > 0
/// apart: H C for factor = tau, H^H C for its conjugate. `work`: as many elements as C has columns (L) or rows (R).
template <class T>
void apply_reflector(char side, const T* w, i64 incw, const T& factor, const Matrix<T>& c, T* work);

} // namespace nxl
