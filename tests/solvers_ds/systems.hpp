// Systems of every matrix type on a pattern, and how good their solutions are.
#pragma once
#include "tests/solvers_ds/pardiso_calls.hpp"
#include <cmath>
#include <random>

namespace nxl_test {

using Complex = std::complex<double>;

inline bool complex_type(int mtype) { return mtype == 3 || std::abs(mtype) == 4 || mtype == 6 || mtype == 13; }
inline bool hermitian_type(int mtype) { return std::abs(mtype) == 4; }
inline bool triangle_type(int mtype) { return mtype % 2 == 0; }

/// A system on a handle. Values of A, b and x are complex here, whatever the type.
struct System : Solver {
    System() = default;
    System(int type, const Pattern& pattern, unsigned seed, int right_hand_sides = 1)
        : Solver(type, triangle_type(type) ? upper_triangle(pattern) : all_entries(pattern)) {
        nb = right_hand_sides;
        const std::size_t length = words() * static_cast<std::size_t>(n) * static_cast<std::size_t>(nb);
        b.resize(length);
        x.assign(length, 0.0);
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> value(-1.0, 1.0);
        for (double& v : b) v = value(random);
        a.assign(words() * ja.size(), 0.0);
        for (double& v : a) v = value(random);
        weigh_diagonal();
    }

    std::size_t words() const { return complex_type(mtype) ? 2 : 1; }

    static Complex at(const std::vector<double>& values, std::size_t k, std::size_t words) {
        return words == 2 ? Complex{values[2 * k], values[2 * k + 1]} : Complex{values[k], 0.0};
    }
    Complex entry(std::size_t k) const { return at(a, k, words()); }

    /// Calls body(row, column, value) for all entries of the matrix, those that are not stored among them.
    template <class Body> void for_each_entry(Body body) const {
        for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i)
            for (int k = ia[i]; k < ia[i + 1]; ++k) {
                const auto slot = static_cast<std::size_t>(k - 1), j = static_cast<std::size_t>(ja[slot] - 1);
                const Complex value = entry(slot);
                body(i, j, value);
                if (triangle_type(mtype) && i != j) body(j, i, hermitian_type(mtype) ? std::conj(value) : value);
            }
    }

    /// Definite types get a diagonal that outweighs the rest, indefinite ones a small one of both signs, and the others
    /// a diagonal that pivots inside a block can do without.
    void weigh_diagonal() {
        for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i)
            for (int k = ia[i]; k < ia[i + 1]; ++k) {
                const auto slot = static_cast<std::size_t>(k - 1);
                if (ja[slot] != static_cast<int>(i + 1)) continue;
                double& diagonal = a[words() * slot];
                if (mtype == 2 || mtype == 4) diagonal = 3.0 * n;
                else diagonal += diagonal > 0.0 ? 1.0 : -1.0;
                if (hermitian_type(mtype)) a[words() * slot + 1] = 0.0;
            }
    }

    /// Rows and columns by factors of 1 to 97: a definite matrix stays definite, and its factor is of no use.
    void scale_symmetrically() {
        const auto factor = [](int i) { return static_cast<double>(i % 97 + 1); };
        for (int i = 0; i < n; ++i)
            for (std::size_t k = words() * static_cast<std::size_t>(ia[static_cast<std::size_t>(i)] - 1);
                 k < words() * static_cast<std::size_t>(ia[static_cast<std::size_t>(i) + 1] - 1); ++k)
                a[k] *= factor(i) * factor(ja[k / words()] - 1);
    }

    /// The largest componentwise backward error of the solutions in `from`, |b - A x| / (|A| |x| + |b|).
    double backward_error(const std::vector<double>& right, const std::vector<double>& from,
                          bool transposed = false) const {
        const auto order = static_cast<std::size_t>(n);
        double worst = 0.0;
        for (std::size_t c = 0; c < static_cast<std::size_t>(nb); ++c) {
            std::vector<Complex> residual(order);
            std::vector<double> size(order);
            for (std::size_t i = 0; i < order; ++i) {
                residual[i] = at(right, c * order + i, words());
                size[i] = std::abs(residual[i]);
            }
            for_each_entry([&](std::size_t i, std::size_t j, Complex value) {
                if (transposed) std::swap(i, j);
                const Complex unknown = at(from, c * order + j, words());
                residual[i] -= value * unknown;
                size[i] += std::abs(value) * std::abs(unknown);
            });
            for (std::size_t i = 0; i < order; ++i) {
                const double error = std::abs(residual[i]) / size[i];
                if (!(error <= worst)) worst = error;
            }
        }
        return worst;
    }
};

} // namespace nxl_test
