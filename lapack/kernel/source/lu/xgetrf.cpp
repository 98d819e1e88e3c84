// LU factorisation on one thread: right-looking over two halves, each of them in the same way, down to a few columns.
// Toledo, SIAM J. Matrix Anal. Appl. 18 (1997); Gustavson, IBM J. Res. Dev. 41 (1997).
#include "lapack/kernel/source/lu/xgetrf.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/lu/laswp.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/kernel_slot.hpp"
#include <algorithm>

namespace nxl {
namespace {

template <class T> void leaf(const Matrix<T>& a, i64* ipiv, i64* info) {
    slot_of<T, &KernelTable::dgetrf_leaf, &KernelTable::zgetrf_leaf>()(a.rows, a.columns, a.data, a.ld, ipiv, *info);
}

/// What a panel does to the columns beside it, of a matrix so small that every product is rounded for itself.
template <class T> void update_rounded(const Matrix<T>& panel, const Matrix<T>& beside) {
    slot_of<T, &KernelTable::dgetrf_update, &KernelTable::zgetrf_update>()(panel.rows, panel.columns, beside.columns,
                                                                           panel.data, beside.data, panel.ld);
}

} // namespace

template <class T> void interchange_rows(const Matrix<T>& columns, const i64* ipiv, i64 first, i64 last) {
    laswp(columns.columns, columns.data, columns.ld, first + 1, last, ipiv, 1);
}

template <class T>
void apply_panel(const Matrix<T>& a, const i64* ipiv, i64 first, i64 width, i64 column, i64 count) {
    if (count < 1) return;
    const i64 below = first + width, rest = a.rows - below;
    interchange_rows(a.columns_from(column, count), ipiv, first, below);
    const Matrix<T> panel = a.block(first, first, a.rows - first, width);
    if (std::max(a.rows, a.columns) <= lu_rounded_order<T>)
        return update_rounded(panel, a.block(first, column, panel.rows, count));
    const Matrix<T> u = a.block(first, column, width, count);
    trsm('L', 'L', 'N', 'U', 1.0, panel, u);
    if (rest > 0) gemm('N', 'N', -1.0, panel.rows_from(width, rest), u, 1.0, a.block(below, column, rest, count));
}

template <class T>
void adopt_panel(const Matrix<T>& a, i64* ipiv, i64 first, i64 width, i64 panel_info, i64* info) {
    if (*info == 0 && panel_info > 0) *info = first + panel_info;
    const i64 end = std::min(first + width, a.rows);
    for (i64 i = first; i < end; ++i) ipiv[i] += first;
}

template <class T> void factor_unblocked(const Matrix<T>& a, i64* ipiv, i64* info) {
    const i64 steps = a.steps();
    leaf(a.columns_from(0, steps), ipiv, info);
    apply_panel(a, ipiv, 0, steps, steps, a.columns - steps);
}

template <class T> bool factor_serially(const Matrix<T>& a, i64* ipiv, i64* info, i64 thread, i64 offset) {
    *info = 0;
    const i64 nb = lu_sizes<T>.recursion_block(a.columns), steps = a.steps();
    if (nb <= 1 || nb >= steps) {
        factor_unblocked(a, ipiv, info);
        return stop_requested(getrf_name<T>, thread, offset + steps);
    }
    for (i64 j = 0; j < steps; j += nb) {
        const i64 width = std::min(nb, steps - j), next = j + width;
        i64 panel_info = 0;
        if (factor_serially(a.block(j, j, a.rows - j, width), ipiv + j, &panel_info, thread, offset + j)) return true;
        adopt_panel(a, ipiv, j, width, panel_info, info);
        apply_panel(a, ipiv, j, width, next, a.columns - next);
    }
    for (i64 j = 0; j + nb < steps; j += nb) interchange_rows(a.columns_from(j, nb), ipiv, j + nb, steps);
    return false;
}

#define NXL_INSTANTIATE(T)                                                                                             \
    template void interchange_rows(const Matrix<T>&, const i64*, i64, i64);                                            \
    template void apply_panel(const Matrix<T>&, const i64*, i64, i64, i64, i64);                                       \
    template void adopt_panel(const Matrix<T>&, i64*, i64, i64, i64, i64*);                                            \
    template void factor_unblocked(const Matrix<T>&, i64*, i64*);                                                      \
    template bool factor_serially(const Matrix<T>&, i64*, i64*, i64, i64)
NXL_INSTANTIATE(double);
NXL_INSTANTIATE(zcomplex);
#undef NXL_INSTANTIATE

} // namespace nxl
