// Factorisation and solution of every matrix type: residuals, inertia, pivots that fail or are replaced.
#include "tests/solvers_ds/systems.hpp"
#include "tests/support/captured.hpp"
#include "tests/support/host_allocator.hpp"
#include <gtest/gtest.h>
#include <omp.h>
#include <pthread.h>

namespace {

using namespace nxl_test;

/// What the host is told, and when it asks to stop.
struct Progress {
    int stop_at = 1000, last = -1;
} progress;

constexpr int all_types[] = {1, 2, -2, 3, 4, -4, 6, 11, 13};

struct Shape {
    const char* name;
    Pattern pattern;
};

/// Supernodes of one and of many columns, wider than a panel, rows in runs and scattered, several trees.
std::vector<Shape> shapes() {
    return {{"one_pair", chain(2)},
            {"chain", chain(30)},
            {"star", star(25, 7)},
            {"grid", grid(9, 8)},
            {"clique", clique(170)},
            {"cliques_apart", apart(clique(20), clique(9))},
            {"grid_with_full_row", joined(grid(7, 7), star(49, 11))},
            {"random", random_pattern(120, 500, 4)},
            {"sparse_random", random_pattern(200, 260, 5)}};
}

void expect_solved(const System& system, const std::vector<double>& b, const std::string& what,
                   bool transposed = false) {
    EXPECT_LE(system.backward_error(b, system.x, transposed), 1e-10) << what;
}

class PardisoNumeric : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(, PardisoNumeric, testing::ValuesIn(all_types), [](const auto& info) {
    return (info.param < 0 ? "minus_" : "") + std::to_string(std::abs(info.param));
});

/// One right-hand side on a factor that is large enough for the subtrees to go to threads: the solution of one thread
/// up to rounding, in one go and by the sub-steps, with the transpose too.
TEST_P(PardisoNumeric, SolvesByThreadsWhatOneSolves) {
    System system(GetParam(), grid(190, 190), 7);
    NXL_Set_Dynamic(0);
    system.run(-2);
    system.parameter(2) = 2;
    system.parameter(10) = 13;
    system.parameter(18) = -1;
    system.parameter(21) = 1;
    omp_set_num_threads(3); // the count of the analysis is that of the solves
    ASSERT_EQ(system.run(12), 0);
    EXPECT_GT(system.parameter(18), 600000) << "too small for three threads";
    const auto b = system.b;
    for (const bool transposed : {false, true}) {
        if (transposed && triangle_type(GetParam())) continue;
        const auto solved = [&](int threads, const std::vector<int>& steps) {
            omp_set_num_threads(threads);
            system.b = b;
            system.parameter(1) = 2;
            system.parameter(12) = transposed ? 1 : 0;
            for (const int ido : steps) {
                EXPECT_EQ(system.run(ido), 0);
                if (steps.size() > 1) system.b = system.x;
            }
            return system.x;
        };
        const std::vector<double> alone = solved(1, {33});
        expect_solved(system, b, "one thread", transposed);
        for (const auto& steps : {std::vector<int>{33}, {331, 332, 333}}) {
            const std::vector<double> together = solved(3, steps);
            double difference = 0.0, size = 0.0;
            for (std::size_t i = 0; i < alone.size(); ++i) {
                difference = std::max(difference, std::abs(alone[i] - together[i]));
                size = std::max(size, std::abs(alone[i]));
            }
            EXPECT_LE(difference, 1e-11 * size) << steps.size() << " steps, transposed " << transposed;
        }
    }
    system.run(-1);
    omp_set_num_threads(1);
}

TEST_P(PardisoNumeric, SolvesOnEveryShapeWithEveryOrdering) {
    for (const Shape& shape : shapes())
        for (const int ordering : {0, 1, 2})
            for (const int threads : {1, 3}) {
                omp_set_num_threads(threads);
                NXL_Set_Dynamic(0);
                System system(GetParam(), shape.pattern, 18, 3);
                system.run(-2);
                system.parameter(1) = 1;
                system.parameter(2) = ordering;
                system.parameter(10) = 13;
                system.parameter(21) = 1;
                const auto b = system.b;
                const std::string what = std::string(shape.name) + ", ordering " + std::to_string(ordering) +
                                         ", threads " + std::to_string(threads);
                ASSERT_EQ(system.run(13), 0) << what;
                expect_solved(system, b, what);
                EXPECT_EQ(system.parameter(14), 0) << what;
                std::fill(system.x.begin(), system.x.end(), 0.0);
                ASSERT_EQ(system.run(33), 0);
                expect_solved(system, b, what + ", again");
                system.run(-1);
            }
}

/// As the defaults have it for the type, with Bunch and Kaufman's pivots.
System prepared(int mtype, const Pattern& pattern, unsigned seed, int right_hand_sides = 1) {
    omp_set_num_threads(1);
    System system(mtype, pattern, seed, right_hand_sides);
    system.parameter(1) = 1;
    system.parameter(2) = 2;
    system.parameter(10) = mtype > 0 && mtype % 2 != 0 ? 13 : 8;
    system.parameter(21) = 1;
    return system;
}

TEST_P(PardisoNumeric, EveryCountOfRightHandSidesGivesTheSameSolutions) {
    System system = prepared(GetParam(), grid(11, 12), 3, 130);
    const auto b = system.b;
    ASSERT_EQ(system.run(13), 0);
    expect_solved(system, b, "130");
    const auto together = system.x;
    const std::size_t column = system.words() * static_cast<std::size_t>(system.n);
    for (const int count : {1, 2, 17, 64}) {
        system.nb = count;
        std::fill(system.x.begin(), system.x.end(), 0.0);
        ASSERT_EQ(system.run(33), 0);
        for (std::size_t k = 0; k < system.x.size(); ++k)
            ASSERT_NEAR(system.x[k], k < column * static_cast<std::size_t>(count) ? together[k] : 0.0, 1e-10) << count;
    }
    system.run(-1);
}

TEST_P(PardisoNumeric, StepsOneByOneAreTheSolve) {
    System system = prepared(GetParam(), random_pattern(80, 250, 7), 8, 2);
    system.parameter(6) = 1;
    for (const bool matched : {false, true}) {
        system.parameter(11) = system.parameter(13) = matched;
        const auto b = system.b;
        ASSERT_EQ(system.run(12), 0);
        for (const int step : {331, 332, 333}) ASSERT_EQ(system.run(step), 0);
        expect_solved(system, b, matched ? "matched" : "unmatched");
        EXPECT_EQ(system.b, system.x) << "iparam(6)";
        system.b = b;
        system.run(-1);
    }
}

TEST_P(PardisoNumeric, FactorsStandSideBySideAndAreMadeAnew) {
    System first = prepared(GetParam(), grid(8, 9), 21), second = prepared(GetParam(), grid(8, 9), 22);
    first.max_fac_store = 2;
    ASSERT_EQ(first.run(12), 0);
    const auto a = first.a;
    first.a = second.a;
    first.matrix_number = 2;
    ASSERT_EQ(first.run(22), 0);
    for (const int number : {1, 2, 1}) {
        first.matrix_number = number;
        first.a = number == 1 ? a : second.a;
        ASSERT_EQ(first.run(33), 0);
        expect_solved(first, first.b, std::to_string(number));
    }
    first.a = second.a;
    ASSERT_EQ(first.run(23), 0);
    expect_solved(first, first.b, "new values");
    EXPECT_EQ(first.run(0), 0);
    first.x.assign(first.x.size(), 5.0);
    EXPECT_EQ(first.run(33), 0) << "a solve alone never reports failure";
    EXPECT_EQ(first.x.front(), 5.0) << "and does nothing without a factor";
    first.run(-1);
}

TEST_P(PardisoNumeric, AHostThatAsksForItStopsIt) {
    System system = prepared(GetParam(), grid(30, 30), 2);
    ASSERT_EQ(system.run(11), 0);
    progress = {.stop_at = 20};
    EXPECT_EQ(system.run(22), 0);
    EXPECT_GE(progress.last, 20);
    EXPECT_LT(progress.last, 100);
    progress = {};
    EXPECT_EQ(system.run(23), 0);
    EXPECT_EQ(progress.last, 100);
    expect_solved(system, system.b, "after a stop");
    system.run(-1);
}

TEST_P(PardisoNumeric, WithoutMemoryItFailsAndLeavesNothing) {
    const long before = live_blocks();
    for (long k = 1;; ++k) {
        System system = prepared(GetParam(), grid(6, 6), 31, 2);
        system.parameter(8) = -2;
        fail_allocation(k);
        const int error = system.run(13);
        fail_allocation(0);
        system.run(-1);
        ASSERT_EQ(live_blocks(), before) << "allocation " << k;
        if (error == 0) break;
        ASSERT_TRUE(error <= -2 && error >= -6) << error;
        ASSERT_LT(k, 500);
    }
}

class PardisoUnsymmetric : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(, PardisoUnsymmetric, testing::Values(1, 3, 11, 13));

TEST_P(PardisoUnsymmetric, SolvesWithTheTransposeUnconjugated) {
    for (const bool matched : {false, true}) {
        System system = prepared(GetParam(), random_pattern(90, 300, 6), 41, 3);
        system.parameter(1) = 2; // the caller's values, without the side effects of 1
        system.parameter(11) = system.parameter(13) = matched;
        system.parameter(12) = 1;
        system.parameter(8) = 1;
        ASSERT_EQ(system.run(13), 0);
        expect_solved(system, system.b, matched ? "matched" : "unmatched", true);
        system.run(-1);
    }
}

class PardisoIndefinite : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(, PardisoIndefinite, testing::Values(-2, -4));

/// The diagonal outweighs the rest and so tells the signs of the eigenvalues.
TEST_P(PardisoIndefinite, CountsTheSignsOfTheEigenvalues) {
    for (const int pivoting : {0, 1})
        for (const int threads : {1, 2}) {
            System system = prepared(GetParam(), joined(grid(9, 9), random_pattern(81, 100, 3)), 51);
            omp_set_num_threads(threads);
            system.parameter(21) = pivoting;
            int positive = 0;
            for (std::size_t i = 0; i < 81; ++i) { // the diagonal is the first of its row
                double& diagonal = system.a[system.words() * static_cast<std::size_t>(system.ia[i] - 1)];
                positive += diagonal > 0.0;
                diagonal *= 100.0;
            }
            ASSERT_EQ(system.run(13), 0);
            EXPECT_EQ(system.parameter(22), positive);
            EXPECT_EQ(system.parameter(23), 81 - positive);
            expect_solved(system, system.b, "inertia");
            system.run(-1);
        }
}

/// Zeros on the diagonal: only pivots of order 2 go without replacing any.
TEST_P(PardisoIndefinite, ZeroDiagonalsTakePairsOrAreReplaced) {
    for (const int pivoting : {0, 1}) {
        System system = prepared(GetParam(), clique(40), 61);
        system.parameter(21) = pivoting;
        for (std::size_t i = 0; i < 40; ++i)
            system.a[system.words() * static_cast<std::size_t>(system.ia[i] - 1)] = 0.0;
        ASSERT_EQ(system.run(13), 0);
        EXPECT_EQ(system.parameter(14) > 0, pivoting == 0);
        EXPECT_EQ(system.parameter(7), pivoting == 0 ? 2 : 0) << "two steps for what was replaced";
        if (pivoting == 1) expect_solved(system, system.b, "pairs");
        EXPECT_EQ(system.parameter(22) + system.parameter(23), 40);
        system.run(-1);
    }
}

/// Calls body on a thread with a stack on which nothing can recurse from row to row.
template <class Body> void on_small_stack(Body& body) {
    pthread_attr_t small;
    pthread_attr_init(&small);
    pthread_attr_setstacksize(&small, 256 * 1024);
    pthread_t thread{};
    const auto call = [](void* argument) -> void* { return (*static_cast<Body*>(argument))(), nullptr; };
    ASSERT_EQ(pthread_create(&thread, &small, call, &body), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&small);
}

/// Trees as deep and as wide as they come; what is quadratic in them would not end.
TEST(PardisoSizes, LongChainsAndStarsAreSolvedOnASmallStack) {
    constexpr int n = 100000;
    auto solve_all = [&] {
        for (const Shape& shape : {Shape{"chain", chain(n)}, {"star", star(n, n)}})
            for (const int ordering : {0, 1, 2, 3}) { // 3: the order of the rows
                System system = prepared(-2, shape.pattern, 6);
                system.parameter(2) = ordering % 3;
                system.parameter(5) = ordering == 3 ? 1 : 0;
                const auto b = system.b;
                EXPECT_EQ(system.run(13), 0) << shape.name << ", ordering " << ordering;
                expect_solved(system, b, shape.name);
                system.run(-1);
            }
    };
    on_small_stack(solve_all);
}

/// A pivot that fails: its place, what is printed of it, and that nothing is solved with what is left.
TEST(PardisoPivots, ThatFailAreReported) {
    struct Case {
        int mtype;
        const char* line;
    };
    for (const auto& [mtype, line] : {Case{2, "zero or negative pivot, A is not SPD-matrix"},
                                      {4, "zero or negative pivot, A is not SPD-matrix"},
                                      {1, "zero pivot"},
                                      {3, "zero pivot"}})
        for (const int threads : {1, 2}) {
            System system = prepared(mtype, chain(12), 71);
            omp_set_num_threads(threads);
            system.msglvl = 1;
            const bool definite = mtype % 2 == 0;
            for (int k = system.ia[6]; k < system.ia[7]; ++k) // a row of zeros, or a negative diagonal
                for (std::size_t part = 0; part < system.words(); ++part)
                    system.a[system.words() * static_cast<std::size_t>(k - 1) + part] = definite ? -1.0 : 0.0;
            int error = 0;
            const std::string text = printed_by([&] { error = system.run(13); });
            EXPECT_EQ(error, -4);
            EXPECT_NE(text.find(std::string("*** Error in PARDISO: ") + line + "\n"), std::string::npos) << text;
            system.msglvl = 0;
            system.run(-1);
        }
}

TEST(PardisoPivots, OfSingularBlocksAreReplaced) {
    for (const int exponent : {0, 13})
        for (const int mtype : {11, 13}) {
            System system = prepared(mtype, clique(12), 81);
            system.parameter(10) = exponent;
            system.a.assign(system.a.size(), 1.0);
            EXPECT_EQ(system.run(12), 0);
            EXPECT_EQ(system.parameter(14), 11);
            system.run(-1);
        }
}

/// Pascal's matrix: entries are binomial coefficients, its determinant is 1, its condition above 1e13. Of right-hand
/// sides that are exact the solution is all ones.
TEST(PardisoRefinement, ExtendedResidualsFindWhatPlainOnesCannot) {
    constexpr int n = 13;
    for (const int mtype : {2, -2, 11}) {
        System system = prepared(mtype, clique(n), 91);
        system.parameter(10) = 0;
        const auto entry = [](std::size_t i, std::size_t j) {
            double value = 1.0;
            for (std::size_t k = 1; k <= i; ++k) value = value * static_cast<double>(j + k) / static_cast<double>(k);
            return value;
        };
        std::fill(system.b.begin(), system.b.end(), 0.0);
        for (std::size_t i = 0; i < n; ++i) {
            for (int k = system.ia[i]; k < system.ia[i + 1]; ++k)
                system.a[static_cast<std::size_t>(k - 1)] =
                    entry(i, static_cast<std::size_t>(system.ja[static_cast<std::size_t>(k - 1)] - 1));
            for (std::size_t j = 0; j < n; ++j) system.b[i] += entry(i, j);
        }
        ASSERT_EQ(system.run(12), 0);
        const auto error = [&](int steps) {
            system.parameter(8) = steps;
            system.run(33);
            double worst = 0.0;
            for (const double v : system.x) worst = std::max(worst, std::abs(v - 1.0));
            return worst;
        };
        EXPECT_GT(error(10), 1e-9) << mtype;
        EXPECT_LT(error(-10), 1e-15) << mtype;
        system.run(-1);
    }
}

TEST_P(PardisoNumeric, OldFactorsServeNewMatricesUntilTheyAreTooOld) {
    System system = prepared(GetParam(), grid(20, 20), 101, 2);
    system.parameter(4) = -101; // tolerance 1e-10, and 150 steps whatever a factorisation takes
    ASSERT_EQ(system.run(13), 0);
    expect_solved(system, system.b, "fresh");
    for (double& v : system.a) v *= 1.0 + 1e-4 * std::sin(v);
    system.parameter(20) = 0;
    ASSERT_EQ(system.run(33), 0);
    EXPECT_GT(system.parameter(20), 0);
    EXPECT_LE(system.backward_error(system.b, system.x), 1e-7);
    system.scale_symmetrically();
    EXPECT_EQ(system.run(33), -4);
    EXPECT_LT(system.parameter(20), 0);
    EXPECT_EQ(system.run(23), 0) << "factored anew";
    EXPECT_LE(system.backward_error(system.b, system.x), 1e-7);
    system.run(-1);
}

} // namespace

extern "C" [[gnu::visibility("default")]] int NXL_PROGRESS(const int*, const int* step, const char* stage,
                                                           int length) noexcept {
    if (std::string(stage, static_cast<std::size_t>(length)) != "Pardiso: factorization phase") return 0;
    progress.last = *step;
    return *step >= progress.stop_at;
}
