// Nonlinear least squares: published problems, the protocol, every way a run ends, handles and their memory; and what
// both solvers have in common.
#include "tests/solvers_tr/least_squares_fit.hpp"
#include <thread>

namespace {

using namespace nxl_test;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

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
    EXPECT_LE(run.first_order_error(), 3e-6);
}

const auto name_of = [](const auto& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(, Problems, ::testing::ValuesIn(nxl_test::all_problems()), name_of);

/// The method for one unknown, where the shift has a closed form: checks every trial point of a run, counts rejections.
int follow_scalar_run(const Fit& run) {
    const auto slope_at = [&](double x) { return run.p.derivatives({x})[0]; };
    const auto value_at = [&](double x) { return run.p.values({x})[0]; };
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

TEST(Trnlsp, TolerancesAreReadAtEachUse) {
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

TEST(Trnlsp, FirstRadiusGoesByRs) {
    Fit hundred(rosenbrock()), zero(rosenbrock()), small(rosenbrock());
    zero.rs = 0.0;
    small.rs = 0.01;
    EXPECT_EQ(zero.to_the_end().points, hundred.to_the_end().points);
    small.to_the_end();
    const Vector step{small.points[1][0] + 1.2, small.points[1][1] - 1.0};
    EXPECT_NEAR(norm(step), 0.01 * norm({std::hypot(24.0, 1.0) * 1.2, 10.0}), 1e-12);
    Fit at_zero(named("Watson")); // x = 0: the radius is rs itself
    at_zero.rs = 0.25;
    at_zero.to_the_end();
    EXPECT_NEAR(norm(at_zero.points[1]), 0.25, 1e-12);
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

class EitherSolver : public ::testing::TestWithParam<bool> {
  protected:
    const bool bounded_ = GetParam();
    Fit fit(const Problem& of = rosenbrock()) const { return Fit::by(bounded_, of); }
};
INSTANTIATE_TEST_SUITE_P(, EitherSolver, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "bounded" : "free"; });

TEST_P(EitherSolver, RejectedStepKeepsThePointAndItsJacobian) {
    Fit run = fit();
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

TEST_P(EitherSolver, IterationLimit) {
    Fit limited = fit();
    limited.iter1 = 3;
    limited.to_the_end();
    EXPECT_EQ(limited.code, 1);
    EXPECT_EQ(limited.iterations, 3);
}

TEST_P(EitherSolver, CallerStopsAndGoesOn) { // between trials and in the middle of one
    for (const int reason : {-1, -2})
        for (const bool in_trial : {false, true}) {
            if (in_trial && !bounded_) continue; // a trial point is the caller's affair there
            Fit run = fit();
            ASSERT_EQ(run.start(), success);
            while (run.iterations < 2 || run.request != (in_trial ? 1 : 0)) run.leg();
            run.request = reason;
            EXPECT_EQ(run.leg(), 0);
            EXPECT_EQ(run.status, success);
            EXPECT_EQ(run.code, reason);
            EXPECT_EQ(run.iterations, 2);
            EXPECT_DOUBLE_EQ(run.last_norm, bounded_ ? norm(run.p.values(run.x)) : 0.0); // of the best point so far
            EXPECT_EQ(run.f, run.p.values(run.x));
            EXPECT_EQ(run.to_the_end().code, 3);
        }
}

TEST_P(EitherSolver, BadArgumentsAreRefused) {
    const auto expect_refused = [this](const auto& spoil) {
        Fit run = fit();
        spoil(run);
        void* const before = run.handle = &run; // stays as it is
        const long taken = allocations();
        EXPECT_EQ(run.start(), invalid);
        EXPECT_EQ(allocations(), taken);
        EXPECT_EQ(std::exchange(run.handle, nullptr), before);
        EXPECT_EQ(run.x, run.p.start);
    };
    for (const int n : {0, -1}) expect_refused([=](Fit& r) { r.n = r.m = n; });
    expect_refused([](Fit& r) { r.n = 0; });
    expect_refused([](Fit& r) { r.m = 1; });
    expect_refused([](Fit& r) { r.iter1 = 0; });
    expect_refused([](Fit& r) { r.iter2 = 0; });
    for (const double rs : {-0.5, 100.5, nan}) expect_refused([=](Fit& r) { r.rs = rs; });
    for (std::size_t i = 0; i < 6; ++i)
        for (const double value : {0.0, -1.0, nan}) expect_refused([=](Fit& r) { r.eps[i] = value; });
    void* nothing = nullptr;
    for (void** none : {static_cast<void**>(nullptr), &nothing}) {
        Fit run = fit();
        EXPECT_EQ(run.solve(none), invalid);
        EXPECT_EQ(run.get(none), invalid);
        EXPECT_EQ(run.end(none), invalid);
        EXPECT_EQ(run.iterations, -1);
    }
}

TEST_P(EitherSolver, FailedAllocationsLeaveNothingBehind) {
    const long before = live_blocks();
    int failures = 0;
    for (int status = no_memory; status == no_memory && failures < 50;) {
        Fit run = fit();
        fail_allocation(failures + 1);
        status = run.start();
        fail_allocation(0);
        if (status != no_memory) continue;
        ++failures;
        EXPECT_EQ(live_blocks(), before) << failures;
        EXPECT_EQ(run.handle, nullptr);
    }
    EXPECT_EQ(failures, bounded_ ? 8 : 9); // a record and its arrays
    EXPECT_EQ(live_blocks(), before);
    if (bounded_) return;
    Fit huge = fit(); // n * n doubles that no 64-bit number of bytes can count
    huge.n = huge.m = std::numeric_limits<int>::max();
    EXPECT_EQ(huge.start(), no_memory);
    EXPECT_EQ(live_blocks(), before);
}

TEST_P(EitherSolver, HandlesAreIndependentAndChangeThreads) {
    Fit alone = fit(), other_alone = fit(named("Bard"));
    alone.to_the_end();
    other_alone.to_the_end();
    const long before = live_blocks();
    {
        Fit first = fit(), second = fit(named("Bard"));
        ASSERT_EQ(first.start(), success);
        std::thread([&] { ASSERT_EQ(second.start(), success); }).join();
        while (first.request >= 0 || second.request >= 0) {
            if (first.request >= 0) std::thread([&] { first.leg(); }).join();
            if (second.request >= 0) second.leg();
        }
        EXPECT_EQ(first.points, alone.points);
        EXPECT_EQ(second.points, other_alone.points);
        std::thread([&] {
            EXPECT_EQ(first.end(&first.handle), success);
            first.handle = nullptr;
        }).join();
    }
    NXL_FreeBuffers();
    EXPECT_LE(live_blocks(), before);
}

} // namespace
