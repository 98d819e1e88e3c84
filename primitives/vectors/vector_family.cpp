// An array with an array of the other kind, and what complex arrays alone need: dst[i] = a[i] op b[i]. Of real operands
// the same holds as in the scalar family.
#include "primitives/vectors/kernels.hpp"
#include "primitives/vectors/lanes.hpp"

namespace nxl::NXL_TARGET {

void add_veccd_d(const zcomplex* a, const double* b, zcomplex* dst, i64 n) {
    each<2>(parts(dst), 2 * n, [](auto x, auto y) { return x + y; }, Doubles{parts(a)}, RealParts{b, -0.0});
}
void sub_veccd_d(const zcomplex* a, const double* b, zcomplex* dst, i64 n) {
    each<2>(parts(dst), 2 * n, [](auto x, auto y) { return x - y; }, Doubles{parts(a)}, RealParts{b, 0.0});
}
void sub_vecdc_d(const double* a, const zcomplex* b, zcomplex* dst, i64 n) {
    each<2>(parts(dst), 2 * n, [](auto x, auto y) { return x - y; }, RealParts{a, -0.0}, Doubles{parts(b)});
}
void mul_veccd_d(const zcomplex* a, const double* b, zcomplex* dst, i64 n) {
    each<2>(parts(dst), 2 * n, [](auto x, auto y) { return x * y; }, Doubles{parts(a)}, BothParts{b});
}
void div_veccd_d(const zcomplex* a, const double* b, zcomplex* dst, i64 n) {
    each<2>(parts(dst), 2 * n, [](auto x, auto y) { return x / y; }, Doubles{parts(a)}, BothParts{b});
}

void div_veccc_d(const zcomplex* a, const zcomplex* b, zcomplex* dst, i64 n) {
    const auto over = [](auto x, auto y) { return quotient(x, y); };
    each_split(scalars(dst), n, over, ComplexArray{parts(a)}, ComplexArray{parts(b)});
}
void div_vecdc_d(const double* a, const zcomplex* b, zcomplex* dst, i64 n) {
    const auto over = [](auto x, auto y) { return quotient({x, decltype(x){}}, y); };
    each_split(scalars(dst), n, over, RealArray{a}, ComplexArray{parts(b)});
}
void conj_mulcc_d(const zcomplex* a, const zcomplex* b, zcomplex* dst, i64 n) {
    const auto product = []<class V>(Split<V> x, Split<V> y) {
        return Split<V>{x.re * y.re + x.im * y.im, x.re * y.im - x.im * y.re};
    };
    each_split(scalars(dst), n, product, ComplexArray{parts(a)}, ComplexArray{parts(b)});
}

} // namespace nxl::NXL_TARGET
