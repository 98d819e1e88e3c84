// Secular equations with poles and weights that are far apart, close together, tiny: their roots and the vectors.
#include "lapack/kernel/source/eigen/secular.hpp"
#include "tests/support/scalars.hpp"
#include <gtest/gtest.h>

namespace {

using namespace nxl_test;
using nxl::SecularEquation;
using std::size_t;

enum class Kind { apart, light, close, graded, triples, one_heavy };

struct Equation {
    std::vector<double> d, weights;
};

Equation equation_of(Kind kind, int n, bool squared) {
    Equation f{std::vector<double>(static_cast<size_t>(n)), std::vector<double>(static_cast<size_t>(n))};
    Generator generator(static_cast<unsigned long>(n));
    for (int i = 0; i < n; ++i) {
        const double x = random_value<double>(generator), size = std::abs(random_value<double>(generator));
        double &d = f.d[static_cast<size_t>(i)], &weight = f.weights[static_cast<size_t>(i)];
        d = i;
        weight = x * x + 1e-30;
        switch (kind) {
        case Kind::apart: d += 0.4 * x; break;
        case Kind::light: weight = std::pow(10.0, -30.0 * size); break;
        case Kind::close: d = 1.0 + i * 1e-14; break;
        case Kind::graded: d = std::pow(2.0, -20.0 * (n - i) / n), weight = i % 2 == 0 ? 1.0 : 1e-30; break;
        case Kind::triples: d = i - i % 3 * (1.0 - 1e-13), weight = std::pow(10.0, -30.0 * size); break;
        case Kind::one_heavy: d = i * 1e-15, weight = i == n - 1 ? 1.0 : 1e-32; break;
        }
    }
    for (size_t i = f.d.size(); squared && i-- > 0;) f.d[i] -= f.d[0];
    return f;
}

/// The sum vanishes to a few roundings of its terms, each root is between its poles, and vectors of the weights that
/// belong to the roots, which are those that were given, are orthogonal.
TEST(Secular, RootsAndVectors) {
    for (const bool squared : {false, true})
        for (const Kind kind : {Kind::apart, Kind::light, Kind::close, Kind::graded, Kind::triples, Kind::one_heavy})
            for (const int n : {1, 2, 3, 4, 11, 70}) {
                SCOPED_TRACE(testing::Message() << squared << " kind " << static_cast<int>(kind) << " n " << n);
                const auto count = static_cast<size_t>(n);
                const Equation given = equation_of(kind, n, squared);
                const double rho = 0.7, total = [&] {
                    double sum = 0.0;
                    for (const double weight : given.weights) sum += weight;
                    return sum;
                }();
                const SecularEquation f{squared ? SecularEquation::Poles::squared : SecularEquation::Poles::plain, n,
                                        given.d.data(), given.weights.data(), rho};
                std::vector<double> distances(count * count), sums(distances), found(count), vectors(distances);
                const auto gap = [&](size_t i, size_t j) { // pole i less root j
                    return distances[i + j * count] * (squared ? sums[i + j * count] : 1.0);
                };
                for (size_t j = 0; j < count; ++j) {
                    const auto number = static_cast<std::int64_t>(j);
                    const double x = f.root(number, &distances[j * count], &sums[j * count]);
                    EXPECT_NEAR(x, given.d[j] - distances[j + j * count], 2.0 * eps * std::abs(x));
                    EXPECT_LT(gap(j, j), 0.0);
                    if (j + 1 < count) EXPECT_GT(gap(j + 1, j), 0.0);
                    else EXPECT_LE(-gap(j, j), rho * total * (1.0 + 8.0 * eps));
                    long double value = 1.0L / rho, size = value;
                    for (size_t i = 0; i < count; ++i) {
                        const long double term = static_cast<long double>(given.weights[i]) / gap(i, j);
                        value += term;
                        size += std::abs(term);
                    }
                    EXPECT_LE(std::abs(value), 8.0L * eps * size);
                }
                const nxl::Matrix<const double> near{distances.data(), n, n, n}, far{sums.data(), n, n, n};
                f.weights_of_roots(0, n / 2, near, far, found.data());
                f.weights_of_roots(n / 2, n, near, far, found.data());
                for (size_t j = 0; j < count; ++j) {
                    EXPECT_NEAR(std::sqrt(found[j]), std::sqrt(given.weights[j]), 20.0 * eps * std::sqrt(total));
                    double norm = 0.0;
                    for (size_t i = 0; i < count; ++i) {
                        vectors[i + j * count] = std::sqrt(found[i]) / gap(i, j);
                        norm = std::hypot(norm, vectors[i + j * count]);
                    }
                    for (size_t i = 0; i < count; ++i) vectors[i + j * count] /= norm;
                    for (size_t k = 0; k < j; ++k) {
                        double product = 0.0;
                        for (size_t i = 0; i < count; ++i) product += vectors[i + j * count] * vectors[i + k * count];
                        EXPECT_LE(std::abs(product), 20.0 * eps) << j << " " << k;
                    }
                }
            }
}

} // namespace
