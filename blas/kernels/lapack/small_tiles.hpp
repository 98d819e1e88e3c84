// Products of pieces of a small matrix that stays in the first cache, read in place: eight doubles of rows, a few
// columns, any number of steps. For the unblocked kernels that work a tile at a time.
#pragma once
#include "blas/kernels/registers.hpp"

namespace nxl::NXL_TARGET {
namespace { // each source has its own: shared functions would be weak symbols

/// Rows and, at most, columns of a tile.
template <class T> constexpr i64 kTile = 8 / kParts<T>;

/// Columns side by side, kTile of them with kTile rows each; starts as zeros.
template <class T> struct Tile {
    T element[kTile<T> * kTile<T>] = {};

    [[gnu::always_inline]] T& at(i64 row, i64 column) { return element[row + column * kTile<T>]; }
};

/// Columns of kTile rows in memory, `stride` apart: the first factor of a product.
template <class T> struct TileRows {
    const T* data;
    i64 stride;
};

/// The second factor: element (p, c) stands at p * step + c * column.
template <class T> struct TileFactors {
    const T* data;
    i64 step, column;
};

/// C columns of to := to + rows factors. At 256 bits two vectors of rows, four columns: 8 sums of real numbers.
template <bool Conjugate, int C, class T>
void add_tile_columns(i64 steps, const TileRows<T>& rows, const TileFactors<T>& factors, T* to) {
    constexpr int vectors = 8 / kWidth;
    const double* row = parts(rows.data);
    const T* factor = factors.data;
    Combination<T, kWidth> sum[vectors][C];
    for (int v = 0; v < vectors; ++v)
        for (int c = 0; c < C; ++c) sum[v][c].start(parts(to) + 8 * c + v * kWidth);
    for (i64 p = 0; p < steps; ++p, row += rows.stride * kParts<T>, factor += factors.step) {
        Coefficient<T, kWidth> coefficient[C];
        for (int c = 0; c < C; ++c) coefficient[c].set(conj_if<Conjugate>(factor[c * factors.column]));
        for (int v = 0; v < vectors; ++v) {
            const Vec<kWidth> values = load<kWidth>(row + v * kWidth);
            for (int c = 0; c < C; ++c) sum[v][c].add(coefficient[c], values);
        }
    }
    for (int v = 0; v < vectors; ++v)
        for (int c = 0; c < C; ++c) store<kWidth>(parts(to) + 8 * c + v * kWidth, sum[v][c].total());
}

/// to := to + rows factors, or the conjugated factors, over `steps` columns of the rows; `columns` columns of `to`.
template <bool Conjugate = false, class T>
void add_tile(i64 steps, i64 columns, const TileRows<T>& rows, TileFactors<T> factors, Tile<T>& to) {
    constexpr int at_once = kWidth / kParts<T>; // their sums fill half of the registers
    i64 c = 0;
    for (; c + at_once <= columns; c += at_once, factors.data += at_once * factors.column)
        add_tile_columns<Conjugate, at_once>(steps, rows, factors, &to.at(0, c));
    for (; c < columns; ++c, factors.data += factors.column)
        add_tile_columns<Conjugate, 1>(steps, rows, factors, &to.at(0, c));
}

} // namespace
} // namespace nxl::NXL_TARGET
