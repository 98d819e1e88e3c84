// Solutions with one triangle of a band, and the panels by which blocked band routines work.
#pragma once
#include "lapack/kernel/source/common/columns.hpp"

namespace nxl {

/// Up to so many diagonals beside the main one, columns are worked on one by one, without kernels and blocks: their
/// calls would cost more than the arithmetic.
inline constexpr i64 narrow_band = 12;
/// Columns of a block of the wider bands: so many that products of level 3 pay, and the zeros that blocks hold outside
/// of the band do not.
inline constexpr i64 band_panel = 32;

/// `to` := the part of A from element (row, column) on, with zeros where nothing is stored.
template <class T> void pack(const Columns<const T>& a, i64 row, i64 column, const Matrix<T>& to);
/// The other way about, for what is stored.
template <class T> void unpack(const Matrix<T>& from, const Columns<T>& a, i64 row, i64 column);

/// x := op(A)^-1 x
template <class T>
void solve_triangle(char uplo, char trans, char diag, const Columns<const T>& triangle, T* x);
/// B := op(A)^-1 B
template <class T>
void solve_triangle(char uplo, char trans, char diag, const Columns<const T>& triangle, const Matrix<T>& b);

} // namespace nxl
