// Ordering by pairs: where the rows of each cycle go, and which of them are pivots of their own.
#include "service/memory.hpp"
#include "solvers_ds/kernel/default/pardiso/mpssym.hpp"
#include "tests/solvers_ds/graphs.hpp"
#include "tests/solvers_ds/matching_calls.hpp"
#include "tests/support/host_allocator.hpp"
#include "tests/support/sparse_problems.hpp"
#include <gtest/gtest.h>
#include <map>

namespace {

using namespace nxl::pardiso;
using nxl_test::SparseProblem;

std::size_t at(i32 index) { return static_cast<std::size_t>(index); }

struct Paired {
    i32 code = 0;
    std::vector<i32> perm, pairs = std::vector<i32>(100);
    std::vector<bool> single; // by new position
    i32 ranges = 0;
};

Paired order(SparseProblem problem, const std::vector<i32>& row_of_column, i32 method, i32 parts = 1) {
    Paired result;
    result.perm = row_of_column;
    Separators separators = {.n = 0, .pair = result.pairs.data()};
    std::vector<u32> words(bitvec_words(static_cast<u32>(problem.n)));
    Bitvec bits = {
        .size = static_cast<u32>(problem.n), .words = static_cast<u32>(words.size()), .own = 0, .bits = words.data()};
    const auto ia = problem.ia, ja = problem.ja;
    result.code = mpssym({.n = problem.n,
                          .ia = problem.ia.data(),
                          .ja = problem.ja.data(),
                          .a = problem.a.data(),
                          .method = method,
                          .parts = parts,
                          .perm = result.perm.data(),
                          .sym_perm_1x1_pivots = &bits,
                          .ddist = &separators});
    EXPECT_EQ(problem.ia, ia);
    EXPECT_EQ(problem.ja, ja);
    for (u32 k = 0; k < bits.size; ++k) result.single.push_back(bitvec_get(&bits, k) != 0);
    result.ranges = separators.subgraphs() + 1;
    return result;
}

/// Couples of rows that stand side by side as pivots of order 2.
std::map<i32, i32> couples_of(const Paired& paired) {
    std::map<i32, i32> couples;
    for (std::size_t k = 0; k < paired.single.size(); ++k) {
        if (paired.single[k]) continue;
        EXPECT_LT(k + 1, paired.single.size());
        EXPECT_FALSE(paired.single[k + 1]);
        couples[paired.perm[k]] = paired.perm[k + 1];
        ++k;
    }
    return couples;
}

/// The whole upper triangle, with these diagonals.
SparseProblem full(const std::vector<double>& diagonal) {
    SparseProblem problem = {.n = static_cast<int>(diagonal.size()), .mtype = -2, .ia = {1}, .ja = {}, .a = {}};
    for (int i = 1; i <= problem.n; ++i) {
        for (int j = i; j <= problem.n; ++j) {
            problem.ja.push_back(j);
            problem.a.push_back(i == j ? diagonal[at(i - 1)] : 1.0);
        }
        problem.ia.push_back(static_cast<int>(problem.ja.size()) + 1);
    }
    return problem;
}

TEST(Mpssym, PairsTheRowsOfEachCycle) {
    const double d = 1.0, z = 0.0;
    struct Case {
        const char* fault;
        std::vector<double> diagonal;
        std::vector<i32> row_of_column;
        std::map<i32, i32> couples; // the other rows are single
    };
    for (const Case& c : {Case{"pairs without diagonals", {z, z, z, z}, {2, 1, 4, 3}, {{1, 2}, {3, 4}}},
                          Case{"pair with both diagonals", {d, d, z, z}, {2, 1, 4, 3}, {{3, 4}}},
                          Case{"pair with one diagonal", {d, 1e-8, d, d}, {2, 1, 3, 4}, {{1, 2}}},
                          Case{"cycle of 4", {z, z, z, z}, {3, 1, 4, 2}, {{1, 3}, {4, 2}}},
                          Case{"cycle of 3 and a single", {z, d, z, z}, {3, 2, 4, 1}, {{3, 4}}},
                          Case{"singles", {z, z, d}, {1, 2, 3}, {}}})
        for (const i32 method : {0, 1, 2}) {
            const Paired paired = order(full(c.diagonal), c.row_of_column, method);
            ASSERT_EQ(paired.code, 0) << c.fault;
            EXPECT_TRUE(nxl_test::is_permutation_from(1, paired.perm)) << c.fault;
            EXPECT_EQ(couples_of(paired), c.couples) << c.fault;
        }
}

TEST(Mpssym, KeepsPairsTogetherInEveryOrder) {
    const SparseProblem problem = nxl_test::saddle(14);
    const auto [code, matched, row_of_column, row_scale, column_scale] = nxl_test::match(problem);
    ASSERT_EQ(code, 0);
    for (const i32 method : {0, 1, 2})
        for (const i32 parts : {1, 4}) {
            Paired paired = order(problem, row_of_column, method, parts);
            ASSERT_EQ(paired.code, 0);
            EXPECT_TRUE(nxl_test::is_permutation_from(1, paired.perm));
            const auto couples = couples_of(paired);
            EXPECT_GT(couples.size(), 100U); // no pressure but the first has a pivot of its own
            for (const auto [row, other] : couples)
                EXPECT_TRUE(row_of_column[at(row - 1)] == other || row_of_column[at(other - 1)] == row);
            const Separators ranges = {.n = 2 * paired.ranges, .pair = paired.pairs.data()};
            EXPECT_EQ(ranges.last(paired.ranges - 1), problem.n);
            for (i32 r = 0; r < paired.ranges; ++r) { // a range parts no pair
                const i32 first = ranges.first(r);
                const auto singles_before = std::count(paired.single.begin(), paired.single.begin() + first - 1, true);
                EXPECT_EQ((first - 1 - singles_before) % 2, 0);
            }
        }
}

TEST(Mpssym, EndsCleanlyWithoutMemory) {
    const SparseProblem problem = nxl_test::saddle(6);
    const auto row_of_column = nxl_test::match(problem).row_of_column;
    const auto refused = [](const auto& stage) { // how often, when each allocation in turn fails
        const long first = nxl_test::allocations();
        EXPECT_EQ(stage(), 0);
        const long last = nxl_test::allocations() - first;
        long refusals = 0;
        for (long k = 1; k <= last; ++k) {
            nxl::free_buffers();
            const long before = nxl_test::live_blocks();
            nxl_test::fail_allocation(k);
            const i32 code = stage();
            nxl_test::fail_allocation(0);
            nxl::free_buffers();
            EXPECT_EQ(nxl_test::live_blocks(), before) << "allocation " << k;
            EXPECT_TRUE(code == kNoMemory || code == 0) << code; // 0: what failed was a cache of blocks
            refusals += code == kNoMemory ? 1 : 0;
        }
        return refusals;
    };
    EXPECT_GE(refused([&] { return nxl_test::match(problem).code; }), 4);
    for (const i32 method : {0, 1, 2})
        EXPECT_GE(refused([&] { return order(problem, row_of_column, method, 2).code; }), 20);
}

TEST(Mpssym, RefusesATriangleWithoutItsDiagonal) {
    const SparseProblem gap = {.n = 2, .mtype = -2, .ia = {1, 2, 3}, .ja = {2, 2}, .a = {1.0, 1.0}};
    EXPECT_EQ(order(gap, {2, 1}, 0).code, kUnsymmetricPattern);
}

TEST(MpssymDeathTest, OrderingsThroughTheContainersAssertTheirRecords) {
    const OwnedSmat mat(smat_create_pattern(3, 3, 0, 0));
    const OwnedPerm small(perm_create(2)), right(perm_create(3));
    Separators odd = {.n = 3, .pair = nullptr};
    EXPECT_DEATH(smat_minimum_degree(mat.get(), nullptr), "perm != NULL, file pardiso/mpssym,");
    EXPECT_DEATH(smat_constrained_minimum_degree(mat.get(), 1, small.get(), &odd), "perm->n == A->m");
    EXPECT_DEATH(smat_nested_dissection(mat.get(), 1, right.get(), nullptr), "ddist != NULL");
    EXPECT_DEATH(smat_nested_dissection(mat.get(), 1, right.get(), &odd), "\\(ddist->n & 1\\) == 0");
}

} // namespace
