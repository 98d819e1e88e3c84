// The first of two stages to tridiagonal form: a full matrix becomes a band.
#pragma once
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"

namespace nxl {

/// A = Q B Q^H for a symmetric or Hermitian matrix of which triangle `uplo` is stored, and a band B of b >= 1 diagonals
/// beside the main one. Elements (i, j), 0 <= i - j <= b, of B come in the view `band`, whose others are left alone.
/// The triangle of A loses its band and keeps Q, see band_reflectors; tau: their n - b scalars. False when there was no
/// memory, with nothing changed. Bischof, Lang and Sun, ACM TOMS 26 (2000).
template <class T> bool full_to_band(char uplo, const Matrix<T>& a, i64 b, T* tau, const Matrix<T>& band);

/// Q, which leaves the first b elements alone: these vectors, of n - b > 0 elements each, are in its other rows.
template <class T> Reflectors<T> band_reflectors(char uplo, const Matrix<T>& a, i64 b) {
    const i64 k = a.rows - b;
    if (uplo == 'L') return {a.block(b, 0, k, k), Order::forward, Storage::columns};
    return {a.block(0, b, k, k), Order::forward, Storage::rows};
}

} // namespace nxl
