// Scalars of the unblocked factorisations beside those of scalar.hpp.
#pragma once
#include "blas/kernels/scalar.hpp"

namespace nxl::NXL_TARGET {

/// As the other kernels take them.
[[gnu::always_inline]] inline zcomplex* numbers(Complex* z) { return reinterpret_cast<zcomplex*>(z); }
[[gnu::always_inline]] inline const zcomplex* numbers(const Complex* z) { return reinterpret_cast<const zcomplex*>(z); }
[[gnu::always_inline]] inline double conj(double v) { return v; }
[[gnu::always_inline]] inline Complex conj(Complex v) { return {v.re, -v.im}; }
[[gnu::always_inline]] inline double real_part(double v) { return v; }
[[gnu::always_inline]] inline double real_part(Complex v) { return v.re; }
[[gnu::always_inline]] inline Complex operator*(Complex a, double b) { return {a.re * b, a.im * b}; }
/// |x|, or |re| + |im|: how pivots are compared.
[[gnu::always_inline]] inline double abs1(double v) { return __builtin_fabs(v); }
[[gnu::always_inline]] inline double abs1(Complex v) { return __builtin_fabs(v.re) + __builtin_fabs(v.im); }
/// 1 / x, the complex one by Smith's quotient.
[[gnu::always_inline]] inline double reciprocal(double v) { return 1.0 / v; }
[[gnu::always_inline]] inline Complex reciprocal(Complex v) { return Complex{1.0, 0.0} / v; }

} // namespace nxl::NXL_TARGET
