// Solutions with the factors of a band. One right-hand side goes through L by some columns at a time, in narrow bands
// by one; several go through a narrow band side by side. Through a wide one they go by blocks: columns of L are copied,
// and the interchanges after each of them are made in the copy, so that it is the panel of an ordinary factorisation.
// Du Croz, Mayes and Radicati, LAPACK Working Note 21 (1990).
#include "lapack/kernel/source/band/band_lu.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/band/band_triangle.hpp"
#include "lapack/kernel/source/band/narrow_columns.hpp"
#include "lapack/kernel/source/band/strip.hpp"
#include "lapack/kernel/source/lu/laswp.hpp"
#include "service/scratch.hpp"
#include <utility>

namespace nxl {

template <class T> void BandLu<T>::lower_columns(char trans, T* x) const {
    const i64 n = order();
    for (i64 step = 0; step < n; ++step) {
        const i64 j = trans == 'N' ? step : n - 1 - step, pivot = ipiv[j] - 1, count = lower.count(j);
        const T* const column = lower.start(j);
        if (trans != 'N') x[j] -= column_dot(trans == 'C', count, column, x + j + 1);
        if (pivot != j) std::swap(x[j], x[pivot]);
        if (trans == 'N') subtract_multiple(count, x[j], column, x + j + 1);
    }
}

/// The product with the strip's rectangle passes over the rows in it that interchanges move: these are `kept`, and go
/// through the columns one by one.
template <class T> void BandLu<T>::lower_strip(char trans, const Slice& strip_columns, T* x) const {
    const Strip<T> strip(lower, strip_columns);
    i64 rows[Strip<T>::most], count = 0;
    T kept[Strip<T>::most];
    const auto place = [&](i64 row) {
        const i64 k = std::find(rows, rows + count, row) - rows;
        return k < count ? kept + k : x + row;
    };
    for (i64 c = strip_columns.start; c < strip_columns.end(); ++c)
        if (const i64 row = ipiv[c] - 1; row >= strip.rectangle.start && row < strip.rectangle.end())
            if (place(row) == x + row) {
                rows[count] = row;
                kept[count++] = x[row];
            }
    if (trans != 'N') {
        for (i64 k = 0; k < count; ++k) x[rows[k]] = T{};
        strip.subtract_rectangle(trans, x);
    }
    for (i64 step = 0; step < strip_columns.count; ++step) {
        const i64 c = trans == 'N' ? strip_columns.start + step : strip_columns.end() - 1 - step;
        if (trans != 'N') {
            x[c] -= strip.edge_dot(trans == 'C', c, x);
            for (i64 k = 0; k < count; ++k) x[c] -= conj_if(trans == 'C', lower.a(rows[k], c)) * kept[k];
        }
        if (const i64 row = ipiv[c] - 1; row != c) std::swap(x[c], *place(row));
        if (trans == 'N') {
            strip.subtract_edges(c, x);
            for (i64 k = 0; k < count; ++k) kept[k] -= x[c] * lower.a(rows[k], c);
        }
    }
    if (trans == 'N') strip.subtract_rectangle('N', x);
    for (i64 k = 0; k < count; ++k) x[rows[k]] = kept[k];
}

template <class T> void BandLu<T>::lower_block(char trans, i64 j, i64 width, const Matrix<T>& b, T* space) const {
    const i64 rows = std::min(width + lower.below, order() - j);
    const Matrix<T> panel{space, rows, width, rows};
    pack(lower, j, j, panel);
    for (i64 c = 1; c < width; ++c)
        if (const i64 pivot = ipiv[j + c] - 1 - j; pivot != c)
            swap(c, panel.at(c, 0), panel.ld, panel.at(pivot, 0), panel.ld);
    const Matrix<T> here = b.rows_from(j, width), there = b.rows_from(j + width, rows - width);
    const Matrix<T> below = panel.rows_from(width, rows - width);
    if (trans == 'N') {
        laswp(b.columns, b.data, b.ld, j + 1, j + width, ipiv, 1);
        trsm('L', 'L', 'N', 'U', 1.0, panel, here);
        if (below.rows > 0) gemm('N', 'N', -1.0, below, here, 1.0, there);
    } else {
        if (below.rows > 0) gemm(trans, 'N', -1.0, below, there, 1.0, here);
        trsm('L', 'L', trans, 'U', 1.0, panel, here);
        laswp(b.columns, b.data, b.ld, j + 1, j + width, ipiv, -1);
    }
}

template <class T> void BandLu<T>::lower_blocks(char trans, const Matrix<T>& b, T* space) const {
    const i64 n = order(), blocks = (n + BandSizes::panel - 1) / BandSizes::panel;
    for (i64 step = 0; step < blocks; ++step) {
        const i64 j = (trans == 'N' ? step : blocks - 1 - step) * BandSizes::panel;
        lower_block(trans, j, std::min(BandSizes::panel, n - j), b, space);
    }
}

template <class T> void BandLu<T>::solve_lower(char trans, const Matrix<T>& b) const {
    if (lower.below == 0) return;
    if (b.columns == 1 && lower.below >= Strip<T>::least)
        return for_strips<T>(order(), trans == 'N', [&](const Slice& part) { lower_strip(trans, part, b.data); });
    if (b.columns > 1) {
        if (lower.below <= side_by_side) return solve_narrow_triangle('L', trans, 'U', lower, ipiv, b);
        if (const Scratch<T> space((BandSizes::panel + lower.below) * BandSizes::panel); space.data())
            return lower_blocks(trans, b, space.data());
    }
    for (i64 k = 0; k < b.columns; ++k) lower_columns(trans, b.at(0, k));
}

template <class T> void BandLu<T>::solve(char trans, const Matrix<T>& b) const {
    if (trans == 'N') solve_lower(trans, b);
    solve_triangle('U', trans, 'N', upper, b);
    if (trans != 'N') solve_lower(trans, b);
}

template struct BandLu<double>;
template struct BandLu<zcomplex>;

} // namespace nxl
