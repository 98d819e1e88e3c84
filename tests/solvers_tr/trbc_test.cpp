// dtrnlspbc: it ends at first-order points wherever they lie, asks only for points inside the bounds, and tells why it
// stopped.
#include "tests/solvers_tr/trbc_support.hpp"
#include "tests/support/host_allocator.hpp"
#include <utility>

namespace {

using namespace nxl_test;

constexpr double first_order = 3e-7;
constexpr double unknown = -1.0;

struct Known {
    const char* name;
    Problem problem;
    Vector lower, upper;
    double least = unknown; // |F|^2 there
    Vector solution = Vector(0);
    double eps = 1e-30;
};

void PrintTo(const Known& known, std::ostream* out) { *out << known.name; }

class KnownProblem : public testing::TestWithParam<Known> {};

TEST_P(KnownProblem, EndsAtItsSolution) {
    const Known& known = GetParam();
    Fit run(known.problem, known.lower, known.upper);
    run.eps.assign(6, known.eps);
    run.solve();
    EXPECT_NE(run.code, 1);
    EXPECT_LE(run.first_order_error(), first_order);
    if (known.least != unknown) EXPECT_NEAR(run.r2 * run.r2, known.least, 1e-5 * known.least + 1e-20);
    for (std::size_t i = 0; i < known.solution.size(); ++i)
        EXPECT_NEAR(run.x[i], known.solution[i], 1e-6 * std::max(1.0, std::fabs(known.solution[i]))) << i;
}

const double inf = infinity;
const Vector far = {-1.2, 1.0};

// Where Rosenbrock's valley meets x2 = 1.5: 400 x1 (x1^2 - 1.5) = 2 (1 - x1).
double valley_at_one_and_a_half() {
    double x = 1.2;
    for (int i = 0; i < 50; ++i) x -= (400 * x * (x * x - 1.5) + 2 * (x - 1)) / (1200 * x * x - 598);
    return x;
}

INSTANTIATE_TEST_SUITE_P(
    , KnownProblem,
    testing::Values(
        Known{"interior", rosenbrock(far), {-2, -2}, {2, 2}, 0.0, {1, 1}},
        Known{"edge", rosenbrock(far), {-2, -2}, {0.5, 2}, 0.25, {0.5, 0.25}},
        Known{"lower_edge", rosenbrock({1.9, 1.9}), {-2, 1.5}, {2, 2}, unknown, {valley_at_one_and_a_half(), 1.5}},
        Known{"corner", rosenbrock({2, 0}), {1.5, -1}, {2, 1}, 156.5, {1.5, 1}},
        Known{"start_at_another_corner", rosenbrock({2, -1}), {1.5, -1}, {2, 1}, 156.5, {1.5, 1}},
        Known{"start_outside", rosenbrock({-7, 9}), {-2, -2}, {0.5, 2}, 0.25, {0.5, 0.25}},
        Known{"no_multiplier_at_the_bound", rosenbrock(far), {-2, -2}, {1, 1}, 0.0, {1, 1}},
        Known{"one_sided", rosenbrock(far), {-inf, -inf}, {0.5, inf}, 0.25, {0.5, 0.25}},
        Known{"fixed", rosenbrock(far), {0.5, -inf}, {0.5, inf}, 0.25, {0.5, 0.25}},
        Known{"all_fixed", rosenbrock(far), {3, 4}, {3, 4}, 2504.0, {3, 4}},
        Known{"bard", bard(), Vector(3, -10), Vector(3, 10), 8.21487e-3},
        Known{"bard_on_a_face", bard(), {0.09, 0, 0}, {10, 10, 1.5}},
        Known{"kowalik_osborne", kowalik_osborne(), Vector(4, 0), Vector(4, 1), 3.07505e-4},
        Known{"kowalik_osborne_on_a_face", kowalik_osborne(), Vector(4, 0.15), Vector(4, 0.5)},
        Known{"meyer", meyer(), {0, 0, 0}, {10, 1e5, 1e4}, 87.9458},
        Known{"meyer_on_a_face", meyer(), {0.006, 0, 0}, {2, 3e5, 3e4}},
        Known{"osborne", osborne(), {0, 0, -5, 0, 0}, {3, 3, 0, 1, 1}, 5.46489e-5},
        Known{"osborne_on_a_face", osborne(), {0, 0, -1, 0, 0}, {3, 3, 0, 1, 0.02}},
        Known{"brown_dennis", brown_dennis(), {-100, -100, -100, -100}, {100, 100, 100, 100}, 85822.2},
        Known{"brown_dennis_on_a_face", brown_dennis(), {-10, 0, -100, -20}, {100, 15, 0, 0.2}},
        Known{"freudenstein_roth", freudenstein_roth(), {-inf, -1.5}, {inf, 1}, 48.9842},
        Known{"freudenstein_roth_corner", freudenstein_roth(), {0, -30}, {8, -2}},
        Known{"powell_singular", powell_singular(), Vector(4, -inf), Vector(4, inf), unknown, {}, 1e-14},
        Known{"powell_singular_cut", powell_singular(), {0.1, -20, -20, -20}, {100, 20, 20, 20}}),
    [](const auto& info) { return info.param.name; });

/// Solves a x = b by elimination; a is small and well conditioned.
Vector solve_dense(std::vector<Vector> a, Vector b) {
    const std::size_t n = b.size();
    for (std::size_t k = 0; k < n; ++k)
        for (std::size_t i = k + 1; i < n; ++i) {
            const double factor = a[i][k] / a[k][k]; // positive definite: no pivoting
            for (std::size_t j = k; j < n; ++j) a[i][j] -= factor * a[k][j];
            b[i] -= factor * b[k];
        }
    for (std::size_t k = n; k-- > 0;) {
        for (std::size_t j = k + 1; j < n; ++j) b[k] -= a[k][j] * b[j];
        b[k] /= a[k][k];
    }
    return b;
}

/// The least |F| of a linear problem within finite bounds: every choice of variables at bounds is tried.
Vector by_enumeration(const Problem& problem, const Vector& lower, const Vector& upper) {
    const int n = problem.n();
    const Vector j = derivatives(problem, Vector(at(n), 0.0));
    Vector best;
    for (int choice = 0; choice < std::lround(std::pow(3, n)); ++choice) {
        Vector x(at(n), 0.0);
        std::vector<std::size_t> free;
        for (int k = 0, digits = choice; k < n; ++k, digits /= 3)
            if (digits % 3 == 2) free.push_back(at(k));
            else x[at(k)] = digits % 3 == 0 ? lower[at(k)] : upper[at(k)];
        const Vector f = values(problem, x);
        std::vector<Vector> a(free.size(), Vector(free.size(), 0.0));
        Vector b(free.size(), 0.0);
        for (std::size_t i = 0; i < f.size(); ++i)
            for (std::size_t r = 0; r < free.size(); ++r) {
                b[r] -= j[free[r] * f.size() + i] * f[i];
                for (std::size_t c = 0; c < free.size(); ++c)
                    a[r][c] += j[free[r] * f.size() + i] * j[free[c] * f.size() + i];
            }
        const Vector solution = solve_dense(a, b);
        bool inside = true;
        for (std::size_t r = 0; r < free.size(); ++r) {
            x[free[r]] = solution[r];
            inside = inside && lower[free[r]] <= solution[r] && solution[r] <= upper[free[r]];
        }
        if (inside && (best.empty() || norm(values(problem, x)) < norm(values(problem, best)))) best = x;
    }
    return best;
}

TEST(Bounded, LinearProblemsAgreeWithEnumeration) {
    int on_bounds = 0;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        Fit run(random_problem(9, 5, 0.0, seed), Vector(5, -0.3), Vector(5, 0.2));
        run.lower[seed % 5] = 0.1;
        run.solve();
        const Vector expected = by_enumeration(run.problem, run.lower, run.upper);
        for (std::size_t i = 0; i < 5; ++i) {
            EXPECT_NEAR(run.x[i], expected[i], 1e-7);
            if (expected[i] == run.lower[i] || expected[i] == run.upper[i]) {
                EXPECT_EQ(run.x[i], expected[i]); // a bound exactly
                ++on_bounds;
            }
        }
        EXPECT_LE(run.iterations, 3); // the model is the problem
    }
    EXPECT_GT(on_bounds, 40);
}

