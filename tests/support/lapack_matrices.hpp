// General matrices for tests of factorisations, with NaN between the columns, and the error of P A = L U.
#pragma once
#include "tests/support/scalars.hpp"
#include <algorithm>
#include <cstring>

namespace nxl_test {

/// rows by cols elements; the array ends with the last of them.
template <class T> struct LapackMatrix {
    int rows, cols, lda;
    std::vector<T> elements;

    LapackMatrix(int m, int n, int slack)
        : rows(m),
          cols(n),
          lda(std::max(1, m) + slack),
          elements(m < 1 || n < 1 ? 1
                                  : static_cast<std::size_t>(n - 1) * static_cast<std::size_t>(lda) +
                                        static_cast<std::size_t>(m)) {
        std::memset(static_cast<void*>(elements.data()), 0xff, elements.size() * sizeof(T)); // NaN
    }
    T* data() { return elements.data(); }
    T& at(int i, int j) {
        return elements[static_cast<std::size_t>(j) * static_cast<std::size_t>(lda) + static_cast<std::size_t>(i)];
    }
    const T& at(int i, int j) const { return const_cast<LapackMatrix*>(this)->at(i, j); }

    void clear_column(int j) {
        for (int i = 0; i < rows; ++i) at(i, j) = T{};
    }
    /// Whether what lies between the columns still is as it was made.
    bool slack_untouched() const {
        const std::vector<T> nan(static_cast<std::size_t>(lda - rows), LapackMatrix(0, 0, 0).elements[0]);
        for (int j = 0; j + 1 < cols; ++j)
            if (std::memcmp(&at(0, j) + rows, nan.data(), nan.size() * sizeof(T)) != 0) return false;
        return true;
    }
};

/// near_singular: of rank 1 to within 1e-13. graded: rows and columns scaled over twelve decimal orders each.
enum class MatrixKind { random, graded, near_singular, hilbert };

template <class T> LapackMatrix<T> matrix_of(MatrixKind kind, int rows, int cols, int slack = 3, unsigned seed = 1) {
    Generator generator(seed);
    const auto random = [&] { return random_value<T>(generator); };
    const auto value = [&](int i, int j) -> T {
        switch (kind) {
        case MatrixKind::graded: return random() * std::pow(10.0, 6.0 * (std::sin(1.3 * i) + std::sin(2.1 * j)));
        case MatrixKind::near_singular: return std::sin(1.0 + i) * std::cos(0.3 * j) + 1e-13 * random();
        case MatrixKind::hilbert: return 1.0 / (i + j + 1);
        default: return random();
        }
    };
    LapackMatrix<T> result(rows, cols, slack);
    for (int j = 0; j < cols; ++j)
        for (int i = 0; i < rows; ++i) result.at(i, j) = value(i, j);
    return result;
}

/// y := L (U x) or, with `moduli`, |L| (|U| |x|), from the factors of an m by n matrix.
template <class T> std::vector<T> times_factors(const LapackMatrix<T>& lu, const std::vector<T>& x, bool moduli) {
    const auto entry = [&](int i, int j) -> T { return moduli ? T{abs1(lu.at(i, j))} : lu.at(i, j); };
    const auto rows = static_cast<std::size_t>(lu.rows);
    const int steps = std::min(lu.rows, lu.cols);
    std::vector<T> ux(rows), y(rows);
    for (int j = 0; j < lu.cols; ++j)
        for (int i = 0; i <= std::min(j, lu.rows - 1); ++i)
            ux[static_cast<std::size_t>(i)] += entry(i, j) * x[static_cast<std::size_t>(j)];
    for (int j = 0; j < steps; ++j) {
        y[static_cast<std::size_t>(j)] += ux[static_cast<std::size_t>(j)];
        for (int i = j + 1; i < lu.rows; ++i)
            y[static_cast<std::size_t>(i)] += entry(i, j) * ux[static_cast<std::size_t>(j)];
    }
    return y;
}

/// max over rows of |P A x - L U x| / (n eps |L| |U| |x|) for vectors x of random signs: below a small number for
/// factors computed in any order of the sums, whatever the growth (Higham, Accuracy and Stability of Numerical
/// Algorithms, 2nd ed., theorem 9.3). A single wrong element of A, L, U or P makes it huge.
template <class T> double lu_error(const LapackMatrix<T>& a, const LapackMatrix<T>& lu, const std::vector<int>& ipiv) {
    const auto rows = static_cast<std::size_t>(a.rows), cols = static_cast<std::size_t>(a.cols);
    Generator generator(5);
    std::vector<T> x(cols), ax(rows);
    for (T& value : x) value = generator() % 2 == 0 ? 1.0 : -1.0;
    for (int j = 0; j < a.cols; ++j)
        for (int i = 0; i < a.rows; ++i) ax[static_cast<std::size_t>(i)] += a.at(i, j) * x[static_cast<std::size_t>(j)];
    for (std::size_t i = 0; i < std::min(rows, cols); ++i)
        std::swap(ax[i], ax.at(static_cast<std::size_t>(ipiv[i]) - 1));
    const std::vector<T> product = times_factors(lu, x, false);
    const std::vector<T> bound = times_factors(lu, std::vector<T>(cols, T{1.0}), true);
    double worst = 0.0;
    for (std::size_t i = 0; i < rows; ++i) {
        const double error = abs1(ax[i] - product[i]);
        const double unit = a.cols * eps * std::abs(bound[i]);
        if (!(error <= worst * unit)) worst = error / unit; // NaN goes through and stays
    }
    return worst;
}

/// The largest |L(i,j)| below the diagonal.
template <class T> double largest_multiplier(const LapackMatrix<T>& lu) {
    double largest = 0.0;
    for (int j = 0; j < std::min(lu.rows, lu.cols); ++j)
        for (int i = j + 1; i < lu.rows; ++i) largest = std::max(largest, std::abs(lu.at(i, j)));
    return largest;
}

} // namespace nxl_test
