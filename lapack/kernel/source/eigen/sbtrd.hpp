// Band matrices brought to tridiagonal form.
#pragma once
#include "service/matrix.hpp"
#include "service/scalars.hpp"
#include <algorithm>

namespace nxl {

/// A symmetric or Hermitian band as the caller stores it.
template <class T> struct HermitianBand {
    char uplo;
    i64 n, kd;
    const T* ab;
    i64 ldab;

    /// Element (i, j), i >= j, of the lower triangle.
    T lower(i64 i, i64 j) const {
        if (uplo == 'L') return ab[i - j + j * ldab];
        return conj_if(true, ab[kd + j - i + i * ldab]);
    }
    /// Diagonals beside the main one that there are, but at least 1.
    i64 width() const { return std::clamp(kd, i64{1}, std::max(n - 1, i64{1})); }
    double largest() const;
    /// Its elements (i, j), i >= j, multiplied by `scale`, into those of `to`; what lies beyond the band is left alone.
    void copy_lower(double scale, const Matrix<T>& to) const;
};

/// scale A = Q T Q^H: the diagonal and off-diagonal of T in d(n) and e(n-1); with `wants_q`, Q in q(n,n). False when
/// there was no memory.
template <class T>
bool sbtrd(const HermitianBand<T>& a, double scale, double* d, double* e, bool wants_q, const Matrix<T>& q);

/// The same where there are at most kd = 1 diagonals beside the main one, or n is at most 2: Q is diagonal, q(n).
template <class T> void tridiagonal_band(const HermitianBand<T>& a, double scale, double* d, double* e, T* q);

} // namespace nxl