TEST(Bounded, RandomProblemsEndAtFirstOrderPoints) {
    std::mt19937 generator(11);
    std::uniform_real_distribution<double> width(0.0, 2.0), middle(-1.0, 1.0);
    std::uniform_int_distribution<int> kind(0, 5);
    for (unsigned seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        const int n = 1 + static_cast<int>(seed % 9);
        Fit run(random_problem(n + static_cast<int>(seed % 4), n, 2.0, seed));
        for (std::size_t i = 0; i < at(n); ++i) {
            const int which = kind(generator);
            const double half = which == 0 ? 0.0 : width(generator), centre = middle(generator);
            if (which != 1) run.lower[i] = centre - half;
            if (which != 2) run.upper[i] = centre + half;
        }
        if (seed % 4 == 1) run.rs = 0.01;
        if (seed % 4 == 2) run.iter2 = 1;    // Cauchy decrease is what a step has at least
        if (seed % 4 == 3) run.eps[5] = 1.0; // coarse steps
        run.solve();
        EXPECT_NE(run.code, 1);
        EXPECT_LE(run.first_order_error(), 1e-6);
    }
}

TEST(Bounded, ManyVariablesOnBounds) { // blocked factorisations, and faces that change by many variables at a time
    Fit run(random_problem(200, 150, 1.0, 5), Vector(150, -0.1), Vector(150, 0.1));
    run.solve();
    EXPECT_LE(run.first_order_error(), first_order);
    const auto at_bound = std::count_if(run.x.begin(), run.x.end(), [](double v) { return std::fabs(v) == 0.1; });
    EXPECT_GT(at_bound, 10);
    EXPECT_LT(at_bound, 150);
}

