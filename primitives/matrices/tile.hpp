// What the transposes are made of: square blocks in registers, as many vectors as each has elements, and tiles.
#pragma once
#include "service/vec_complex.hpp"

namespace nxl::NXL_TARGET {

constexpr i64 kLineBytes = 64; // of the caches

/// Elements in a cache line, and in a vector register.
template <class T> constexpr int kLine = kLineBytes / sizeof(T);
template <class T> constexpr int kLanes = kWidth / kParts<T>;

template <class T> struct Square {
    Vec<kWidth> row[kLanes<T>];
};

template <class T> [[gnu::always_inline]] inline Square<T> load_square(const T* a, i64 stride) {
    Square<T> square;
    for (int r = 0; r < kLanes<T>; ++r) square.row[r] = load<kWidth>(parts(a + r * stride));
    return square;
}

template <class T> [[gnu::always_inline]] inline void store_square(T* a, i64 stride, const Square<T>& square) {
    for (int r = 0; r < kLanes<T>; ++r) store<kWidth>(parts(a + r * stride), square.row[r]);
}

/// Past the caches; each row has to start at a multiple of its size.
template <class T> [[gnu::always_inline]] inline void stream_square(T* a, i64 stride, const Square<T>& square) {
    for (int r = 0; r < kLanes<T>; ++r)
        __builtin_nontemporal_store(square.row[r], reinterpret_cast<Vec<kWidth>*>(parts(a + r * stride)));
}

/// Sign bits change, whatever the number is.
[[gnu::always_inline]] inline Vec<kWidth> conjugated(Vec<kWidth> v) {
    using Bits [[gnu::vector_size(kWidth * sizeof(double))]] = i64;
    const Bits signs = __builtin_bit_cast(Bits, alternate<kWidth>(0.0, -0.0));
    return __builtin_bit_cast(Vec<kWidth>, __builtin_bit_cast(Bits, v) ^ signs);
}
template <bool Conjugate> [[gnu::always_inline]] inline double conjugated_if(double value) { return value; }
template <bool Conjugate> [[gnu::always_inline]] inline Complex conjugated_if(Complex z) {
    return {z.re, Conjugate ? -z.im : z.im};
}

template <class T, bool Conjugate> [[gnu::always_inline]] inline Square<T> transposed(const Square<T>& square) {
    Square<T> result = square;
    const auto& row = square.row;
    if constexpr (kLanes<T> == 4) {
        const auto even01 = __builtin_shufflevector(row[0], row[1], 0, 4, 2, 6);
        const auto odd01 = __builtin_shufflevector(row[0], row[1], 1, 5, 3, 7);
        const auto even23 = __builtin_shufflevector(row[2], row[3], 0, 4, 2, 6);
        const auto odd23 = __builtin_shufflevector(row[2], row[3], 1, 5, 3, 7);
        result.row[0] = __builtin_shufflevector(even01, even23, 0, 1, 4, 5);
        result.row[1] = __builtin_shufflevector(odd01, odd23, 0, 1, 4, 5);
        result.row[2] = __builtin_shufflevector(even01, even23, 2, 3, 6, 7);
        result.row[3] = __builtin_shufflevector(odd01, odd23, 2, 3, 6, 7);
    } else if constexpr (kLanes<T> == 2 && kParts<T> == 2) {
        result.row[0] = __builtin_shufflevector(row[0], row[1], 0, 1, 4, 5);
        result.row[1] = __builtin_shufflevector(row[0], row[1], 2, 3, 6, 7);
    } else if constexpr (kLanes<T> == 2) {
        result.row[0] = __builtin_shufflevector(row[0], row[1], 0, 2);
        result.row[1] = __builtin_shufflevector(row[0], row[1], 1, 3);
    }
    if constexpr (Conjugate)
        for (auto& r : result.row) r = conjugated(r);
    return result;
}

/// A tile is a cache line wide and high, so that each line is read and written whole while it is at hand, also where
/// rows a power of two apart compete for the same places in a cache.
template <class T, bool Conjugate, bool Stream>
[[gnu::always_inline]] inline void transpose_tile(const T* src, i64 src_stride, T* dst, i64 dst_stride) {
    for (int c = 0; c < kLine<T>; c += kLanes<T>)
        for (int r = 0; r < kLine<T>; r += kLanes<T>) {
            const auto square = transposed<T, Conjugate>(load_square(src + r * src_stride + c, src_stride));
            if constexpr (Stream) stream_square(dst + c * dst_stride + r, dst_stride, square);
            else store_square(dst + c * dst_stride + r, dst_stride, square);
        }
}

[[gnu::always_inline]] inline i64 lesser(i64 a, i64 b) { return a < b ? a : b; }

} // namespace nxl::NXL_TARGET
