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
[[gnu::always_inline]] inline Complex operator/(Complex a, double b) { return {a.re / b, a.im / b}; }

} // namespace nxl::NXL_TARGET