TEST(Bounded, WideBoundsGiveTheUnconstrainedMinimum) {
    for (const Problem& problem : {bard(), kowalik_osborne(), rosenbrock(far)}) {
        Fit open(problem), boxed(problem, Vector(problem.start.size(), -1e6), Vector(problem.start.size(), 1e6));
        open.solve();
        boxed.solve();
        for (std::size_t i = 0; i < open.x.size(); ++i) EXPECT_NEAR(open.x[i], boxed.x[i], 1e-5);
    }
}

TEST(Bounded, LargeResidualsConvergeFast) { // J alone makes hundreds of iterations
    Fit open(brown_dennis()), cut(brown_dennis(), {-10, 0, -100, -20}, {100, 15, 0, 0.2});
    open.solve();
    cut.solve();
    EXPECT_LT(open.evaluations, 80);
    EXPECT_LT(cut.evaluations, 80);
}

TEST(BoundedInit, RefusesBadArguments) {
    const double nan = std::nan("");
    const auto refused = [](auto&& spoil) {
        Fit run(rosenbrock({-5, 5}), {-2, -2}, {2, 2});
        run.handle = &run; // stays as it is
        spoil(run);
        const long before = allocations();
        const int status = run.init();
        EXPECT_EQ(run.x.empty() ? -5.0 : run.x[0], std::isnan(run.x[0]) ? run.x[0] : -5.0);
        EXPECT_EQ(allocations(), before);
        EXPECT_EQ(std::exchange(run.handle, nullptr), &run);
        return status == 1502;
    };
    EXPECT_TRUE(refused([](Fit& r) { r.problem.m = 1; })); // m < n
    EXPECT_TRUE(refused([](Fit& r) { r.problem.start.clear(), r.problem.m = 0; }));
    EXPECT_TRUE(refused([](Fit& r) { r.iter1 = 0; }));
    EXPECT_TRUE(refused([](Fit& r) { r.iter2 = 0; }));
    for (const double rs : {-0.5, 100.5, nan}) EXPECT_TRUE(refused([&](Fit& r) { r.rs = rs; })) << rs;
    for (std::size_t i = 0; i < 6; ++i)
        for (const double value : {0.0, -1.0, nan}) EXPECT_TRUE(refused([&](Fit& r) { r.eps[i] = value; })) << i;
    EXPECT_TRUE(refused([](Fit& r) { r.lower[1] = 2.5; }));
    EXPECT_TRUE(refused([&](Fit& r) { r.lower[1] = nan; }));
    EXPECT_TRUE(refused([&](Fit& r) { r.upper[0] = nan; }));
    EXPECT_TRUE(refused([](Fit& r) { r.lower[0] = r.upper[0] = inf; }));
    EXPECT_TRUE(refused([](Fit& r) { r.lower[0] = r.upper[0] = -inf; }));
    Fit run(rosenbrock({0, 0}));
    run.x[1] = inf; // nowhere to move it to
    EXPECT_EQ(run.init(), 1502);
    run.x[1] = nan;
    EXPECT_EQ(run.init(), 1502);
}

