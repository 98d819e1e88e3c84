// LU factorisation on one thread, and the steps that all ways of ordering the work share: what a factored panel does to
// other columns, and how its pivots and its zero pivot become those of the matrix.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// m by n elements, and the list of the min(m, n) pivots, which count from the block's first row. Positions are from 0.
template <class T> struct LuBlock {
    i64 m, n;
    T* a;
    i64 lda;
    i64* ipiv;

    i64 steps() const { return m < n ? m : n; }
    T* at(i64 row, i64 column) const { return a + row + column * lda; }
    /// The next `columns` columns from the diagonal element `first` down.
    LuBlock from(i64 first, i64 columns) const { return {m - first, columns, at(first, first), lda, ipiv + first}; }
};

/// The six letters by which tuning data, errors and progress know the factorisation.
template <class T> inline constexpr const char* getrf_name = "DGETRF";
template <> inline constexpr const char* getrf_name<zcomplex> = "ZGETRF";

/// Makes the interchanges `first` to `last` - 1 of the block in `count` columns from `column` on.
template <class T> void interchange_rows(const LuBlock<T>& lu, i64 first, i64 last, i64 column, i64 count);

/// Applies the factored panel of `width` columns from `first` on to `count` columns from `column` on, which had all
/// panels before it: interchanges, U := L^-1 A in the panel's rows, A := A - L U below.
template <class T> void apply_panel(const LuBlock<T>& lu, i64 first, i64 width, i64 column, i64 count);

/// The sub-block from diagonal element `first` on is factored: counts its pivots from the block's first row, and takes
/// over its first zero pivot, `panel_info`, unless there is one before it.
template <class T> void adopt_panel(const LuBlock<T>& lu, i64 first, i64 width, i64 panel_info, i64* info);

/// Without blocks; columns past the square part get one solve.
template <class T> void factor_unblocked(const LuBlock<T>& lu, i64* info);

/// P A = L U on this thread, recursively. info: the first zero pivot, from 1, or 0. Reports progress for `thread`, the
/// columns before the block being `offset`; true when the host asks to stop, with the factorisation incomplete.
template <class T> bool factor_serially(const LuBlock<T>& lu, i64* info, i64 thread, i64 offset);

} // namespace nxl
