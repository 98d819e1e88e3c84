// Complex arrays reversed, with their parts exchanged, and filled with a ramp.
#include "primitives/vectors/kernels.hpp"
#include "primitives/vectors/lanes.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// W/2 complex numbers in the opposite order.
template <int W> [[gnu::always_inline]] inline Vec<W> reversed(Vec<W> v) {
    if constexpr (W == 2) return v;
    else return __builtin_shufflevector(v, v, 2, 3, 0, 1);
}

/// Registers of both ends change sides until they meet. Two that overlap in the middle leave it as it should be, and
/// one number alone stays.
template <int W> [[gnu::always_inline]] inline void reverse_in_place(double* a, i64 count) {
    for (i64 low = 0, high = count - W; low <= high; low += W, high -= W) {
        const Vec<W> first = load<W>(a + low), last = load<W>(a + high);
        store<W>(a + low, reversed<W>(last));
        store<W>(a + high, reversed<W>(first));
    }
}

struct FromTheEnd { // complex numbers, the last one first
    const double* end;
    [[gnu::always_inline]] bool is_at(const double*) const { return false; }
    template <int W> [[gnu::always_inline]] Vec<W> at(i64 i) const { return reversed<W>(load<W>(end - i - W)); }
};

template <class V> [[gnu::always_inline]] inline V exchanged(V z) { return swap_parts<kLanes<V>>(z); }

} // namespace

void reverse_d(const zcomplex* src, zcomplex* dst, i64 n) {
    const i64 count = 2 * n;
    if (src == dst) return reverse_in_place<kWidth>(parts(dst), count);
    each<2>(parts(dst), count, [](auto z) { return z; }, FromTheEnd{parts(src) + count});
}

void flip_d(const zcomplex* src, zcomplex* dst, i64 n) {
    each<2>(parts(dst), 2 * n, [](auto z) { return exchanged(z); }, Doubles{parts(src)});
}
void flip_conj_d(const zcomplex* src, zcomplex* dst, i64 n) {
    const auto turn = [](auto z, auto sign) { return exchanged(z) * sign; };
    each<2>(parts(dst), 2 * n, turn, Doubles{parts(src)}, Constant{1.0, -1.0});
}
void mul_i_d(const zcomplex* src, zcomplex* dst, i64 n) {
    const auto turn = [](auto z, auto sign) { return exchanged(z) * sign; };
    each<2>(parts(dst), 2 * n, turn, Doubles{parts(src)}, Constant{-1.0, 1.0});
}

void rampc_d(zcomplex* dst, i64 n, const zcomplex& offset, const zcomplex& step) {
    constexpr int W = kWidth;
    const Complex start = scalar(offset), rise = scalar(step);
    const Vec<W> starts = alternate<W>(start.re, start.im), rises = alternate<W>(rise.re, rise.im);
    Vec<W> index[4]; // (i, i, i + 1, i + 1), exact
    for (int k = 0; k < 4; ++k)
        for (int lane = 0; lane < W; ++lane) {
            const int element = (k * W + lane) / 2;
            index[k][lane] = element;
        }
    i64 i = 0;
    for (; i + 2 * W <= n; i += 2 * W)
        for (int k = 0; k < 4; ++k) {
            store<W>(parts(dst + i) + k * W, starts + index[k] * rises);
            index[k] += 2.0 * W;
        }
    for (; i < n; ++i) {
        const double here = static_cast<double>(i);
        store<2>(parts(dst + i), Vec<2>{start.re + here * rise.re, start.im + here * rise.im});
    }
}

} // namespace nxl::NXL_TARGET
