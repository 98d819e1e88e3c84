// Products of one matrix, or of what is left of it, with one vector after the other: all of it moves through the
// processor for each. Where every other product goes through the columns from the last on, what the one before has left
// in the cache comes first.
#pragma once
#include "service/kernel_slot.hpp"
#include "service/matrix.hpp"
#include "service/parallel.hpp"
#include "service/slice.hpp"
#include "service/worthwhile_threads.hpp"
#include <algorithm>

namespace nxl {

/// y := alpha op(A) x on this thread, by strips of columns of some 512 KiB, a fraction of the second cache.
template <class T>
void product_by_strips(char trans, const T& alpha, const Matrix<T>& a, const T* x, T* y, bool ascending) {
    constexpr i64 unit = 8, strip = (i64{1} << 19) / sizeof(T);
    const bool by_rows = trans == 'N';
    if (by_rows) std::fill_n(y, a.rows, T{});
    const i64 width = std::max(round_down(strip / std::max(a.rows, i64{1}), unit), unit);
    const i64 strips = (a.columns + width - 1) / width;
    for (i64 step = 0; step < strips; ++step) {
        const i64 j = (ascending ? step : strips - 1 - step) * width, count = std::min(width, a.columns - j);
        slot_of<T, &KernelTable::dgemv, &KernelTable::zgemv>()(trans, a.rows, count, alpha, a.at(0, j), a.ld,
                                                               by_rows ? x + j : x, 1, T(by_rows ? 1.0 : 0.0),
                                                               by_rows ? y : y + j, 1);
    }
}

/// The same on as many threads as are worth while: each has rows of its own, or columns of a transposed matrix.
template <class T>
void product_to_and_fro(char trans, const T& alpha, const Matrix<T>& a, const T* x, T* y, bool ascending) {
    constexpr i64 unit = 8;
    const bool by_rows = trans == 'N';
    const i64 length = by_rows ? a.rows : a.columns;
    const double least = by_rows ? least_work<T>.gemv_rows : least_work<T>.gemv_columns;
    const i64 threads = worthwhile_threads(domain_blas, product_of(a.rows, a.columns), least);
    const int slices = static_cast<int>(std::min(threads, length / unit));
    if (slices < 2 || region_would_be_serial()) return product_by_strips(trans, alpha, a, x, y, ascending);
    parallel_blocks(slices, slices, [&](int part) {
        const Slice mine = balanced_slice(length, unit, part, slices);
        const Matrix<T> block = by_rows ? a.rows_from(mine.start, mine.count) : a.columns_from(mine.start, mine.count);
        product_by_strips(trans, alpha, block, x, y + mine.start, ascending);
    });
}

} // namespace nxl
