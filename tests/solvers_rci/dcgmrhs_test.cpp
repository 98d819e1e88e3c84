// DCGMRHS against the same method written as plain loops: the same requests in the same order, the same state at each.
#include "tests/solvers_rci/cg_support.hpp"
#include <functional>

namespace {

using namespace nxl_test;

/// A set of systems with the settings of a run, and the caller's part in it.
struct Scenario {
    const char* name;
    int n = 12, systems = 3;
    int limit_test = 1, limit = 50, residual_test = 1, caller_test = 0;
    double relative = 1e-8, absolute = 0.0;
    Vector (*preconditioner)(const Matrix&, const Vector&) = nullptr;
    std::function<bool(int system, int iterations)> stops = [](int, int) { return false; };
    std::function<void(Matrix&, Matrix& b)> change = [](Matrix&, Matrix&) {};

    Matrix a = definite_matrix(n, 11);
    Matrix b = right_hand_sides(n, systems);

    static Matrix right_hand_sides(int n, int systems) {
        Matrix b;
        for (int j = 0; j < systems; ++j) b.push_back(random_vector(n, 100U + static_cast<unsigned>(j)));
        return b;
    }
};

/// What a caller sees at a request.
struct Seen {
    int request, system, iterations;
    Matrix x, r;
    Vector p, initial, final;
};

/// Seed projection as loops that do the caller's part themselves. Systems count from 0 here.
class Loops {
    const Scenario& s_;
    std::size_t nrhs_ = s_.b.size();
    int iterations_ = 0;
    Vector p_ = Vector(s_.b[0].size(), 0.0), ap_ = p_;

    Vector product_asked(std::size_t system, const Vector& with) {
        p_ = with;
        see(1, system);
        return ap_ = product(s_.a, p_);
    }
    Vector preconditioned(std::size_t system) {
        if (!s_.preconditioner) return r[system];
        see(3, system);
        return s_.preconditioner(s_.a, r[system]);
    }
    bool broken(std::size_t seed, const std::string& text) {
        reports += error_report(text);
        final[seed] = initial[seed];
        return false;
    }
    double target(std::size_t system) const { return s_.relative * initial[system] + s_.absolute; }

    bool solve(std::size_t seed) {
        Vector z = preconditioned(seed);
        double gamma = dot(r[seed], z);
        if (!(gamma >= 0.0)) return broken(seed, altered_text);
        Vector direction = z;
        for (bool first = true, over = false;; first = false) {
            const Vector ap = product_asked(seed, direction);
            const double curvature = dot(p_, ap);
            if (!(std::abs(curvature) > 0.0)) return broken(seed, indefinite_text);
            if (first) iterations_ = 0;
            if (over || (s_.limit_test && iterations_ > s_.limit)) break;
            ++iterations_;
            for (std::size_t j = seed + 1; j < nrhs_; ++j)
                if (!done[j]) advance(j, dot(p_, r[j]) / curvature);
            advance(seed, gamma / curvature);
            if (!s_.residual_test && !s_.caller_test) return reports += error_report(endless_loop_text), false;
            if (s_.residual_test) {
                final[seed] = norm(r[seed]) / initial[seed];
                if (final[seed] <= target(seed)) done[seed] = over = true, spent[seed] = iterations_;
            }
            if (s_.caller_test) {
                see(2, seed);
                if (s_.stops(static_cast<int>(seed) + 1, iterations_))
                    done[seed] = over = true, final[seed] = -1.0, spent[seed] = iterations_;
            }
            z = preconditioned(seed);
            if (!(gamma >= 0.0)) return broken(seed, altered_text);
            const double next = dot(r[seed], z);
            direction = sum(z, next / gamma, p_);
            gamma = next;
        }
        if (iterations_ == s_.limit) done[seed] = true;
        spent[seed] = iterations_;
        for (std::size_t j = seed + 1; j < nrhs_; ++j) refresh(seed, j);
        return true;
    }

