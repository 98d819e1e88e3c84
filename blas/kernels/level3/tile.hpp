// Register tiles of the matrix product: the innermost loops over k. Complex numbers are pairs of doubles here: a panel
// of two complex rows is one of four doubles, and each part of a complex B counts as a column of its own.
#pragma once
#include "blas/kernels/registers.hpp"

namespace nxl::NXL_TARGET {

// A tile takes one step of k at a time: a column of A, in vectors, times a few numbers of B, each spread over a vector.
// Every sum of the tile stays in a register from the first step to the last. With 256 bits, 12 rows by 4 columns:
//
//                      b0         b1         b2         b3        <- one at a time, in all lanes of a register
//     a0  .. a3     of[0][0]   of[0][1]   of[0][2]   of[0][3]
//     a4  .. a7     of[1][0]   of[1][1]   of[1][2]   of[1][3]     12 sums, 3 vectors of A and 1 of B: 16 registers
//     a8  .. a11    of[2][0]   of[2][1]   of[2][2]   of[2][3]
//
// A processor that starts two multiply-adds in a cycle, each of which takes 4 or 5, needs 8 to 10 sums to stay busy.
// With 128 bits the tile is 4 rows by 4 columns: 2 vectors of A, 8 sums. With 512 bits it is 16 rows by 12 columns: 24
// sums, 2 vectors of A and 1 of B take 27 of 32 registers, and 14 loads serve 24 multiply-adds.
//
// A complex product needs the parts of A exchanged. That is put off: column 2 c collects A re(b), column 2 c + 1
// collects A im(b), and result.hpp exchanges parts once per tile in place of once per step.
constexpr int kPanel = 4; // doubles of a panel per step of k: 4 real columns, or 2 complex ones
constexpr int kTallPanel = kWidest > kPanel ? kWidest : kPanel; // of a panel of A: a vector at least

template <class T> constexpr int kPanelRows = kPanel / kParts<T>;    // rows or columns in a panel
template <class T> constexpr int kTallRows = kTallPanel / kParts<T>; // rows in a panel of A

/// B packed in panels: `step` doubles apart for consecutive k.
struct PackedB {
    const double* at;
    i64 step;

    template <int W> [[gnu::always_inline]] Vec<W> value(int column) const { return splat<W>(at[column]); }
    [[gnu::always_inline]] void next() { at += step; }
};

/// B in place, its columns `column` doubles apart and each contiguous along k.
template <class T> struct PlacedB {
    const double* at;
    i64 column;

    template <int W> [[gnu::always_inline]] Vec<W> value(int c) const {
        return splat<W>(at[c / kParts<T> * column + c % kParts<T>]);
    }
    [[gnu::always_inline]] void next() { at += kParts<T>; }
};

/// Several groups of 4 real columns side by side.
template <class B, int Groups> struct GroupsOfB {
    B of[Groups];

    template <int W> [[gnu::always_inline]] Vec<W> value(int column) const {
        return of[column / kPanel].template value<W>(column % kPanel);
    }
    [[gnu::always_inline]] void next() {
        for (B& group : of) group.next();
    }
};

/// B as a broadcast strip: every double stored twice, so that one aligned load fills a 128-bit register.
struct StripB {
    static constexpr int step = 2 * kPanel;
    const double* at;

    template <int W> [[gnu::always_inline]] Vec<W> value(int column) const {
        static_assert(W == 2);
        return *static_cast<const Vec<2>*>(__builtin_assume_aligned(at + 2 * column, 16));
    }
    [[gnu::always_inline]] void next() { at += step; }
};

/// The sums of a tile: `Panels` panels, each `High` doubles high, against `Columns` real columns of B, in vectors of W.
template <int Panels, int Columns, int W = kWidth, int High = kPanel> struct Sums {
    static constexpr int width = W;
    static constexpr int panel = High;
    static constexpr int vectors = Panels * High / W;
    static constexpr int height = Panels * High; // in doubles, as columns are
    static constexpr int unroll = 4;             // steps of k
    static constexpr int columns = Columns;
    Vec<W> of[vectors][Columns] = {};

    [[gnu::always_inline]] Vec<W> at(int v, int column) const { return of[v][column]; }

    template <class B> [[gnu::always_inline]] void step(const double* a, i64 panel_stride, const B& b) {
        constexpr int per_panel = High / W;
        add([=](int v) { return load<W>(a + v / per_panel * panel_stride + v % per_panel * W); }, b);
    }

    /// row(v): vector v of a step's rows of A.
    template <class Row, class B> [[gnu::always_inline]] void add(const Row& row, const B& b) {
        Vec<W> rows[vectors];
        repeat<vectors>([&](auto v) __attribute__((always_inline)) { rows[v] = row(v); });
        repeat<Columns>([&](auto column) __attribute__((always_inline)) {
            const auto factor = b.template value<W>(column);
            repeat<vectors>([&](auto v) __attribute__((always_inline)) {
                of[v][column] += rows[v] * factor;
                // Done before anything else is loaded: the sums, rows and one factor fill all registers.
                asm volatile("" : "+v"(of[v][column]) : : "memory");
            });
        });
    }
};

/// The sums of a pair of rows against 8 real columns, two in a register: beside the products of like halves stand those
/// of crossed ones, which makes broadcasts of B needless. 128-bit registers only.
///
///                   b(2 q)         b(2 q + 1)         rows (a0, a1) times (b, b') fill the main diagonal,
///         a0     straight[0]       crossed[1]         rows (a1, a0) times (b, b') the other one;
///         a1      crossed[0]      straight[1]         at() puts the halves in order when C is written.
struct CrossedSums {
    static constexpr int width = 2;
    static constexpr int panel = kPanel;
    static constexpr int vectors = 1;
    static constexpr int height = 2;
    static constexpr int unroll = 8;
    static constexpr int columns = 8;
    Vec<2> straight[columns / 2] = {}; // of column pair q: row 0 of column 2 q, row 1 of column 2 q + 1
    Vec<2> crossed[columns / 2] = {};  // row 1 of column 2 q, row 0 of column 2 q + 1

