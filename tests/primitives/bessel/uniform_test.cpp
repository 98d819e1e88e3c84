// I and K of large order against references of 40 digits on both sides of every border, against the Wronskian on random
// points, and what holds without rounding: real arguments, reflection, neighbouring pairs.
#include "primitives/bessel/uniform.hpp"
#include "tests/primitives/bessel/reference_table.hpp"
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>

namespace {

using nxl::zcomplex;
using nxl::bessel::OrderPair;
using nxl::bessel::uniform_i_pair;
using nxl::bessel::uniform_k_pair;
constexpr double eps = std::numeric_limits<double>::epsilon();
constexpr double orders[] = {86.0, 86.5, 100.3, 1e3, 1e5, 4e6};

/// Error of the first function against mantissa exp(log_scale), over the size of the function, which is exp(log_size).
double error(const OrderPair& got, zcomplex mantissa, double log_scale, double log_size) {
    return std::abs(got.first * std::exp(got.log_scale - log_scale) - mantissa) * std::exp(log_scale - log_size);
}

TEST(UniformExpansions, ReferencesInEveryRegion) {
    for (nxl_test::TableRow& row : nxl_test::read_table("uniform", 9)) {
        const double nu = row.number();
        const zcomplex z = row.complex(), i = row.complex();
        const double log_i = row.number();
        const zcomplex k = row.complex();
        const double log_k = row.number();
        SCOPED_TRACE(testing::Message() << "nu = " << nu << ", z = " << z);
        // exponents are rounded, and z moves them by |z|: double precision knows no more
        const double tolerance = 5e-14 + 2.0 * eps * (std::fabs(log_k) + std::max(nu, std::abs(z)));
        // beyond the turning point I oscillates on the imaginary axis below the size 2/pi |K|
        const bool waves = z.real() == 0.0 && std::fabs(z.imag()) > nu;
        const double i_size = waves ? log_k + std::log(2.0 * std::numbers::inv_pi) : log_i;
        EXPECT_LE(error(uniform_i_pair(nu, z), i, log_i, i_size), tolerance);
        EXPECT_LE(error(uniform_k_pair(nu, z), k, log_k, log_k), tolerance);
    }
}

/// I(nu) K(nu + 1) + I(nu + 1) K(nu) = 1 / z, wide of the turning point, at the size of it and close to it.
TEST(UniformExpansions, WronskianOnRandomPoints) {
    std::mt19937_64 random(86);
    std::uniform_real_distribution<double> part(0.0, 1.0);
    for (const double nu : orders) {
        for (int i = 0; i < 3000; ++i) {
            const double angle = std::numbers::pi * (part(random) - 0.5);
            zcomplex z = std::polar(nu * std::exp((i % 3 == 0 ? 8.0 : 2.0) * (part(random) - 0.5)), angle);
            if (i % 3 == 2) z = zcomplex(0.0, nu) + std::polar(nu * std::pow(10.0, -6.0 * part(random)), angle);
            if (i % 10 == 0) z = zcomplex(i % 20 == 0 ? 0.0 : z.real(), i % 20 == 0 ? z.imag() : 0.0);
            const OrderPair a = uniform_i_pair(nu, z), b = uniform_k_pair(nu, z);
            const zcomplex scale = z * std::exp(a.log_scale + b.log_scale);
            const zcomplex first = a.first * b.second * scale, second = a.second * b.first * scale;
            const double size = std::max({1.0, std::abs(first), std::abs(second)});
            const double tolerance = 2e-13 + 4.0 * eps * (std::fabs(b.log_scale) + std::max(nu, std::abs(z)));
            ASSERT_LE(std::abs(first + second - 1.0), tolerance * size) << "nu = " << nu << ", z = " << z;
        }
    }
}

TEST(UniformExpansions, RealArgumentsReflectionAndNeighbours) {
    for (const double nu : orders) {
        for (auto* function : {uniform_i_pair, uniform_k_pair}) {
            for (const double x : {1e-30, 0.3, 1.0, 7.0}) {
                const OrderPair real = function(nu, nu * x);
                EXPECT_EQ(real.first.imag(), 0.0);
                EXPECT_EQ(real.second.imag(), 0.0);
                EXPECT_GT(real.first.real(), 0.0);
            }
            EXPECT_EQ(function(nu, zcomplex(-0.0, 3.0 * nu)).first, function(nu, zcomplex(0.0, 3.0 * nu)).first);
            for (const zcomplex t : {zcomplex(0.2, 1.1), zcomplex(2.0, 0.3), zcomplex(0.0, 0.5), zcomplex(0.0, 3.0)}) {
                const OrderPair upper = function(nu, nu * t), lower = function(nu, std::conj(nu * t));
                EXPECT_EQ(upper.first, std::conj(lower.first));
                EXPECT_EQ(upper.second, std::conj(lower.second));
                const OrderPair below = function(nu - 1.0, nu * t); // its second order is this one's first
                const zcomplex again = below.second * std::exp(below.log_scale - upper.log_scale);
                EXPECT_LE(std::abs(again - upper.first), 4.0 * eps * (1.0 + std::fabs(upper.log_scale)));
                EXPECT_LE(std::max(std::abs(upper.first), std::abs(upper.second)), 2.0);
            }
        }
    }
}

} // namespace
