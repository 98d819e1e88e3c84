// LU factorisation on one thread: right-looking over two halves, each of them in the same way, down to a few columns.
// Toledo, SIAM J. Matrix Anal. Appl. 18 (1997); Gustavson, IBM J. Res. Dev. 41 (1997).
#include "lapack/kernel/source/lu/xgetrf.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/lu/lu.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/kernel_slot.hpp"
#include <algorithm>

namespace nxl {
namespace {

template <class T> void leaf(const LuBlock<T>& b, i64* info) {
    slot_of<T, &KernelTable::dgetrf_leaf, &KernelTable::zgetrf_leaf>()(b.m, b.n, b.a, b.lda, b.ipiv, *info);
}

template <class T> void update(const LuBlock<T>& panel, i64 count, T* b) {
    slot_of<T, &KernelTable::dgetrf_update, &KernelTable::zgetrf_update>()(panel.m, panel.n, count, panel.a, b,
                                                                           panel.lda);
}

/// What the square part of a block with m < n does to the columns past it.
template <class T> void finish_wide(const LuBlock<T>& lu) {
    if (lu.m < lu.n) apply_panel(lu, 0, lu.m, lu.m, lu.n - lu.m);
}

} // namespace

template <class T> void interchange_rows(const LuBlock<T>& lu, i64 first, i64 last, i64 column, i64 count) {
    laswp(count, lu.at(0, column), lu.lda, first + 1, last, lu.ipiv, 1);
}

template <class T> void apply_panel(const LuBlock<T>& lu, i64 first, i64 width, i64 column, i64 count) {
    if (count < 1) return;
    const i64 below = first + width;
    interchange_rows(lu, first, below, column, count);
    if (std::max(lu.m, lu.n) <= lu_rounded_order<T>) return update(lu.from(first, width), count, lu.at(first, column));
    trsm('L', 'L', 'N', 'U', width, count, 1.0, lu.at(first, first), lu.lda, lu.at(first, column), lu.lda);
    if (below < lu.m)
        gemm('N', 'N', lu.m - below, count, width, -1.0, lu.at(below, first), lu.lda, lu.at(first, column), lu.lda, 1.0,
             lu.at(below, column), lu.lda);
}

template <class T> void adopt_panel(const LuBlock<T>& lu, i64 first, i64 width, i64 panel_info, i64* info) {
    if (*info == 0 && panel_info > 0) *info = first + panel_info;
    const i64 steps = lu.from(first, width).steps();
    for (i64 i = first; i < first + steps; ++i) lu.ipiv[i] += first;
}

template <class T> void factor_unblocked(const LuBlock<T>& lu, i64* info) {
    leaf(lu.from(0, lu.steps()), info);
    finish_wide(lu);
}

template <class T> bool factor_serially(const LuBlock<T>& lu, i64* info, i64 thread, i64 offset) {
    *info = 0;
    const i64 nb = tuning(block_size, getrf_name<T>, "S", lu.m, lu.n, -1, -1), steps = lu.steps();
    if (nb <= 1 || nb >= steps) {
        factor_unblocked(lu, info);
        return stop_requested(getrf_name<T>, thread, offset + steps);
    }
    for (i64 j = 0; j < steps; j += nb) {
        const i64 width = std::min(nb, steps - j);
        i64 panel_info = 0;
        if (factor_serially(lu.from(j, width), &panel_info, thread, offset + j)) return true;
        adopt_panel(lu, j, width, panel_info, info);
        apply_panel(lu, j, width, j + width, lu.n - j - width);
    }
    for (i64 j = 0; j + nb < steps; j += nb) interchange_rows(lu, j + nb, steps, j, nb);
    return false;
}

template void interchange_rows(const LuBlock<double>&, i64, i64, i64, i64);
template void interchange_rows(const LuBlock<zcomplex>&, i64, i64, i64, i64);
template void apply_panel(const LuBlock<double>&, i64, i64, i64, i64);
template void apply_panel(const LuBlock<zcomplex>&, i64, i64, i64, i64);
template void adopt_panel(const LuBlock<double>&, i64, i64, i64, i64*);
template void adopt_panel(const LuBlock<zcomplex>&, i64, i64, i64, i64*);
template void factor_unblocked(const LuBlock<double>&, i64*);
template void factor_unblocked(const LuBlock<zcomplex>&, i64*);
template bool factor_serially(const LuBlock<double>&, i64*, i64, i64);
template bool factor_serially(const LuBlock<zcomplex>&, i64*, i64, i64);

} // namespace nxl
