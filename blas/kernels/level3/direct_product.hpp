// Small products on the widest registers: A and B are read where the caller has them. Where they lie so that no vector
// could be loaded, A is turned on the stack, or the result on its way out.
#pragma once
#include "blas/kernels/level3/turned.hpp"

namespace nxl::NXL_TARGET {

// A few rows of A stay in the first cache while all columns of B go by, and are taken anew from where they lie for each
// 12 columns, which costs less than packing them. Rows that do not fill a vector are loaded and stored by mask, alpha
// is multiplied to the sums, and no tile has more columns than it needs: 50 columns go as 5 times 10.
//
//                   up to 12 columns of B
//     16 rows       tile     then the next 16 rows, down to the end of the block, then the next columns,
//       ...                  then the next block of rows
//     block of A
/// Numbers of A in a block, 16 KiB, that stay in the first cache beside the columns of B.
template <class T> constexpr i64 direct_block = 2048 / kParts<T>;
/// And of all of A, 128 KiB, up to which the rest is still in the second one.
template <class T> constexpr i64 direct_most = 16384 / kParts<T>;

/// Where it pays: small, or for so few columns of C that packing would not be used often.
template <class T> [[gnu::always_inline]] inline bool suits_direct(const GeneralProduct<T>& g) {
    constexpr i64 few_columns = 64, few_steps = 256 / kParts<T>;
    if (g.k > few_steps) return g.a.along_r == 1 && g.m * g.k <= direct_most<T>;
    return g.n <= few_columns || g.m * g.k <= direct_most<T>;
}

/// `Columns` numbers of each step of k, wherever they stand.
template <class T, int Columns> struct BInPlace {
    static constexpr int groups = (Columns + 3) / 4;
    const double* at[groups];
    i64 column, along_k; // doubles between neighbours

    [[gnu::always_inline]] explicit BInPlace(const Source<T>& b)
        : column(b.along_r * kParts<T>),
          along_k(b.along_p * kParts<T>) {
        for (int group = 0; group < groups; ++group) {
            at[group] = parts(b.data) + 4 * group * column;
            asm("" : "+r"(at[group])); // a register of its own, or each address becomes a sum of all before it
        }
    }
    template <int W> [[gnu::always_inline]] Vec<W> value(int c) const {
        const int number = c / kParts<T>;
        return splat<W>(at[number / 4][number % 4 * column + c % kParts<T>]);
    }
    [[gnu::always_inline]] void next() {
        for (const double*& group : at) group += along_k;
    }
};

/// What a tile gives: the product, or its transpose. Where both operands lie by rows, B^T has its rows by columns and
/// A^T is the one that is spread, so that the tile forms a block of C^T and turns it on its way to C.
enum class Gives { product, transpose };

/// Columns of a tile, as numbers: a block that is turned is a vector high.
template <class T, Gives G> constexpr int direct_columns_most = (G == Gives::product ? 12 : 8) / kParts<T>;

/// Vectors of a tile of so many real columns: together they have the 8 sums or more that hide the latency of the
/// multiply-add, and leave registers for rows and a factor.
constexpr int vectors_beside(int columns) { return columns <= 4 ? 4 : columns <= 8 ? 3 : 2; }

/// Calls write(with_old): what becomes of C is asked once for a tile. A beta of 1 changes no real number.
template <class T, class Write> [[gnu::always_inline]] inline void with_beta(const Result<T>& to, const Write& write) {
    if (to.before == Before::drop)
        return write([](Vec<8> value, auto, const double*) __attribute__((always_inline)) { return value; });
    if (kParts<T> == 2 && to.before == Before::keep)
        return write([](Vec<8> value, auto lanes, const double* old)
                         __attribute__((always_inline)) { return value + lanes.load(old); });
    const Factor<T, 8> beta(to.beta);
    write([&](Vec<8> value, auto lanes, const double* old)
              __attribute__((always_inline)) { return value + beta.times(lanes.load(old)); });
}

/// A tile of C at c, its last vector of rows short.
template <class T, int Vectors, int Columns, class LastLanes>
[[gnu::always_inline]] inline void store_direct(const GeneralProduct<T>& g, const Sums<Vectors, Columns, 8, 8>& sums,
                                                double* c, LastLanes last) {
    const Factor<T, 8> alpha(g.alpha);
    const double b_sign = g.b.conjugate ? -1.0 : 1.0;
    const i64 next = g.to.ldc * kParts<T>;
    with_beta(g.to, [&](auto with_old) __attribute__((always_inline)) {
        double* out = c;
        repeat<Columns / kParts<T>>([&](auto column) __attribute__((always_inline)) {
            repeat<Vectors>([&](auto v) __attribute__((always_inline)) {
                const Vec<8> value = alpha.times(tile_values<T>(sums, v, column, b_sign));
                if constexpr (v == Vectors - 1) last.store(out + v * 8, with_old(value, last, out + v * 8));
                else store<8>(out + v * 8, with_old(value, AllLanes{}, out + v * 8));
            });
            out += next;
        });
    });
}

/// The transpose of a tile, of which `rows` rows count, to C at c: conj(A) B is the conjugate of A conj(B).
template <class T, int Vectors, int Columns>
[[gnu::always_inline]] inline void store_transpose(const GeneralProduct<T>& g, const Sums<Vectors, Columns, 8, 8>& sums,
                                                   double* c, i64 rows) {
    constexpr int unit = 8 / kParts<T>;
    const Lanes lanes = Lanes::first(Columns);
    const Factor<T, 8> alpha(g.alpha);
    const double b_sign = g.b.conjugate != g.a.conjugate ? -1.0 : 1.0;
    const Vec<8> sign = alternate<8>(1.0, g.a.conjugate ? -1.0 : 1.0);
    const i64 next = g.to.ldc * kParts<T>;
    with_beta(g.to, [&](auto with_old) __attribute__((always_inline)) {
        double* out = c;
        i64 left = rows;
        repeat<Vectors>([&](auto v) __attribute__((always_inline)) {
            Vec<8> block[unit] = {};
            repeat<Columns / kParts<T>>([&](auto column) __attribute__((always_inline)) {
                block[column] = tile_values<T>(sums, v, column, b_sign);
                if constexpr (kParts<T> == 2) block[column] *= sign;
            });
            turn<T>(block);
            repeat<unit>([&](auto row) __attribute__((always_inline)) {
                if (row >= left) return;
                lanes.store(out, with_old(alpha.times(block[row]), lanes, out));
                out += next;
            });
            left -= unit;
        });
    });
}

/// `Vectors` of rows from row i on, of which the last is short where it is not AllLanes, against `Columns` real
/// columns.
template <class T, Gives G, int Vectors, int Columns, class LastLanes>
[[gnu::always_inline]] inline void direct_tile(const GeneralProduct<T>& g, i64 i, i64 j) {
    const LastLanes last = LastLanes::first((g.m - i) * kParts<T> - (Vectors - 1) * 8);
    BInPlace<T, Columns / kParts<T>> b(g.b.from(j, 0));
    Sums<Vectors, Columns, 8, 8> sums;
    const double* a = parts(g.a.data + i);
    const i64 step = g.a.along_p * kParts<T>, steps = g.k;
    const auto row = [&](int v) __attribute__((always_inline)) {
        return v == Vectors - 1 ? last.load(a + v * 8) : load<8>(a + v * 8);
    };
#pragma clang loop unroll(disable)
    for (i64 p = 0; p < steps; ++p, a += step, b.next()) sums.add(row, b);
    if constexpr (G == Gives::product) store_direct<T>(g, sums, parts(g.to.c + i + j * g.to.ldc), last);
    else store_transpose<T>(g, sums, parts(g.to.c + j + i * g.to.ldc), g.m - i);
}

/// The rows that are left, at most `Vectors` of them.
template <class T, Gives G, int Vectors, int Columns>
[[gnu::always_inline]] inline void direct_rest(const GeneralProduct<T>& g, i64 i, i64 j) {
    constexpr i64 height = 8 / kParts<T>;
    if (g.m - i > (Vectors - 1) * height) return direct_tile<T, G, Vectors, Columns, Lanes>(g, i, j);
    if constexpr (Vectors > 1) direct_rest<T, G, Vectors - 1, Columns>(g, i, j);
}

template <class T, Gives G, int Columns> void direct_column(const GeneralProduct<T>& g, i64 j) {
    constexpr int together = vectors_beside(Columns);
    constexpr i64 rows = together * 8 / kParts<T>;
    i64 i = 0;
    for (; i + rows <= g.m; i += rows) direct_tile<T, G, together, Columns, AllLanes>(g, i, j);
    if (i < g.m) direct_rest<T, G, together, Columns>(g, i, j);
}

/// direct_column for each number of columns, from 1 on.
template <class T, Gives G> struct DirectColumns {
    void (*of[direct_columns_most<T, G>])(const GeneralProduct<T>& g, i64 j);
};
template <class T, Gives G>
constexpr DirectColumns<T, G> direct_columns = []<int... I>(std::integer_sequence<int, I...>) {
    return DirectColumns<T, G>{{direct_column<T, G, (I + 1) * kParts<T>>...}};
}(std::make_integer_sequence<int, direct_columns_most<T, G>>{});

/// In as few tiles as will do, of like widths.
template <class T, Gives G = Gives::product>
[[gnu::always_inline]] inline void direct_rows(const GeneralProduct<T>& g) {
    constexpr i64 most = direct_columns_most<T, G>;
    if (g.n <= most) return direct_columns<T, G>.of[g.n - 1](g, 0);
    const i64 tiles = (g.n + most - 1) / most, width = g.n / tiles, wider = g.n % tiles;
    i64 j = 0;
    for (i64 t = 0; t < tiles; ++t) {
        const i64 columns = t < wider ? width + 1 : width;
        direct_columns<T, G>.of[columns - 1](g, j);
        j += columns;
    }
}

/// Both operands by rows: their places exchanged, and rows and columns of C.
template <class T> [[gnu::noinline]] void direct_transpose(const GeneralProduct<T>& g) {
    GeneralProduct<T> turned{g.b, g.a, g.n, g.m, g.k, g.alpha, g.to};
    direct_rows<T, Gives::transpose>(turned);
}

/// By blocks of rows: each(block).
template <class T, class Each>
[[gnu::always_inline]] inline void for_each_block(const GeneralProduct<T>& g, i64 rows, const Each& each) {
    for (i64 i = 0; i < g.m; i += rows) {
        GeneralProduct<T> block = g.below(i);
        block.m = least(rows, block.m);
        each(block);
    }
}

/// Each block of A is turned before it is used.
template <class T> [[gnu::noinline]] void direct_turned(const GeneralProduct<T>& g) {
    alignas(64) double turned[turned_doubles];
    for_each_block(g, turned_rows<T>(g.k), [&](GeneralProduct<T>& block) {
        block.a = turn_rows(block.a, block.m, g.k, turned);
        direct_rows(block);
    });
}

/// One that is small is not even divided into blocks.
template <class T> [[gnu::noinline]] void direct_product(const GeneralProduct<T>& g) {
    if (g.a.along_r != 1 || g.a.conjugate)
        return g.b.along_r == 1 && g.n * g.k <= direct_most<T> ? direct_transpose(g) : direct_turned(g);
    if (g.m * g.k <= direct_block<T>) return direct_rows(g);
    constexpr i64 whole = 16 / kParts<T>;
    const i64 fit = down_to(direct_block<T> / g.k, whole), rows = fit > 0 ? fit : whole;
    for_each_block(g, rows, [](GeneralProduct<T>& block) { direct_rows(block); });
}

} // namespace nxl::NXL_TARGET
