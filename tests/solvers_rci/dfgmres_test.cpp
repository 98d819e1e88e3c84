// DFGMRES: layout, every stage against the plain recurrences bit for bit, solutions, restarts, stopping, where the
// solution goes, breakdowns.
#include "tests/solvers_rci/fgmres_support.hpp"

namespace {

using namespace nxl_test;

TEST(DfgmresInit, DefaultsAndZeros) {
    for (const auto& [n, limit] : {std::pair{1000, 150}, {150, 150}, {20, 20}, {0, 0}, {-3, -3}}) {
        const FgmresCase run(n, 1);
        EXPECT_EQ(run.request, 0);
        std::vector<int> ipar{n, 6, 1, 0, limit, 1, 1, 1, 0, 1, 0, 0, 0, 0, limit};
        ipar.resize(128, -77);
        EXPECT_EQ(run.ipar, ipar);
        Vector dpar{1e-6, 0, 0, 0, 0, 0, 0, 1e-12};
        dpar.resize(128, untouched);
        EXPECT_EQ(run.dpar, dpar);
        Vector tmp(static_cast<std::size_t>(std::max(n, 0)), 0.0);
        tmp.resize(run.tmp.size(), untouched);
        EXPECT_EQ(run.tmp, tmp);
    }
}

TEST(DfgmresCheck, LaysOutWork) {
    FgmresCase run(10, 4);
    run.ip(15) = 4;
    EXPECT_EQ(run.check(), 0);
    const std::vector<int> first(run.ipar.begin() + 15, run.ipar.begin() + 23);
    EXPECT_EQ(first, (std::vector{51, 61, 65, 69, 74, 78, -77, -77}));
    EXPECT_EQ(static_cast<std::size_t>(run.ip(21)) + 4 * 10 - 1, FgmresCase::work(10, 4));
}

struct Layout {
    int n, m, preconditioned, request;
};

TEST(DfgmresCheck, LayoutsThatIparCannotNameAreRefused) { // and by a run that goes on regardless, in its first cycle
    constexpr int most = 2147483647;
    for (const auto& [n, m, preconditioned, request] :
         {Layout{16777148, 127, 0, 0}, Layout{16777149, 127, 0, -1100}, Layout{8421470, 127, 1, 0},
          Layout{8421471, 127, 1, -1100}, Layout{1 << 24, 255, 0, -1100}, Layout{1 << 20, 4095, 1, -1100},
          Layout{1, 65500, 0, 0}, Layout{1, 65536, 0, -1100}, Layout{3, most, 1, -1100}, Layout{most, 1, 0, -1100},
          Layout{most, most, 1, -1100}}) {
        SCOPED_TRACE(std::to_string(n) + " " + std::to_string(m));
        FgmresCase run(1, 1);
        run.n = run.ip(1) = n;
        run.ip(5) = 1;
        run.ip(11) = preconditioned;
        run.ip(15) = m;
        const std::string text = printed_by([&] { EXPECT_EQ(run.check(), request); });
        EXPECT_EQ(text.empty(), request == 0);
        if (request == 0) {
            EXPECT_EQ(run.ip(21), (m + 1LL) * n + m * (m + 9LL) / 2 + 2); // past the basis and the triangle
            continue;
        }
        EXPECT_EQ(run.ip(21), 0);
        run.ip(1) = 1; // the arrays are small
        run.step();
        run.step();
        EXPECT_EQ(printed_by([&] { run.step(); }).empty(), false);
        EXPECT_EQ(run.request, -12);
    }
}

TEST(DfgmresStages, VectorsThatIparCannotNameAreNotAskedFor) { // where the size or the cycle has grown after the check
    for (const auto& [stage, inner] : {std::pair{1, 0}, {7, 1 << 16}, {7, 1 << 17}, {11, 1 << 17}, {12, 1 << 17}}) {
        FgmresCase run(4, 4);
        run.check();
        run.ip(1) = stage == 1 ? 2147483647 : 1 << 15;
        run.ip(3) = stage;
        run.ip(14) = inner;
        run.ip(15) = inner + 1;
        const Vector before = run.tmp;
        EXPECT_NE(printed_by([&] { run.step(); }), "");
        EXPECT_EQ(run.request, -12);
        EXPECT_EQ(run.ip(4), 0);
        EXPECT_EQ(run.tmp, before);
    }
}

/// The recurrences once more, with vectors of their own: states at each request.
struct Plain {
    const Grid& a;
    const Operation preconditioner;
    Vector x, b, y;
    std::vector<Vector> v, z, r;
    Vector c, s, g;
    double first = 0.0, residual = 0.0, last = 0.0, made = 0.0;
    const int one = 1, n = a.unknowns();