TEST(BoundedInit, MovesTheStartIntoTheBounds) {
    Fit run(rosenbrock({-5, 1}), {-2, -2}, {2, 0.3});
    run.rs = 0.0; // 100 is meant
    ASSERT_EQ(run.init(), 1501);
    EXPECT_EQ(run.x, (Vector{-2, 0.3}));
}

TEST(BoundedInit, FailedAllocationsGiveEverythingBack) {
    const long before = live_blocks();
    int failures = 0;
    for (long k = 1; k < 30; ++k) {
        Fit run(rosenbrock({5, 5}), {-2, -2}, {2, 2});
        fail_allocation(k);
        const int status = run.init();
        fail_allocation(0);
        if (status == 1501) break;
        ++failures;
        EXPECT_EQ(status, 1503);
        EXPECT_EQ(run.handle, nullptr);
        EXPECT_EQ(live_blocks(), before);
        EXPECT_EQ(run.x[0], 5.0);
    }
    EXPECT_EQ(failures, 8); // a record and seven arrays
    EXPECT_EQ(live_blocks(), before);
}

TEST(BoundedCalls, NullHandles) {
    int integer = 5;
    double real = 0.0;
    void* handle = nullptr;
    for (void** none : {static_cast<void**>(nullptr), &handle}) {
        EXPECT_EQ(dtrnlspbc_solve(none, &real, &real, &integer), 1502);
        EXPECT_EQ(dtrnlspbc_get(none, &integer, &integer, &real, &real), 1502);
        EXPECT_EQ(dtrnlspbc_delete(none), 1502);
    }
    EXPECT_EQ(integer, 5);
}

struct Stop {
    int code;
    std::size_t eps; // the entry that makes it stop, from 0
    double value;
};

TEST(BoundedStops, EachTestGivesItsCode) {
    for (const auto& [code, entry, value] :
         {Stop{2, 0, 1e3}, Stop{3, 1, 1e-3}, Stop{4, 2, 1e6}, Stop{5, 3, 1e3}, Stop{6, 2, 0.3}}) {
        SCOPED_TRACE(code);
        Fit run(rosenbrock(far), {-2, -2}, {0.99, 2});
        if (code == 3) run.upper = {2, 2};
        if (code == 2) run.rs = 1e-3; // a radius of rs |D x| would be larger than eps(1)
        run.eps[entry] = value;
        run.solve();
        EXPECT_EQ(run.code, code);
        EXPECT_DOUBLE_EQ(run.r1, norm(values(run.problem, far)));
        if (code == 3) EXPECT_LE(run.r2, 1e-3);
        if (code == 4 || code == 5) EXPECT_EQ(run.evaluations, 1);
    }
    Fit limited(rosenbrock(far), {-2, -2}, {2, 2});
    limited.iter1 = 3;
    limited.solve();
    EXPECT_EQ(limited.code, 1);
    EXPECT_EQ(limited.iterations, 3);
}

