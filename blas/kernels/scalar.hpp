// What kernels ask of their scalars, double and the complex number of service/vec_complex.hpp.
#pragma once
#include "blas/kernels/target.hpp"
#include "service/vec_complex.hpp"

namespace nxl::NXL_TARGET {

template <class T> [[gnu::always_inline]] constexpr T from_real(double value) {
    if constexpr (kParts<T> == 1) return value;
    else return {value, 0.0};
}

/// As the entries of kernels take them.
[[gnu::always_inline]] inline zcomplex* numbers(Complex* z) { return reinterpret_cast<zcomplex*>(z); }
[[gnu::always_inline]] inline const zcomplex* numbers(const Complex* z) { return reinterpret_cast<const zcomplex*>(z); }

/// Numbers at their parts.
template <class T> [[gnu::always_inline]] inline T* scalars(double* p) { return reinterpret_cast<T*>(p); }
template <class T> [[gnu::always_inline]] inline const T* scalars(const double* p) {
    return reinterpret_cast<const T*>(p);
}

[[gnu::always_inline]] inline double real_part(double v) { return v; }
[[gnu::always_inline]] inline double real_part(Complex v) { return v.re; }
[[gnu::always_inline]] inline Complex operator*(Complex a, double b) { return {a.re * b, a.im * b}; }
[[gnu::always_inline]] inline Complex operator/(Complex a, double b) { return {a.re / b, a.im / b}; }

[[gnu::always_inline]] inline double conj(double v) { return v; }
[[gnu::always_inline]] inline Complex conj(Complex v) { return {v.re, -v.im}; }
template <bool Conjugate> [[gnu::always_inline]] inline double conj_if(double v) { return v; }
template <bool Conjugate> [[gnu::always_inline]] inline Complex conj_if(Complex v) {
    return {v.re, Conjugate ? -v.im : v.im};
}

/// The diagonal of a Hermitian matrix is real, whatever its imaginary parts hold.
template <bool Hermitian> [[gnu::always_inline]] inline double diagonal(double v) { return v; }
template <bool Hermitian> [[gnu::always_inline]] inline Complex diagonal(Complex v) {
    return {v.re, Hermitian ? 0.0 : v.im};
}

[[gnu::always_inline]] inline bool is_zero(double v) { return v == 0.0; }
[[gnu::always_inline]] inline bool is_zero(Complex v) { return v.re == 0.0 && v.im == 0.0; }
[[gnu::always_inline]] inline bool is_one(double v) { return v == 1.0; }
[[gnu::always_inline]] inline bool is_one(Complex v) { return v.re == 1.0 && v.im == 0.0; }

/// |x|, or |re| + |im|: how pivots are compared.
[[gnu::always_inline]] inline double abs1(double v) { return __builtin_fabs(v); }
[[gnu::always_inline]] inline double abs1(Complex v) { return __builtin_fabs(v.re) + __builtin_fabs(v.im); }

/// Whether 1 / x can stand for a division by x: it is neither infinite nor so small that it has lost digits.
template <class T> [[gnu::always_inline]] inline bool has_reciprocal(T x) {
    const double size = abs1(x);
    return size >= 0x1p-1022 && size <= 0x1p1021; // NaN has none
}
/// By Smith's quotient where complex: no square leaves the range.
[[gnu::always_inline]] inline double reciprocal(double v) { return 1.0 / v; }
[[gnu::always_inline]] inline Complex reciprocal(Complex v) { return smith_quotient({1.0, 0.0}, v); }

[[gnu::always_inline]] inline i64 smaller(i64 a, i64 b) { return a < b ? a : b; }

} // namespace nxl::NXL_TARGET
