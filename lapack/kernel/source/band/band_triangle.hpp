// Solutions with one triangle of a band, and the panels by which blocked band routines work.
#pragma once
#include "lapack/kernel/source/common/columns.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/kernel_table.hpp"

namespace nxl {

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

/// Diagonals beside the main one up to which several right-hand sides go side by side through the columns of a
/// triangle: there is too little in a block of it for products of level 3.
inline constexpr i64 side_by_side = 12;
static_assert(side_by_side <= tbsm_band);

/// Of such a triangle; `ipiv`, or null: the interchanges of L (TbsmKernel).
template <class T>
void solve_narrow_triangle(char uplo, char trans, char diag, const Columns<const T>& triangle, const i64* ipiv,
                           const Matrix<T>& b);

} // namespace nxl