    Plain(const Grid& matrix, Operation inverse, Vector start, Vector right_side)
        : a(matrix),
          preconditioner(std::move(inverse)),
          x(std::move(start)),
          b(std::move(right_side)) {}

    void begin() {
        v = {sum(b, -1.0, a.product(x))};
        first = residual = made = DNRM2(&n, v[0].data(), &one);
        const double scale = 1.0 / residual;
        DSCAL(&n, &scale, v[0].data(), &one);
        g = {residual};
        c.clear(), s.clear(), z.clear(), r.clear();
    }
    void extend() {
        z.push_back(v.back());
        if (preconditioner) preconditioner(v.back().data(), z.back().data());
        Vector w = a.product(z.back()), column;
        for (const Vector& basis : v) {
            const double h = DDOT(&n, w.data(), &one, basis.data(), &one), minus = -h;
            DAXPY(&n, &minus, basis.data(), &one, w.data(), &one);
            column.push_back(h);
        }
        made = DNRM2(&n, w.data(), &one);
        const double scale = 1.0 / made;
        DSCAL(&n, &scale, w.data(), &one);
        v.push_back(w);
        for (std::size_t i = 0; i < c.size(); ++i) {
            const double upper = column[i], lower = column[i + 1];
            column[i] = s[i] * lower + c[i] * upper;
            column[i + 1] = c[i] * lower - s[i] * upper;
        }
        const double rho = std::sqrt(made * made + column.back() * column.back());
        c.push_back(column.back() / rho);
        s.push_back(made / rho);
        column.back() = c.back() * column.back() + s.back() * made;
        r.push_back(column);
        last = residual;
        g.push_back(-s.back() * g.back());
        g[g.size() - 2] *= c.back();
        residual = std::abs(g.back());
    }
    Vector solution() {
        y.assign(g.begin(), g.end() - 1);
        for (std::size_t j = r.size(); j-- > 0;) {
            y[j] /= r[j][j];
            for (std::size_t i = 0; i < j; ++i) y[i] -= y[j] * r[j][i];
        }
        Vector moved = x;
        for (std::size_t j = 0; j < r.size(); ++j) DAXPY(&n, &y[j], z[j].data(), &one, moved.data(), &one);
        return moved;
    }
};

/// Jacobi on odd calls, Gauss-Seidel from the left on even ones.
Operation changing_preconditioner(const Grid& a) {
    return [&a, calls = 0](const double* in, double* out) mutable {
        const bool sweep = ++calls % 2 == 0;
        for (int i = 0; i < a.unknowns(); ++i)
            out[i] = (in[i] + (sweep && i % a.side > 0 ? (1.0 + a.convection) * out[i - 1] : 0.0)) / 4.0;
    };
}

class DfgmresMethod : public testing::TestWithParam<std::tuple<bool, bool, bool>> {
  protected:
    const Grid a_{9, 0.4};
    const bool preconditioned_ = std::get<0>(GetParam());
    const bool asks_about_norm_ = std::get<1>(GetParam());
    const bool asks_for_test_ = std::get<2>(GetParam());
    const Operation matrix_ = [this](const double* in, double* out) { a_.multiply(in, out); };

    Operation preconditioner() const { return preconditioned_ ? changing_preconditioner(a_) : Operation{}; }

    FgmresCase started(int cycle) const {
        FgmresCase run(a_.unknowns(), cycle);
        run.x = random_vector(run.n, 1);
        run.b = random_vector(run.n, 2);
        run.ip(15) = cycle;
        run.ip(9) = 1;
        run.ip(10) = asks_for_test_;
        run.ip(11) = preconditioned_;
        run.ip(12) = !asks_about_norm_;
        EXPECT_EQ(run.check(), 0);
        return run;
    }
};
INSTANTIATE_TEST_SUITE_P(, DfgmresMethod, testing::Combine(testing::Bool(), testing::Bool(), testing::Bool()),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param) ? "preconditioned" : "plain") +
                                    (std::get<1>(info.param) ? "_asks_about_norm" : "") +
                                    (std::get<2>(info.param) ? "_asks_for_test" : "");
                         });

