// Signs, and one array by the signs of another. The sign of a complex number is that of its real part, or of its
// imaginary part when the real part is 0.
#include "primitives/vectors/kernels.hpp"
#include "primitives/vectors/lanes.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// -1.0, 0.0 or 1.0; both zeros give 0.0, NaN gives 1.0.
template <class V> [[gnu::always_inline]] inline V sign(V x) {
    const V zero{}, one = zero + 1.0;
    return x < zero ? -one : x == zero ? zero : one;
}

/// y by the sign of x: 0.0 for both zeros, y as it is for NaN.
template <class V> [[gnu::always_inline]] inline V by_sign(V x, V y) {
    const V zero{};
    return x == zero ? zero : x < zero ? -y : y;
}

/// The part that gives a complex number its sign.
template <class V> [[gnu::always_inline]] inline V deciding(V re, V im) { return re == V{} ? im : re; }

constexpr auto sign_of_real = [](auto x) { return sign(x); };
constexpr auto real_by_real = [](auto x, auto y) { return by_sign(x, y); };

} // namespace

void sgndd_d(const double* src, double* dst, i64 n) { each<1>(dst, n, sign_of_real, Doubles{src}); }

void sgncd_d(const zcomplex* src, double* dst, i64 n) {
    each_split(dst, n, [](auto z) { return sign(deciding(z.re, z.im)); }, ComplexArray{parts(src)});
}

void sgndc_d(const double* src, zcomplex* dst, i64 n) { each<2>(parts(dst), 2 * n, sign_of_real, RealParts{src, 0.0}); }

void sgncc_d(const zcomplex* src, zcomplex* dst, i64 n) {
    const auto sign_in_front = []<class V>(V z) {
        constexpr int W = kLanes<V>;
        return alternate<W>(1.0, 0.0) == V{} ? V{} : sign(deciding(z, swap_parts<W>(z)));
    };
    each<2>(parts(dst), 2 * n, sign_in_front, Doubles{parts(src)});
}

void sgn_mul_d(const double* src, double* dst, i64 n) { each<1>(dst, n, real_by_real, Doubles{src}, Doubles{dst}); }

void sgn_mulc_d(const zcomplex* src, zcomplex* dst, i64 n) {
    const auto by_complex = []<class V>(V x, V y) {
        constexpr int W = kLanes<V>;
        if constexpr (W == 2)
            return by_sign(deciding(__builtin_shufflevector(x, x, 0, 0), __builtin_shufflevector(x, x, 1, 1)), y);
        else
            return by_sign(
                deciding(__builtin_shufflevector(x, x, 0, 0, 2, 2), __builtin_shufflevector(x, x, 1, 1, 3, 3)), y);
    };
    each<2>(parts(dst), 2 * n, by_complex, Doubles{parts(src)}, Doubles{parts(dst)});
}

void sgn_mulcd_d(const zcomplex* src, double* dst, i64 n) {
    const auto by_complex = [](auto z, auto y) { return by_sign(deciding(z.re, z.im), y); };
    each_split(dst, n, by_complex, ComplexArray{parts(src)}, RealArray{dst});
}

void sgn_muldc_d(const double* src, zcomplex* dst, i64 n) {
    each<2>(parts(dst), 2 * n, real_by_real, BothParts{src}, Doubles{parts(dst)});
}

} // namespace nxl::NXL_TARGET
