// dtrnlspbc: it ends at first-order points wherever they lie, asks only for points inside the bounds, and tells why it
// stopped.
#include "tests/solvers_tr/least_squares_fit.hpp"
#include "tests/support/dense.hpp"
#include <cstring>

namespace {

using namespace nxl_test;

constexpr double inf = infinity, first_order = 3e-7;
constexpr double unknown = -1.0;

std::size_t at(int i) { return static_cast<std::size_t>(i); }

/// F(i) = (A x - b)(i) + c sin(3 x(i mod n)), A and b random; c of 0 makes it linear.
Problem random_problem(int m, int n, double c, unsigned seed) {
    std::mt19937 generator(seed);
    std::normal_distribution<double> normal;
    Vector a(at(m * n)), b(at(m)), start(at(n));
    for (Vector* v : {&a, &b, &start})
        for (double& e : *v) e = normal(generator);
    return problem("random", start, m, {}, [=](const auto* x, auto* f) {
        using std::sin;
        for (int i = 0; i < m; ++i) {
            f[i] = c * sin(3.0 * x[i % n]) - b[at(i)];
            for (int k = 0; k < n; ++k) f[i] += a[at(i * n + k)] * x[k];
        }
    });
}

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
    run.to_the_end();
    EXPECT_NE(run.code, 1);
    EXPECT_LE(run.first_order_error(), first_order);
    if (known.least != unknown) EXPECT_NEAR(run.last_norm * run.last_norm, known.least, 1e-5 * known.least + 1e-20);
    for (std::size_t i = 0; i < known.solution.size(); ++i)
        EXPECT_NEAR(run.x[i], known.solution[i], 1e-6 * std::max(1.0, std::fabs(known.solution[i]))) << i;
}

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
        Known{"bard", named("Bard"), Vector(3, -10), Vector(3, 10), 8.21487e-3},
        Known{"bard_on_a_face", named("Bard"), {0.09, 0, 0}, {10, 10, 1.5}},
        Known{"kowalik_osborne", named("Kowalik"), Vector(4, 0), Vector(4, 1), 3.07505e-4},
        Known{"kowalik_osborne_on_a_face", named("Kowalik"), Vector(4, 0.15), Vector(4, 0.5)},
        Known{"meyer", named("Meyer"), {0, 0, 0}, {10, 1e5, 1e4}, 87.9458},
        Known{"meyer_on_a_face", named("Meyer"), {0.006, 0, 0}, {2, 3e5, 3e4}},
        Known{"osborne", named("Osborne1"), {0, 0, -5, 0, 0}, {3, 3, 0, 1, 1}, 5.46489e-5},
        Known{"osborne_on_a_face", named("Osborne1"), {0, 0, -1, 0, 0}, {3, 3, 0, 1, 0.02}},
        Known{"brown_dennis", named("BrownDennis"), {-100, -100, -100, -100}, {100, 100, 100, 100}, 85822.2},
        Known{"brown_dennis_on_a_face", named("BrownDennis"), {-10, 0, -100, -20}, {100, 15, 0, 0.2}},
        Known{"freudenstein_roth", named("Freudenstein"), {-inf, -1.5}, {inf, 1}, 48.9842},
        Known{"freudenstein_roth_corner", named("Freudenstein"), {0, -30}, {8, -2}},
        Known{"powell_singular", named("PowellSingular"), Vector(4, -inf), Vector(4, inf), unknown, {}, 1e-14},
        Known{"powell_singular_cut", named("PowellSingular"), {0.1, -20, -20, -20}, {100, 20, 20, 20}}),
    [](const auto& info) { return info.param.name; });

/// The least |F| of a linear problem within finite bounds: every choice of variables at bounds is tried.
Vector by_enumeration(const Problem& problem, const Vector& lower, const Vector& upper) {
    const int n = problem.n();
    const Vector j = problem.derivatives(Vector(at(n), 0.0));
    Vector best;
    for (int choice = 0; choice < std::lround(std::pow(3, n)); ++choice) {
        Vector x(at(n), 0.0);
        std::vector<std::size_t> free;
        for (int k = 0, digits = choice; k < n; ++k, digits /= 3)
            if (digits % 3 == 2) free.push_back(at(k));
            else x[at(k)] = digits % 3 == 0 ? lower[at(k)] : upper[at(k)];
        const Vector f = problem.values(x);
        std::vector<Vector> a(free.size(), Vector(free.size(), 0.0));
        Vector b(free.size(), 0.0);
        for (std::size_t i = 0; i < f.size(); ++i)
            for (std::size_t r = 0; r < free.size(); ++r) {
                b[r] -= j[free[r] * f.size() + i] * f[i];
                for (std::size_t c = 0; c < free.size(); ++c)
                    a[r][c] += j[free[r] * f.size() + i] * j[free[c] * f.size() + i];
            }
        const Vector solution = dense_solution(a, b);
        bool inside = true;
        for (std::size_t r = 0; r < free.size(); ++r) {
            x[free[r]] = solution[r];
            inside = inside && lower[free[r]] <= solution[r] && solution[r] <= upper[free[r]];
        }
        if (inside && (best.empty() || norm(problem.values(x)) < norm(problem.values(best)))) best = x;
    }
    return best;
}

