// The loops over register tiles for a packed block of A and a panel of B.
#pragma once
#include "blas/kernels/level3/macro_kernel.hpp"

namespace nxl::NXL_TARGET {

// The block of A is in the second cache. What stays in the first one differs by width.
//
//     256 bits: a chunk of 32 columns, three panels of A at a time     128 bits: 4 columns, copied into the strip
//
//                 B  | 4 | 4 | ... | 4 |                                    strip  | 4 |
//             A    +---+---+-   -+---+                                A    +---+
//     3 panels ->  |tile tile  .. tile|  next three panels            4 rows ->  |tile|  down all of A,
//                  +---+---+-   -+---+   down to the end of A,                   |tile|  then the next strip
//                  |tile tile  .. tile|  then the next chunk                     |tile|
//
// On the left three panels are reused for all columns of the chunk, and the chunk for all of A. On the right the strip,
// 64 bytes per step of k, is reused for all of A. Each element of A leaves the second cache once per chunk or strip.
// With 512 bits it is as on the right, but 12 columns, where B is, and two panels of 8 rows at a time. Meanwhile the
// next 12 columns of a packed B, which is larger than the second cache, come into that one. Class 3 at 128 bits needs
// no strip for a packed B: its tile takes 8 columns of the panels as they are.

/// A tile of C: multiply() gives its sums, a Tile, and is asked only when something of it is to be written. The lines
/// of C are fetched first, so that they arrive while the sums are formed.
template <class T, class Tile, class Multiply>
[[gnu::always_inline]] inline void tile(const Place& at, const Result<T>& to, const Multiply& multiply) {
    if (to.outside(at.i, at.rows, at.j, at.columns)) return;
    T* const c = to.c + at.i + at.j * to.ldc;
    const Tile sums = multiply(ColumnsAhead{parts(c), to.ldc * kParts<T>, Tile::columns / kParts<T>});
    if (at.rows * kParts<T> == Tile::height && to.inside(at.i, at.rows, at.j, at.columns))
        return store_tile<T>(sums, to, c);
    double values[Tile::columns / kParts<T>][Tile::height]; // a copy, so that the sums themselves can stay in registers
    repeat<Tile::columns / kParts<T>>([&](auto column) __attribute__((always_inline)) {
        repeat<Tile::vectors>([&](auto v) __attribute__((always_inline)) {
            store<Tile::width>(values[column] + v * Tile::width, tile_values<T>(sums, v, column, to.b_sign));
        });
    });
    store_edge(values[0], Tile::height, to, at.i, at.rows, at.j, at.columns);
}

/// Steps of k for which class 1 has a kernel without a loop: a whole block.
constexpr i64 unrolled_k = kClass == CpuClass::p4n ? 112 : 0;

/// The tile that starts at a panel of A; block A belongs to row i of C.
template <class T, int Panels, int Columns, class B>
[[gnu::always_inline]] inline void tile_at(const BlockA& a, i64 panel, i64 steps, B b, const Result<T>& to, i64 i,
                                           i64 j, LinesAhead lines = {}) {
    using Tile = Sums<Panels, Columns, kWidest, kTallPanel>;
    constexpr i64 height = Panels * kTallRows<T>;
    const i64 first = panel * kTallRows<T>;
    const i64 rest = a.rows - first;
    const double* const panels = a.panels + panel * a.stride;
    tile<T, Tile>({i + first, rest < height ? rest : height, j, Columns / kParts<T>}, to,
                  [&](ColumnsAhead c) __attribute__((always_inline)) {
                      if constexpr (unrolled_k > 0 && Columns == kPanel)
                          if (steps == unrolled_k) return multiply_unrolled<unrolled_k, Tile>(panels, a.stride, b, c);
                      return multiply_panels<Tile>(steps, panels, a.stride, b, c, lines);
                  });
}

/// Calls tiles(column, Columns) for columns first .. last - 1 by whole panels' widths, then for those that are left;
/// Columns, a constant, counts real ones.
template <int N> struct Constant {
    static constexpr int value = N;
};
template <class T, class Tiles>
[[gnu::always_inline]] inline void for_each_group(i64 first, i64 last, const Tiles& tiles) {
    constexpr i64 group = kPanelRows<T>;
    i64 c = first;
    for (; c + group <= last; c += group) tiles(c, Constant<kPanel>{});
    if constexpr (kParts<T> == 1) {
        if (last - c == 3) tiles(c, Constant<3>{});
        if (last - c == 2) tiles(c, Constant<2>{});
        if (last - c == 1) tiles(c, Constant<1>{});
    } else if (last - c == 1) {
        tiles(c, Constant<2>{});
    }
}

/// A tile of fewer columns than a panel has: in a function of its own, or the compiler keeps its sums in memory.
template <class T, int Panels, int Columns, class B>
[[gnu::noinline]] void narrow_tile(const BlockA& a, i64 panel, i64 steps, B b, const Result<T>& to, i64 i, i64 j) {
    tile_at<T, Panels, Columns>(a, panel, steps, b, to, i, j);
}

/// Wide registers: some panels of A against columns first .. last - 1.
template <class T, int Panels, class ColumnsB>
[[gnu::noinline]] void tile_row(const BlockA& a, i64 panel, const ColumnsB& b, i64 first, i64 last, const Result<T>& to,
                                i64 i, i64 j) {
    const i64 steps = ColumnsB::steps(a.k);
    for_each_group<T>(first, last, [&](i64 c, auto columns) __attribute__((always_inline)) {
        if constexpr (columns.value == kPanel) tile_at<T, Panels, kPanel>(a, panel, steps, b(c), to, i, j + c);
        else narrow_tile<T, Panels, columns.value>(a, panel, steps, b(c), to, i, j + c);
    });
}

/// Real columns of B that all of A passes by, three panels at a time. With 128 steps of k, as on class 0, they are 32
/// KiB and the panels 12: about a first cache.
constexpr i64 chunk_columns = 32;

/// Three panels at a time, but four that are left two by two: a single panel has too few sums to hide the latency of
/// the multiply-add. Columns of B from `from` on.
template <class T, class ColumnsB>
void multiply_wide(const BlockA& a, const ColumnsB& b, i64 from, const Result<T>& to, i64 i, i64 j) {
    constexpr i64 width = chunk_columns / kParts<T>, height = kTallRows<T>;
    const i64 count = (a.rows + height - 1) / height;
    for (i64 first = from; first < b.columns; first += width) {
        const i64 last = b.columns - first < width ? b.columns : first + width;
        i64 panel = 0;
        for (; count - panel >= 3 && count - panel != 4; panel += 3) tile_row<T, 3>(a, panel, b, first, last, to, i, j);
        for (; count - panel >= 2; panel += 2) tile_row<T, 2>(a, panel, b, first, last, to, i, j);
        for (; panel < count; ++panel) tile_row<T, 1>(a, panel, b, first, last, to, i, j);
    }
}

/// The widest registers: `Groups` groups of columns, which stay in the first cache, against all panels of A.
template <class T, int Groups, class ColumnsB>
[[gnu::noinline]] void widest_column(const BlockA& a, const ColumnsB& b, i64 c, const Result<T>& to, i64 i, i64 j) {
    constexpr int columns = Groups * kPanel, together_a = Groups == 3 ? 2 : 3;
    const i64 steps = ColumnsB::steps(a.k), count = (a.rows + kTallRows<T> - 1) / kTallRows<T>;
    GroupsOfB<decltype(b(c)), Groups> together;
    for (int group = 0; group < Groups; ++group) together.of[group] = b(c + group * kPanelRows<T>);
    LinesAhead lines;
    if constexpr (requires { b.ahead(c, c, c); })
        lines = b.ahead(c + columns / kParts<T>, columns / kParts<T>, count / together_a + 1);
    i64 panel = 0;
    for (; count - panel >= together_a; panel += together_a, lines.at += lines.left * LinesAhead::line)
        tile_at<T, together_a, columns>(a, panel, steps, together, to, i, j + c, lines);
    for (; panel < count; ++panel) tile_at<T, 1, columns>(a, panel, steps, together, to, i, j + c);
}

/// Columns beyond the last whole group go as on 256 bits.
template <class T, class ColumnsB>
void multiply_widest(const BlockA& a, const ColumnsB& b, const Result<T>& to, i64 i, i64 j) {
    constexpr i64 group = kPanelRows<T>;
    i64 c = 0;
    for (; c + 3 * group <= b.columns; c += 3 * group) widest_column<T, 3>(a, b, c, to, i, j);
    if (c + 2 * group <= b.columns) {
        widest_column<T, 2>(a, b, c, to, i, j);
        c += 2 * group;
    }
    if (c + group <= b.columns) {
        widest_column<T, 1>(a, b, c, to, i, j);
        c += group;
    }
    if (c < b.columns) multiply_wide<T>(a, b, c, to, i, j);
}

/// Copies a group of columns into the strip, every double twice.
template <int Columns, class B> void fill_strip(double* strip, i64 steps, B b) {
    for (i64 p = 0; p < steps; ++p, b.next(), strip += StripB::step)
        for (int column = 0; column < Columns; ++column) store<2>(strip + 2 * column, b.template value<2>(column));
}

/// Narrow registers: all panels of A against the columns in the strip.
template <class T, int Columns>
[[gnu::noinline]] void tile_column(const BlockA& a, i64 steps, const double* strip, const Result<T>& to, i64 i, i64 j) {
    for (i64 panel = 0; panel * kTallRows<T> < a.rows; ++panel)
        tile_at<T, 1, Columns>(a, panel, steps, StripB{strip}, to, i, j);
}

/// Class 3 on narrow registers: pairs of rows of A against 8 real columns.
template <class T, class Pairs>
[[gnu::noinline]] void crossed_column(const BlockA& a, i64 steps, Pairs b, const Result<T>& to, i64 i, i64 j) {
    constexpr i64 height = 2 / kParts<T>;
    for (i64 row = 0; row < a.rows; row += height) {
        const double* const panel = a.panels + row / kPanelRows<T> * a.stride + row % kPanelRows<T> * kParts<T>;
        const i64 rest = a.rows - row;
        tile<T, CrossedSums>({i + row, rest < height ? rest : height, j, 8 / kParts<T>}, to,
                             [&](ColumnsAhead c) __attribute__((always_inline)) {
                                 return multiply_panels<CrossedSums>(steps, panel, 0, b, c);
                             });
    }
}

template <class T, class ColumnsB>
void multiply_narrow(const BlockA& a, const ColumnsB& b, double* strip, const Result<T>& to, i64 i, i64 j) {
    const i64 steps = ColumnsB::steps(a.k);
    i64 c = 0;
    if constexpr (kClass == CpuClass::mc3 && requires { b.pairs(c); })
        for (; c + 8 / kParts<T> <= b.columns; c += 8 / kParts<T>)
            crossed_column<T>(a, steps, b.pairs(c), to, i, j + c);
    for_each_group<T>(c, b.columns, [&](i64 column, auto columns) {
        fill_strip<columns.value>(strip, steps, b(column));
        tile_column<T, columns.value>(a, steps, strip, to, i, j + column);
    });
}

} // namespace nxl::NXL_TARGET
