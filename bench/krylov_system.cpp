#include "bench/krylov_system.hpp"
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace nxl::bench {

void SparseRows::multiply(const double* x, double* y) const {
    const int *first = start.data(), *at = column.data();
    const double* a = value.data();
    for (int i = 0; i < n; ++i) {
        double sum = 0.0;
        for (int k = first[i]; k < first[i + 1]; ++k) sum += a[k] * x[at[k]];
        y[i] = sum;
    }
}

SparseRows convection_diffusion(int side) {
    constexpr std::array<double, 3> wind = {40.0, 20.0, 10.0}; // along x, y and z
    const double h = 1.0 / (side + 1);
    const std::array<int, 3> step = {1, side, side * side};
    SparseRows a;
    a.n = side * side * side;
    a.start.reserve(static_cast<std::size_t>(a.n) + 1);
    a.column.reserve(7 * static_cast<std::size_t>(a.n));
    a.value.reserve(7 * static_cast<std::size_t>(a.n));
    const auto add = [&](int column, double value) {
        a.column.push_back(column);
        a.value.push_back(value);
    };
    for (int i = 0; i < a.n; ++i) {
        const std::array<int, 3> point = {i % side, i / side % side, i / step[2]};
        a.start.push_back(static_cast<int>(a.column.size()));
        for (std::size_t d = 3; d-- > 0;)
            if (point[d] > 0) add(i - step[d], -1.0 - wind[d] * h);
        add(i, 6.0 + (wind[0] + wind[1] + wind[2]) * h);
        for (std::size_t d = 0; d < 3; ++d)
            if (point[d] < side - 1) add(i + step[d], -1.0);
    }
    a.start.push_back(static_cast<int>(a.column.size()));
    return a;
}

IncompleteFactors::IncompleteFactors(const SparseRows& pattern, std::vector<double> factors)
    : pattern_(pattern),
      value_(std::move(factors)) {
    for (int i = 0; i < pattern_.n; ++i)
        for (int k = pattern_.start.data()[i]; k < pattern_.start.data()[i + 1]; ++k) {
            if (pattern_.column.data()[k] != i) continue;
            diagonal_.push_back(k);
            inverse_pivots_.push_back(1.0 / value_.data()[k]);
        }
}

void IncompleteFactors::apply(const double* r, double* z) const {
    const int *start = pattern_.start.data(), *column = pattern_.column.data(), *pivot = diagonal_.data();
    const double *value = value_.data(), *inverse = inverse_pivots_.data();
    for (int i = 0; i < pattern_.n; ++i) {
        double sum = r[i];
        for (int k = start[i]; k < pivot[i]; ++k) sum -= value[k] * z[column[k]];
        z[i] = sum;
    }
    for (int i = pattern_.n - 1; i >= 0; --i) {
        double sum = z[i];
        // From the end: the value that was found last, and is ready last, comes in last.
        for (int k = start[i + 1] - 1; k > pivot[i]; --k) sum -= value[k] * z[column[k]];
        z[i] = sum * inverse[i];
    }
}

double relative_residual(const SparseRows& a, const std::vector<double>& b, const std::vector<double>& x) {
    std::vector<double> product(b.size());
    a.multiply(x.data(), product.data());
    double residual = 0.0, whole = 0.0;
    for (std::size_t i = 0; i < b.size(); ++i) {
        residual += (b[i] - product[i]) * (b[i] - product[i]);
        whole += b[i] * b[i];
    }
    return std::sqrt(residual / whole);
}

} // namespace nxl::bench