TEST_P(DfgmresMethod, RequestsComeInOrderAndStateIsThatOfTheRecurrences) {
    constexpr int cycle = 3;
    FgmresCase run = started(cycle);
    const Operation answer = preconditioner();
    Plain plain(a_, preconditioner(), run.x, run.b);
    double target = 0.0;
    const auto expect = [&](int request, int stage, int in = 0, int out = 0) {
        ASSERT_EQ(run.step(), request);
        EXPECT_EQ(run.ip(3), stage);
        if (in > 0) EXPECT_EQ(std::pair(run.ip(22), run.ip(23)), std::pair(in, out));
        run.answer(matrix_, answer);
    };
    const int base = preconditioned_ ? 11 : 7;
    for (int iteration = 0, k = 0; iteration < 8; ++iteration, k = iteration % cycle) {
        SCOPED_TRACE(iteration);
        if (k == 0) {
            if (iteration > 0) plain.x = plain.solution();
            expect(1, iteration == 0 ? 2 : 4, 1, run.n + 1);
            EXPECT_EQ(run.x, plain.x);
            plain.begin();
            if (iteration == 0) target = plain.residual * 1e-6;
            if (asks_about_norm_) expect(4, 5);
            if (asks_for_test_) expect(2, base);
        }
        const int vector = k * run.n + 1, stored = run.ip(21) + k * run.n;
        if (preconditioned_) expect(3, 12, vector, stored);
        expect(1, preconditioned_ ? 13 : 8, preconditioned_ ? stored : vector, vector + run.n);
        EXPECT_EQ(run.ip(4), iteration + 1);
        plain.extend();
        if (asks_about_norm_) expect(4, preconditioned_ ? 14 : 9);
        if (asks_for_test_) {
            expect(2, base);
            EXPECT_EQ(Vector(run.dpar.begin() + 2, run.dpar.begin() + 7),
                      (Vector{plain.first, target, plain.residual, plain.last, plain.made}));
            EXPECT_EQ(run.ip(14), k + 1);
            const double* const column = run.element(run.ip(16) + (k + 1) * k / 2);
            EXPECT_EQ(Vector(column, column + k + 1), plain.r.back());
            EXPECT_EQ(Vector(run.element(vector + run.n), run.element(vector + 2 * run.n)), plain.v.back());
            run.ip(13) = 1;
            FgmresCase looked_at = run; // the solution mid-cycle disturbs nothing
            EXPECT_EQ(looked_at.get(), iteration + 1);
            EXPECT_EQ(looked_at.b, plain.solution());
            EXPECT_EQ(looked_at.x, plain.x);
        }
    }
    EXPECT_EQ(Vector(run.tmp.end() - 8, run.tmp.end()), Vector(8, untouched));
}

TEST_P(DfgmresMethod, SolvesWithAndWithoutRestarts) {
    for (const int cycle : {81, 7, 1}) {
        FgmresCase run = started(cycle);
        run.ip(5) = 2000;
        run.dp(1) = 1e-11;
        const double first = norm(sum(run.b, -1.0, a_.product(run.x)));
        EXPECT_EQ(run.run(matrix_, preconditioner()), 0);
        EXPECT_NEAR(run.dp(4), 1e-11 * first, 1e-14 * first);
        EXPECT_EQ(run.dp(3) < 0.9 * first, cycle < 81) << "dpar(3) follows the restarts";
        EXPECT_EQ(run.get(), run.ip(4));
        EXPECT_EQ(run.ip(4) > cycle, cycle < 81);
        EXPECT_LE(norm(sum(run.b, -1.0, a_.product(run.x))), 1.01e-11 * first + 1e-14);
    }
}

/// One unknown: 2 x = b, from x = 0.
struct OneUnknown : FgmresCase {
    explicit OneUnknown(double right_side = 4.0) : FgmresCase(1, 1) {
        b = {right_side};
        check();
    }
    int run_double() {
        return run([](const double* in, double* out) { *out = 2.0 * *in; });
    }
};

TEST(DfgmresEdges, ExactStartIsNoticedAfterOneProduct) {
    OneUnknown run(0.0);
    run.ip(12) = 1;
    EXPECT_EQ(run.run_double(), 0);
    EXPECT_EQ(run.ip(4), 0);
    EXPECT_EQ(run.ip(3), 2);

    OneUnknown asked(0.0);
    asked.step();
    asked.answer([](const double*, double* out) { *out = 0.0; });
    EXPECT_EQ(asked.step(), 4);
    EXPECT_NE(printed_by([&] { asked.step(); }), "");
    EXPECT_EQ(asked.request, -10);
}

TEST(DfgmresEdges, SolutionAfterABreakdown) {
    for (const bool asks : {true, false}) {
        OneUnknown run;
        run.ip(12) = !asks;
        EXPECT_EQ(printed_by([&] { run.run_double(); }).empty(), !asks);
        EXPECT_EQ(run.request, asks ? -10 : 0); // the Krylov space is exhausted: dpar(7) is 0
        EXPECT_EQ(run.dp(7), 0.0);
        int outcome = -77;
        EXPECT_EQ(run.get(&outcome), 1);
        EXPECT_EQ(outcome, 0);
        EXPECT_EQ(run.x, Vector{2.0});
    }
}

