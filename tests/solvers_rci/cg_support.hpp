// Small dense systems and the arrays of a run, for the tests of the conjugate-gradient solvers.
#pragma once
#include "nxl.h"
#include "tests/support/captured.hpp"
#include "tests/support/catalogue.hpp"
#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace nxl_test {

using Vector = std::vector<double>;

inline double dot(const Vector& x, const Vector& y) {
    double sum = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) sum += x[i] * y[i];
    return sum;
}

inline double norm(const Vector& x) { return std::sqrt(dot(x, x)); }

/// x + alpha y
inline Vector sum(Vector x, double alpha, const Vector& y) {
    for (std::size_t i = 0; i < x.size(); ++i) x[i] += alpha * y[i];
    return x;
}

inline Vector random_vector(int n, unsigned seed) {
    std::mt19937_64 generator(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    Vector x(static_cast<std::size_t>(n));
    for (double& value : x) value = uniform(generator);
    return x;
}

/// Columns of n by n; Matrix{...}[j][i].
using Matrix = std::vector<Vector>;

/// Symmetric, with a dominant diagonal that grows from 4 to 4 + n.
inline Matrix definite_matrix(int n, unsigned seed) {
    Matrix a;
    for (int j = 0; j < n; ++j) a.push_back(random_vector(n, seed + static_cast<unsigned>(j)));
    for (std::size_t j = 0; j < a.size(); ++j) {
        for (std::size_t i = 0; i < j; ++i) a[j][i] = a[i][j] *= 1.0 / n;
        a[j][j] = 4.0 + static_cast<double>(j);
    }
    return a;
}

inline Vector product(const Matrix& a, const Vector& x) {
    Vector y(x.size(), 0.0);
    for (std::size_t j = 0; j < x.size(); ++j) y = sum(y, x[j], a[j]);
    return y;
}

/// Jacobi: x divided by the diagonal.
inline Vector jacobi(const Matrix& a, const Vector& x) {
    Vector scaled = x;
    for (std::size_t i = 0; i < x.size(); ++i) scaled[i] /= a[i][i];
    return scaled;
}

inline void expect_near(const Vector& actual, const Vector& expected, double tolerance, const std::string& what) {
    ASSERT_EQ(actual.size(), expected.size()) << what;
    for (std::size_t i = 0; i < actual.size(); ++i)
        if (!std::isnan(actual[i]) || !std::isnan(expected[i]))
            ASSERT_NEAR(actual[i], expected[i], tolerance * std::max(1.0, std::abs(expected[i]))) << what << " " << i;
}

constexpr double untouched = -77.0; // fills what a routine has to leave alone

/// The arrays of a run of `systems` systems, and the part of calls that does not change. Entries count from 1.
struct CgCase {
    int n, systems, request = 5;
    Vector x, b, dpar, tmp;
    std::vector<int> ipar;

    explicit CgCase(int size, int systems_count = 1)
        : n(size),
          systems(systems_count),
          x(cells(systems), 0.0),
          b(cells(systems), 1.0),
          dpar(per_system(), untouched),
          tmp(cells(systems + 3), untouched),
          ipar(per_system(), 0) {}

    std::size_t cells(int columns) const { return static_cast<std::size_t>(std::max(n * columns, 0)); }
    std::size_t per_system() const { return 128 + 2 * static_cast<std::size_t>(std::max(systems, 0)); }

    int& ip(int i) { return ipar[static_cast<std::size_t>(i) - 1]; }
    double& dp(int i) { return dpar[static_cast<std::size_t>(i) - 1]; }
    /// Column k of tmp, x or b.
    Vector column(const Vector& of, int k) const {
        const auto first = of.begin() + static_cast<std::ptrdiff_t>(k - 1) * n;
        return {first, first + n};
    }
    void set_column(Vector& of, int k, const Vector& values) {
        std::copy(values.begin(), values.end(), of.begin() + static_cast<std::ptrdiff_t>(k - 1) * n);
    }

    void init() { DCG_INIT(&n, x.data(), b.data(), &request, ipar.data(), dpar.data(), tmp.data()); }
    int check() { return DCG_CHECK(&n, x.data(), b.data(), &request, ipar.data(), dpar.data(), tmp.data()), request; }
    int step() { return DCG(&n, x.data(), b.data(), &request, ipar.data(), dpar.data(), tmp.data()), request; }
    int iterations() {
        int count = -1;
        DCG_GET(&n, x.data(), b.data(), &request, ipar.data(), dpar.data(), tmp.data(), &count);
        return count;
    }

    void init_many() {
        DCGMRHS_INIT(&n, x.data(), &systems, b.data(), nullptr, &request, ipar.data(), dpar.data(), tmp.data());
    }
    int check_many() {
        DCGMRHS_CHECK(&n, x.data(), &systems, b.data(), &request, ipar.data(), dpar.data(), tmp.data());
        return request;
    }
    int step_many() {
        DCGMRHS(&n, x.data(), &systems, b.data(), &request, ipar.data(), dpar.data(), tmp.data());
        return request;
    }
    void get_many(int* counts) {
        DCGMRHS_GET(&n, x.data(), &systems, b.data(), &request, ipar.data(), dpar.data(), tmp.data(), counts);
    }
};

inline std::string error_report(const std::string& lines) { return report(401, lines); }
inline std::string warning_report(const std::string& lines) { return report(402, lines); }

inline const std::string endless_loop_text = catalogue(656, 3), indefinite_text = catalogue(659, 4),
                         altered_text = catalogue(663, 3);

} // namespace nxl_test
