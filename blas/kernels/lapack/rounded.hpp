// Arithmetic in the order and the roundings of the published unblocked routines: a product is rounded before it is
// taken off, terms go one after the other. What a matrix of integers cancels then stays an exact zero, which a fused
// operation would turn into the rounding error of the product.
#pragma once
#include "blas/kernels/registers.hpp"

namespace nxl::NXL_TARGET {

/// A factor whose products are rounded part by part.
template <class T, int W> struct RoundedFactor : Factor<T, W> {};
template <int W> struct RoundedFactor<Complex, W> : Factor<Complex, W> {
    [[gnu::always_inline]] Vec<W> times(Vec<W> x) const {
#pragma clang fp contract(off)
        return this->re * x + this->im * swap_parts<W>(x);
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
