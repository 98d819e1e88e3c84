// A panel of the diagonal pivoting factorisation, and what it does to the rest of the matrix.
#pragma once
#include "lapack/kernel/source/indefinite/symmetry.hpp"
#include "service/matrix.hpp"

namespace nxl {

/// Columns of a panel that are finished, and the first pivot that is zero, from 1, or 0.
struct PanelResult {
    i64 columns, zero_pivot;
};

/// Eliminates w.columns columns, or one less, of the symmetric a, from the first on for uplo L, from the last for U,
/// and updates the rest of the triangle. With as many columns as a has, all of them. `ipiv`: of a's columns, positions
/// counting from `offset`. `w`: as many rows as a.
template <class T, Symmetry kind>
PanelResult factor_panel(char uplo, const Matrix<T>& a, const Matrix<T>& w, i64* ipiv, i64 offset);

} // namespace nxl
