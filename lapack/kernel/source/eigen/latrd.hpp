// Panels of the reduction to tridiagonal form.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// Columns of a panel.
inline constexpr i64 widest_tridiagonal_panel = 64;

/// Reduces the first (uplo L) or last (U) w.columns rows and columns of A, of which one triangle is stored, to
/// tridiagonal form; the rest is left as it was, and to become A - V W^H - W V^H. The panel's columns hold the vectors
/// V of the reflectors, with their ones in the place of the off-diagonal e; tau are their scalars. e and tau are those
/// of all of A. w: as many rows as A, W on return. y: A's rows, as often as threads may be used.
template <class T>
void latrd(char uplo, const Matrix<T>& a, double* e, T* tau, const Matrix<T>& w, i64 threads, T* y);

/// Rows of the strips of columns by which threads share a product with a triangle: nearly equal areas, strip `index` of
/// `strips`.
struct TriangleStrip {
    i64 start, end;
};
TriangleStrip triangle_strip(char uplo, i64 n, i64 index, i64 strips);

} // namespace nxl
