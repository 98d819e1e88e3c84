// Ai and Ai' against references of 60 digits in every region, and against the Wronskian on random points.
#include "primitives/bessel/airy.hpp"
#include "tests/primitives/bessel/reference_table.hpp"
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>

namespace {

using nxl::zcomplex;
using nxl::bessel::airy;
using nxl::bessel::AiryPair;
constexpr double eps = std::numeric_limits<double>::epsilon();

/// What the two exponentials around the negative axis cost: the phase between them is 2 |zeta|.
double tolerance(zcomplex zeta) { return 1e-13 + (zeta.real() < 0.01 ? 4.0 * eps * std::abs(zeta) : 0.0); }

TEST(Airy, ReferencesInEveryRegion) {
    for (nxl_test::TableRow& row : nxl_test::read_table("airy", 8)) {
        const zcomplex z = row.complex(), zeta = row.complex(), value = row.complex(), derivative = row.complex();
        SCOPED_TRACE(testing::Message() << "z = " << z);
        const AiryPair got = airy(z);
        // near a zero of one function the other one tells the size
        const double root = std::sqrt(std::max(std::abs(z), 1.0));
        const double size = std::max(std::abs(value), std::abs(derivative) / root);
        const double value_size = z.imag() == 0.0 && z.real() > -1.0 ? std::abs(value) : size;
        EXPECT_LE(std::abs(got.value - value), tolerance(zeta) * value_size);
        EXPECT_LE(std::abs(got.derivative - derivative), tolerance(zeta) * size * root);
        EXPECT_LE(std::abs(got.zeta - zeta), 4.0 * eps * std::abs(zeta));
    }
}

TEST(Airy, RealArgumentsStayReal) {
    for (const double x : {0.0, 0.3, 2.7, 8.9, 9.1, 5000.0}) {
        const AiryPair right = airy(x), left = airy(zcomplex(-x, -0.0));
        EXPECT_EQ(right.value.imag(), 0.0);
        EXPECT_EQ(right.derivative.imag(), 0.0);
        EXPECT_LE(left.zeta.imag(), 0.0) << "the upper side of the cut";
        const zcomplex scale = std::exp(-left.zeta);
        EXPECT_LE(std::abs((left.value * scale).imag()), 2.0 * eps * std::abs(left.value));
        EXPECT_LE(std::abs((left.derivative * scale).imag()), 2.0 * eps * std::abs(left.derivative));
    }
}

TEST(Airy, RoundingOfAGivenZetaBringsNoSecondExponential) {
    const AiryPair exact = airy(20.0), rounded = airy(20.0, exact.zeta - zcomplex(0.0, 1e-14));
    EXPECT_LE(std::abs(rounded.value - exact.value), 1e-13 * std::abs(exact.value));
    EXPECT_LE(std::abs(rounded.derivative - exact.derivative), 1e-13 * std::abs(exact.derivative));
}

/// Ai(z) Ai'(w z) w - Ai'(z) Ai(w z) = exp(+-i pi/6) / (2 pi), w = exp(-+2 pi i/3) (DLMF 9.2.9). With w towards the
/// positive axis one of the two falls where the other one grows.
TEST(Airy, WronskianOnRandomPoints) {
    std::mt19937_64 random(14);
    std::uniform_real_distribution<double> angle(-1.0, 1.0), log_radius(-2.0, 3.0);
    for (int i = 0; i < 4000; ++i) {
        const zcomplex z = std::polar(std::pow(10.0, log_radius(random)), std::numbers::pi * angle(random));
        const double side = std::copysign(1.0, z.imag());
        const zcomplex turn = std::polar(1.0, -side * 2.0 * std::numbers::pi / 3.0);
        const AiryPair a = airy(z), b = airy(turn * z);
        const zcomplex difference = a.value * b.derivative * turn - a.derivative * b.value;
        const zcomplex expected = std::polar(0.5 * std::numbers::inv_pi, side * std::numbers::pi / 6.0);
        EXPECT_LE(std::abs(difference * std::exp(-a.zeta - b.zeta) - expected), 2e-14 + 4.0 * eps * std::abs(a.zeta))
            << z;
    }
}

} // namespace
