// Orders against elimination on plain sets; separators and adjacency by their definitions.
#include "solvers_ds/kernel/default/pardiso/assembly_tree.hpp"
#include "solvers_ds/kernel/default/pardiso/nested_dissection.hpp"
#include "solvers_ds/kernel/default/pardiso/ordering.hpp"
#include "tests/solvers_ds/graphs.hpp"
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <numeric>
#include <thread>

namespace {

using namespace nxl::pardiso;
using namespace nxl_test;

std::size_t at(i32 index) { return static_cast<std::size_t>(index); }

class Orders : public ::testing::TestWithParam<TestGraph> {
  protected:
    const TestGraph& graph = GetParam();
    const i32 n = graph.n();
    const GraphArrays arrays{graph};
    std::vector<i32> perm = std::vector<i32>(at(n), -1), invp = perm, pairs = std::vector<i32>(100, -1);
    Separators separators = {.n = 0, .pair = pairs.data()};

    void expect_inverse_bijections() const {
        ASSERT_TRUE(is_permutation_from(0, perm));
        for (i32 k = 0; k < n; ++k) EXPECT_EQ(invp[at(perm[at(k)])], k);
    }

    /// The ranges hold each column once, in their order, and no two subgraphs touch.
    void expect_separated(i32 most) const {
        EXPECT_LE(separators.subgraphs(), most);
        std::vector<i32> range_of;
        for (i32 r = 0; r <= separators.subgraphs(); ++r) {
            EXPECT_EQ(separators.first(r), static_cast<i32>(range_of.size()) + 1);
            range_of.resize(at(separators.last(r)), r);
        }
        ASSERT_EQ(range_of.size(), at(n));
        for (i32 i = 0; i < n; ++i)
            for (const i32 j : graph.of(i)) {
                const i32 own = range_of[at(invp[at(i)])], other = range_of[at(invp[at(j)])];
                EXPECT_TRUE(own == other || own == separators.subgraphs() || other == separators.subgraphs());
            }
    }
};

TEST_P(Orders, OfMinimumDegreeComeWithTheTreeOfTheirFronts) {
    std::vector<i32> start(at(n) + 1), parent(at(n)), border(at(n)), front_of(at(n));
    AssemblyTree tree = {.fronts = 0, .start = start.data(), .parent = parent.data(), .border = border.data()};
    ASSERT_EQ(eliminate_by_degree(arrays.view(), perm.data(), tree), 0);
    ASSERT_TRUE(is_permutation_from(0, perm));
    ASSERT_EQ(start[at(tree.fronts)], n);
    for (i32 k = 0; k < tree.fronts; ++k)
        for (i32 c = start[at(k)]; c < start[at(k + 1)]; ++c) front_of[at(perm[at(c)])] = k;
    PlainElimination elimination(graph);
    for (i32 k = 0; k < n; ++k) {
        const auto clique = elimination.eliminate(perm[at(k)]);
        const i32 front = front_of[at(perm[at(k)])];
        const bool is_last = k + 1 == start[at(front) + 1];
        if (is_last && !graph.has_dense_row) EXPECT_EQ(static_cast<i32>(clique.size()), border[at(front)]);
        for (const i32 i : clique) {
            i32 ancestor = front;
            while (ancestor >= 0 && ancestor != front_of[at(i)]) ancestor = parent[at(ancestor)];
            EXPECT_EQ(ancestor, front_of[at(i)]);
        }
    }
}

TEST_P(Orders, OfMinimumDegreeFillAsLittleAsThePlainAlgorithm) {
    ASSERT_EQ(multiple_minimum_degree(arrays.view(), perm.data(), invp.data()), 0);
    expect_inverse_bijections();
    const auto entries = static_cast<double>(fill(graph, perm));
    EXPECT_LE(entries, 1.1 * static_cast<double>(fill(graph, plain_minimum_degree(graph))));
    std::vector<i32> natural(at(n));
    std::iota(natural.begin(), natural.end(), 0);
    EXPECT_LE(entries, static_cast<double>(fill(graph, natural)));
}

TEST_P(Orders, WithConstraintsSeparateTheirGroupsAtNoCost) {
    ASSERT_EQ(multiple_minimum_degree(arrays.view(), perm.data(), invp.data()), 0);
    const std::size_t least = fill(graph, perm);
    for (const i32 groups : {1, 2, 8}) {
        ASSERT_EQ(constrained_minimum_degree(arrays.view(), groups, perm.data(), invp.data(), separators), 0);
        expect_inverse_bijections();
        expect_separated(groups);
        EXPECT_EQ(fill(graph, perm), least);
    }
}

TEST_P(Orders, OfNestedDissectionSeparateTheirSubgraphs) {
    for (const i32 parts : {1, 2, 4, 16}) {
        GraphArrays copy = arrays;
        const DissectedGraph dissected = {.n = n, .xadj = copy.xadj.data(), .adjncy = copy.adjncy.data()};
        ASSERT_EQ(nested_dissection(dissected, parts, perm.data(), invp.data(), separators), 0);
        expect_inverse_bijections();
        if (n < kLeastToDissect) EXPECT_TRUE(std::ranges::is_sorted(perm));
        const std::size_t before = fill(graph, perm);
        ASSERT_EQ(gather_subgraphs(n, perm.data(), separators), 0);
        for (i32 k = 0; k < n; ++k) invp[at(perm[at(k)])] = k;
        expect_separated(parts);
        EXPECT_EQ(fill(graph, perm), before);
    }
}

INSTANTIATE_TEST_SUITE_P(Graphs, Orders, ::testing::ValuesIn(graphs_of_all_shapes()),
                         [](const auto& test) { return test.param.name; });

/// A matrix of the caller, and what the ordering stage makes of it.
struct Ordered {
    std::vector<i32> ia = {1}, ja, user_perm, xadj, adjncy, perm, invp, work, pairs = std::vector<i32>(100);
    Separators separators = {.n = 0, .pair = pairs.data()};
    OrderingView view{};

