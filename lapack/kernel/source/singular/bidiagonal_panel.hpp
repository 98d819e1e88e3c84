// Panels of the reduction to bidiagonal form.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// Columns, and rows, of the widest panel.
inline constexpr i64 widest_bidiagonal_panel = 32;

/// What a panel needs beside the matrix, and the results of it: d, e, tauq and taup from its first column on.
template <class T> struct PanelResults {
    double *d, *e;
    T *tauq, *taup;
};

/// Reduces the first `width` columns and rows of A, which has no fewer rows than columns, to upper bidiagonal form. The
/// rest of A is left as it was, and to become A - left right^H. d and e stand in the places of the bidiagonal, the
/// vectors of the reflectors beside it: columns below the diagonal, conjugated rows beyond the superdiagonal. left,
/// right: as many rows as A has rows, and columns, and 2 width columns; vector and partner of each reflector in turn.
/// parts: A's rows, as often as threads may be used.
template <class T>
void reduce_panel(const Matrix<T>& a, i64 width, const PanelResults<T>& results, const Matrix<T>& left,
                  const Matrix<T>& right, i64 threads, T* parts);

} // namespace nxl
