// Exchanges of neighbouring blocks on the diagonal of a Schur form.
#pragma once
#include "service/matrix.hpp"
#include "service/scalars.hpp"
#include <algorithm>
#include <type_traits>

namespace nxl {

/// Moves the block that begins at row `from` up to row `to`, by exchanges with those before it: Q T Q^H stays as it is.
/// q: as many columns as t, without rows where it is not wanted. Answers the row that the block has come to: one below
/// `to` where two blocks are too close to be exchanged.
template <class T> i64 move_block_up(const Matrix<T>& t, const Matrix<T>& q, i64 from, i64 to);

/// Whether row k of a Schur form belongs to the same block as the one before. What a complex one, which is triangular,
/// has below its diagonal is not looked at.
template <class T> bool continues_block(const Matrix<T>& t, i64 k) {
    if constexpr (is_complex_scalar<std::remove_const_t<T>>) return false;
    else return k > 0 && t(k, k - 1) != 0.0;
}
/// The order of the block that begins at row k, or ends before it.
template <class T> i64 order_of_block(const Matrix<T>& t, i64 k) {
    return k + 1 < t.rows && continues_block(t, k + 1) ? 2 : 1;
}
/// The rows of column j that belong to the form.
template <class T> i64 rows_of_column(const Matrix<T>& t, i64 j) {
    return j + 1 + (j + 1 < t.rows && continues_block(t, j + 1) ? 1 : 0);
}
template <class T> i64 order_of_block_before(const Matrix<T>& t, i64 k) { return continues_block(t, k - 1) ? 2 : 1; }

/// T^H with its rows and columns in reverse, which is a Schur form again.
template <class T> void copy_reversed_adjoint(const Matrix<const T>& t, const Matrix<T>& to) {
    constexpr i64 line = 8; // elements of T that are read together
    const i64 n = t.rows;
    for (i64 first = 0; first < n; first += line)
        for (i64 i = 0; i < n && i < first + line + 1; ++i)
            for (i64 j = std::max(first, i - 1); j < std::min(first + line, n); ++j)
                to(i, j) = conj_if<true>(t(n - 1 - j, n - 1 - i));
}

} // namespace nxl
