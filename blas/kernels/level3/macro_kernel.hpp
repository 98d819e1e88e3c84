// A packed block of A times a panel of B, packed or in place: the loops over register tiles.
#pragma once
#include "blas/kernels/level3/pack.hpp"

namespace nxl::NXL_TARGET {

/// A block of A in panels, alpha included.
struct BlockA {
    const double* panels;
    i64 stride; // doubles between panels
    i64 rows;   // of the matrix
    i64 k;
};

/// A packed panel of B.
template <class T> struct PanelB {
    const double* panels;
    i64 stride;
    i64 columns;

    static i64 steps(i64 k) { return padded<T>(k); }

    /// From column c on, where a panel or half a panel starts.
    [[gnu::always_inline]] PackedB operator()(i64 c) const {
        constexpr i64 width = kPanelColumns<T>;
        const i64 panel = c / width, first = panel * width;
        const i64 here = columns - first < width ? columns - first : width;
        return {panels + panel * stride + (c - first) * kParts<T>, here * kParts<T>};
    }
    /// 8 real columns from column c on.
    [[gnu::always_inline]] PackedPairs pairs(i64 c) const {
        constexpr i64 width = kPanelColumns<T>;
        const double* const at = panels + c / width * stride;
        if constexpr (width * kParts<T> == 8) return {at, at + kPanel, 8};
        else return {at, at + stride, kPanel};
    }
};

/// B in place.
template <class T> struct InPlaceB {
    Source<T> from;
    i64 columns;

    static i64 steps(i64 k) { return k; }

    [[gnu::always_inline]] PlacedB<T> operator()(i64 c) const {
        return {reinterpret_cast<const double*>(from.data + c * from.along_r), from.along_p * kParts<T>,
                from.along_r * kParts<T>};
    }
};

/// Where in C, in rows and columns, and how many of them.
struct Place {
    i64 i, rows, j, columns;
};

/// A tile of C: sums(), a Tile, is asked for when something of it is to be written.
template <class T, class Tile, class Multiply>
[[gnu::always_inline]] inline void tile(const Place& at, const Result<T>& to, const Multiply& multiply) {
    if (to.outside(at.i, at.rows, at.j, at.columns)) return;
    T* const c = to.c + at.i + at.j * to.ldc;
    for (int column = 0; column < Tile::columns / kParts<T>; ++column) {
        __builtin_prefetch(c + column * to.ldc, 1);
        if constexpr (Tile::vectors > 1) __builtin_prefetch(c + column * to.ldc + at.rows - 1, 1);
    }
    const Tile sums = multiply();
    if (at.rows * kParts<T> == Tile::height && to.inside(at.i, at.rows, at.j, at.columns))
        return store_tile<T>(sums, to, c);
    double values[Tile::columns / kParts<T>][Tile::height]; // a copy, so that the sums themselves can stay in registers
    for (int column = 0; column < Tile::columns / kParts<T>; ++column)
        for (int v = 0; v < Tile::vectors; ++v)
            store<kWidth>(values[column] + v * kWidth, tile_values<T>(sums, v, column, to.b_sign));
    store_edge(values[0], Tile::height, to, at.i, at.rows, at.j, at.columns);
}

/// Steps of k for which class 1 has a kernel without a loop: a whole block.
constexpr i64 unrolled_k = kClass == CpuClass::p4n && kWidth == 2 ? 112 : 0;

/// The tile that starts at a panel of A; block A belongs to row i of C.
template <class T, int Panels, int Columns, class B>
[[gnu::always_inline]] inline void tile_at(const BlockA& a, i64 panel, i64 steps, B b, const Result<T>& to, i64 i,
                                           i64 j) {
    using Tile = Sums<Panels, Columns>;
    constexpr i64 height = Panels * kPanelRows<T>;
    const i64 first = panel * kPanelRows<T>;
    const i64 rest = a.rows - first;
    const double* const panels = a.panels + panel * a.stride;
    tile<T, Tile>({i + first, rest < height ? rest : height, j, Columns / kParts<T>}, to,
                  [&]() __attribute__((always_inline)) {
                      if constexpr (unrolled_k > 0 && Columns == kPanel)
                          if (steps == unrolled_k) return multiply_unrolled<unrolled_k, Tile>(panels, a.stride, b);
                      return multiply_panels<Tile>(steps, panels, a.stride, b);
                  });
}

/// The panels of A against one group of columns: three at a time, but four that are left two by two, for a single panel
/// has too few sums to hide the latency of the multiply-add.
template <class T, int Columns, class B>
[[gnu::noinline]] void tile_column(const BlockA& a, i64 steps, B b, const Result<T>& to, i64 i, i64 j) {
    constexpr i64 height = kPanelRows<T>;
    const i64 count = (a.rows + height - 1) / height;
    i64 panel = 0;
    if constexpr (kWidth == 4) {
        for (; count - panel >= 3 && count - panel != 4; panel += 3)
            tile_at<T, 3, Columns>(a, panel, steps, b, to, i, j);
        for (; count - panel >= 2; panel += 2) tile_at<T, 2, Columns>(a, panel, steps, b, to, i, j);
    }
    for (; panel < count; ++panel) tile_at<T, 1, Columns>(a, panel, steps, b, to, i, j);
}

/// Pairs of rows of A against 8 real columns.
template <class T>
[[gnu::noinline]] void crossed_column(const BlockA& a, i64 steps, PackedPairs b, const Result<T>& to, i64 i, i64 j) {
    constexpr i64 height = 2 / kParts<T>;
    for (i64 row = 0; row < a.rows; row += height) {
        const double* const panel = a.panels + row / kPanelRows<T> * a.stride + row % kPanelRows<T> * kParts<T>;
        const i64 rest = a.rows - row;
        tile<T, CrossedSums>(
            {i + row, rest < height ? rest : height, j, 8 / kParts<T>}, to,
            [&]() __attribute__((always_inline)) { return multiply_panels<CrossedSums>(steps, panel, 0, b); });
    }
}

/// Copies a group of columns into the strip, every double twice.
template <int Columns, class B> void fill_strip(double* strip, i64 steps, B b) {
    for (i64 p = 0; p < steps; ++p, b.next(), strip += StripB::step)
        for (int column = 0; column < Columns; ++column) store<2>(strip + 2 * column, b.value(column));
}

/// One group of columns: on narrow registers B is read through the strip.
template <class T, int Columns, class B>
[[gnu::always_inline]] inline void multiply_group(const BlockA& a, i64 steps, B b, double* strip, const Result<T>& to,
                                                  i64 i, i64 j) {
    if constexpr (kWidth == 2) {
        fill_strip<Columns>(strip, steps, b);
        tile_column<T, Columns>(a, steps, StripB{strip}, to, i, j);
    } else {
        tile_column<T, Columns>(a, steps, b, to, i, j);
    }
}

template <class T> constexpr bool has_crossed_tiles = kClass == CpuClass::mc3 && kWidth == 2;

/// C from row i and column j on takes the product of a block of A and all columns of B. `strip`: 64 bytes per step of
/// k.
template <class T, class ColumnsB>
void multiply_block(const BlockA& a, const ColumnsB& b, double* strip, const Result<T>& to, i64 i, i64 j) {
    constexpr i64 group = kPanelRows<T>;
    const i64 steps = ColumnsB::steps(a.k);
    i64 c = 0;
    if constexpr (has_crossed_tiles<T> && requires { b.pairs(c); })
        for (; c + 8 / kParts<T> <= b.columns; c += 8 / kParts<T>)
            crossed_column<T>(a, steps, b.pairs(c), to, i, j + c);
    for (; c + group <= b.columns; c += group) multiply_group<T, kPanel>(a, steps, b(c), strip, to, i, j + c);
    const i64 rest = b.columns - c;
    if constexpr (kParts<T> == 1) {
        if (rest == 3) multiply_group<T, 3>(a, steps, b(c), strip, to, i, j + c);
        if (rest == 2) multiply_group<T, 2>(a, steps, b(c), strip, to, i, j + c);
        if (rest == 1) multiply_group<T, 1>(a, steps, b(c), strip, to, i, j + c);
    } else if (rest == 1) {
        multiply_group<T, 2>(a, steps, b(c), strip, to, i, j + c);
    }
}

} // namespace nxl::NXL_TARGET
