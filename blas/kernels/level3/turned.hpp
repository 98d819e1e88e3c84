// A few rows of a matrix that lies by rows, turned so that they lie by columns: for direct_product.hpp, on the stack.
#pragma once
#include "blas/kernels/lanes.hpp"
#include "blas/kernels/level3/plain_gemm.hpp"

namespace nxl::NXL_TARGET {

constexpr int turned_doubles = 4096; // 32 KiB, which stays in the first cache

/// How many rows of k numbers have room, in whole vectors: one at least up to k = 512.
template <class T> [[gnu::always_inline]] inline i64 turned_rows(i64 k) {
    return down_to(turned_doubles / kParts<T> / k, 8 / kParts<T>);
}

/// Exchanges pairs of vectors: of stage 1, 2 or 4, which is how far apart the doubles are that change their place.
template <int Far> [[gnu::always_inline]] inline void exchange(Vec<8>& low, Vec<8>& high) {
    Vec<8> a, b;
    if constexpr (Far == 1) {
        a = __builtin_shufflevector(low, high, 0, 8, 2, 10, 4, 12, 6, 14);
        b = __builtin_shufflevector(low, high, 1, 9, 3, 11, 5, 13, 7, 15);
    } else if constexpr (Far == 2) {
        a = __builtin_shufflevector(low, high, 0, 1, 8, 9, 4, 5, 12, 13);
        b = __builtin_shufflevector(low, high, 2, 3, 10, 11, 6, 7, 14, 15);
    } else {
        a = __builtin_shufflevector(low, high, 0, 1, 2, 3, 8, 9, 10, 11);
        b = __builtin_shufflevector(low, high, 4, 5, 6, 7, 12, 13, 14, 15);
    }
    low = a;
    high = b;
}

/// Vectors of as many rows as a vector has numbers, in place of vectors of columns.
template <class T> [[gnu::always_inline]] inline void turn(Vec<8> (&v)[8 / kParts<T>]) {
    const auto stage = [&](auto far) __attribute__((always_inline)) {
        constexpr int apart = far / kParts<T>;
        repeat<8 / kParts<T>>([&](auto i) __attribute__((always_inline)) {
            if constexpr ((i & apart) == 0) exchange<far>(v[i], v[i + apart]);
        });
    };
    if constexpr (kParts<T> == 1) stage(Index<1>{});
    stage(Index<2>{});
    stage(Index<4>{});
}

/// The first `rows` rows by k numbers, in columns of whole vectors. Beyond the last row stands that row again.
template <class T>
[[gnu::noinline]] Source<T> turn_rows(const Source<T>& from, i64 rows, i64 k, double* to) {
    constexpr i64 unit = 8 / kParts<T>;
    const i64 ld = up_to(rows, unit);
    const Vec<8> sign = alternate<8>(1.0, from.conjugate ? -1.0 : 1.0);
    for (i64 i = 0; i < rows; i += unit)
        for (i64 p = 0; p < k; p += unit) {
            const Lanes lanes = Lanes::first((k - p) * kParts<T>);
            Vec<8> v[unit];
            repeat<unit>([&](auto r) __attribute__((always_inline)) {
                const i64 row = least(i + r, rows - 1);
                v[r] = lanes.load(parts(from.data + row * from.along_r + p));
                if constexpr (kParts<T> == 2) v[r] *= sign;
            });
            turn<T>(v);
            double* const out = to + (i + p * ld) * kParts<T>;
            repeat<unit>([&](auto column) __attribute__((always_inline)) {
                if (p + column < k) store<8>(out + column * ld * kParts<T>, v[column]);
            });
        }
    return {reinterpret_cast<const T*>(to), 1, ld, false};
}

} // namespace nxl::NXL_TARGET