TEST(Bounded, LinearProblemsAgreeWithEnumeration) {
    int on_bounds = 0;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        Fit run(random_problem(9, 5, 0.0, seed), Vector(5, -0.3), Vector(5, 0.2));
        run.lower[seed % 5] = 0.1;
        run.to_the_end();
        const Vector expected = by_enumeration(run.p, run.lower, run.upper);
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
        Fit run = Fit::by(true, random_problem(n + static_cast<int>(seed % 4), n, 2.0, seed));
        for (std::size_t i = 0; i < at(n); ++i) {
            const int which = kind(generator);
            const double half = which == 0 ? 0.0 : width(generator), centre = middle(generator);
            if (which != 1) run.lower[i] = centre - half;
            if (which != 2) run.upper[i] = centre + half;
        }
        if (seed % 4 == 1) run.rs = 0.01;
        if (seed % 4 == 2) run.iter2 = 1;    // Cauchy decrease is what a step has at least
        if (seed % 4 == 3) run.eps[5] = 1.0; // coarse steps
        run.to_the_end();
        EXPECT_NE(run.code, 1);
        EXPECT_LE(run.first_order_error(), 1e-6);
    }
}

TEST(Bounded, ManyVariablesOnBounds) { // blocked factorisations, and faces that change by many variables at a time
    Fit run(random_problem(200, 150, 1.0, 5), Vector(150, -0.1), Vector(150, 0.1));
    run.to_the_end();
    EXPECT_LE(run.first_order_error(), first_order);
    const auto at_bound = std::count_if(run.x.begin(), run.x.end(), [](double v) { return std::fabs(v) == 0.1; });
    EXPECT_GT(at_bound, 10);
    EXPECT_LT(at_bound, 150);
}

TEST(Bounded, LargeResidualsConvergeFast) { // J alone makes hundreds of iterations
    Fit open = Fit::by(true, named("BrownDennis")), cut(named("BrownDennis"), {-10, 0, -100, -20}, {100, 15, 0, 0.2});
    open.to_the_end();
    cut.to_the_end();
    EXPECT_LT(open.asked(1), 80);
    EXPECT_LT(cut.asked(1), 80);
}

TEST(BoundedInit, RefusesBoundsWithoutAPoint) {
    const double nan = std::nan("");
    const auto expect_refused = [](const auto& spoil) {
        Fit run(rosenbrock({-5, 5}), {-2, -2}, {2, 2});
        spoil(run);
        const Vector before = run.x;
        EXPECT_EQ(run.start(), invalid);
        EXPECT_EQ(std::memcmp(run.x.data(), before.data(), sizeof(double) * before.size()), 0);
    };
    expect_refused([](Fit& r) { r.lower[1] = 2.5; });
    expect_refused([&](Fit& r) { r.lower[1] = nan; });
    expect_refused([&](Fit& r) { r.upper[0] = nan; });
    for (const double side : {inf, -inf}) {
        expect_refused([=](Fit& r) { r.lower[0] = r.upper[0] = side; });
        expect_refused([=](Fit& r) { r.lower[1] = -inf, r.upper[1] = inf, r.x[1] = side; }); // nowhere to move it to
    }
    expect_refused([&](Fit& r) { r.x[1] = nan; });
}

TEST(BoundedInit, MovesTheStartIntoTheBounds) {
    Fit run(rosenbrock({-5, 1}), {-2, -2}, {2, 0.3});
    run.rs = 0.0; // 100 is meant
    ASSERT_EQ(run.start(), success);
    EXPECT_EQ(run.x, (Vector{-2, 0.3}));
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
        run.to_the_end();
        EXPECT_EQ(run.code, code);
        EXPECT_DOUBLE_EQ(run.first_norm, norm(run.p.values(far)));
        if (code == 3) EXPECT_LE(run.last_norm, 1e-3);
        if (code == 4 || code == 5) EXPECT_EQ(run.asked(1), 1);
    }
}

TEST(BoundedStops, StationaryStarts) {
    Fit solved = Fit::by(true, rosenbrock({1, 1}));
    solved.to_the_end();
    EXPECT_EQ(solved.code, 3);
    EXPECT_EQ(solved.asked(2), 0); // no Jacobian is wanted where F is small
    Fit corner(rosenbrock({1.5, 1}), {1.5, -1}, {2, 1});
    corner.to_the_end();
    EXPECT_EQ(corner.code, 4); // no variable is free
    EXPECT_EQ(corner.asked(1), 1);
    // x(1) is free but F does not know it; x(2) has a column, but is held by its bound.
    for (const double slope : {0.0, 1.0}) {
        const auto line = [=](const auto* x, auto* f) { f[0] = 1.0 + slope * x[1], f[1] = 2.0 + 0.0 * x[0]; };
        Fit held(problem("held", {0, 0}, 2, {}, line), {-1, 0}, {1, 1});
        EXPECT_EQ(held.to_the_end().code, 4);
    }
}

} // namespace
