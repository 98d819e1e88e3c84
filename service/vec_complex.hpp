// A complex number of a target's own, since the members of std::complex would be code shared between targets; and what
// double and it have in common.
#pragma once
#include "service/vec.hpp"

namespace nxl::NXL_TARGET {

/// Laid out as zcomplex.
struct Complex {
    double re, im;
};
static_assert(sizeof(Complex) == sizeof(zcomplex) && alignof(Complex) == alignof(zcomplex));

/// Doubles in an element.
template <class T> constexpr int kParts = sizeof(T) / sizeof(double);

[[gnu::always_inline]] inline Complex* scalars(zcomplex* z) { return reinterpret_cast<Complex*>(z); }
[[gnu::always_inline]] inline const Complex* scalars(const zcomplex* z) { return reinterpret_cast<const Complex*>(z); }
[[gnu::always_inline]] inline Complex scalar(const zcomplex& z) { return {parts(&z)[0], parts(&z)[1]}; }
[[gnu::always_inline]] inline double* parts(double* p) { return p; }
[[gnu::always_inline]] inline const double* parts(const double* p) { return p; }
[[gnu::always_inline]] inline double* parts(Complex* z) { return reinterpret_cast<double*>(z); }
[[gnu::always_inline]] inline const double* parts(const Complex* z) { return reinterpret_cast<const double*>(z); }

[[gnu::always_inline]] inline Complex operator-(Complex a) { return {-a.re, -a.im}; }
[[gnu::always_inline]] inline Complex operator+(Complex a, Complex b) { return {a.re + b.re, a.im + b.im}; }
[[gnu::always_inline]] inline Complex operator-(Complex a, Complex b) { return {a.re - b.re, a.im - b.im}; }
[[gnu::always_inline]] inline Complex operator*(Complex a, Complex b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

/// Smith's quotient: no intermediate product leaves the range when the result does not. All but its last step depends
/// on the divisor alone.
[[gnu::always_inline]] inline Complex operator/(Complex a, Complex b) {
    if (__builtin_fabs(b.re) >= __builtin_fabs(b.im)) {
        const double ratio = b.im / b.re, divisor = b.re + b.im * ratio;
        return {(a.re + a.im * ratio) / divisor, (a.im - a.re * ratio) / divisor};
    }
    const double ratio = b.re / b.im, divisor = b.im + b.re * ratio;
    return {(a.re * ratio + a.im) / divisor, (a.im * ratio - a.re) / divisor};
}

} // namespace nxl::NXL_TARGET
