// Loops over arrays, written once: what an operation reads (operands), and the loops that carry it out over registers
// of doubles (each) or of real and imaginary parts taken apart (each_split). In place, a step reads before it writes.
#pragma once
#include "service/vec_complex.hpp"

namespace nxl::NXL_TARGET {

template <class V> constexpr int kLanes = sizeof(V) / sizeof(double);

/// Results from this size on go past the caches, unless they take the place of an operand. Nobody finds so many there
/// later, and a store into the caches first reads what it replaces.
constexpr i64 kStreamBytes = i64{32} << 20;

/// Operands: at<W>(i) is the register of W doubles that belongs to places i to i + W - 1 of the destination.
struct Doubles { // an array of doubles, or of complex numbers as pairs
    const double* p;
    [[gnu::always_inline]] bool is_at(const double* place) const { return p == place; }
    template <int W> [[gnu::always_inline]] Vec<W> at(i64 i) const { return load<W>(p + i); }
};
struct RealParts { // a real array in a complex operation, with `im` in the place of each imaginary part
    const double* p;
    double im;
    [[gnu::always_inline]] bool is_at(const double* place) const { return p == place; }
    template <int W> [[gnu::always_inline]] Vec<W> at(i64 i) const {
        if constexpr (W == 2) return Vec<2>{p[i / 2], im};
        else return __builtin_shufflevector(load<2>(p + i / 2), splat<2>(im), 0, 2, 1, 3);
    }
};
struct BothParts { // a real array that acts on both parts
    const double* p;
    [[gnu::always_inline]] bool is_at(const double* place) const { return p == place; }
    template <int W> [[gnu::always_inline]] Vec<W> at(i64 i) const {
        if constexpr (W == 2) return splat<2>(p[i / 2]);
        else return __builtin_shufflevector(load<2>(p + i / 2), load<2>(p + i / 2), 0, 0, 1, 1);
    }
};
struct Constant { // (even, odd, even, odd, ...)
    double even, odd;
    [[gnu::always_inline]] bool is_at(const double*) const { return false; }
    template <int W> [[gnu::always_inline]] Vec<W> at(i64) const { return alternate<W>(even, odd); }
};

/// Doubles from p to the next place where a register lies within one cache line.
[[gnu::always_inline]] inline i64 to_aligned(const double* p) {
    return -(static_cast<i64>(reinterpret_cast<std::uintptr_t>(p)) / i64{sizeof(double)}) & (kWidth - 1);
}

/// Four registers at a time, from i on as long as they fit. With Stream past the caches, i being an aligned place.
template <bool Stream, class Op, class... In>
[[gnu::always_inline]] inline void each_four(double* dst, i64& i, i64 count, Op op, In... in) {
    constexpr int W = kWidth;
    for (; i + 4 * W <= count; i += 4 * W) {
        Vec<W> result[4]; // all reads before the writes: the processor need not ask whether one depends on another
        for (int k = 0; k < 4; ++k) result[k] = op(in.template at<W>(i + k * W)...);
        for (int k = 0; k < 4; ++k) {
            double* to = dst + i + k * W;
            if constexpr (Stream) __builtin_nontemporal_store(result[k], reinterpret_cast<Vec<W>*>(to));
            else store<W>(to, result[k]);
        }
    }
}

/// dst[i] = op(operands at i) for `count` doubles, of which Step belong together: 1 for real, 2 for complex elements.
template <int Step, class Op, class... In>
[[gnu::always_inline]] inline void each(double* dst, i64 count, Op op, In... in) {
    constexpr int W = kWidth;
    i64 i = 0;
    const i64 head = to_aligned(dst);
    if (count >= kStreamBytes / i64{sizeof(double)} && head % Step == 0 && !(in.is_at(dst) || ...)) {
        for (; i < head; i += Step) store<Step>(dst + i, op(in.template at<Step>(i)...));
        each_four<true>(dst, i, count, op, in...);
        __builtin_ia32_sfence(); // what went past the caches is there before anything that the caller stores next
    }
    each_four<false>(dst, i, count, op, in...);
    for (; i + W <= count; i += W) store<W>(dst + i, op(in.template at<W>(i)...));
    if constexpr (W > 2)
        for (; i + 2 <= count; i += 2) store<2>(dst + i, op(in.template at<2>(i)...));
    if constexpr (Step == 1)
        if (i < count) store<1>(dst + i, op(in.template at<1>(i)...));
}

/// Real and imaginary parts of W numbers, in the order that interleaving registers gives: 0, 2, 1, 3 when W is 4.
template <class V> struct Split {
    V re, im;
};

template <int W> [[gnu::always_inline]] inline Vec<W> even_lanes(Vec<W> a, Vec<W> b) {
    if constexpr (W == 2) return __builtin_shufflevector(a, b, 0, 2);
    else return __builtin_shufflevector(a, b, 0, 4, 2, 6);
}
template <int W> [[gnu::always_inline]] inline Vec<W> odd_lanes(Vec<W> a, Vec<W> b) {
    if constexpr (W == 2) return __builtin_shufflevector(a, b, 1, 3);
    else return __builtin_shufflevector(a, b, 1, 5, 3, 7);
}
template <int W> [[gnu::always_inline]] inline Vec<W> split_order(Vec<W> v) {
    if constexpr (W == 4) return __builtin_shufflevector(v, v, 0, 2, 1, 3);
    else return v;
}

/// Operands of each_split: split<W>(i) is what belongs to the elements i to i + W - 1.
struct ComplexArray {
    const double* p;
    template <int W> [[gnu::always_inline]] Split<Vec<W>> split(i64 i) const {
        if constexpr (W == 1) return {load<1>(p + 2 * i), load<1>(p + 2 * i + 1)};
        else {
            const Vec<W> low = load<W>(p + 2 * i), high = load<W>(p + 2 * i + W);
            return {even_lanes<W>(low, high), odd_lanes<W>(low, high)};
        }
    }
};
struct RealArray {
    const double* p;
    template <int W> [[gnu::always_inline]] Vec<W> split(i64 i) const { return split_order<W>(load<W>(p + i)); }
};
struct ComplexConstant {
    Complex value;
    template <int W> [[gnu::always_inline]] Split<Vec<W>> split(i64) const {
        return {splat<W>(value.re), splat<W>(value.im)};
    }
};

template <int W> [[gnu::always_inline]] inline void store_split(double* dst, i64 i, Vec<W> v) {
    store<W>(dst + i, split_order<W>(v));
}
template <int W> [[gnu::always_inline]] inline void store_split(Complex* dst, i64 i, Split<Vec<W>> z) {
    double* p = parts(dst + i);
    if constexpr (W == 1) {
        store<1>(p, z.re);
        store<1>(p + 1, z.im);
    } else {
        store<W>(p, even_lanes<W>(z.re, z.im));
        store<W>(p + W, odd_lanes<W>(z.re, z.im));
    }
}

/// dst[i] = op(operands at i) for n elements, real or complex.
template <class T, class Op, class... In> [[gnu::always_inline]] inline void each_split(T* dst, i64 n, Op op,
                                                                                        In... in) {
    constexpr int W = kWidth;
    i64 i = 0;
    for (; i + 2 * W <= n; i += 2 * W)
        for (i64 k = i; k < i + 2 * W; k += W) store_split<W>(dst, k, op(in.template split<W>(k)...));
    for (; i + W <= n; i += W) store_split<W>(dst, i, op(in.template split<W>(i)...));
    for (; i < n; ++i) store_split<1>(dst, i, op(in.template split<1>(i)...));
}

/// Smith's quotient as the operator of Complex forms it, with choices in the place of its branch.
template <class V> [[gnu::always_inline]] inline Split<V> quotient(Split<V> a, Split<V> b) {
    const auto upright = __builtin_elementwise_abs(b.re) >= __builtin_elementwise_abs(b.im);
    const V large = upright ? b.re : b.im, small = upright ? b.im : b.re;
    const V ratio = small / large, divisor = large + small * ratio;
    const V p = upright ? a.re : a.im, q = upright ? a.im : a.re, scaled = p * ratio;
    return {(p + q * ratio) / divisor, ((upright ? q : scaled) - (upright ? scaled : q)) / divisor};
}

} // namespace nxl::NXL_TARGET
