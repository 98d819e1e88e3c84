// The symbolic factorisation against a symbolic elimination on sets, on every shape of graph that may trip one.
#include "solvers_ds/kernel/default/pardiso/column_counts.hpp"
#include "solvers_ds/kernel/default/pardiso/column_order.hpp"
#include "solvers_ds/kernel/default/pardiso/elimination_tree.hpp"
#include "solvers_ds/kernel/default/pardiso/panel_schedule.hpp"
#include "solvers_ds/kernel/default/pardiso/scatter_index.hpp"
#include "solvers_ds/kernel/default/pardiso/sfinit.hpp"
#include "solvers_ds/kernel/default/pardiso/update_counts.hpp"
#include "tests/solvers_ds/patterns.hpp"
#include <gtest/gtest.h>
#include <map>
#include <numeric>

namespace {

using namespace nxl;
using namespace nxl::pardiso;
using namespace nxl_test;

/// An array counted from 1.
template <class T> struct Array : std::vector<T> {
    explicit Array(i64 count) : std::vector<T>(static_cast<std::size_t>(count)) {}
    Array(const std::vector<T>& other) : std::vector<T>(other) {} // NOLINT(google-explicit-constructor)
    T& operator[](i64 i) { return this->data()[i - 1]; }
    const T& operator[](i64 i) const { return this->data()[i - 1]; }
};

Array<i32> inverse(const Array<i32>& perm) {
    Array<i32> result(static_cast<i64>(perm.size()));
    for (i32 k = 1; k <= static_cast<i32>(perm.size()); ++k) result[perm[k]] = k;
    return result;
}

/// A graph taken through the whole symbolic factorisation.
struct Factorised {
    i32 n;
    SparseRows graph;
    Array<i32> perm, invp, parent, counts, snode, xsup, work;
    std::vector<i32> pairs;
    SfinitResult found{};
    Array<i64> xlindx{0}, xlnz, xunz;
    Array<i32> lindx{0}, tree_parent{0}, first_child{0}, sibling{0};
    Supernodes supernodes{};

    Factorised(const Pattern& pattern, const std::vector<i32>& order, i32 panel, bool symmetric = true,
               const std::vector<i32>& ranges = {})
        : n(pattern.n),
          graph(neighbours(pattern)),
          perm(order),
          invp(inverse(perm)),
          parent(n),
          counts(n),
          snode(n),
          xsup(n + 1),
          work(sfinit_work * n),
          pairs(ranges.empty() ? std::vector<i32>{1, n - 1, n, n} : ranges),
          xlnz(n + 1),
          xunz(n + 1) {
        Separators separators{static_cast<i32>(pairs.size()), pairs.data()};
        found = sfinit({n, graph.ia.data(), graph.ja.data(), perm.data(), invp.data(), panel, false, separators,
                        parent.data(), counts.data(), snode.data(), xsup.data(), work.data()});
        find_structure(symmetric);
    }

    void find_structure(bool symmetric) {
        const i32 count = found.sizes.supernodes;
        xlindx = Array<i64>(count + 1);
        lindx = Array<i32>(found.sizes.structure_length);
        tree_parent = first_child = sibling = Array<i32>(count);
        const SupernodeTree tree{tree_parent.data(), first_child.data(), sibling.data()};
        supernode_tree(count, xsup.data(), snode.data(), parent.data(), counts.data(), tree);
        const OrderedGraph ordered{n, graph.ia.data(), graph.ja.data(), perm.data(), invp.data()};
        const i32 code = symfct({ordered, count, xsup.data(), counts.data(), tree, symmetric, xlindx.data(),
                                 xlnz.data(), xunz.data(), lindx.data(), work.data(), work.data() + n});
        ASSERT_EQ(code, 0);
        supernodes = {count, xsup.data(), snode.data(), xlindx.data(), lindx.data()};
    }

