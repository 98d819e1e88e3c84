// Eigenpairs put into ascending order.
#pragma once
#include "service/matrix.hpp"
#include <algorithm>
#include <numeric>

namespace nxl {

/// order(j): which of n values is to be number j.
inline void find_order(i64 n, const double* values, i64* order) {
    std::iota(order, order + n, i64{0});
    std::sort(order, order + n, [values](i64 i, i64 j) { return values[i] < values[j]; });
}

/// Column and value j become what were number order(j), which is destroyed; each moves once. `column`: room for one.
template <class T> void reorder_pairs(double* values, const Matrix<T>& z, i64* order, T* column) {
    const auto move = [&](const T* from, T* to) { std::copy(from, from + z.rows, to); };
    for (i64 first = 0; first < z.columns; ++first) {
        if (order[first] == first) continue;
        const double value = values[first];
        move(z.at(0, first), column);
        i64 to = first;
        for (i64 from = order[to]; from != first; from = order[to]) {
            values[to] = values[from];
            move(z.at(0, from), z.at(0, to));
            order[to] = to;
            to = from;
        }
        values[to] = value;
        move(column, z.at(0, to));
        order[to] = to;
    }
}

} // namespace nxl
