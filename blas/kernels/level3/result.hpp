// Where the sums of a tile go: the part of C that may be written, and what happens to the values there.
#pragma once
#include "blas/kernels/level3/tile.hpp"

namespace nxl::NXL_TARGET {

/// What becomes of C before sums are added: it stays, is not even read, or is multiplied by beta.
enum class Before { keep, drop, scale };

enum class Triangle { none, lower, upper };

// How tiles meet the triangle of a rank update, here a lower one:
//
//     d .          inside   x   stored as whole vectors
//     x d .        crossing d   all of it is computed, and stored element by element where has() says so
//     x x d .      outside  .   not even computed
//
// So a rank update costs half of a product, but for the tiles on the diagonal.
template <class T> struct Result {
    T* c;
    i64 ldc;
    T beta;
    Before before;
    Triangle only = Triangle::none; ///< rank updates write one triangle, with the diagonal
    bool hermitian = false;         ///< beta is real, and imaginary parts on the diagonal are taken as 0
    double b_sign = 1.0;            ///< -1 when B is read in place and conjugated: its imaginary sums count negative

    [[gnu::always_inline]] bool outside(i64 i, i64 rows, i64 j, i64 columns) const {
        if (only == Triangle::none) return false;
        return only == Triangle::lower ? i + rows <= j : j + columns <= i;
    }
    [[gnu::always_inline]] bool inside(i64 i, i64 rows, i64 j, i64 columns) const {
        if (only == Triangle::none) return true;
        return only == Triangle::lower ? i >= j + columns : j >= i + rows;
    }
    [[gnu::always_inline]] bool has(i64 i, i64 j) const {
        return only == Triangle::none || (only == Triangle::lower ? i >= j : i <= j);
    }
};

template <class T> [[gnu::always_inline]] inline Before before_of(const T& beta) {
    return is_zero(beta) ? Before::drop : is_one(beta) ? Before::keep : Before::scale;
}

/// Vector v of column `column` of a tile, as numbers of type T.
template <class T, class Tile>
[[gnu::always_inline]] inline Vec<Tile::width> tile_values(const Tile& sums, int v, int column, double b_sign) {
    if constexpr (kParts<T> == 1) {
        return sums.at(v, column);
    } else {
        const auto turn = alternate<Tile::width>(-b_sign, b_sign);
        return sums.at(v, 2 * column) + turn * swap_parts<Tile::width>(sums.at(v, 2 * column + 1));
    }
}

/// C is read and written once per stretch of k: beta is applied with the first one, and the others find Before::keep.
/// A tile that lies inside C altogether.
template <class T, class Tile>
[[gnu::always_inline]] inline void store_tile(const Tile& sums, const Result<T>& to, T* c) {
    constexpr int W = Tile::width;
    const auto each = [&](auto&& write) __attribute__((always_inline)) {
        repeat<Tile::columns / kParts<T>>([&](auto column) __attribute__((always_inline)) {
            double* const out = parts(c + column * to.ldc);
            repeat<Tile::vectors>([&](auto v) __attribute__((always_inline)) {
                write(out + v * W, tile_values<T>(sums, v, column, to.b_sign));
            });
        });
    };
    if (to.before == Before::keep) {
        each([](double* out, Vec<W> add) { store<W>(out, load<W>(out) + add); });
    } else if (to.before == Before::drop) {
        each([](double* out, Vec<W> value) { store<W>(out, value); });
    } else if (to.hermitian) { // part by part: an infinite one does not touch the other
        const Factor<double, W> beta(real_part(to.beta));
        each([&](double* out, Vec<W> add) { store<W>(out, beta.times(load<W>(out)) + add); });
    } else {
        const Factor<T, W> beta(to.beta);
        each([&](double* out, Vec<W> add) { store<W>(out, beta.times(load<W>(out)) + add); });
    }
}

/// One number of C, given as its parts.
template <class T> void store_element(double* out, const double* value, const Result<T>& to) {
    const double* const beta = parts(&to.beta);
    double old[2] = {0.0, 0.0};
    if (to.before != Before::drop) __builtin_memcpy(old, out, sizeof(T));
    if (to.before == Before::scale) {
        const double real = old[0], imaginary = old[1];
        old[0] = beta[0] * real;
        if constexpr (kParts<T> == 2) {
            old[1] = beta[0] * imaginary;
            if (!to.hermitian) {
                old[0] -= beta[1] * imaginary;
                old[1] += beta[1] * real;
            }
        }
    }
    for (int part = 0; part < kParts<T>; ++part) out[part] = old[part] + value[part];
}

/// A tile at row i and column j of C that reaches over its edge, or over the diagonal: `columns` columns of values,
/// `height` doubles apart, of which the first `rows` rows count.
template <class T>
[[gnu::noinline]] void store_edge(const double* values, i64 height, const Result<T>& to, i64 i, i64 rows, i64 j,
                                  i64 columns) {
    for (i64 column = j; column < j + columns; ++column, values += height)
        for (i64 row = i; row < i + rows; ++row) {
            if (!to.has(row, column)) continue;
            double* out = parts(to.c + row + column * to.ldc);
            store_element(out, values + (row - i) * kParts<T>, to);
            if (to.hermitian && row == column) out[1] = 0.0;
        }
}

} // namespace nxl::NXL_TARGET
