// The adjoint of a matrix, copied.
#pragma once
#include "service/matrix.hpp"
#include "service/scalars.hpp"
#include <algorithm>

namespace nxl {

/// to := from^H, in squares, of which the columns of both stay in the first cache.
template <class T> void copy_adjoint(const Matrix<const std::type_identity_t<T>>& from, const Matrix<T>& to) {
    constexpr i64 square = 16;
    for (i64 first = 0; first < to.rows; first += square)
        for (i64 j = 0; j < to.columns; ++j)
            for (i64 i = first; i < std::min(first + square, to.rows); ++i) to(i, j) = conj_if<true>(from(j, i));
}

} // namespace nxl
