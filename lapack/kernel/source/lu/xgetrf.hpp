// LU factorisation on one thread, and the steps that all ways of ordering the work share: what a factored panel does to
// other columns, and how its pivots and its zero pivot become those of the matrix.
//
// `ipiv` lists the min(m, n) pivots of the matrix that it comes with, which count from its first row, from 1. Positions
// in the matrix are from 0.
#pragma once
#include "service/arguments.hpp"
#include "service/matrix.hpp"

namespace nxl {

/// The six letters by which errors and progress know the factorisation.
template <class T> inline constexpr RoutineLetters getrf_name = routine<T>("GETRF");

/// Makes the interchanges `first` to `last` - 1 in the rows of all columns.
template <class T> void interchange_rows(const Matrix<T>& columns, const i64* ipiv, i64 first, i64 last);

/// Applies the factored panel of `width` columns from `first` on to `count` columns from `column` on, which had all
/// panels before it: interchanges, U := L^-1 A in the panel's rows, A := A - L U below.
template <class T>
void apply_panel(const Matrix<T>& a, const i64* ipiv, i64 first, i64 width, i64 column, i64 count);

/// The block of `width` columns from diagonal element `first` on is factored: counts its pivots from the first row of
/// the matrix, and takes over its first zero pivot, `panel_info`, unless there is one before it.
template <class T>
void adopt_panel(const Matrix<T>& a, i64* ipiv, i64 first, i64 width, i64 panel_info, i64* info);

/// Without blocks; columns past the square part get one solve.
template <class T> void factor_unblocked(const Matrix<T>& a, i64* ipiv, i64* info);

/// P A = L U on this thread, recursively. info: the first zero pivot, from 1, or 0. Reports progress for `thread`, the
/// columns before the matrix being `offset`; true when the host asks to stop, with the factorisation incomplete.
template <class T> bool factor_serially(const Matrix<T>& a, i64* ipiv, i64* info, i64 thread, i64 offset);

} // namespace nxl
