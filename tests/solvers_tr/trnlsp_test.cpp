// Nonlinear least squares: published problems, the protocol, every way a run ends, handles and their memory.
#include "nxl.h"
#include "tests/solvers_tr/least_squares_problems.hpp"
#include "tests/support/host_allocator.hpp"
#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

namespace {

using nxl_test::allocations, nxl_test::fail_allocation, nxl_test::live_blocks;
using nxl_test::Problem, nxl_test::problem, nxl_test::Vector;

constexpr int success = 1501, invalid = 1502, no_memory = 1503;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

double norm(const Vector& f) {
    double sum = 0.0;
    for (double value : f) sum += value * value;
    return std::sqrt(sum);
}

/// One run, leg by leg. The handle lives as long as this does.
struct Fit {
    Problem p;
    int n = p.n(), m = p.m, iter1 = 1000, iter2 = 100;
    double rs = 100.0;
    Vector eps = Vector(6, 1e-12);
    Vector x = p.start, f = Vector(static_cast<std::size_t>(m)), fjac = Vector(static_cast<std::size_t>(m * n));
    void* handle = nullptr;
    int request = 0, iterations = -1, code = 99;
    double first_norm = -1.0, last_norm = -1.0;
    std::vector<int> requests;  // the answers so far
    std::vector<Vector> points; // of residuals

    explicit Fit(Problem of) : p(std::move(of)) {}
    Fit(const Fit&) = delete;
    Fit& operator=(const Fit&) = delete;
    ~Fit() {
        if (handle) dtrnlsp_delete(&handle);
    }

    int start() { return dtrnlsp_init(&handle, &n, &m, x.data(), eps.data(), &iter1, &iter2, &rs); }

    /// One call, and the caller's part after it.
    int leg() {
        const int status = dtrnlsp_solve(&handle, f.data(), fjac.data(), &request);
        requests.push_back(request);
        if (request == 1) {
            points.push_back(x);
            p.value(x.data(), f.data());
        }
        if (request == 2) p.jacobian(x.data(), fjac.data());
        EXPECT_EQ(dtrnlsp_get(&handle, &iterations, &code, &first_norm, &last_norm), success);
        return status;
    }

    Fit& to_the_end() {
        if (!handle) EXPECT_EQ(start(), success);
        int legs = 0;
        do EXPECT_EQ(leg(), success);
        while (request >= 0 && ++legs < 100000);
        EXPECT_EQ(request, -code);
        return *this;
    }