    /// The rows of a graph with their diagonals, or of them what lies above. `lost`: an entry below it is left out.
    Ordered(const TestGraph& graph, i32 mtype, bool lost = false) {
        const i32 n = graph.n();
        for (i32 i = 0; i < n; ++i) {
            std::set<i32> row = graph.of(i);
            row.insert(i);
            for (const i32 j : row) {
                if ((mtype % 2 == 0 && j < i) || (lost && j == i - 1)) continue;
                ja.push_back(j + 1);
            }
            ia.push_back(static_cast<i32>(ja.size()) + 1);
        }
        const auto entries = ja.size(), order = at(n);
        const auto room = mtype > 10 ? order + 3 * entries : mtype % 2 == 0 ? 2 * (entries - order) : entries - order;
        xadj.resize(order + 1);
        adjncy.resize(room);
        perm.resize(order);
        invp.resize(order);
        user_perm.resize(order);
        work.resize(order + 1 + room);
        view = {.n = n,
                .mtype = mtype,
                .threads = 1,
                .ia = ia.data(),
                .ja = ja.data(),
                .row_order = nullptr,
                .method = OrderingMethod::minimum_degree,
                .partitions = 1,
                .permutation_choice = 0,
                .user_perm = user_perm.data(),
                .matched_order = nullptr,
                .xadj = xadj.data(),
                .adjncy = adjncy.data(),
                .adjacency_room = static_cast<nxl::i64>(room),
                .perm = perm.data(),
                .invp = invp.data(),
                .work = work.data(),
                .separators = &separators};
    }
    ~Ordered() = default;
    Ordered(const Ordered&) = delete;
    Ordered& operator=(const Ordered&) = delete;

    i32 run() {
        const i32 code = sssord_adjacency(view);
        return code == 0 ? sssord_order(view) : code;
    }

    TestGraph adjacency() const {
        TestGraph graph("", view.n);
        for (i32 i = 0; i < view.n; ++i)
            for (i32 k = xadj[at(i)]; k < xadj[at(i) + 1]; ++k)
                EXPECT_TRUE(graph.neighbours[at(i)].insert(adjncy[at(k - 1)] - 1).second);
        return graph;
    }
};

/// A signal that ends the process ends it during a partition too, and is not taken for a fault of the ordering.
TEST(NestedDissectionDeathTest, LeavesTerminationToTheHost) {
    const TestGraph graph = grid("grid", 150, 150, 1);
    const auto partition_until_terminated = [&] {
        const pthread_t self = pthread_self();
        std::thread([self] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            pthread_kill(self, SIGTERM); // NOLINT(bugprone-bad-signal-to-kill-thread): the process is to end
        }).detach();
        std::vector<i32> perm(at(graph.n())), invp = perm, pairs(100);
        for (;;) {
            GraphArrays arrays(graph);
            Separators separators = {.n = 0, .pair = pairs.data()};
            if (nested_dissection({.n = graph.n(), .xadj = arrays.xadj.data(), .adjncy = arrays.adjncy.data()}, 1,
                                  perm.data(), invp.data(), separators) != 0)
                std::_Exit(1);
        }
    };
    EXPECT_EXIT(partition_until_terminated(), testing::KilledBySignal(SIGTERM), "");
}

