// Both families of least squares on functions that have no value, no better point, or sizes whose squares overflow:
// every run ends, asks about numbers alone, and leaves the accepted point and its F in the caller's arrays.
#include "nxl.h"
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

using Vector = std::vector<double>;
constexpr double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
constexpr int n = 2, m = 2;

struct Family {
    const char* name;
    int (*init)(void**, double* x, const double* eps);
    decltype(&dtrnlsp_solve) solve;
    decltype(&dtrnlsp_get) get;
    decltype(&dtrnlsp_delete) free;
    double longest; // step from x = 0, where the first radius is rs; one that columns of J scale has no limit
};

constexpr int most_iterations = 500, most_passes = 100;
constexpr double rs = 100.0;

constexpr Family families[] = {{"free",
                                [](void** handle, double* x, const double* eps) {
                                    return dtrnlsp_init(handle, &n, &m, x, eps, &most_iterations, &most_passes, &rs);
                                },
                                dtrnlsp_solve, dtrnlsp_get, dtrnlsp_delete, 1.02 * rs},
                               {"bounded",
                                [](void** handle, double* x, const double* eps) {
                                    static constexpr double lower[n] = {-inf, -inf}, upper[n] = {inf, inf};
                                    return dtrnlspbc_init(handle, &n, &m, x, lower, upper, eps, &most_iterations,
                                                          &most_passes, &rs);
                                },
                                dtrnlspbc_solve, dtrnlspbc_get, dtrnlspbc_delete, inf}};

struct Hostile {
    const char* name;
    Vector start;
    std::function<Vector(const Vector& x)> value, jacobian; // by columns
    Vector end;                                             // where the run ends by itself; none: it fails
};

Vector diagonal(double a, double b) { return {a, 0.0, 0.0, b}; }

/// F is (1, 1) at the start, `elsewhere` at all other points; steps are about -(a, b).
Hostile only_the_start(const char* name, const Vector& start, double a, double b, double elsewhere) {
    return {name, start, [=](const Vector& x) { return x == start ? Vector{1, 1} : Vector{elsewhere, 1}; },
            [=](const Vector&) { return diagonal(1.0 / a, 1.0 / b); }, start};
}

/// F without a value, or J, at the start or at all points but it.
Hostile without(const char* name, double f, double j, double j_later) {
    const Vector start{3, 4};
    return {name,
            start,
            [=](const Vector& x) { return Vector{x[0], x[1] + f}; },
            [=](const Vector& x) { return diagonal(1.5, x == start ? j : j_later); },
            {}};
}

Vector logarithms(const Vector& x) { return {std::log(x[0]) - std::log(0.01), x[1] - 2.0}; } // NaN below 0

const Hostile cases[] = {
    without("residual_nan", nan, 1, 1),
    without("residual_inf", inf, 1, 1),
    without("jacobian_nan", 0, nan, 1),
    without("jacobian_inf", 0, -inf, 1),
    without("later_jacobian_nan", 0, 1, nan),
    without("square_of_jacobian_overflows", 0, 1e200, 1),
    only_the_start("trials_larger", {0.1, 0.7}, 7e3, 3e2, 1e3),
    only_the_start("trials_nan", {0.1, 0.7}, 1, 2, nan),
    only_the_start("trials_inf", {0.1, 0.7}, 1, 2, inf),
    only_the_start("steps_dwarf_the_point", {1, 1e-17}, 1e12, 1e-3, 1e3),
    {"square_of_scaled_length_overflows",
     {0, 0},
     [](const Vector& x) { return Vector{x[0] - 5.0, 1e-87 * x[1] + 1.0}; },
     [](const Vector&) { return diagonal(1.0, 1e-87); },
     {5, nan}},
    {"squares_of_residuals_overflow",
     {1e169, 1e149},
     [](const Vector& x) { return Vector{x[0] - 1e170, x[1] - 3e150}; },
     [](const Vector&) { return diagonal(1.0, 1.0); },
     {1e170, 3e150}},
    {"logarithm", {3, 3}, logarithms, [](const Vector& x) { return diagonal(1.0 / x[0], 1.0); }, {0.01, 2}}};

void PrintTo(const Family& family, std::ostream* out) { *out << family.name; }
void PrintTo(const Hostile& hostile, std::ostream* out) { *out << hostile.name; }

double norm(const Vector& f) { return std::hypot(f[0], f[1]); }

class HostileFit : public testing::TestWithParam<std::tuple<Family, Hostile>> {};

TEST_P(HostileFit, EndsAtTheAcceptedPoint) {
    const auto& [family, hostile] = GetParam();
    Vector x = hostile.start, f(m), j(n * m), accepted = x;
    const Vector eps(6, 1e-30);
    void* handle = nullptr;
    ASSERT_EQ(family.init(&handle, x.data(), eps.data()), 1501);
    int request = 0, legs = 0, status = 1501, iterations = 0, code = 0;
    double first = 0.0, last = 0.0;
    while (request >= 0 && status == 1501 && ++legs < 5000) {
        const bool judged = request == 1 && legs > 2;
        status = family.solve(&handle, f.data(), j.data(), &request);
        const int before = iterations;
        EXPECT_EQ(family.get(&handle, &iterations, &code, &first, &last), 1501);
        ASSERT_TRUE(std::isfinite(x[0]) && std::isfinite(x[1])) << legs;
        if (judged && iterations == before) EXPECT_EQ(x, accepted);
        if (request == 1) f = hostile.value(x);
        if (request == 1 && iterations == 0 && norm(hostile.start) == 0.0) EXPECT_LE(norm(x), family.longest);
        if (request == 2) j = hostile.jacobian(x), accepted = x;
    }
    EXPECT_EQ(family.free(&handle), 1501);
    const bool fails = hostile.end.empty();
    EXPECT_EQ(status, fails ? 1502 : 1501);
    EXPECT_EQ(code == -4, fails);
    if (fails) EXPECT_EQ(x, accepted);
    if (fails) return;
    EXPECT_EQ(request, -code);
    EXPECT_DOUBLE_EQ(last, norm(hostile.value(x)));
    for (std::size_t k = 0; k < n; ++k)
        if (!std::isnan(hostile.end[k])) EXPECT_NEAR(x[k], hostile.end[k], 1e-9 * std::fabs(hostile.end[k])) << k;
}

INSTANTIATE_TEST_SUITE_P(, HostileFit, testing::Combine(testing::ValuesIn(families), testing::ValuesIn(cases)),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param).name) + "_" + std::get<1>(info.param).name;
                         });

} // namespace
