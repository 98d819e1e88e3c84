// Dense oracles for small sparse matrices.
#pragma once

#include "sparse_matrix.hpp"

#include <cmath>

namespace solve_test {

template <class T> using Dense = std::vector<std::vector<T>>; // rows

template <class T> Dense<T> dense(const solve::SparseMatrix<T>& a) {
    Dense<T> d(static_cast<std::size_t>(a.n), std::vector<T>(static_cast<std::size_t>(a.n)));
    for (int i = 0; i < a.n; ++i) {
        const auto [columns, values] = a.row(i);
        for (std::size_t k = 0; k < columns.size(); ++k)
            d[static_cast<std::size_t>(i)][static_cast<std::size_t>(columns[k])] += values[k];
    }
    return d;
}

/// Whether elimination without pivoting, on a symmetric matrix, meets positive pivots only.
inline bool is_positive_definite(Dense<double> d) {
    for (std::size_t k = 0; k < d.size(); ++k) {
        if (!(d[k][k] > 0.0)) return false;
        for (std::size_t i = k + 1; i < d.size(); ++i) {
            const double factor = d[i][k] / d[k][k];
            for (std::size_t j = k; j < d.size(); ++j) d[i][j] -= factor * d[k][j];
        }
    }
    return true;
}

} // namespace solve_test
