// Vectors of doubles on the compiler's vector extension, for sources that are compiled once per target (NXL_TARGET, its
// namespace; NXL_TARGET_BITS, its register width). Everything here is inlined or local to one source, so that no code
// for a wide target can be shared with a narrower one.
#pragma once
#include "service/types.hpp"
#include <utility>

namespace nxl::NXL_TARGET {

/// Doubles in a vector register: in the widest that the target has, where long vectors go by and in the tile of the
/// matrix product; and in those of 256 bits at most, for everything with a layout or with lanes that would stay empty.
constexpr int kWidest = NXL_TARGET_BITS / 64;
constexpr int kWidth = kWidest < 4 ? kWidest : 4;

template <int W> using Vec [[gnu::vector_size(W * sizeof(double))]] = double;

template <int W> [[gnu::always_inline]] inline Vec<W> load(const double* p) {
    Vec<W> v;
    __builtin_memcpy(&v, p, sizeof v); // so that p needs no alignment
    return v;
}

template <int W> [[gnu::always_inline]] inline void store(double* p, Vec<W> v) { __builtin_memcpy(p, &v, sizeof v); }

template <int W> [[gnu::always_inline]] inline Vec<W> splat(double value) {
    Vec<W> v;
    for (int lane = 0; lane < W; ++lane) v[lane] = value;
    return v;
}

template <int W> [[gnu::always_inline]] inline double sum_lanes(Vec<W> v) {
    double sum = v[0];
    for (int lane = 1; lane < W; ++lane) sum += v[lane];
    return sum;
}

/// The real and imaginary parts of W/2 complex numbers, exchanged.
template <int W> [[gnu::always_inline]] inline Vec<W> swap_parts(Vec<W> v) {
    if constexpr (W == 2) return __builtin_shufflevector(v, v, 1, 0);
    else if constexpr (W == 4) return __builtin_shufflevector(v, v, 1, 0, 3, 2);
    else return __builtin_shufflevector(v, v, 1, 0, 3, 2, 5, 4, 7, 6);
}

/// (even, odd, even, odd, ...).
template <int W> [[gnu::always_inline]] inline Vec<W> alternate(double even, double odd) {
    Vec<W> v;
    for (int lane = 0; lane < W; ++lane) v[lane] = lane % 2 == 0 ? even : odd;
    return v;
}

/// body(Index<0>{}), body(Index<1>{}) and so on: a loop that is no loop from the start, so that an array that it
/// indexes is taken for registers however long the loop is.
template <int I> struct Index {
    static constexpr int value = I;
    constexpr operator int() const { return I; }
};
template <int N, class Body> [[gnu::always_inline]] inline void repeat(const Body& body) {
    [&]<int... I>(std::integer_sequence<int, I...>)
        __attribute__((always_inline)) { (body(Index<I>{}), ...); }(std::make_integer_sequence<int, N>{});
}

/// Doubles at the parts of complex numbers: arrays of zcomplex are read and written as pairs of doubles, which the
/// language allows and which keeps the members of std::complex out of code for wide targets.
[[gnu::always_inline]] inline double* parts(zcomplex* z) { return reinterpret_cast<double*>(z); }
[[gnu::always_inline]] inline const double* parts(const zcomplex* z) { return reinterpret_cast<const double*>(z); }

} // namespace nxl::NXL_TARGET
