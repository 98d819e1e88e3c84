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

[[gnu::always_inline]] inline double larger_part(Complex z) {
    const double re = __builtin_fabs(z.re), im = __builtin_fabs(z.im);
    return re > im ? re : im;
}

/// Smith's quotient (Communications of the ACM 5, 1962): it forms no square that could leave the range, and all but its
/// last step depends on the divisor alone. Each product is rounded on its own, so that what cancels becomes zero.
[[gnu::always_inline]] inline Complex smith_quotient(Complex a, Complex b) {
#pragma clang fp contract(off)
    if (__builtin_fabs(b.re) >= __builtin_fabs(b.im)) {
        const double ratio = b.im / b.re, divisor = b.re + b.im * ratio;
        return {(a.re + a.im * ratio) / divisor, (a.im - a.re * ratio) / divisor};
    }
    const double ratio = b.re / b.im, divisor = b.im + b.re * ratio;
    return {(a.re * ratio + a.im) / divisor, (a.im * ratio - a.re) / divisor};
}

/// The quotient of any operands: those whose sums could overflow, or whose products could lose digits below the range,
/// are brought to the size of 1 by powers of two (Baudin and Smith, A Robust Complex Division in Scilab, 2012).
[[gnu::always_inline]] inline Complex operator/(Complex a, Complex b) {
    const double size = larger_part(b), of_a = larger_part(a);
    const bool ordinary =
        size >= 0x1p-1022 && size <= 0x1p1022 && (of_a >= 0x1p-960 || of_a == 0.0) && of_a <= 0x1p1022;
    if (__builtin_expect(ordinary || !(size > 0.0 && size < __builtin_inf() && of_a < __builtin_inf()), true))
        return smith_quotient(a, b);
    const int down = of_a == 0.0 ? 0 : __builtin_ilogb(of_a), by = __builtin_ilogb(size);
    const Complex quotient = smith_quotient({__builtin_ldexp(a.re, -down), __builtin_ldexp(a.im, -down)},
                                            {__builtin_ldexp(b.re, -by), __builtin_ldexp(b.im, -by)});
    return {__builtin_ldexp(quotient.re, down - by), __builtin_ldexp(quotient.im, down - by)};
}

} // namespace nxl::NXL_TARGET
