// Both families of least squares on functions that have no value, no better point, or sizes whose squares overflow:
// every run ends, asks about numbers alone, and leaves the accepted point and its F in the caller's arrays.
#include "tests/solvers_tr/least_squares_fit.hpp"

namespace {

using namespace nxl_test;

constexpr double nan = std::numeric_limits<double>::quiet_NaN(), inf = infinity;

struct Hostile {
    const char* name;
    Vector start;
    std::function<Vector(const Vector& x)> value, jacobian; // by columns
    Vector end;                                             // where the run ends by itself; none: it fails

    /// With derivatives as they are told here, and not those of the values.
    Problem problem() const {
        const auto by_columns = [this](const Complex* x, Complex* f) {
            const Vector at{x[0].real(), x[1].real()}, columns = jacobian(at), here = value(at);
            const std::size_t column = x[0].imag() != 0.0 ? 0 : 2;
            for (std::size_t i = 0; i < 2; ++i) f[i] = {here[i], columns[column + i] * x[column / 2].imag()};
        };
        const auto values = [this](const double* x, double* f) { std::ranges::copy(value({x[0], x[1]}), f); };
        return {name, start, 2, {}, values, by_columns};
    }
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

void PrintTo(const Hostile& hostile, std::ostream* out) { *out << hostile.name; }

class HostileFit : public testing::TestWithParam<std::tuple<bool, Hostile>> {};

TEST_P(HostileFit, EndsAtTheAcceptedPoint) {
    const auto& [bounded, hostile] = GetParam();
    Fit run(Fit::by(bounded, hostile.problem()));
    run.eps.assign(6, 1e-30);
    run.iter1 = 500;
    ASSERT_EQ(run.start(), success);
    Vector accepted = run.x;
    // From x = 0 the first radius is rs; one that columns of J scale has no limit.
    const double longest = bounded || norm(hostile.start) > 0.0 ? inf : 1.02 * run.rs;
    do {
        const bool judged = run.request == 1 && run.requests.size() > 1;
        const int before = run.iterations;
        run.leg();
        ASSERT_TRUE(std::isfinite(run.x[0]) && std::isfinite(run.x[1])) << run.requests.size();
        if (judged && run.iterations == before) EXPECT_EQ(run.x, accepted);
        if (run.request == 1 && run.iterations == 0) EXPECT_LE(norm(run.x), longest);
        if (run.request == 2) accepted = run.x;
    } while (run.request >= 0 && run.status == success && run.requests.size() < 5000);
    const bool fails = hostile.end.empty();
    EXPECT_EQ(run.status, fails ? invalid : success);
    EXPECT_EQ(run.code == -4, fails);
    if (fails) EXPECT_EQ(run.x, accepted);
    if (fails) return;
    EXPECT_EQ(run.request, -run.code);
    EXPECT_DOUBLE_EQ(run.last_norm, norm(hostile.value(run.x)));
    for (std::size_t k = 0; k < 2; ++k)
        if (!std::isnan(hostile.end[k])) EXPECT_NEAR(run.x[k], hostile.end[k], 1e-9 * std::fabs(hostile.end[k])) << k;
}

INSTANTIATE_TEST_SUITE_P(, HostileFit, testing::Combine(testing::Bool(), testing::ValuesIn(cases)),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param) ? "bounded_" : "free_") +
                                    std::get<1>(info.param).name;
                         });

} // namespace
