// The matching of largest product: against all permutations where there are few, and by the optimality of its scaling,
// every entry at most 1 and 1 where it is matched, where there are many.
#include "tests/solvers_ds/graphs.hpp"
#include "tests/solvers_ds/matching_calls.hpp"
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <random>

namespace {

using namespace nxl::pardiso;
using nxl_test::match;
using nxl_test::Matching;
using nxl_test::SparseProblem;

/// An unsymmetric matrix whose moduli span many orders of magnitude, about `per_row` entries in a row, some of them 0.
SparseProblem random_problem(int n, int per_row, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> exponent(-8.0, 8.0);
    SparseProblem problem = {.n = n, .mtype = 11, .ia = {1}, .ja = {}, .a = {}};
    for (int i = 0; i < n; ++i) {
        for (int j = 1; j <= n; ++j) {
            if (static_cast<int>(random() % static_cast<unsigned>(n)) >= per_row) continue;
            problem.ja.push_back(j);
            problem.a.push_back(random() % 8 == 0 ? 0.0 : std::pow(10.0, exponent(random)) * (random() % 2 ? 1 : -1));
        }
        problem.ia.push_back(static_cast<int>(problem.ja.size()) + 1);
    }
    return problem;
}

/// Entries anywhere with values from 0 to 1: searches for the last rows would go through most of it. With `gaps` of
/// columns that only the first row has.
SparseProblem scattered_problem(int n, int per_row, int gaps) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> value(0.0, 1.0);
    SparseProblem problem = {.n = n, .mtype = 11, .ia = {1}, .ja = {}, .a = {}};
    for (int i = 0; i < n; ++i) {
        std::vector<int> columns = {std::min(i, n - gaps - 1) + 1};
        for (int k = 1; k < per_row; ++k)
            columns.push_back(static_cast<int>(random() % static_cast<unsigned>(n - gaps)) + 1);
        for (int k = 0; i == 0 && k < gaps; ++k) columns.push_back(n - k);
        std::ranges::sort(columns);
        columns.erase(std::ranges::unique(columns).begin(), columns.end());
        problem.ja.insert(problem.ja.end(), columns.begin(), columns.end());
        problem.ia.push_back(static_cast<int>(problem.ja.size()) + 1);
    }
    for (std::size_t k = 0; k < problem.ja.size(); ++k) problem.a.push_back(value(random));
    return problem;
}

/// The largest sum of logarithms over all permutations, and -infinity where each has a 0 in it.
double best_by_trial(const SparseProblem& problem) {
    const auto n = static_cast<std::size_t>(problem.n);
    std::vector<double> log_of(n * n, -std::numeric_limits<double>::infinity());
    for (std::size_t i = 0; i < n; ++i)
        for (auto k = static_cast<std::size_t>(problem.ia[i] - 1); k + 1 < static_cast<std::size_t>(problem.ia[i + 1]);
             ++k)
            log_of[i * n + static_cast<std::size_t>(problem.ja[k]) - 1] = std::log(std::abs(problem.a[k]));
    std::vector<std::size_t> row(n);
    std::iota(row.begin(), row.end(), 0U);
    double best = -std::numeric_limits<double>::infinity();
    do {
        double sum = 0.0;
        for (std::size_t j = 0; j < n; ++j) sum += log_of[row[j] * n + j];
        best = std::max(best, sum);
    } while (std::ranges::next_permutation(row).found);
    return best;
}

/// Largest scaled entry, and sum of the logarithms of the matched ones; each of them is 1 after scaling.
double expect_optimal(const SparseProblem& problem, const Matching& matching) {
    const int *ia = problem.ia.data(), *ja = problem.ja.data(), *row_of = matching.row_of_column.data();
    const double *a = problem.a.data(), *rows = matching.row_scale.data(), *columns = matching.column_scale.data();
    double largest = 0.0, sum = 0.0;
    int met = 0;
    for (int i = 0; i < problem.n; ++i)
        for (int k = ia[i] - 1; k < ia[i + 1] - 1; ++k) {
            const int j = ja[k] - 1;
            const double scaled = std::abs(a[k]) * rows[i] * columns[j];
            largest = std::max(largest, scaled);
            if (row_of[j] != i + 1) continue;
            if (!problem.upper()) EXPECT_NEAR(scaled, 1.0, 1e-10);
            sum += std::log(std::abs(a[k]));
            ++met;
        }
    if (!problem.upper()) EXPECT_EQ(met, problem.n);
    EXPECT_LE(largest, 1.0 + 1e-10);
    EXPECT_TRUE(nxl_test::is_permutation_from(1, matching.row_of_column));
    return sum;
}

