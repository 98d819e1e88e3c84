// A scalar with each element of an array: a + value, value - a, value / a, a value. A real operand beside a complex one
// has no imaginary part: -0.0 added, or 0.0 subtracted, leaves that of the other as it is, the sign of a zero included.
#include "primitives/vectors/kernels.hpp"
#include "primitives/vectors/lanes.hpp"

namespace nxl::NXL_TARGET {
namespace {

constexpr auto plus = [](auto a, auto b) { return a + b; };
constexpr auto minus = [](auto a, auto b) { return a - b; };
constexpr auto times = [](auto a, auto b) { return a * b; };
constexpr auto over = [](auto a, auto b) { return a / b; };
constexpr auto complex_over = [](auto a, auto b) { return quotient(a, b); };

Constant pair(const zcomplex& z) { return {parts(&z)[0], parts(&z)[1]}; }

} // namespace

void add_value_d(const double* src, double* dst, double value, i64 n) {
    each<1>(dst, n, plus, Doubles{src}, Constant{value, value});
}
void add_valuec_d(const zcomplex* src, zcomplex* dst, const zcomplex& value, i64 n) {
    each<2>(parts(dst), 2 * n, plus, Doubles{parts(src)}, pair(value));
}
void add_valuecd_d(const zcomplex* src, zcomplex* dst, double value, i64 n) {
    each<2>(parts(dst), 2 * n, plus, Doubles{parts(src)}, Constant{value, -0.0});
}
void add_valuedc_d(const double* src, zcomplex* dst, const zcomplex& value, i64 n) {
    each<2>(parts(dst), 2 * n, plus, RealParts{src, -0.0}, pair(value));
}

void sub_from_value_d(const double* src, double* dst, double value, i64 n) {
    each<1>(dst, n, minus, Constant{value, value}, Doubles{src});
}
void sub_from_valuec_d(const zcomplex* src, zcomplex* dst, const zcomplex& value, i64 n) {
    each<2>(parts(dst), 2 * n, minus, pair(value), Doubles{parts(src)});
}
void sub_from_valuecd_d(const zcomplex* src, zcomplex* dst, double value, i64 n) {
    each<2>(parts(dst), 2 * n, minus, Constant{value, -0.0}, Doubles{parts(src)});
}
void sub_from_valuedc_d(const double* src, zcomplex* dst, const zcomplex& value, i64 n) {
    each<2>(parts(dst), 2 * n, minus, pair(value), RealParts{src, 0.0});
}

void divide_value_d(const double* src, double* dst, double value, i64 n) {
    each<1>(dst, n, over, Constant{value, value}, Doubles{src});
}
void divide_valuec_d(const zcomplex* src, zcomplex* dst, const zcomplex& value, i64 n) {
    each_split(scalars(dst), n, complex_over, ComplexConstant{scalar(value)}, ComplexArray{parts(src)});
}
void divide_valuecd_d(const zcomplex* src, zcomplex* dst, double value, i64 n) {
    each_split(scalars(dst), n, complex_over, ComplexConstant{{value, 0.0}}, ComplexArray{parts(src)});
}
void divide_valuedc_d(const double* src, zcomplex* dst, const zcomplex& value, i64 n) {
    each<2>(parts(dst), 2 * n, over, pair(value), BothParts{src});
}

void scale_by_value_d(const double* src, double* dst, double value, i64 n) {
    each<1>(dst, n, times, Doubles{src}, Constant{value, value});
}
void scale_by_valuec_d(const zcomplex* src, zcomplex* dst, const zcomplex& value, i64 n) {
    const auto [re, im] = scalar(value);
    const auto product = [](auto a, auto both_re, auto signed_im) {
        return a * both_re + swap_parts<kLanes<decltype(a)>>(a) * signed_im;
    };
    each<2>(parts(dst), 2 * n, product, Doubles{parts(src)}, Constant{re, re}, Constant{-im, im});
}
void scale_by_valuecd_d(const zcomplex* src, zcomplex* dst, double value, i64 n) {
    each<2>(parts(dst), 2 * n, times, Doubles{parts(src)}, Constant{value, value});
}
void scale_by_valuedc_d(const double* src, zcomplex* dst, const zcomplex& value, i64 n) {
    each<2>(parts(dst), 2 * n, times, BothParts{src}, pair(value));
}

} // namespace nxl::NXL_TARGET