TEST(DfgmresEdges, OtherStagesChangeNothing) {
    for (const int stage : {0, -1, 15, 2147483647}) {
        FgmresCase run(4, 4);
        run.check();
        run.ip(3) = stage;
        run.request = 55;
        const FgmresCase before = run;
        EXPECT_EQ(run.step(), 55);
        EXPECT_EQ(run.ipar, before.ipar);
        EXPECT_EQ(run.dpar, before.dpar);
        EXPECT_EQ(run.tmp, before.tmp);
    }
}

TEST(DfgmresGet, PlacesOfTheSolution) {
    const Grid a{3, 0.2};
    const auto multiply = [&](const double* in, double* out) { a.multiply(in, out); };
    for (const int k : {0, 2}) {
        FgmresCase run(9, 9);
        run.x = random_vector(9, 1);
        run.ip(5) = k;
        run.ip(7) = 0; // no word on the limit of 0
        run.ip(12) = 1;
        run.check();
        run.run(multiply);
        const Vector x = run.x, b = run.b;
        run.ip(13) = -1;
        run.get();
        EXPECT_EQ(std::pair(run.x, run.b), std::pair(x, b));
        run.ip(13) = 1;
        EXPECT_EQ(run.get(), k);
        EXPECT_EQ(run.x, x);
        EXPECT_EQ(run.b == x, k == 0);
        const Vector solution = run.b;
        run.ip(13) = 0;
        run.get();
        EXPECT_EQ(run.x, solution);
    }
}

/// Values that the stopping decision looks at.
struct Decision {
    const char* name;
    int limit_test, limit, residual_test, caller_test;
    double residual, target;
    int request; // 9: goes on with an operation
};

class DfgmresDecision : public testing::TestWithParam<std::tuple<Decision, int>> {};

TEST_P(DfgmresDecision, Branch) {
    const auto& [decision, stage] = GetParam();
    FgmresCase run(2, 2);
    run.check();
    run.ip(3) = stage;
    run.ip(4) = 3;
    run.ip(5) = decision.limit;
    run.ip(8) = decision.limit_test;
    run.ip(9) = decision.residual_test;
    run.ip(10) = decision.caller_test;
    run.dp(5) = decision.residual;
    run.dp(4) = decision.target;
    const int operation = stage == 6 ? 1 : 3, next = stage == 6 ? 7 : 11;
    const std::string text = printed_by([&] { run.step(); });
    EXPECT_EQ(text.empty(), decision.request != -11);
    EXPECT_EQ(run.request, decision.request == 9 ? operation : decision.request);
    EXPECT_EQ(run.ip(3), decision.request == 9 ? next + 1 : decision.request == 2 ? next : stage);
    EXPECT_EQ(run.ip(4), decision.request == 9 ? 4 : 3);
}

INSTANTIATE_TEST_SUITE_P(, DfgmresDecision,
                         testing::Combine(testing::Values(Decision{"limit", 1, 3, 0, 1, 1.0, 0.5, 0},
                                                          Decision{"limit_unmet", 1, 3, 1, 1, 1.0, 0.5, -1},
                                                          Decision{"limit_met", 1, 2, 1, 1, 0.5, 0.5, 0},
                                                          Decision{"limit_nan", 1, 3, 1, 1, NAN, 0.5, 0},
                                                          Decision{"met", 1, 4, 1, 1, 0.5, 0.5, 0},
                                                          Decision{"unmet_asks", 1, 4, 1, 1, 1.0, 0.5, 2},
                                                          Decision{"unmet_goes_on", 0, 3, 1, 0, 1.0, 0.5, 9},
                                                          Decision{"nan_goes_on", 0, 3, 1, 0, NAN, 0.5, 9},
                                                          Decision{"asks", 0, 3, 0, 1, 0.0, 0.5, 2},
                                                          Decision{"limit_alone", 1, 4, 0, 0, 1.0, 2.0, 9},
                                                          Decision{"limit_alone_solved", 1, 4, 0, 0, 0.0, 2.0, 0},
                                                          Decision{"endless", 0, 3, 0, 0, 1.0, 0.5, -11}),
                                          testing::Values(6, 10)),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param).name) +
                                    (std::get<1>(info.param) == 6 ? "_plain" : "_preconditioned");
                         });

} // namespace
