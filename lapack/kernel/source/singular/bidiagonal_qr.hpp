// QR iteration on bidiagonal matrices.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// Columns that are turned along with B = Q S P^T: each of its matrices M becomes M P (right) or M Q (left). Those
/// without rows are left out.
template <class T> struct TurnedColumns {
    Matrix<T> right, left, other_left;

    bool none() const { return right.rows == 0 && left.rows == 0 && other_left.rows == 0; }
};

/// d: the diagonal of B, n by n, upper (uplo U) or lower bidiagonal, becomes the singular values, descending; e, its
/// other diagonal, is destroyed. Values alone come by dqds. Returns 0; how many elements of e have not converged, with
/// B = Q (d, e upper) P^T; or -1 when there was no memory, with nothing changed.
template <class T> i64 bidiagonal_qr(char uplo, i64 n, double* d, double* e, const TurnedColumns<T>& turned);

/// The same of values alone.
i64 bidiagonal_values(char uplo, i64 n, double* d, double* e);

} // namespace nxl
