// Multiply-add on vector registers of real or complex elements. A complex product takes two real ones, straight and
// with exchanged parts; each form here exchanges what the loop around it needs to exchange least often.
#pragma once
#include "blas/kernels/scalar.hpp"

namespace nxl::NXL_TARGET {

// (a + b i)(c + d i) in registers that hold (re, im) pairs:
//
//     straight    a c, a d         one factor's real part times the other number as it is
//     crossed     b d, b c         its imaginary part times the number with its parts exchanged,
//     product     straight + (-1, 1) crossed
//
// Done as it is written, each product has a shuffle of its own. Where there can be fewer, by what is reused:
//
//     Combination     many vectors v, one sum        two sums, as v comes; the exchange once, in total()
//     Operand         one vector, many columns       exchanged when it is loaded, once for all columns
//     InnerProduct    many columns, one Operand      as above; signs once, in total()
//     Factor          one number, many vectors       sign in the factor; v is exchanged in each product
/// sum := sum + coefficient times v, with the exchange put off until the sum is taken: for many v and one sum.
template <class T, int W> struct Coefficient;
template <class T, int W> struct Combination;

template <int W> struct Coefficient<double, W> {
    Vec<W> value;
    [[gnu::always_inline]] void set(double v) { value = splat<W>(v); }
};
template <int W> struct Combination<double, W> {
    Vec<W> sum;
    [[gnu::always_inline]] void start(Vec<W> y) { sum = y; }
    [[gnu::always_inline]] void start(const double* y) { start(load<W>(y)); }
    [[gnu::always_inline]] void add(const Coefficient<double, W>& c, Vec<W> v) { sum += c.value * v; }
    [[gnu::always_inline]] Vec<W> total() const { return sum; }
};

template <int W> struct Coefficient<Complex, W> {
    Vec<W> re, im;
    [[gnu::always_inline]] void set(Complex v) {
        re = splat<W>(v.re);
        im = splat<W>(v.im);
    }
};
template <int W> struct Combination<Complex, W> {
    Vec<W> straight, crossed;
    [[gnu::always_inline]] void start(Vec<W> y) {
        straight = y;
        crossed = Vec<W>{};
    }
    [[gnu::always_inline]] void start(const double* y) { start(load<W>(y)); }
    [[gnu::always_inline]] void add(const Coefficient<Complex, W>& c, Vec<W> v) {
        straight += c.re * v;
        crossed += c.im * v;
    }
    [[gnu::always_inline]] Vec<W> total() const { return straight + alternate<W>(-1.0, 1.0) * swap_parts<W>(crossed); }
};

/// Elements of a vector that meets many columns: the exchange is done once, as they are loaded.
template <class T, int W> struct Operand;
template <int W> struct Operand<double, W> {
    Vec<W> v;
    Operand() = default;
    [[gnu::always_inline]] explicit Operand(Vec<W> value) : v(value) {}
    [[gnu::always_inline]] explicit Operand(const double* p) : Operand(load<W>(p)) {}
};
template <int W> struct Operand<Complex, W> {
    Vec<W> v, swapped;
    Operand() = default;
    [[gnu::always_inline]] explicit Operand(Vec<W> value) : v(value), swapped(swap_parts<W>(v)) {}
    [[gnu::always_inline]] explicit Operand(const double* p) : Operand(load<W>(p)) {}
};

/// A factor of many numbers. Sums take its products in two steps for complex numbers, so that both can be fused.
template <class T, int W> struct Factor;
template <int W> struct Factor<double, W> {
    Vec<W> value;
    Factor() = default;
    [[gnu::always_inline]] explicit Factor(double v) { set(v); }
    [[gnu::always_inline]] void set(double v) { value = splat<W>(v); }
    [[gnu::always_inline]] Vec<W> times(Vec<W> x) const { return value * x; }
    [[gnu::always_inline]] Vec<W> added_to(Vec<W> sum, const Operand<double, W>& x) const { return sum + value * x.v; }
    [[gnu::always_inline]] void add_to(Vec<W>& sum, Vec<W> x) const { sum += value * x; }
    [[gnu::always_inline]] void take_from(Vec<W>& sum, Vec<W> x) const { sum -= value * x; }
};
template <int W> struct Factor<Complex, W> {
    Vec<W> re, im;
    Factor() = default;
    [[gnu::always_inline]] explicit Factor(Complex v) { set(v); }
    [[gnu::always_inline]] void set(Complex v) {
        re = splat<W>(v.re);
        im = alternate<W>(-v.im, v.im);
    }
    [[gnu::always_inline]] Vec<W> times(Vec<W> x) const { return re * x + im * swap_parts<W>(x); }
    [[gnu::always_inline]] Vec<W> added_to(Vec<W> sum, const Operand<Complex, W>& x) const {
        return sum + re * x.v + im * x.swapped;
    }
    [[gnu::always_inline]] void add_to(Vec<W>& sum, Vec<W> x) const {
        sum += re * x;
        sum += im * swap_parts<W>(x);
    }
    [[gnu::always_inline]] void take_from(Vec<W>& sum, Vec<W> x) const {
        sum -= re * x;
        sum -= im * swap_parts<W>(x);
    }
};

/// Inner product of a column with operands.
template <class T, int W> struct InnerProduct;
template <int W> struct InnerProduct<double, W> {
    Vec<W> sum{};
    [[gnu::always_inline]] void add(Vec<W> column, const Operand<double, W>& x) { sum += column * x.v; }
    [[gnu::always_inline]] void add(const InnerProduct& other) { sum += other.sum; }
    template <bool Conjugate> [[gnu::always_inline]] double total() const { return sum_lanes<W>(sum); }
};
template <int W> struct InnerProduct<Complex, W> {
    Vec<W> straight{}, crossed{};
    [[gnu::always_inline]] void add(Vec<W> column, const Operand<Complex, W>& x) {
        straight += column * x.v;
        crossed += column * x.swapped;
    }
    [[gnu::always_inline]] void add(const InnerProduct& other) {
        straight += other.straight;
        crossed += other.crossed;
    }
    /// Conjugate: of the column.
    template <bool Conjugate> [[gnu::always_inline]] Complex total() const {
        const double sign = Conjugate ? -1.0 : 1.0;
        Complex result{0.0, 0.0};
        for (int lane = 0; lane < W; lane += 2) {
            result.re += straight[lane] - sign * straight[lane + 1];
            result.im += crossed[lane] + sign * crossed[lane + 1];
        }
        return result;
    }
};

} // namespace nxl::NXL_TARGET
