// I and K of moderate order in the right half plane: values in 50 digits, regions against each other where both hold,
// the identities between neighbours, and the recurrences over many rescalings.
#include "primitives/bessel/i_moderate.hpp"
#include "primitives/bessel/k_moderate.hpp"
#include "primitives/bessel/phase.hpp"
#include "primitives/bessel/precision.hpp"
#include "primitives/bessel/recurrences.hpp"
#include "tests/primitives/bessel/reference_table.hpp"
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <sstream>
#include <string>

namespace {

using namespace nxl::bessel;
using nxl::zcomplex;

/// The larger relative error of two neighbours. A value near a zero is measured against its derivative, that is against
/// the other one: |z f'(z)| is near |z| |other| / (1 + |z| / nu).
double error(const OrderPair& computed, const OrderPair& expected, double nu, zcomplex z) {
    const double factor = std::exp(computed.log_scale - expected.log_scale);
    const double share = std::min(1.0, std::abs(z) / (nu + 1.0));
    const double first = std::abs(expected.first), second = std::abs(expected.second);
    return std::max(std::abs(computed.first * factor - expected.first) / (first + share * second),
                    std::abs(computed.second * factor - expected.second) / (second + share * first));
}

/// 1e-13, and the spacing of double in the scale itself, which is a logarithm of up to 7600.
double tolerance(double scale) { return 1e-13 + 2.0 * epsilon * std::abs(scale); }

std::string place(double nu, zcomplex z) {
    std::ostringstream text;
    text << "order " << nu << ", z = " << z;
    return text.str();
}

TEST(RightHalfPlane, ValuesAboutEveryBorder) {
    for (nxl_test::TableRow& row : nxl_test::read_table("right_half_plane", 13)) {
        const double nu = row.number();
        const zcomplex z = row.complex();
        SCOPED_TRACE(place(nu, z));
        const auto check = [&](const PairResult& computed) {
            const double scale = row.number();
            const zcomplex first = row.complex(), second = row.complex();
            const OrderPair expected{first, second, scale};
            EXPECT_TRUE(computed.converged);
            EXPECT_LE(error(computed.pair, expected, nu, z), tolerance(scale));
            const double size = std::max(std::abs(computed.pair.first), std::abs(computed.pair.second));
            EXPECT_LE(std::abs(std::log2(size)), free_mantissa_exponent + 1.5);
            if (z.imag() == 0.0)
                EXPECT_EQ(std::abs(computed.pair.first.imag()) + std::abs(computed.pair.second.imag()), 0.0);
        };
        check(moderate_k_pair(nu, z));
        check(moderate_i_pair(nu, z));
    }
}

class Points {
    std::mt19937_64 random_{7};

  public:
    double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }
    /// Every fourth point on the imaginary axis, every fourth on the real axis.
    zcomplex argument(double radius) {
        const int kind = static_cast<int>(uniform(0.0, 8.0));
        if (kind < 2) return {0.0, kind == 0 ? radius : -radius};
        if (kind < 4) return radius;
        return std::polar(radius, uniform(-0.5, 0.5) * std::numbers::pi);
    }
    double small_order() {
        constexpr double special[] = {-0.5, 0.0, 0.5, 1e-9, -1e-9};
        const auto kind = static_cast<unsigned>(uniform(0.0, 10.0));
        return kind < 5 ? special[kind] : uniform(-0.5, 0.5);
    }
};

TEST(RightHalfPlane, RegionsAgreeWhereBothHold) {
    Points points;
    const auto agree = [](auto one, auto other, double nu, zcomplex z) {
        SCOPED_TRACE(place(nu, z));
        const PairResult a = one(nu, z), b = other(nu, z);
        EXPECT_TRUE(a.converged && b.converged);
        EXPECT_LE(error(a.pair, b.pair, nu, z), tolerance(b.pair.log_scale));
    };
    for (int i = 0; i < 300; ++i) {
        const double mu = points.small_order(), nu = points.uniform(0.0, 86.0);
        agree(k_by_series, k_by_continued_fraction, mu, points.argument(points.uniform(1.6, 2.4)));
        agree(k_by_continued_fraction, k_by_expansion, mu, points.argument(points.uniform(22.0, 30.0)));
        agree(i_by_series, i_by_ratio, nu, points.argument(points.uniform(1.6, 2.2) * std::sqrt(nu + 1.0)));
        const double up = nu + 1.0;
        const double border = std::max(asymptotic_radius, 0.5 * up * up);
        const zcomplex large = points.argument(points.uniform(1.0, 1.2) * border);
        agree(i_by_expansion_upwards, i_by_expansion, nu, large);
        if (large.real() > 0.1 * border) agree(i_by_ratio, i_by_expansion, nu, large);
        const double radius = std::max(asymptotic_radius, up) * points.uniform(1.0, 1.5);
        const double side = std::min(points.uniform(0.0, 2.0) * radius / up * radius / up, 0.9 * radius);
        agree(i_by_ratio, i_by_expansion_upwards, nu, {side, std::sqrt(radius * radius - side * side)});
    }
}

