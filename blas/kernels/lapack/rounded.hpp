// Arithmetic in the order and the roundings of the published unblocked routines: a product is rounded before it is
// taken off, terms go one after the other. What a matrix of integers cancels then stays an exact zero, which a fused
// operation would turn into the rounding error of the product.
#pragma once
#include "blas/kernels/lapack/scalars.hpp"

namespace nxl::NXL_TARGET {

/// A factor of many numbers.
template <class T, int W> struct RoundedFactor;
template <int W> struct RoundedFactor<double, W> {
    Vec<W> value;

    [[gnu::always_inline]] void set(double v) { value = splat<W>(v); }
    [[gnu::always_inline]] Vec<W> times(Vec<W> x) const { return value * x; }
};
template <int W> struct RoundedFactor<Complex, W> {
    Vec<W> re, im;

    [[gnu::always_inline]] void set(Complex v) {
        re = splat<W>(v.re);
        im = alternate<W>(-v.im, v.im);
    }
    [[gnu::always_inline]] Vec<W> times(Vec<W> x) const {
#pragma clang fp contract(off)
        return re * x + im * swap_parts<W>(x);
    }
};

/// a b.
[[gnu::always_inline]] inline double rounded_product(double a, double b) { return a * b; }
[[gnu::always_inline]] inline Complex rounded_product(Complex a, Complex b) {
#pragma clang fp contract(off)
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

/// from - a b.
template <class T> [[gnu::always_inline]] inline T less_product(T from, T a, T b) {
#pragma clang fp contract(off)
    const T product = rounded_product(a, b);
    return from - product;
}

} // namespace nxl::NXL_TARGET