    long asked(int what) const { return std::count(requests.begin(), requests.end(), what); }
};

Problem rosenbrock() { return nxl_test::problems_of_two_unknowns()[0]; }
Problem bard() { return nxl_test::problems_of_three_unknowns()[1]; }
Problem watson() { return nxl_test::larger_fits()[3]; }

class Problems : public ::testing::TestWithParam<Problem> {};

TEST_P(Problems, PublishedMinimumIsReached) {
    Fit run(GetParam());
    run.iter1 = 10000; // number 4 creeps: once a step has been cut short, the radius grows again after full steps alone
    run.to_the_end();
    EXPECT_GE(run.code, 3);
    const double reached = run.last_norm * run.last_norm;
    EXPECT_TRUE(std::any_of(run.p.minima.begin(), run.p.minima.end(), [&](double minimum) {
        return minimum == 0.0 ? reached <= 1e-20 : std::fabs(reached - minimum) <= 1e-6 * minimum;
    })) << reached;
    Vector f(run.f.size());
    run.p.value(run.x.data(), f.data()); // x and fvec of the accepted point, at the end too
    EXPECT_NEAR(norm(f), run.last_norm, 1e-12 * (1.0 + run.last_norm));
    if (run.last_norm < 1e-9) return;
    run.p.jacobian(run.x.data(), run.fjac.data());
    for (int j = 0; j < run.n; ++j) { // the residual is orthogonal to the columns of J
        const Vector column(run.fjac.begin() + j * run.m, run.fjac.begin() + (j + 1) * run.m);
        double product = 0.0;
        for (std::size_t i = 0; i < f.size(); ++i) product += column[i] * f[i];
        EXPECT_LE(std::fabs(product), 3e-6 * norm(column) * norm(f)) << j;
    }
}

const auto name_of = [](const auto& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(, Problems, ::testing::ValuesIn(nxl_test::all_problems()), name_of);

/// The method for one unknown, where the shift has a closed form: checks every trial point of a run, counts rejections.
int follow_scalar_run(const Fit& run) {
    const auto slope_at = [&](double x) {
        double j = 0.0;
        run.p.jacobian(&x, &j);
        return j;
    };
    const auto value_at = [&](double x) {
        double f = 0.0;
        run.p.value(&x, &f);
        return f;
    };
    double x = run.p.start[0], radius = 0.0;
    int rejections = 0;
    for (std::size_t trial = 1; trial < run.points.size(); ++trial) {
        const double f = value_at(x), j = slope_at(x);
        if (trial == 1) radius = run.rs * std::fabs(j * x);
        double s = -f / j, shift = 0.0;
        if (std::fabs(s) > 0.99 * radius) {
            if (std::fabs(s) >= 1.01 * radius) shift = j * j * (std::fabs(s) - radius) / radius;
            s = std::copysign(radius, s);
        }
        EXPECT_NEAR(run.points[trial][0], x + s, 1e-11 * std::fabs(x)) << trial;
        if (trial == 1) radius = std::min(radius, std::fabs(s));
        const double quotient = std::fabs(value_at(x + s) / f);
        const double by_shift = shift * s * s / (f * f), by_model = j * j * s * s / (f * f);
        const double actual = quotient < 10.0 ? 1.0 - quotient * quotient : -1.0;
        const double ratio = actual / (by_model + 2.0 * by_shift), down = -by_model - by_shift;
        double cut = actual < 0.0 ? 0.5 * down / (down + 0.5 * actual) : 0.5;
        if (quotient >= 10.0 || cut < 0.1) cut = 0.1;
        if (ratio > 0.25 && shift == 0.0) radius = 2.0 * std::fabs(s);
        if (ratio <= 0.25) radius = cut * std::min(radius, 10.0 * std::fabs(s));
        if (ratio >= 1e-4) x = run.points[trial][0];
        else ++rejections;
    }
    return rejections;
}

TEST(Trnlsp, ScalarRunsFollowTheMethod) { // catches a sign or a factor in the ratio and the radius
    const auto steep = [](const auto* x, auto* f) { f[0] = std::atan(3.0 * x[0]); }; // full steps diverge
    const auto cubic = [](const auto* x, auto* f) { // flat at 10: steps to where it is more than tenfold
        const auto d = x[0] - 10.0;
        f[0] = d * d * d - 1.0;
    };
    int rejections = 0;
    for (double rs : {0.5, 4.0, 100.0})
        for (double start : {0.05, 0.1, -0.6, 5.0})
            for (int which : {0, 1}) {
                Fit run(which == 0 ? problem("steep", {start}, 1, {0.0}, steep)
                                   : problem("cubic", {10.0 + start}, 1, {0.0}, cubic));
                run.rs = rs;
                run.iter1 = 60;
                run.to_the_end();
                rejections += follow_scalar_run(run);
            }
    EXPECT_GE(rejections, 5);
}

TEST(Trnlsp, RejectedStepKeepsThePointAndItsJacobian) {
    Fit run(rosenbrock());
    ASSERT_EQ(run.start(), success);
    Vector x = run.x, f = run.f;
    long rejected = 0;
    int before = 0;
    while (run.request >= 0) {
        const bool judged = run.request == 1 && run.points.size() > 1;
        run.leg();
        if (judged) {
            ASSERT_EQ(run.request, 0);
            if (run.iterations > before) {
                EXPECT_EQ(run.x, run.points.back());
                EXPECT_LT(norm(run.f), norm(f));
            } else {
                ++rejected;
                EXPECT_EQ(run.x, x);
                EXPECT_EQ(run.f, f);
                run.leg();
                EXPECT_EQ(run.request, 1); // a new trial point, no Jacobian
                continue;
            }
            before = run.iterations;
        }
        if (run.request == 2) x = run.x, f = run.f;
    }
    EXPECT_GE(rejected, 1);
    EXPECT_EQ(run.asked(2), run.iterations);
    EXPECT_EQ(run.asked(1), 1 + run.iterations + rejected);
    EXPECT_DOUBLE_EQ(run.first_norm, norm({-4.4, 2.2}));
}

TEST(Trnlsp, StopCodesOfTheFirstPass) {
    Fit solved(rosenbrock());
    solved.eps[1] = 5.0; // |F| = 4.92 at the start
    EXPECT_EQ(solved.to_the_end().requests, (std::vector<int>{1, -3}));
    EXPECT_EQ(solved.first_norm, solved.last_norm);

    Fit flat(problem("flat", {1.0, 2.0}, 2, {}, [](const auto* x, auto* f) { f[0] = f[1] = 0.0 * x[0] + 3.0; }));
    EXPECT_EQ(flat.to_the_end().requests, (std::vector<int>{1, 2, -4}));
    EXPECT_DOUBLE_EQ(flat.last_norm, norm({3.0, 3.0}));
    EXPECT_EQ(flat.x, flat.p.start);

    Fit short_step(rosenbrock());
    short_step.eps[3] = 1e3;
    EXPECT_EQ(short_step.to_the_end().requests, (std::vector<int>{1, 2, -5}));

    Fit no_change(rosenbrock()); // columns of norm 24 and 10; |F - J s| = 2 |F|, as J s = -F
    no_change.eps[2] = 5.0;
    EXPECT_EQ(no_change.to_the_end().requests, (std::vector<int>{1, 2, -6}));
    EXPECT_EQ(no_change.iterations, 0);
    EXPECT_EQ(no_change.x, no_change.p.start);
}

TEST(Trnlsp, PredictedChangeIsThatOfTheResidualMinusTheModel) { // |F| = 5, |F - J s| = |(6, 4)|, |F + J s| = 4
    const auto line = [](const auto* x, auto* f) {
        f[0] = 10.0 * x[0] - 7.0;
        f[1] = 4.0 + 0.0 * x[0];
    };
    Fit change(problem("line", {1.0}, 2, {}, line)), none(change.p);
    change.eps[2] = 2.2;
    none.eps[2] = 2.22;
    change.to_the_end();
    EXPECT_EQ(change.requests[2], 1);
    EXPECT_EQ(none.to_the_end().requests, (std::vector<int>{1, 2, -6}));
}

TEST(Trnlsp, OneColumnThatIsNotZeroGoesOn) { // catches a stop at the first small column
    Fit run(problem("half", {1.0, 2.0}, 2, {}, [](const auto* x, auto* f) {
        f[0] = x[1] - 5.0;
        f[1] = 0.0 * x[0];
    }));
    run.to_the_end();
    EXPECT_EQ(run.code, 3);
    EXPECT_NEAR(run.x[1], 5.0, 1e-10);
}

TEST(Trnlsp, IterationLimitAndTolerancesReadAtEachUse) {
    Fit limited(rosenbrock());
    limited.iter1 = 3;
    limited.to_the_end();
    EXPECT_EQ(limited.code, 1);
    EXPECT_EQ(limited.iterations, 3);
    EXPECT_DOUBLE_EQ(limited.last_norm, norm(limited.f));

    Fit run(rosenbrock());
    run.eps[0] = 1e9; // looked at after the first pass alone
    ASSERT_EQ(run.start(), success);
    while (run.iterations < 1 && run.requests.size() < 50) {
        if (run.points.size() == 2) run.eps[0] = 1e-12;
        run.leg();
    }
    run.eps[0] = 1e9;
    run.leg();
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.request, -2);
    EXPECT_DOUBLE_EQ(run.last_norm, norm(run.f));
    run.eps[0] = 1e-12; // nothing forbids going on
    run.request = 0;
    EXPECT_EQ(run.to_the_end().code, 3);
}

TEST(Trnlsp, CallerStopsAndGoesOn) {
    for (int stop : {-1, -2}) {
        Fit run(rosenbrock());
        ASSERT_EQ(run.start(), success);
        while (run.iterations < 2) run.leg();
        run.request = stop;
        EXPECT_EQ(run.leg(), success);
        EXPECT_EQ(run.request, 0);
        EXPECT_EQ(run.code, stop);
        EXPECT_EQ(run.iterations, 2);
        EXPECT_EQ(run.last_norm, 0.0);
        EXPECT_EQ(run.to_the_end().code, 3);
    }
}

TEST(Trnlsp, FirstRadiusGoesByRs) {
    Fit hundred(rosenbrock()), zero(rosenbrock()), small(rosenbrock());
    zero.rs = 0.0;
    small.rs = 0.01;
    EXPECT_EQ(zero.to_the_end().points, hundred.to_the_end().points);
    small.to_the_end();
    const Vector step{small.points[1][0] + 1.2, small.points[1][1] - 1.0};
    EXPECT_NEAR(norm(step), 0.01 * norm({std::hypot(24.0, 1.0) * 1.2, 10.0}), 1e-12);
    Fit at_zero(watson()); // x = 0: the radius is rs itself
    at_zero.rs = 0.25;
    at_zero.to_the_end();
    EXPECT_NEAR(norm(at_zero.points[1]), 0.25, 1e-12);
}

TEST(Trnlsp, BadArgumentsAreRefused) {
    const long taken = allocations();
    const auto status_after = [](auto change) {
        Fit run(rosenbrock());
        change(run);
        const int status = run.start();
        EXPECT_EQ(run.handle, nullptr);
        return status;
    };
    EXPECT_EQ(status_after([](Fit& r) { r.n = 0; }), invalid);
    EXPECT_EQ(status_after([](Fit& r) { r.n = r.m = 0; }), invalid);
    EXPECT_EQ(status_after([](Fit& r) { r.m = 1; }), invalid);
    EXPECT_EQ(status_after([](Fit& r) { r.iter1 = 0; }), invalid);
    EXPECT_EQ(status_after([](Fit& r) { r.iter2 = 0; }), invalid);
    for (double rs : {-0.5, 100.5, nan}) EXPECT_EQ(status_after([=](Fit& r) { r.rs = rs; }), invalid);
    for (std::size_t i = 0; i < 6; ++i)
        for (double value : {0.0, -1.0, nan}) EXPECT_EQ(status_after([=](Fit& r) { r.eps[i] = value; }), invalid);
    EXPECT_EQ(allocations(), taken);
    Fit run(rosenbrock());
    EXPECT_EQ(dtrnlsp_solve(&run.handle, run.f.data(), run.fjac.data(), &run.request), invalid);
    EXPECT_EQ(dtrnlsp_get(&run.handle, &run.iterations, &run.code, &run.first_norm, &run.last_norm), invalid);
    EXPECT_EQ(dtrnlsp_delete(&run.handle), invalid);
    EXPECT_EQ(dtrnlsp_delete(nullptr), invalid);
}

TEST(Trnlsp, FailedAllocationsLeaveNothingBehind) {
    const long before = live_blocks();
    int status = no_memory;
    for (long k = 1; k <= 50 && status == no_memory; ++k) {
        Fit run(rosenbrock());
        fail_allocation(k);
        status = run.start();
        fail_allocation(0);
        if (status != no_memory) break;
        EXPECT_EQ(live_blocks(), before) << k;
        EXPECT_EQ(run.handle, nullptr);
    }
    EXPECT_EQ(status, success);
    EXPECT_EQ(live_blocks(), before);
    Fit huge(rosenbrock()); // n * n doubles that no 64-bit number of bytes can count
    huge.n = huge.m = std::numeric_limits<int>::max();
    EXPECT_EQ(huge.start(), no_memory);
    EXPECT_EQ(live_blocks(), before);
}

TEST(Trnlsp, HandlesAreIndependentAndChangeThreads) {
    Fit alone(rosenbrock()), other_alone(bard());
    alone.to_the_end();
    other_alone.to_the_end();
    const long before = live_blocks();
    {
        Fit first(rosenbrock()), second(bard());
        ASSERT_EQ(first.start(), success);
        std::thread([&] { ASSERT_EQ(second.start(), success); }).join();
        while (first.request >= 0 || second.request >= 0) {
            if (first.request >= 0) std::thread([&] { first.leg(); }).join();
            if (second.request >= 0) second.leg();
        }
        EXPECT_EQ(first.points, alone.points);
        EXPECT_EQ(second.points, other_alone.points);
        std::thread([&] {
            EXPECT_EQ(dtrnlsp_delete(&first.handle), success);
            first.handle = nullptr;
        }).join();
    }
    NXL_FreeBuffers();
    EXPECT_LE(live_blocks(), before);
}

TEST(Trnlsp, ThreadsMakeNoDifferenceButRounding) { // of a size at which products and column loops fork
    const auto chain = [](const auto* x, auto* f) {
        for (int i = 0; i < 1000; ++i) f[i] = x[i % 100] + 0.5 * x[i % 100] * x[(i + 1) % 100] - 1e-3 * i;
    };
    std::vector<Vector> found;
    for (int threads : {1, 4}) {
        NXL_Set_Dynamic(0);
        NXL_Set_Num_Threads(threads);
        Fit run(problem("chain", Vector(100, 3.0), 1000, {}, chain));
        run.rs = 0.1;
        EXPECT_EQ(run.to_the_end().code, 6);
        EXPECT_GE(run.iterations, 3);
        found.push_back(run.x);
    }
    for (std::size_t j = 0; j < 100; ++j) EXPECT_NEAR(found[0][j], found[1][j], 1e-5) << j;
}

} // namespace