    void advance(std::size_t system, double step) {
        x[system] = sum(x[system], step, p_);
        r[system] = sum(r[system], -step, ap_);
    }

    void refresh(std::size_t seed, std::size_t j) {
        r[j] = sum(s_.b[j], -1.0, product_asked(j, x[j]));
        if (!(initial[j] > s_.relative)) done[j] = true;
        if (!(initial[j] > s_.relative) || !s_.residual_test) return;
        final[j] = norm(r[j]) / initial[j];
        if (final[j] <= target(seed)) done[j] = true;
    }

    void see(int request, std::size_t system) {
        seen.push_back({request, static_cast<int>(system) + 1, iterations_, x, r, p_, initial, final});
    }

  public:
    Matrix x = Matrix(nrhs_, p_), r = x;
    Vector initial = Vector(nrhs_, untouched), final = initial;
    std::vector<int> spent = std::vector<int>(nrhs_, 0), done = spent;
    std::string reports;
    std::vector<Seen> seen;

    explicit Loops(const Scenario& scenario) : s_(scenario) {
        for (std::size_t i = 0; i < nrhs_; ++i) {
            r[i] = sum(s_.b[i], -1.0, product_asked(i, x[i]));
            initial[i] = norm(r[i]);
            if (s_.residual_test && (initial[i] <= s_.relative || initial[i] <= s_.absolute))
                done[i] = true, final[i] = initial[i];
        }
        for (std::size_t i = 0; i < nrhs_; ++i)
            if (!done[i] && !solve(i)) return;
    }
};

CgCase started(const Scenario& s) {
    CgCase run(s.n, s.systems);
    run.init_many();
    for (int j = 1; j <= s.systems; ++j) run.set_column(run.b, j, s.b[static_cast<std::size_t>(j) - 1]);
    run.ip(5) = s.limit;
    run.ip(8) = s.limit_test;
    run.ip(9) = s.residual_test;
    run.ip(10) = s.caller_test;
    run.ip(11) = s.preconditioner != nullptr;
    run.dp(1) = s.relative;
    run.dp(2) = s.absolute;
    return run;
}

/// Does what is asked for.
void answer(CgCase& run, const Scenario& s) {
    const int system = run.ip(3);
    if (run.request == 1) run.set_column(run.tmp, 2, product(s.a, run.column(run.tmp, 1)));
    if (run.request == 2) run.request = s.stops(system, run.ip(4)) ? 1003 : 1002;
    if (run.request == 3) run.set_column(run.tmp, 3, s.preconditioner(s.a, run.column(run.tmp, 3 + system)));
}

Vector entries(const CgCase& run, int list) {
    const auto first = run.dpar.begin() + 128 + list * run.systems;
    return {first, first + run.systems};
}

void expect_same(const CgCase& run, const Matrix& x, const Matrix& r) {
    for (int j = 1; j <= run.systems; ++j) {
        expect_near(run.column(run.x, j), x[static_cast<std::size_t>(j) - 1], 1e-11, "x");
        expect_near(run.column(run.tmp, 3 + j), r[static_cast<std::size_t>(j) - 1], 1e-11, "r");
    }
}

class Dcgmrhs : public testing::TestWithParam<Scenario> {};

TEST_P(Dcgmrhs, AsksAndKeepsWhatTheLoopsDo) {
    Scenario s = GetParam();
    s.change(s.a, s.b);
    const Loops loops(s);
    CgCase run = started(s);
    const std::string output = printed_by([&] {
        int call = 0;
        for (const Seen& seen : loops.seen) {
            SCOPED_TRACE("call " + std::to_string(++call));
            ASSERT_EQ(run.step_many(), seen.request);
            ASSERT_EQ(run.ip(3), seen.system);
            ASSERT_EQ(run.ip(4), seen.iterations);
            expect_same(run, seen.x, seen.r);
            expect_near(run.column(run.tmp, 1), seen.p, 1e-11, "p");
            expect_near(entries(run, 0), seen.initial, 1e-11, "initial norms");
            expect_near(entries(run, 1), seen.final, 1e-11, "final values");
            answer(run, s);
        }
        EXPECT_EQ(run.step_many(), 0);
    });
    EXPECT_EQ(output, loops.reports);
    expect_same(run, loops.x, loops.r);
    expect_near(entries(run, 1), loops.final, 1e-11, "final values");
    std::vector<int> spent(static_cast<std::size_t>(s.systems), -1);
    run.get_many(spent.data());
    EXPECT_EQ(spent, loops.spent);
    EXPECT_TRUE(std::equal(loops.done.begin(), loops.done.end(), run.ipar.begin() + 128));
}

Vector opposite(const Matrix&, const Vector& r) { return sum(r, -2.0, r); }

INSTANTIATE_TEST_SUITE_P(
    , Dcgmrhs,
    testing::Values(
        Scenario{.name = "residual_test"}, Scenario{.name = "preconditioned", .preconditioner = jacobi},
        Scenario{.name = "one_system", .systems = 1},
        Scenario{.name = "tests_of_both", .caller_test = 1, .preconditioner = jacobi},
        Scenario{.name = "caller_stops",
                 .residual_test = 0,
                 .caller_test = 1,
                 .stops = [](int system, int iterations) { return iterations == 2 * system; }},
        Scenario{.name = "limit_leaves_the_seed_open", .limit = 3},
        Scenario{.name = "limit_off", .limit_test = 0, .limit = 0},
        Scenario{.name = "stopped_at_the_limit",
                 .limit = 3,
                 .residual_test = 0,
                 .caller_test = 1,
                 .stops = [](int, int iterations) { return iterations == 3; }},
        Scenario{.name = "solved_from_the_start", .change = [](Matrix&, Matrix& b) { b[1].assign(12, 0.0); }},
        Scenario{.name = "small_by_absolute_tolerance",
                 .absolute = 1e-3,
                 .change = [](Matrix&, Matrix& b) { b[0] = sum(Vector(12, 0.0), 1e-4, b[0]); }},
        Scenario{.name = "small_start_found_at_refresh",
                 .residual_test = 0,
                 .caller_test = 1,
                 .stops = [](int, int k) { return k == 3; },
                 .change = [](Matrix&, Matrix& b) { b[2].assign(12, 0.0); }},
        Scenario{.name = "same_right_hand_sides", .change = [](Matrix&, Matrix& b) { b[2] = b[1] = b[0]; }},
        Scenario{.name = "target_by_the_seeds_norm",
                 .relative = 1e-3,
                 .change = [](Matrix&, Matrix& b) { b[0] = sum(Vector(12, 0.0), 1e3, b[0]); }},
        Scenario{.name = "no_test", .residual_test = 0},
        Scenario{.name = "zero_matrix", .change = [](Matrix& a, Matrix&) { a.assign(12, Vector(12, 0.0)); }},
        Scenario{.name = "exact_solution_breaks_down", .n = 1, .systems = 2},
        Scenario{.name = "nan_matrix", .change = [](Matrix& a, Matrix&) { a[3][3] = NAN; }},
        Scenario{.name = "negative_preconditioner", .preconditioner = opposite}),
    [](const auto& info) { return info.param.name; });

TEST(DcgmrhsState, RefreshNotesTheCallersTestButDoesNotOfferIt) {
    Scenario s{.name = "", .systems = 2, .residual_test = 0, .caller_test = 1};
    s.stops = [](int, int) { return true; };
    CgCase run = started(s);
    std::vector<int> asked;
    while (run.step_many() != 0) {
        if (run.request == 2) asked.push_back(run.ip(3));
        if (run.ip(39) == 7) run.ip(128 + 2) = 1; // so that no further seed overwrites what the refresh notes
        answer(run, s);
    }
    EXPECT_EQ(asked, std::vector{1});
    EXPECT_EQ(run.ip(39), 8);
    EXPECT_EQ(run.ip(3), 2);
    EXPECT_EQ(run.ip(30), 3);
}

TEST(DcgmrhsState, WhatOnlyACallerBringsAbout) {
    const Scenario s{.name = "", .caller_test = 1};
    CgCase run = started(s);
    run.ip(39) = 8; // the answer to a test that is never offered
    run.ip(30) = 1;
    run.ip(31) = 2;
    run.request = 1003;
    EXPECT_EQ(run.step_many(), 1);
    EXPECT_EQ(run.ip(128 + 2), 1);
    EXPECT_EQ(run.dp(128 + 3 + 2), -1.0);
    EXPECT_EQ(run.ip(39), 7);
    EXPECT_EQ(run.ip(3), 3);

    run.dp(128 + 3) = 1.0; // the tests are switched off while a system is refreshed
    run.ip(9) = run.ip(10) = 0;
    EXPECT_EQ(printed_by([&] { run.step_many(); }), error_report(endless_loop_text));
    EXPECT_EQ(run.request, 0);
    run.ip(6) = 0;
    EXPECT_EQ(printed_by([&] { run.step_many(); }), "");
}

TEST(DcgmrhsState, SystemsThatDoNotExistStartTheRun) {
    for (const auto& [stage, seed, refreshed] :
         {std::tuple{0, 1, 1}, {9, 1, 1}, {6, 5, 1}, {3, 0, 1}, {7, 1, 4}, {8, 1, -2147483647 - 1}}) {
        CgCase run = started({.name = ""});
        run.ip(39) = stage;
        run.ip(30) = seed;
        run.ip(31) = refreshed;
        EXPECT_EQ(run.step_many(), 1);
        EXPECT_EQ(run.ip(39), 1);
        EXPECT_EQ(run.ip(30), 1);
    }
}

TEST(DcgmrhsSizes, InitSetsEntriesAndZerosAllColumns) {
    for (const auto& [n, systems, zeros] : {std::tuple{5, 2, 25}, {5, 0, 15}, {5, -2, 5}, {5, -4, 0}, {-5, 2, 0}}) {
        CgCase run(n, systems);
        run.tmp.assign(30, untouched);
        run.init_many();
        EXPECT_EQ(run.request, 0);
        EXPECT_EQ(run.ip(33), systems);
        EXPECT_EQ(run.ip(1), n);
        EXPECT_EQ(run.dp(1), 1e-6);
        EXPECT_EQ(run.dp(8), 0.0);
        EXPECT_EQ(run.dp(9), untouched);
        EXPECT_EQ(run.dp(30), untouched);
        Vector expected(static_cast<std::size_t>(zeros), 0.0);
        expected.resize(30, untouched);
        EXPECT_EQ(run.tmp, expected);
    }
}

TEST(DcgmrhsSizes, NoSystemsNoWork) {
    for (const int systems : {0, -1, -2147483647 - 1}) {
        CgCase run(3, 1);
        run.init_many();
        run.systems = systems;
        const Vector tmp = run.tmp;
        int counts[1] = {-77};
        EXPECT_EQ(run.step_many(), 0);
        run.get_many(counts);
        EXPECT_EQ(counts[0], -77);
        EXPECT_EQ(run.tmp, tmp);
        EXPECT_EQ(run.x, Vector(3, 0.0));
    }
}

TEST(DcgmrhsSizes, NoUnknownsTouchNothing) {
    CgCase run(1, 2);
    run.init_many();
    run.tmp.assign(run.tmp.size(), untouched);
    run.ip(1) = -3;
    for (const int request : {1, 1, 1}) EXPECT_EQ(run.step_many(), request);
    EXPECT_EQ(printed_by([&] { run.step_many(); }), error_report(indefinite_text));
    EXPECT_EQ(run.request, 0);
    EXPECT_EQ(run.tmp, Vector(run.tmp.size(), untouched));
}

} // namespace
