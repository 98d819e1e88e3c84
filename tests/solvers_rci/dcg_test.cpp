// DCG: defaults, the state that each stage leaves, every branch of the stopping decision, errors, odd sizes.
#include "tests/solvers_rci/cg_support.hpp"

namespace {

using namespace nxl_test;

TEST(DcgInit, DefaultsAndZeros) {
    for (const auto& [n, limit] : {std::pair{200, 150}, {150, 150}, {10, 10}, {0, 0}, {-3, -3}}) {
        CgCase run(n);
        std::fill(run.ipar.begin(), run.ipar.end(), -77);
        run.init();
        EXPECT_EQ(run.request, 0);
        std::vector<int> ipar{n, 6, 1, 0, limit, 1, 1, 1, 0, 1, 0};
        ipar.resize(run.ipar.size(), -77);
        EXPECT_EQ(run.ipar, ipar);
        Vector dpar{1e-6, 0, 0, 0, 0, 0, 0, 0};
        dpar.resize(run.dpar.size(), untouched);
        EXPECT_EQ(run.dpar, dpar);
        Vector tmp(run.cells(3), 0.0);
        tmp.resize(run.cells(4), untouched);
        EXPECT_EQ(run.tmp, tmp);
    }
}

/// What DCG keeps, as a textbook iteration has it when it asks for something.
struct State {
    int request, stage, iterations;
    Vector scalars; // dpar(3..8)
    Vector x, p, r;
};

/// The textbook iteration, with a test by the caller after each step and without any other.
std::vector<State> textbook(const Matrix& a, const Vector& b, Vector x, bool preconditioned, double relative,
                            int steps) {
    const int first_product = preconditioned ? 6 : 2, test = preconditioned ? 8 : 3,
              product_stage = preconditioned ? 9 : 4;
    const auto gradient = [&](const Vector& r) { return preconditioned ? jacobi(a, r) : r; };
    Vector scalars(6, 0.0);
    std::vector<State> states{{1, first_product, 0, scalars, x, x, b}};
    Vector r = sum(b, -1.0, product(a, x));
    if (preconditioned) states.push_back({3, 7, 0, scalars, x, x, r});
    Vector p = gradient(r);
    double quantity = dot(p, r);
    const double initial = quantity, target = relative * initial + 1e-30;
    scalars = {initial, target, quantity, 0.0, 0.0, 0.0};
    for (int k = 0;; ++k) {
        states.push_back({2, test, k, scalars, x, p, r});
        if (k == steps) return states;
        scalars[3] = quantity;
        states.push_back({1, product_stage, k + 1, scalars, x, p, r});
        const Vector ap = product(a, p);
        const double alpha = scalars[4] = quantity / dot(p, ap);
        x = sum(x, alpha, p);
        r = sum(r, -alpha, ap);
        if (preconditioned) states.push_back({3, 10, k + 1, scalars, x, p, r});
        const Vector z = gradient(r);
        const double next = dot(z, r);
        scalars[2] = next;
        const double beta = scalars[5] = next / quantity;
        p = sum(z, beta, p);
        quantity = next;
    }
}

class DcgMethod : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(, DcgMethod, testing::Bool(),
                         [](const auto& info) { return info.param ? "preconditioned" : "plain"; });

TEST_P(DcgMethod, EveryStageLeavesTheTextbookState) {
    const Matrix a = definite_matrix(12, 3);
    CgCase run(12);
    run.x = random_vector(12, 1);
    run.b = random_vector(12, 2);
    run.init();
    run.ip(11) = GetParam();
    run.dp(2) = 1e-30;
    run.ip(8) = 0;
    int call = 0;
    for (const State& state : textbook(a, run.b, run.x, GetParam(), 1e-6, 5)) {
        SCOPED_TRACE("call " + std::to_string(++call));
        ASSERT_EQ(run.step(), state.request);
        EXPECT_EQ(run.ip(3), state.stage);
        EXPECT_EQ(run.ip(4), state.iterations);
        EXPECT_EQ(run.iterations(), state.iterations);
        expect_near({run.dpar.begin() + 2, run.dpar.begin() + 8}, state.scalars, 1e-12, "dpar");
        expect_near(run.x, state.x, 1e-12, "x");
        expect_near(run.column(run.tmp, 1), state.p, 1e-12, "p");
        expect_near(run.column(run.tmp, 3), state.r, 1e-12, "r");
        if (run.request == 1) run.set_column(run.tmp, 2, product(a, run.column(run.tmp, 1)));
        if (run.request == 3) run.set_column(run.tmp, 4, jacobi(a, run.column(run.tmp, 3)));
    }
    if (!GetParam()) EXPECT_EQ(run.column(run.tmp, 4), Vector(12, untouched)); // callers may leave it out
}

/// One unknown, laid out so that the stage ends with the test quantity r^2 and the target as given.
struct Decision {
    const char* name;
    int limit_test, iterations, limit, residual_test, caller_test;
    double r, target;
    int request; // 9: goes on with a product
};

class DcgDecision : public testing::TestWithParam<std::tuple<Decision, int>> {};

TEST_P(DcgDecision, Branch) {
    const auto& [decision, stage] = GetParam();
    const bool first = stage == 2 || stage == 7, plain = stage < 5;
    CgCase run(1);
    run.init();
    run.tmp = {1.0, 1.0, decision.r, decision.r};
    run.ip(3) = stage;
    run.ip(4) = decision.iterations;
    run.ip(5) = decision.limit;
    run.ip(8) = decision.limit_test;
    run.ip(9) = decision.residual_test;
    run.ip(10) = decision.caller_test;
    run.dp(1) = 0.0;
    run.dp(2) = decision.target;                     // read by the first stages,
    run.dp(4) = decision.target;                     // kept by the later ones,
    run.dp(6) = 1.0;                                 // where alpha is 1 / (1 * 1)
    if (stage == 4 || stage == 2) run.tmp[2] += 1.0; // and A p = 1 is subtracted
    const std::string output = printed_by([&] { run.step(); });

    const bool goes_on = decision.request == 9;
    EXPECT_EQ(run.request, goes_on ? 1 : decision.request);
    EXPECT_EQ(run.dp(5), decision.r * decision.r);
    EXPECT_EQ(run.dp(4), decision.target);
    EXPECT_EQ(run.dp(3), first ? decision.r * decision.r : 0.0);
    EXPECT_EQ(run.ip(4), decision.iterations + goes_on);
    EXPECT_EQ(run.dp(6), goes_on ? decision.r * decision.r : 1.0);
    EXPECT_EQ(run.ip(3), goes_on ? (plain ? 4 : 9) : decision.request == 2 ? (plain ? 3 : 8) : stage);
    EXPECT_EQ(output, decision.request == -11 ? error_report(endless_loop_text) : "");
}

INSTANTIATE_TEST_SUITE_P(, DcgDecision,
                         testing::Combine(testing::Values(Decision{"limit_alone", 1, 4, 4, 0, 0, 2, 1, 0},
                                                          Decision{"limit_beats_caller", 1, 5, 4, 0, 1, 2, 1, 0},
                                                          Decision{"limit_unmet", 1, 4, 4, 1, 1, 2, 3.9, -1},
                                                          Decision{"limit_met", 1, 4, 4, 1, 1, 2, 4.0, 0},
                                                          Decision{"limit_off", 0, 4, 4, 1, 0, 2, 1, 9},
                                                          Decision{"residual_met", 1, 3, 4, 1, 1, 2, 4.0, 0},
                                                          Decision{"residual_then_caller", 1, 3, 4, 1, 1, 2, 3.9, 2},
                                                          Decision{"residual_goes_on", 1, 3, 4, 1, 0, 2, 3.9, 9},
                                                          Decision{"caller_alone", 0, 3, 4, 0, 1, 0, 1, 2},
                                                          Decision{"limit_only_exact", 1, 3, 4, 0, 0, 0, 1, 0},
                                                          Decision{"limit_only_goes_on", 1, 3, 4, 0, 0, 2, 9, 9},
                                                          Decision{"none", 0, 3, 4, 0, 0, 2, 1, -11}),
                                          testing::Values(2, 4, 7, 10)),
                         [](const auto& info) {
                             return std::get<0>(info.param).name + std::string("_at_stage_") +
                                    std::to_string(std::get<1>(info.param));
                         });

TEST(Dcg, NanEndsTheResidualTest) {
    CgCase run(1);
    run.init();
    run.tmp = {1.0, 1.0, NAN, 0.0};
    run.ip(3) = 4;
    run.ip(9) = 1;
    run.dp(6) = 1.0;
    EXPECT_EQ(run.step(), 0);
}

TEST(Dcg, StagesThatOnlyACallerSets) {
    for (const auto& [stage, preconditioned, next] :
         {std::tuple{0, 0, 2}, {11, 0, 2}, {-5, 1, 6}, {1, 1, 6}, {5, 0, 6}, {5, 1, 6}}) {
        CgCase run(2);
        run.init();
        run.x = {3, 4};
        run.b = {5, 6};
        run.ip(3) = stage;
        run.ip(11) = preconditioned;
        EXPECT_EQ(run.step(), 1);
        EXPECT_EQ(run.ip(3), next);
        EXPECT_EQ(run.tmp, (Vector{3, 4, 0, 0, 5, 6, untouched, untouched}));
    }
}

/// A division by 0 at a stage, with A p and the last test quantity as given.
struct Failure {
    int stage;
    double ap, last_quantity;
    int request;
    std::string text;
};

TEST(Dcg, DivisionsByZeroAreReportedAndStayWhereTheyAre) {
    for (const Failure& failure : {Failure{4, 0, 1, -2, indefinite_text}, Failure{9, 0, 1, -2, indefinite_text},
                                   Failure{4, 1, 0, -10, altered_text}, Failure{10, 1, 0, -10, altered_text}}) {
        CgCase run(1);
        run.init();
        run.tmp = {1.0, failure.ap, 2.0, 2.0};
        run.ip(3) = failure.stage;
        run.dp(6) = failure.last_quantity;
        EXPECT_EQ(printed_by([&] { run.step(); }), error_report(failure.text));
        EXPECT_EQ(run.request, failure.request);
        EXPECT_EQ(run.ip(3), failure.stage);
        EXPECT_EQ(run.x[0], 0.0);
        EXPECT_EQ(run.tmp[0], 1.0);
        run.ip(6) = 0;
        EXPECT_EQ(printed_by([&] { run.step(); }), "");
        EXPECT_EQ(run.request, failure.request);
    }
}

TEST(Dcg, NoUnknownsTouchNothing) {
    for (const int n : {0, -1, -2147483647 - 1}) {
        CgCase run(1);
        run.init();
        run.tmp.assign(4, untouched);
        run.ip(1) = n;
        run.ip(11) = 1;
        for (const int request : {1, 3, 2, 1}) EXPECT_EQ(run.step(), request);
        run.dp(6) = 1.0;
        EXPECT_EQ(printed_by([&] { run.step(); }), error_report(indefinite_text)); // an empty product is 0
        EXPECT_EQ(run.request, -2);
        EXPECT_EQ(run.tmp, Vector(4, untouched));
        EXPECT_EQ(run.x, Vector{0.0});
    }
}

} // namespace