TEST(BoundedStops, StationaryStarts) {
    Fit solved(rosenbrock({1, 1}));
    solved.solve();
    EXPECT_EQ(solved.code, 3);
    EXPECT_EQ(solved.jacobians, 0); // no Jacobian is wanted where F is small
    Fit corner(rosenbrock({1.5, 1}), {1.5, -1}, {2, 1});
    corner.solve();
    EXPECT_EQ(corner.code, 4); // no variable is free
    EXPECT_EQ(corner.evaluations, 1);
    Fit flat({2, {0, 0}, [](const Complexes&, Complexes& f) { f = {1.0, 2.0}; }});
    flat.solve();
    EXPECT_EQ(flat.code, 4);
    // x(1) is free but F does not know it; x(2) has a column, but is held by its bound.
    Fit held({2, {0, 0}, [](const Complexes& x, Complexes& f) { f = {1.0 + x[1], 2.0}; }}, {-1, 0}, {1, 1});
    held.solve();
    EXPECT_EQ(held.code, 4);
}

TEST(BoundedStops, CallerLeavesInTheMiddleOfATrial) {
    for (const int reason : {-1, -2}) {
        Fit run(rosenbrock(far), {-2, -2}, {2, 2});
        ASSERT_EQ(run.init(), 1501);
        while (run.step() != 1 || run.evaluations < 4) {
        }
        run.request = reason;
        EXPECT_EQ(run.step(), 0);
        run.get();
        EXPECT_EQ(run.code, reason);
        EXPECT_DOUBLE_EQ(run.r2, norm(values(run.problem, run.x))); // the best point so far
        EXPECT_EQ(run.f, values(run.problem, run.x));
        while (run.step() >= 0) {
        } // a stopped run may go on
        run.get();
        EXPECT_EQ(run.code, 3);
    }
}

TEST(BoundedRun, RejectedTrialKeepsPointResidualAndJacobian) {
    Fit run(rosenbrock(far), {-2, -2}, {2, 10});
    ASSERT_EQ(run.init(), 1501);
    int rejected = 0;
    while (true) {
        const Vector x = run.x, f = run.f;
        const int asked = run.step();
        if (asked < 0) break;
        if (asked != 1 || run.evaluations == 1) continue;
        run.get();
        const int before = run.iterations, jacobians = run.jacobians;
        ASSERT_EQ(run.step(), 0);
        run.get();
        if (run.iterations > before) continue;
        ++rejected;
        EXPECT_EQ(norm(run.f), norm(values(run.problem, run.x)));
        if (run.step() != 1) continue;
        EXPECT_EQ(run.jacobians, jacobians);
        run.step();
    }
    EXPECT_GT(rejected, 0);
}

TEST(BoundedRun, HandlesDoNotDisturbEachOther) {
    Fit alone(bard(), Vector(3, 0), Vector(3, 2)), one(bard(), Vector(3, 0), Vector(3, 2)),
        two(osborne(), {0, 0, -1, 0, 0}, {3, 3, 0, 1, 1});
    alone.solve();
    ASSERT_EQ(one.init(), 1501);
    ASSERT_EQ(two.init(), 1501);
    while (one.request >= 0 || two.request >= 0) {
        if (one.request >= 0) one.step();
        if (two.request >= 0) two.step();
    }
    one.get();
    EXPECT_EQ(one.x, alone.x);
    EXPECT_EQ(one.iterations, alone.iterations);
    EXPECT_LE(two.first_order_error(), first_order);
}

} // namespace
