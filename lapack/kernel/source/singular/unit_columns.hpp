// Columns of the identity.
#pragma once
#include "service/matrix.hpp"
#include <algorithm>

namespace nxl {

/// Clears `u` outside of its first n rows and columns but for ones on its diagonal.
template <class T> void extend_by_unit_columns(const Matrix<T>& u, i64 n) {
    for (i64 j = 0; j < u.columns; ++j) {
        std::fill(u.at(j < n ? n : 0, j), u.at(0, j) + u.rows, T{});
        if (j >= n) u(j, j) = T(1.0);
    }
}

template <class T> void make_unit_columns(const Matrix<T>& u) { extend_by_unit_columns(u, 0); }

} // namespace nxl