TEST(Sssord, FindsTheGraphOfEveryType) {
    const TestGraph graph = random_graph("", 200, 500, 5);
    for (const i32 mtype : {2, -2, 1, 11})
        for (const auto method : {OrderingMethod::minimum_degree, OrderingMethod::constrained_minimum_degree,
                                  OrderingMethod::nested_dissection}) {
            Ordered ordered(graph, mtype);
            ordered.view.method = method;
            ordered.view.partitions = 4;
            ASSERT_EQ(ordered.run(), 0);
            EXPECT_EQ(ordered.adjacency().neighbours, graph.neighbours);
            EXPECT_TRUE(is_permutation_from(1, ordered.perm));
            for (i32 k = 0; k < 200; ++k) EXPECT_EQ(ordered.invp[at(ordered.perm[at(k)] - 1)], k + 1);
        }
}

TEST(Sssord, AddsTheTransposeOfAnUnsymmetricPatternInMatchedRows) {
    const TestGraph graph = grid("", 9, 9, 1);
    Ordered whole(graph, 11, true);
    ASSERT_EQ(whole.run(), 0);
    EXPECT_EQ(whole.adjacency().neighbours, graph.neighbours);
    std::vector<i32> next_row(81); // row i of the matrix is row i + 1 of the caller's
    for (i32 i = 0; i < 81; ++i) next_row[at(i)] = (i + 1) % 81 + 1;
    Ordered matched(graph, 11, true);
    matched.view.row_order = next_row.data();
    ASSERT_EQ(matched.run(), 0);
    TestGraph expected("", 81);
    for (i32 i = 0; i < 81; ++i) {
        const i32 row = next_row[at(i)];
        for (i32 k = matched.ia[at(row - 1)]; k < matched.ia[at(row)]; ++k) expected.join(i, matched.ja[at(k - 1)] - 1);
    }
    EXPECT_EQ(matched.adjacency().neighbours, expected.neighbours);
}

TEST(Sssord, RefusesAFullPatternThatIsNotSymmetric) {
    EXPECT_EQ(Ordered(grid("", 9, 9, 1), 1, true).run(), kUnsymmetricPattern);
    Ordered gap(grid("", 3, 1, 1), 2);
    gap.ia = {1, 3, 4, 5};
    gap.ja = {2, 3, 3, 3, 0}; // rows 1 and 2 without their diagonals
    gap.view.ja = gap.ja.data();
    gap.view.ia = gap.ia.data();
    EXPECT_EQ(gap.run(), kUnsymmetricPattern);
}

TEST(Sssord, FillsTheListsAlikeByOneThreadAndByTwo) {
    const TestGraph graph = grid("", 300, 300, 1);
    Ordered one(graph, 2), two(graph, 2);
    two.view.threads = 2;
    ASSERT_EQ(sssord_adjacency(one.view), 0);
    ASSERT_EQ(sssord_adjacency(two.view), 0);
    EXPECT_EQ(one.xadj, two.xadj);
    EXPECT_EQ(one.adjncy, two.adjncy);
}

TEST(Sssord, TakesAndGivesThePermutationOfTheCaller) {
    const TestGraph graph = grid("", 12, 12, 1);
    Ordered given(graph, 2), bad(graph, 2), asked(graph, 2), preordered(graph, -2);
    std::iota(given.user_perm.rbegin(), given.user_perm.rend(), 1);
    const auto reversed = given.user_perm;
    given.view.permutation_choice = 1;
    ASSERT_EQ(given.run(), 0);
    EXPECT_EQ(given.perm, reversed);
    EXPECT_EQ(given.user_perm, reversed);
    EXPECT_EQ(std::vector<i32>(given.pairs.begin(), given.pairs.begin() + 4), (std::vector<i32>{1, 143, 144, 144}));
    for (const i32 wrong : {0, 145, 2}) {
        bad.user_perm = reversed;
        bad.user_perm[0] = wrong;
        bad.view.permutation_choice = 1;
        EXPECT_EQ(bad.run(), kNoPermutation);
    }
    asked.view.permutation_choice = 2;
    ASSERT_EQ(asked.run(), 0);
    EXPECT_EQ(asked.user_perm, asked.perm);
    preordered.view.matched_order = reversed.data();
    set_single_subgraph(preordered.separators, 144);
    ASSERT_EQ(preordered.run(), 0);
    EXPECT_EQ(preordered.perm, reversed);
}

} // namespace