    template <class B> [[gnu::always_inline]] void step(const double* a, i64, const B& b) {
        const auto rows = load<2>(a);
        Vec<2> turned;
        asm("pshufd $0x4e, %1, %0" : "=x"(turned) : "m"(*reinterpret_cast<const Vec<2>*>(a)));
        for (int pair = 0; pair < columns / 2; ++pair) {
            const auto factors = b.pair(pair);
            straight[pair] += rows * factors;
            crossed[pair] += turned * factors;
            asm volatile("" : "+x"(straight[pair]), "+x"(crossed[pair]) : : "memory"); // as in Sums
        }
    }
    [[gnu::always_inline]] Vec<2> at(int, int c) const {
        const auto like = straight[c / 2], other = crossed[c / 2];
        return c % 2 == 0 ? __builtin_shufflevector(like, other, 0, 2) : __builtin_shufflevector(other, like, 1, 3);
    }
};

/// 8 real columns of B for CrossedSums: two packed panels of 4, or one of 8.
template <int Step> struct PackedPairs {
    const double* at;
    const double* second;

    [[gnu::always_inline]] Vec<2> pair(int p) const {
        const double* const from = p < 2 ? at + 2 * p : second + 2 * (p - 2);
        return *static_cast<const Vec<2>*>(__builtin_assume_aligned(from, 16));
    }
    [[gnu::always_inline]] void next() { at += Step, second += Step; }
};

/// Columns of C that come into the cache while sums are formed: few at once, many one by one in the rounds of the loop
/// over k, for the lines of A would have to wait behind them.
struct ColumnsAhead {
    const double* at;
    i64 column; // doubles from one column to the next
    i64 left;

    template <int Height> [[gnu::always_inline]] void fetch() {
        for (int row = 0; row + 8 <= Height; row += 8) __builtin_prefetch(at + row, 1);
        __builtin_prefetch(at + Height - 1, 1);
        at += column;
        --left;
    }
    template <int Height> [[gnu::always_inline]] void fetch_all() {
        while (left > 0) fetch<Height>();
    }
    [[gnu::always_inline]] bool are_few() const { return left <= 8; }
};

/// Lines of memory that come into the second cache while sums are formed, one in a round.
struct LinesAhead {
    static constexpr i64 line = 8; // doubles
    const double* at = nullptr;
    i64 left = 0;

    [[gnu::always_inline]] void fetch() {
        __builtin_prefetch(at, 0, 2);
        at += line;
        --left;
    }
};

/// A round of steps of k, after which a and b stand at the next.
template <class Tile, class B>
[[gnu::always_inline]] inline void add_round(Tile& sums, const double*& a, i64 panel_stride, B& b) {
#pragma clang loop unroll(full)
    for (int q = 0; q < Tile::unroll; ++q, b.next()) sums.step(a + q * Tile::panel, panel_stride, b);
    a += Tile::unroll * Tile::panel;
}

/// Adds the products of k steps to the sums.
template <class Tile, class B>
[[gnu::always_inline]] inline void add_products(Tile& sums, i64 k, const double* a, i64 panel_stride, B b,
                                                ColumnsAhead c = {}, LinesAhead lines = {}) {
    i64 rounds = k / Tile::unroll;
    if (c.are_few()) c.template fetch_all<Tile::height>();
    for (; c.left > 0 && rounds > 0; --rounds) {
        c.template fetch<Tile::height>();
        add_round(sums, a, panel_stride, b);
    }
    for (; lines.left > 0 && rounds > 0; --rounds) {
        lines.fetch();
        add_round(sums, a, panel_stride, b);
    }
    for (; rounds > 0; --rounds) add_round(sums, a, panel_stride, b);
    for (i64 p = k % Tile::unroll; p > 0; --p, a += Tile::panel, b.next()) sums.step(a, panel_stride, b);
}

template <class Tile, class B>
[[gnu::always_inline]] inline Tile multiply_panels(i64 k, const double* a, i64 panel_stride, B b, ColumnsAhead c,
                                                   LinesAhead lines = {}) {
    Tile sums;
    add_products(sums, k, a, panel_stride, b, c, lines);
    return sums;
}

/// The same for a number of steps known beforehand, without a loop.
template <int K, class Tile, class B>
[[gnu::always_inline]] inline Tile multiply_unrolled(const double* a, i64 panel_stride, B b, ColumnsAhead c) {
    Tile sums;
    c.template fetch_all<Tile::height>();
#pragma clang loop unroll(full)
    for (int p = 0; p < K; ++p, b.next()) sums.step(a + p * Tile::panel, panel_stride, b);
    return sums;
}

} // namespace nxl::NXL_TARGET
