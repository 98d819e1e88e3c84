// A matrix of a test's own: plain loops, zeros at first, no slack; and a small system solved.
#pragma once
#include "tests/support/scalars.hpp"

namespace nxl_test {

template <class T> struct Dense {
    int rows, cols;
    std::vector<T> data;

    Dense(int m, int n, std::vector<T> values) : rows(m), cols(n), data(std::move(values)) {}
    Dense(int m, int n) : Dense(m, n, std::vector<T>(static_cast<std::size_t>(m) * static_cast<std::size_t>(n))) {}
    T& operator()(int i, int j) { return data[static_cast<std::size_t>(i + std::int64_t{j} * rows)]; }
    T operator()(int i, int j) const { return data[static_cast<std::size_t>(i + std::int64_t{j} * rows)]; }
    double largest() const {
        double most = 0.0;
        for (const T v : data) most = std::max(most, abs1(v));
        return most;
    }
    double norm() const { // the largest sum of a column
        double most = 0.0;
        for (int j = 0; j < cols; ++j) {
            double sum = 0.0;
            for (int i = 0; i < rows; ++i) sum += modulus((*this)(i, j));
            if (!std::isnan(most) && !(sum <= most)) most = sum; // NaN stays
        }
        return most;
    }
};

/// The solution of a x = b by elimination. a[j][i]; no pivots are needed where the diagonal dominates or a is positive
/// definite.
inline std::vector<double> dense_solution(std::vector<std::vector<double>> a, std::vector<double> b) {
    const std::size_t n = b.size();
    for (std::size_t k = 0; k < n; ++k)
        for (std::size_t i = k + 1; i < n; ++i) {
            const double factor = a[k][i] / a[k][k];
            for (std::size_t j = k; j < n; ++j) a[j][i] -= factor * a[j][k];
            b[i] -= factor * b[k];
        }
    for (std::size_t k = n; k-- > 0; b[k] /= a[k][k])
        for (std::size_t j = k + 1; j < n; ++j) b[k] -= a[j][k] * b[j];
    return b;
}

} // namespace nxl_test
