// Numbers in the lanes of vector registers, with the arithmetic that small systems of Schur forms take: real ones, and
// complex ones whose parts are apart.
#pragma once
#include "blas/kernels/scalar.hpp"

namespace nxl::NXL_TARGET {

template <int W> struct Whole {
    Vec<W> value;

    Whole() = default;
    [[gnu::always_inline]] explicit Whole(Vec<W> v) : value(v) {}
    [[gnu::always_inline]] Whole operator-(const Whole& y) const { return Whole(value - y.value); }
    [[gnu::always_inline]] Whole operator*(const Whole& y) const { return Whole(value * y.value); }
    [[gnu::always_inline]] Vec<W> size() const { return __builtin_elementwise_abs(value); }
    [[gnu::always_inline]] Whole inverse() const { return Whole(splat<W>(1.0) / value); }
    template <class Mask> [[gnu::always_inline]] Whole or_if(Mask condition, const Whole& other) const {
        return Whole(condition ? other.value : value);
    }
};
template <int W> struct Split {
    Vec<W> re, im;

    Split() = default;
    [[gnu::always_inline]] Split(Vec<W> real, Vec<W> imaginary) : re(real), im(imaginary) {}
    [[gnu::always_inline]] explicit Split(const Whole<W>& x) : re(x.value), im{} {}
    [[gnu::always_inline]] explicit Split(Vec<W> real) : re(real), im{} {}
    [[gnu::always_inline]] Split operator-(const Split& y) const { return {re - y.re, im - y.im}; }
    [[gnu::always_inline]] friend Split operator-(const Whole<W>& x, const Split& y) { return {x.value - y.re, -y.im}; }
    [[gnu::always_inline]] Split operator*(const Split& y) const {
        return {re * y.re - im * y.im, re * y.im + im * y.re};
    }
    [[gnu::always_inline]] Split operator*(const Whole<W>& y) const { return {re * y.value, im * y.value}; }
    [[gnu::always_inline]] Vec<W> size() const { return __builtin_elementwise_abs(re) + __builtin_elementwise_abs(im); }
    /// Squares would leave the range: this is taken as a number about 1 and its size.
    [[gnu::always_inline]] Split inverse() const {
        const Vec<W> a = __builtin_elementwise_abs(re), b = __builtin_elementwise_abs(im);
        const Vec<W> scale = splat<W>(1.0) / (a > b ? a : b), p = re * scale, q = im * scale;
        const Vec<W> rest = scale / (p * p + q * q);
        return {p * rest, -q * rest};
    }
    template <class Mask> [[gnu::always_inline]] Split or_if(Mask condition, const Split& other) const {
        return {condition ? other.re : re, condition ? other.im : im};
    }
};

/// The same number in all lanes.
template <int W> [[gnu::always_inline]] inline Whole<W> everywhere(double x) { return Whole<W>(splat<W>(x)); }
template <int W> [[gnu::always_inline]] inline Split<W> everywhere(Complex x) {
    return {splat<W>(x.re), splat<W>(x.im)};
}

template <class Number> struct Unknowns {
    Number first, second;
};
/// [p above; below q] (first, second) = (b1, b2), by elimination with a choice of the larger pivot, of which
/// at_least(pivot) is taken.
template <class Number, class AtLeast>
[[gnu::always_inline]] inline Unknowns<Number> solve_pair(const Number& p, const Number& above, const Number& below,
                                                          const Number& q, const Number& b1, const Number& b2,
                                                          const AtLeast& at_least) {
    const auto exchanged = p.size() < below.size();
    const Number reciprocal = at_least(p.or_if(exchanged, below)).inverse();
    const Number beside = above.or_if(exchanged, q), factor = below.or_if(exchanged, p) * reciprocal;
    const Number right = b1.or_if(exchanged, b2), other = b2.or_if(exchanged, b1);
    const Number rest = at_least(q.or_if(exchanged, above) - factor * beside);
    const Number second = (other - factor * right) * rest.inverse();
    return {(right - beside * second) * reciprocal, second};
}

} // namespace nxl::NXL_TARGET