TEST(RightHalfPlane, NeighboursAndConjugates) {
    Points points;
    for (int i = 0; i < 3000; ++i) {
        const double nu = i % 3 == 0 ? std::floor(points.uniform(0.0, 86.0)) : points.uniform(0.0, 86.0);
        const zcomplex z = points.argument(std::exp(points.uniform(-80.0, 15.0)));
        SCOPED_TRACE(place(nu, z));
        const OrderPair k = moderate_k_pair(nu, z).pair, here = moderate_i_pair(nu, z).pair;
        const zcomplex wronskian = z * (here.first * k.second + here.second * k.first);
        EXPECT_LE(std::abs(wronskian * std::exp(here.log_scale + k.log_scale) - 1.0), 2.0 * tolerance(k.log_scale));

        // A neighbour two orders up may come from another region.
        const OrderPair up = moderate_i_pair(nu + 2.0, z).pair;
        const OrderPair down = advance_down(advance_down(up, nu + 2.0, z), nu + 1.0, z);
        EXPECT_LE(error(down, here, nu, z), 2.0 * tolerance(up.log_scale));

        const OrderPair mirrored_k = moderate_k_pair(nu, std::conj(z)).pair;
        const OrderPair mirrored_i = moderate_i_pair(nu, std::conj(z)).pair;
        EXPECT_EQ(mirrored_k.second, std::conj(k.second));
        EXPECT_EQ(mirrored_i.second, std::conj(here.second));
    }
}

TEST(RightHalfPlane, OriginAndSignsOfZero) {
    for (const double nu : {0.0, 1e-7, 3.0, 85.5}) {
        const auto [pair, converged] = moderate_i_pair(nu, 0.0);
        EXPECT_TRUE(converged);
        EXPECT_EQ(pair.first, nu == 0.0 ? 1.0 : 0.0);
        EXPECT_EQ(pair.second, 0.0);
        EXPECT_EQ(pair.log_scale, 0.0);
        for (const double y : {1.5, 10.0, -1.5, 5000.0}) {
            EXPECT_EQ(moderate_k_pair(nu, {-0.0, y}).pair.first, moderate_k_pair(nu, {0.0, y}).pair.first) << nu << y;
            EXPECT_EQ(moderate_i_pair(nu, {-0.0, y}).pair.first, moderate_i_pair(nu, {0.0, y}).pair.first) << nu << y;
        }
    }
}

TEST(Recurrences, ManyRescalings) { // for z towards 0: K(n) = (n - 1)! / 2 (2 / z)^n, I(n) = (z / 2)^n / n!
    constexpr int count = 2000;
    for (const zcomplex z : {zcomplex(1e-30), zcomplex(0.0, -1e-30)}) {
        OrderPair k = moderate_k_pair(0.0, z).pair;
        for (int n = 0; n < count; ++n) k = advance_up(k, n, z);
        const double log_k = std::lgamma(count) - std::log(2.0) + count * std::log(2e30);
        EXPECT_NEAR(k.log_scale + std::log(std::abs(k.first)), log_k, 1e-12 * log_k);
        EXPECT_LE(std::abs(k.second / k.first / (2.0 * count / z) - 1.0), 1e-12);

        OrderPair i{1.0, z / (2.0 * (count + 1.0)), count * std::log(0.5e-30) - std::lgamma(count + 1.0)};
        for (int n = count; n > 0; --n) i = advance_down(i, n, z);
        EXPECT_NEAR(i.log_scale + std::log(std::abs(i.first)), 0.0, 1e-12 * log_k);
        EXPECT_LE(std::abs(i.second / i.first / (0.5 * z) - 1.0), 1e-12);
    }
}

TEST(Phase, MultiplesOfAQuarterTurnAreExact) {
    const zcomplex quarters[] = {{1.0, 0.0}, {0.0, 1.0}, {-1.0, 0.0}, {0.0, -1.0}};
    for (int n = -9; n <= 9; ++n) {
        const zcomplex quarter = quarters[n & 3], eighth_on = quarter * std::polar(1.0, std::numbers::pi / 8.0);
        for (const double whole : {0.0, -4.0, 8192.0, -8192.0, 4194304.0, 0x1p50}) {
            EXPECT_EQ(unit_phase(whole + n), quarter) << whole + n;
            EXPECT_LE(std::abs(unit_phase(whole + n + 0.25) - eighth_on), 2.0 * epsilon) << whole + n;
        }
        const double x = 0.5 * n + 0.2;
        EXPECT_LE(std::abs(unit_phase(2.0 * x) - std::polar(1.0, std::numbers::pi * x)), 1e-14) << n;
    }
}

} // namespace