    void move_columns() {
        Array<i32> space(column_order_work * n);
        order_columns({n, supernodes, lindx.data(), perm.data(), invp.data(),
                       Separators{static_cast<i32>(pairs.size()), pairs.data()}, space.data()});
    }
};

/// Rows of each column of the factor, the diagonal among them.
std::vector<std::set<i32>> eliminated(const Pattern& pattern, const Array<i32>& invp) {
    std::vector<std::set<i32>> column(static_cast<std::size_t>(pattern.n) + 1);
    const auto at = [&](i32 j) -> std::set<i32>& { return column[static_cast<std::size_t>(j)]; };
    for (i32 j = 1; j <= pattern.n; ++j) at(j).insert(j);
    for (const auto& [a, b] : pattern.edges) at(std::min(invp[a], invp[b])).insert(std::max(invp[a], invp[b]));
    for (i32 j = 1; j <= pattern.n; ++j)
        if (at(j).size() > 1) { // what is below the diagonal of j fills its parent
            const auto below = std::next(at(j).begin());
            at(*below).insert(below, at(j).end());
        }
    return column;
}

struct Shape {
    const char* name;
    Pattern pattern;
    i32 panel;
    bool shuffled;

    std::vector<i32> order(unsigned seed) const {
        return shuffled ? nxl_test::shuffled(pattern.n, seed) : natural(pattern.n);
    }
};

std::vector<Shape> shapes() {
    std::vector<Shape> all{{"one_column", {1, {}}, 80, false},
                           {"diagonal", {5, {}}, 80, false},
                           {"chain", chain(40), 80, false},
                           {"shuffled_chain", chain(60), 80, true},
                           {"arrow_down", star(30, 30), 80, false},
                           {"arrow_up", star(30, 1), 80, false},
                           {"dense_row_in_grid", joined(grid(6, 6), star(36, 17)), 4, true},
                           {"disconnected", apart(apart(grid(4, 5), clique(7)), chain(6)), 3, true},
                           {"grid", grid(9, 7), 80, true},
                           {"narrow_panels", grid(8, 8), 2, true}};
    for (const i32 n : {2, 7, 8, 9, 16, 17}) all.push_back({"clique", clique(n), 8, false});
    for (i32 seed = 1; seed <= 8; ++seed)
        all.push_back({"random", random_pattern(50, 40 + 15 * seed, static_cast<unsigned>(seed)), 1 + seed, true});
    return all;
}

class Symbolic : public testing::TestWithParam<Shape> {};
INSTANTIATE_TEST_SUITE_P(, Symbolic, testing::ValuesIn(shapes()), [](const auto& info) {
    return std::string(info.param.name) + "_" + std::to_string(info.index);
});

TEST_P(Symbolic, AgreesWithEliminationOnSets) {
    const Shape& shape = GetParam();
    const Factorised f(shape.pattern, shape.order(3), shape.panel);
    const auto column = eliminated(shape.pattern, f.invp);
    ASSERT_EQ(f.invp, inverse(f.perm));
    i64 total = 0, l = 1;
    for (i32 j = 1; j <= f.n; ++j) {
        const auto& rows = column[static_cast<std::size_t>(j)];
        const i32 s = f.snode[j], first = f.supernodes.first(s), *const list = f.supernodes.list(s);
        ASSERT_EQ(f.parent[j], rows.size() > 1 ? *std::next(rows.begin()) : 0) << "column " << j;
        ASSERT_EQ(f.counts[j], static_cast<i32>(rows.size())) << "column " << j;
        const auto& of_first = column[static_cast<std::size_t>(first)];
        ASSERT_EQ(std::vector<i32>(list, list + f.supernodes.rows(s)),
                  std::vector<i32>(of_first.begin(), of_first.end()));
        const bool same_rows = j > 1 && f.parent[j - 1] == j && f.counts[j - 1] == f.counts[j] + 1;
        EXPECT_EQ(j != first, same_rows && j - f.supernodes.first(f.snode[j - 1]) < shape.panel) << "column " << j;
        const i32 parent = f.parent[j];
        if (parent != 0 && parent != f.n && f.counts[j] == f.counts[parent] + 1)
            EXPECT_EQ(f.counts[parent - 1], f.counts[j]) << "such a child comes last, to go on with its supernode";
        EXPECT_EQ(f.xlnz[j], l);
        l += f.supernodes.rows(s);
        total += f.counts[j];
    }
    EXPECT_EQ(f.found.factor_entries, total);
    EXPECT_EQ(f.xlnz[f.n + 1], l);
    EXPECT_EQ(f.xunz[f.n + 1], 2) << "the size of a U that is not there is 1";
}

TEST_P(Symbolic, MovedColumnsStayWithinTheStructure) {
    const Shape& shape = GetParam();
    Factorised f(shape.pattern, shape.order(4), shape.panel);
    f.move_columns();
    ASSERT_EQ(f.invp, inverse(f.perm));
    const auto column = eliminated(shape.pattern, f.invp);
    for (i32 s = 1; s <= f.supernodes.count; ++s) {
        const auto& rows = column[static_cast<std::size_t>(f.supernodes.first(s))];
        const i32* const list = f.supernodes.list(s);
        EXPECT_TRUE(std::includes(list, list + f.supernodes.rows(s), rows.begin(), rows.end())) << s;
    }
}

/// Three columns with rows in a clique: of the first two sets each has a part of the other, and the third a part of
/// one.
TEST(ColumnOrder, RowsThatCanBeRunsAre) {
    Pattern pattern = apart(Pattern{3, {}}, clique(8));
    for (const i32 row : {4, 6, 8, 10}) connect(pattern, 1, row);
    for (const i32 row : {6, 10, 5, 11}) connect(pattern, 2, row);
    for (const i32 row : {4, 8}) connect(pattern, 3, row);
    for (const i32 panel : {4, 80}) {
        Factorised f(pattern, natural(11), panel);
        f.move_columns();
        for (i32 s = 1; s <= 3; ++s) {
            const i32 *const list = f.supernodes.list(s), rows = f.supernodes.rows(s);
            EXPECT_EQ(list[rows - 1] - list[1], rows - 2) << "node " << f.perm[s];
        }
    }
}

/// Every entry of `a` has one place in the storage of L and U, and it is that of its row and column. Row i of the
/// matrix that is factored is row row_of[i] of `a`.
void expect_places(const Factorised& f, const SparseRows& a, bool triangle, const Array<i32>& row_of) {
    const i64 entries = static_cast<i64>(a.ja.size());
    Array<i32> start(f.n + 1), source(entries), work(f.n), row_place(f.n), row_of_entry(entries);
    Array<i64> position(entries);
    const Array<i32> ia(a.ia), ja(a.ja);
    for (i32 i = 1; i <= f.n; ++i) {
        row_place[row_of[i]] = f.invp[i];
        for (i32 k = ia[i]; k < ia[i + 1]; ++k) row_of_entry[k] = i;
    }
    ASSERT_EQ(
        build_scatter_index({f.n, ia.data(), ja.data(), row_place.data(), f.invp.data(), triangle, f.supernodes,
                             f.xlnz.data(), f.xunz.data(), start.data(), position.data(), source.data(), work.data()}),
        0);
    std::set<i32> sources;
    std::set<i64> places; // of U negative
    for (i32 j = 1; j <= f.n; ++j)
        for (i32 k = start[j]; k < start[j + 1]; ++k) {
            const bool across = position[k] < 0, in_u = across && !triangle;
            const i32 row = row_place[row_of_entry[source[k]]], column = f.invp[ja[source[k]]], s = f.snode[j];
            const i64 place =
                in_u ? -position[k] - f.xunz[j] + f.supernodes.width(s) : std::abs(position[k]) - f.xlnz[j];
            ASSERT_EQ(across ? row : column, j);
            ASSERT_TRUE(place >= 0 && place < f.supernodes.rows(s));
            EXPECT_EQ(f.supernodes.list(s)[place], across ? column : row);
            EXPECT_TRUE(!in_u || place >= f.supernodes.width(s)) << "the diagonal block is in L";
            sources.insert(source[k]);
            places.insert(in_u ? position[k] : std::abs(position[k]));
        }
    EXPECT_EQ(static_cast<i64>(sources.size()), entries);
    EXPECT_EQ(static_cast<i64>(places.size()), entries);
}

TEST_P(Symbolic, EntriesFindTheirPlace) {
    const Shape& shape = GetParam();
    const i32 n = shape.pattern.n;
    expect_places(Factorised(shape.pattern, shape.order(5), shape.panel), upper_triangle(shape.pattern), true,
                  natural(n));
    const Factorised lu(shape.pattern, shape.order(5), shape.panel, false);
    const SparseRows a = all_entries(shape.pattern);
    expect_places(lu, a, false, natural(n));
    const std::vector<i32> row_of = shuffled(n, 9);
    expect_places(lu, with_rows_moved(a, row_of), false, row_of);
}

TEST_P(Symbolic, UpdatesAreThoseOfTheStructure) {
    const Shape& shape = GetParam();
    const Factorised f(shape.pattern, shape.order(7), shape.panel);
    const i32 count = f.supernodes.count, middle = f.n / 2 + 1;
    Array<i32> nmod(count), expected(count), overlap(count);
    count_updates(f.supernodes, nmod.data());
    count_overlap(f.supernodes, middle, overlap.data());
    i64 largest = 0;
    for (i32 s = 1; s <= count; ++s) {
        const i32 *const list = f.supernodes.list(s), *const end = list + f.supernodes.rows(s);
        const i64 width = f.supernodes.width(s);
        i64 rest = f.supernodes.rows(s) - width;
        largest = std::max(largest, width * rest);
        std::map<i32, i64> group; // members by target
        for (const i32* row = list + width; row < end; ++row) ++group[f.snode[*row]];
        for (const auto& [target, members] : group) {
            ++expected[target];
            largest = std::max(largest, rest * members - members * (members - 1) / 2);
            rest -= members;
        }
        EXPECT_EQ(overlap[s], std::count_if(list, end, [&](i32 row) { return row >= middle; }));
    }
    EXPECT_EQ(nmod, expected);
    EXPECT_EQ(largest_update(f.supernodes), largest);
}

/// Every supernode has its turn, after its children.
void expect_schedule(const Factorised& f, i32 threads) {
    const i32 count = f.supernodes.count;
    Array<double> work(schedule_work(count, threads));
    Array<i32> pnlsch(count), turn(count);
    build_pnlsch({f.supernodes, f.tree_parent.data(), {false, false}, threads, pnlsch.data(), work.data()});
    for (i32 k = 1; k <= count; ++k) turn[pnlsch[k]] = k;
    for (i32 s = 1; s <= count; ++s) {
        EXPECT_GT(turn[s], 0);
        if (f.tree_parent[s] != 0) EXPECT_LT(turn[s], turn[f.tree_parent[s]]);
    }
}

TEST_P(Symbolic, TheScheduleTakesChildrenFirst) {
    const Shape& shape = GetParam();
    const Factorised f(shape.pattern, shape.order(8), shape.panel);
    for (const i32 threads : {2, 5}) expect_schedule(f, threads);
}

/// Subtrees of little work whose leaves lie in two subgraphs and whose roots lie between those.
TEST(SymbolicRanges, SubtreesInPiecesAreScheduledToo) {
    Pattern pattern{34, {}};
    for (const auto& [leaf, root] : {std::pair{1, 5}, {3, 5}, {2, 6}, {4, 6}}) connect(pattern, leaf, root);
    for (i32 i = 7; i <= 34; ++i)
        for (i32 j = i + 1; j <= 34; ++j) connect(pattern, i, j);
    const Factorised f(pattern, natural(34), 80, true, {1, 2, 3, 4, 5, 34});
    expect_schedule(f, 2);
}

/// Two halves of a grid and the line between them, ordered in this sequence.
TEST(SymbolicRanges, ColumnsStayInTheirSubgraph) {
    const i32 rows = 7, columns = 9, half = rows * 4, n = rows * columns;
    const Pattern pattern = grid(rows, columns);
    std::vector<i32> order = shuffled(half, 11);
    for (std::size_t k = 0; k < static_cast<std::size_t>(half); ++k) order.push_back(order[k] + half + rows);
    for (i32 k = 1; k <= rows; ++k) order.push_back(half + k);
    const Factorised f(pattern, order, 80, true, {1, half, half + 1, 2 * half, 2 * half + 1, n});
    const auto column = eliminated(pattern, f.invp);
    for (i32 j = 1; j <= n; ++j) {
        const i32 node = f.perm[j], range = node <= half ? 0 : node <= half + rows ? 2 : 1;
        EXPECT_EQ(range, j <= half ? 0 : j <= 2 * half ? 1 : 2);
        EXPECT_EQ(f.counts[j], static_cast<i32>(column[static_cast<std::size_t>(j)].size()));
    }
    for (const auto& [place, last] : {std::pair{1u, half}, {3u, 2 * half}}) {
        const i32 s = f.snode[last]; // goes to what follows when the subgraph's last column begins it
        EXPECT_EQ(f.pairs[place], f.supernodes.first(s) == last ? s - 1 : s);
    }
    EXPECT_EQ(f.pairs[4], f.pairs[3] + 1);
    EXPECT_EQ(f.pairs[5], f.supernodes.count);
}

TEST(ColumnCounts, AgreeWithRowSubtrees) {
    const i32 n = 3000;
    const SparseRows graph = neighbours(random_pattern(n, 7000, 21));
    const Array<i32> perm = shuffled(n, 22), invp = inverse(perm);
    Array<i32> parent(n), ancestor(n), counts(n), order(n), first(n), sibling(n), work(4 * n);
    const OrderedGraph ordered{n, graph.ia.data(), graph.ja.data(), perm.data(), invp.data()};
    elimination_tree(ordered, parent.data(), ancestor.data());
    list_children(n, parent.data(), counts.data(), {first.data(), sibling.data()});
    postorder(n, parent.data(), {first.data(), sibling.data()}, order.data());
    const i64 total = column_counts({ordered, parent.data(), order.data(), counts.data(), work.data()});

    Array<i32> walked(n), seen(n);
    for (i32 i = 1; i <= n; ++i) { // row i: from each of its entries up the tree, each column once
        ++walked[i];
        seen[i] = i;
        ordered.neighbours(i, [&](i32 j) {
            for (; j < i && seen[j] != i; j = parent[j]) {
                seen[j] = i;
                ++walked[j];
            }
        });
    }
    EXPECT_EQ(counts, walked);
    EXPECT_EQ(total, std::accumulate(walked.begin(), walked.end(), i64{0}));
}

TEST(SymbolicDepth, AMillionColumnsInAChainNeedNoStack) {
    const i32 n = 1'000'000;
    std::vector<i32> backwards = natural(n);
    std::reverse(backwards.begin(), backwards.end());
    const Factorised f(chain(n), backwards, 80);
    EXPECT_EQ(f.found.factor_entries, 2 * i64{n} - 1);
    EXPECT_EQ(f.supernodes.count, n - 1) << "the last one has two columns";
}

TEST(FlopCount, OfADenseBlock) { // sums of m (m + 1) and of m (2 m + 1) for m < n
    const double n = 20, linear = n * (n - 1) / 2, square = (n - 1) * n * (2 * n - 1) / 6;
    const Factorised f(clique(20), natural(20), 80);
    EXPECT_DOUBLE_EQ(mflop_count(f.supernodes, {false, false}), (square + linear) * 1e-6);
    EXPECT_DOUBLE_EQ(mflop_count(f.supernodes, {true, true}), 4 * (2 * square + linear) * 1e-6);
}

} // namespace
