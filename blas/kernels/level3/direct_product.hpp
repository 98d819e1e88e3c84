// Small products on the widest registers: A and B are read where the caller has them, and nothing is packed.
#pragma once
#include "blas/kernels/level3/plain_gemm.hpp"
#include <immintrin.h>

namespace nxl::NXL_TARGET {

// While A stays in the second cache, reading it anew for each 12 columns of B costs less than packing it once. Rows
// that do not fill a vector are loaded and stored by mask, alpha is multiplied to the sums, and the tile is that of the
// packed product:
//
//                 12 columns of B, in the first cache
//     16 rows     tile     then the next 16 rows, down to the end of A, then the next 12 columns
/// Numbers of A, 128 KiB, that stay in the second cache beside B and C while the columns go by.
template <class T> constexpr i64 direct_block = 16384 / kParts<T>;

/// Where it pays: A by columns; and small, or for so few columns of C that packing would not be used often.
template <class T> [[gnu::always_inline]] inline bool suits_direct(const GeneralProduct<T>& g) {
    constexpr i64 few_columns = 64, few_steps = 256 / kParts<T>;
    if (g.a.along_r != 1 || g.a.conjugate) return false;
    return g.m * g.k <= direct_block<T> || (g.n <= few_columns && g.k <= few_steps);
}

/// Lanes of a vector that hold rows.
struct Lanes {
    __mmask8 mask;

    explicit Lanes(i64 doubles) : mask(static_cast<__mmask8>(doubles >= 8 ? 0xff : (1 << doubles) - 1)) {}
    [[gnu::always_inline]] Vec<8> load(const double* p) const { return _mm512_maskz_loadu_pd(mask, p); }
    [[gnu::always_inline]] void store(double* p, Vec<8> v) const { _mm512_mask_storeu_pd(p, mask, v); }
};
struct AllLanes {
    explicit AllLanes(i64) {}
    [[gnu::always_inline]] Vec<8> load(const double* p) const { return nxl::NXL_TARGET::load<8>(p); }
    [[gnu::always_inline]] void store(double* p, Vec<8> v) const { nxl::NXL_TARGET::store<8>(p, v); }
};

/// `Vectors` of rows from row i on, of which the last is short where it is not AllLanes, against `Columns` real
/// columns.
template <class T, int Vectors, int Columns, class LastLanes, class B>
[[gnu::always_inline]] inline void direct_tile(const GeneralProduct<T>& g, i64 i, i64 j, B b) {
    const LastLanes last((g.m - i) * kParts<T> - (Vectors - 1) * 8);
    const auto load_rows = [&](const double* p, int v) __attribute__((always_inline)) {
        return v == Vectors - 1 ? last.load(p + v * 8) : load<8>(p + v * 8);
    };
    Sums<Vectors, Columns, 8, 8> sums;
    const double* a = parts(g.a.data + i);
    const i64 step = g.a.along_p * kParts<T>, steps = g.k;
    for (i64 p = 0; p < steps; ++p, a += step, b.next())
        sums.add([&](int v) __attribute__((always_inline)) { return load_rows(a, v); }, b);
    const Factor<T, 8> alpha(g.alpha), beta(g.to.beta);
    const Before before = g.to.before;
    const double b_sign = g.b.conjugate ? -1.0 : 1.0;
    const i64 next = g.to.ldc * kParts<T>;
    double* c = parts(g.to.c + i + j * g.to.ldc);
    repeat<Columns / kParts<T>>([&](auto column) __attribute__((always_inline)) {
        repeat<Vectors>([&](auto v) __attribute__((always_inline)) {
            Vec<8> value = alpha.times(tile_values<T>(sums, v, column, b_sign));
            if (before == Before::keep) value += load_rows(c, v);
            else if (before == Before::scale) value += beta.times(load_rows(c, v));
            if (v == Vectors - 1) last.store(c + v * 8, value);
            else store<8>(c + v * 8, value);
        });
        c += next;
    });
}

template <class T, int Columns, class ColumnsB>
[[gnu::noinline]] void direct_column(const GeneralProduct<T>& g, const ColumnsB& b, i64 j) {
    constexpr int groups = (Columns + kPanel - 1) / kPanel;
    constexpr i64 height = 8 / kParts<T>;
    GroupsOfB<decltype(b(j)), groups> together;
    for (int group = 0; group < groups; ++group) together.of[group] = b(j + group * kPanelRows<T>);
    i64 i = 0;
    for (; i + 2 * height <= g.m; i += 2 * height) direct_tile<T, 2, Columns, AllLanes>(g, i, j, together);
    if (g.m - i > height) direct_tile<T, 2, Columns, Lanes>(g, i, j, together);
    else if (g.m > i) direct_tile<T, 1, Columns, Lanes>(g, i, j, together);
}

template <class T, class ColumnsB> void direct_columns(const GeneralProduct<T>& g, const ColumnsB& b) {
    constexpr i64 group = kPanelRows<T>;
    i64 j = 0;
    for (; j + 3 * group <= g.n; j += 3 * group) direct_column<T, 3 * kPanel>(g, b, j);
    if (j + 2 * group <= g.n) {
        direct_column<T, 2 * kPanel>(g, b, j);
        j += 2 * group;
    }
    for_each_group<T>(j, g.n, [&](i64 column, auto columns) { direct_column<T, columns.value>(g, b, column); });
}

template <class T> void direct_rows(const GeneralProduct<T>& g) {
    if (g.b.along_p == 1) direct_columns<T>(g, ColumnsInPlace<T>{g.b, g.n});
    else direct_columns<T>(g, RowsInPlace<T>{g.b, g.n});
}

/// By blocks of rows; one that is small is not even divided into them.
template <class T> void direct_product(const GeneralProduct<T>& g) {
    if (g.m * g.k <= direct_block<T>) return direct_rows(g);
    const i64 rows = least(g.m, up_to(direct_block<T> / (g.k + 1) + 1, 16));
    for (i64 i = 0; i < g.m; i += rows) {
        GeneralProduct<T> block = g.below(i);
        block.m = least(rows, block.m);
        direct_rows(block);
    }
}

} // namespace nxl::NXL_TARGET