TEST(Matching, HasTheLargestProductOfAllPermutations) {
    int perfect = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        const auto problem = random_problem(1 + static_cast<int>(seed % 7), 1 + static_cast<int>(seed % 4), seed);
        const double best = best_by_trial(problem);
        const Matching matching = match(problem);
        if (std::isinf(best)) {
            EXPECT_EQ(matching.code,
                      problem.a.empty() || std::ranges::all_of(problem.a, [](double a) { return a == 0.0; })
                          ? kEmptyGraph
                          : kImperfectMatching);
            EXPECT_LT(matching.matched, problem.n);
            EXPECT_TRUE(nxl_test::is_permutation_from(1, matching.row_of_column));
            continue;
        }
        ++perfect;
        ASSERT_EQ(matching.code, 0);
        EXPECT_NEAR(expect_optimal(problem, matching), best, 1e-9);
    }
    EXPECT_GT(perfect, 50);
}

TEST(Matching, OfLargeMatricesIsOptimalByItsDuals) {
    for (const auto& problem : {random_problem(600, 8, 1), random_problem(600, 40, 2), nxl_test::convection3d(9),
                                scattered_problem(5000, 8, 0)}) {
        const Matching matching = match(problem);
        ASSERT_EQ(matching.code, 0);
        EXPECT_EQ(matching.matched, problem.n);
        expect_optimal(problem, matching);
    }
}

TEST(Matching, ScalesSymmetricMatricesByOneVector) {
    const auto problem = nxl_test::saddle(12);
    const Matching matching = match(problem);
    ASSERT_EQ(matching.code, 0);
    EXPECT_EQ(matching.row_scale, matching.column_scale);
    expect_optimal(problem, matching);
    const Matching unscaled = match(problem, false);
    EXPECT_EQ(unscaled.row_scale, std::vector<double>(unscaled.row_scale.size(), 1.0));
    EXPECT_EQ(unscaled.row_of_column, matching.row_of_column);
}

TEST(Matching, CountsTheColumnsThatCanHaveARow) {
    // rows 1, 2 and 3 share columns 1 and 2; row 5 is empty but for a zero
    const SparseProblem problem = {.n = 5,
                                   .mtype = 11,
                                   .ia = {1, 3, 5, 7, 10, 11},
                                   .ja = {1, 2, 1, 2, 1, 2, 1, 3, 4, 5},
                                   .a = {1, 2, 3, 4, 5, 6, 7, 8, 9, 0}};
    const Matching matching = match(problem);
    EXPECT_EQ(matching.code, kImperfectMatching);
    EXPECT_EQ(matching.matched, 3);
    EXPECT_EQ(matching.row_of_column, (std::vector<i32>{1, 2, 3, 4, 5}));
    EXPECT_EQ(matching.row_scale, std::vector<double>(5, 1.0));

    const auto large = scattered_problem(3000, 8, 40);
    EXPECT_EQ(match(large).code, kImperfectMatching);
    EXPECT_EQ(match(large).matched, 3000 - 39);
}

TEST(Matching, TakesNumbersThatHaveNoUsableLogarithm) {
    constexpr double infinity = std::numeric_limits<double>::infinity(), tiny = 5e-324;
    const SparseProblem problem = {.n = 3,
                                   .mtype = 11,
                                   .ia = {1, 4, 6, 8},
                                   .ja = {1, 2, 3, 1, 2, 2, 3},
                                   .a = {NAN, infinity, tiny, tiny, 1.0, -infinity, -1.0}};
    const Matching matching = match(problem, false);
    EXPECT_EQ(matching.code, 0);
    EXPECT_NE(matching.row_of_column[0], 1); // NaN is no entry
}

TEST(Matching, RefusesOtherModesAndTrianglesWithoutTheirDiagonal) {
    for (const i32 mode : {2, 3, 4}) EXPECT_EQ(match(random_problem(4, 4, 1), true, mode).code, 1);
    const SparseProblem gap = {.n = 2, .mtype = -2, .ia = {1, 2, 3}, .ja = {2, 2}, .a = {1.0, 1.0}};
    EXPECT_EQ(match(gap).code, kUnsymmetricPattern);
}

} // namespace
