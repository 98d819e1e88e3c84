// nxl_least_squares.hpp: fits and Jacobians run to their end, inside bounds, and handles that are moved and dropped.
#include "nxl.hpp"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

namespace {

using Point = std::span<const double>;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Rosenbrock's valley; the solution is (1, 1).
void valley(Point x, std::span<double> f) {
    f[0] = 10.0 * (x[1] - x[0] * x[0]);
    f[1] = 1.0 - x[0];
}

TEST(LeastSquares, StaysInsideBoundsAndEndsOnThem) {
    struct Case {
        double lower[2], upper[2], solution[2];
    };
    const Case cases[] = {{{-2, -2}, {2, 2}, {1, 1}},
                          {{-2, -2}, {0.5, kInfinity}, {0.5, 0.25}},
                          {{-kInfinity, 4}, {kInfinity, 4}, {-1.9981, 4}},       // held
                          {{-1.2, 1}, {-1.2 + 1e-9, 1e6}, {-1.2 + 1e-9, 1.44}}}; // narrower than a difference
    for (const Case& c : cases) {
        double x[] = {-1.2, 1.0};
        const auto inside = [&](Point at, std::span<double> f) {
            for (std::size_t j = 0; j < 2; ++j) ASSERT_TRUE(c.lower[j] <= at[j] && at[j] <= c.upper[j]) << at[j];
            valley(at, f);
        };
        const nxl::Fit fit = nxl::least_squares(inside, x, 2, nxl::Bounds{c.lower, c.upper});
        EXPECT_TRUE(fit.status.ok()) << fit.status.text();
        for (int j = 0; j < 2; ++j) EXPECT_NEAR(x[j], c.solution[j], 1e-3 * std::abs(c.solution[j]));
        double f[2];
        valley(x, f);
        EXPECT_NEAR(fit.last_norm, std::hypot(f[0], f[1]), 1e-12);
    }
}

TEST(LeastSquares, JacobianOnABoundIsOneSided) {
    const double x[] = {0.0, 3.0}, lower[] = {0.0, -kInfinity}, upper[] = {kInfinity, 3.0};
    double free[4], bounded[4];
    const auto f = [](Point at, std::span<double> out) {
        EXPECT_FALSE(std::isnan(at[0] + at[1]));
        out[0] = std::exp(at[0]) * at[1];
        out[1] = at[1] * at[1];
    };
    ASSERT_TRUE(nxl::jacobian(f, x, 2, free).ok());
    ASSERT_TRUE(nxl::jacobian(f, x, 2, bounded, 1e-5, {lower, upper}).ok());
    const double exact[] = {3.0, 0.0, 1.0, 6.0}; // by columns
    for (int k = 0; k < 4; ++k) {
        EXPECT_NEAR(free[k], exact[k], 1e-9);
        EXPECT_NEAR(bounded[k], exact[k], 1e-4);
    }
    EXPECT_FALSE(nxl::jacobian(f, x, 3, free).ok());
}

TEST(LeastSquares, HandlesMoveAndTheirErrorsAreTold) {
    double x[] = {-1.2, 1.0}, f[2], slopes[4];
    const nxl::FitOptions options;
    nxl::LeastSquares first(x, 2, options), run(std::move(first));
    EXPECT_TRUE(run.status().ok());
    nxl::Request wanted{};
    EXPECT_FALSE(first.next(f, slopes, wanted)); // NOLINT: what it says once it has moved
    while (run.next(f, slopes, wanted)) {
        if (wanted == nxl::Request::residual) valley(x, f);
        if (wanted == nxl::Request::derivatives) ASSERT_TRUE(nxl::jacobian(valley, x, 2, slopes).ok());
    }
    EXPECT_LT(run.result().last_norm, 1e-8);

    const auto code = [&](int m, nxl::Bounds bounds) { return nxl::least_squares(valley, x, m, bounds).status.code(); };
    const double zero[] = {0.0, 0.0}, one[] = {1.0, 1.0};
    EXPECT_EQ(code(1, {zero, one}), 1502); // m < n
    EXPECT_EQ(code(2, {one, zero}), 1502);
    EXPECT_EQ(code(2, {}), 1502);
    const auto thrower = [](Point, std::span<double>) { throw std::domain_error("no"); };
    EXPECT_THROW(static_cast<void>(nxl::least_squares(thrower, x, 2)), std::domain_error);
}

} // namespace
