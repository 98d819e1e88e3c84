// Matrices of every storage as runs of columns: full, triangular and band ones differ in which rows of a column lie in
// memory, one after the other.
//
//     full      rows 0 .. m - 1              triangle  upper 0 .. j, lower j .. n - 1
//     band      j - ku .. j + kl; element (i, j) lies at ab[ku + i - j + j ldab] = (ab + ku)[i + j (ldab - 1)]
//
// so that a band is a matrix with a leading dimension less by one, of which a strip along the diagonal exists.
#pragma once
#include "service/matrix.hpp"
#include <algorithm>

namespace nxl {

/// Column j: rows first(j) .. end(j) - 1, which are those from j - above to j + below as far as there are rows.
template <class T> struct Columns {
    Matrix<T> a; // at(i, j) for stored elements alone
    i64 above, below;

    i64 first(i64 j) const { return std::clamp(j - above, i64{0}, a.rows); }
    i64 end(i64 j) const { return std::clamp(j + below + 1, first(j), a.rows); }
    i64 count(i64 j) const { return end(j) - first(j); }
    T* start(i64 j) const { return a.at(first(j), j); }

    /// Without the diagonal: `this` is one triangle.
    Columns off_diagonal() const { return above == 0 ? Columns{a, -1, below} : Columns{a, above, -1}; }

    operator Columns<const T>() const
        requires(!std::is_const_v<T>)
    {
        return {a, above, below};
    }
};

template <class T> Columns<T> all_of(const Matrix<T>& a) { return {a, a.columns, a.rows}; }
template <class T> Columns<T> triangle_of(char uplo, const Matrix<T>& a) {
    return uplo == 'U' ? Columns<T>{a, a.columns, 0} : Columns<T>{a, 0, a.rows};
}
/// The band of an m by n matrix as it lies at `ab`, its highest diagonal first.
template <class T> Columns<T> band_of(T* ab, i64 ldab, i64 m, i64 n, i64 kl, i64 ku) {
    return {{ab + ku, m, n, ldab - 1}, ku, kl};
}
/// One triangle of a band of order n with kd diagonals beside the main one.
template <class T> Columns<T> triangular_band_of(char uplo, T* ab, i64 ldab, i64 n, i64 kd) {
    return uplo == 'U' ? band_of(ab, ldab, n, n, i64{0}, kd) : band_of(ab, ldab, n, n, kd, i64{0});
}

} // namespace nxl
