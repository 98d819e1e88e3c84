// The analysis as a whole: its results against an elimination on sets, and every allocation of it refused once.
#include "solvers_ds/kernel/default/pardiso/from_one.hpp"
#include "solvers_ds/kernel/default/pardiso/handle.hpp"
#include "tests/solvers_ds/pardiso_calls.hpp"
#include "tests/support/captured.hpp"
#include "tests/support/host_allocator.hpp"
#include <gtest/gtest.h>
#include <numeric>

namespace {

using namespace nxl_test;
using nxl::pardiso::ArrayBase;
using nxl::pardiso::FromOne;
using nxl::pardiso::Handle;

template <class T> FromOne<T> inside(Solver& solver, ArrayBase base) {
    return Handle(reinterpret_cast<nxl::i64*>(solver.pt.data())).array<T>(base);
}

bool is_permutation_of_rows(std::vector<int> perm) {
    std::sort(perm.begin(), perm.end());
    return perm == natural(static_cast<int>(perm.size()));
}

/// Entries that the factors of a pattern take in this order: supernodes of up to `panel` columns, stored as rectangles.
int stored_entries(const Pattern& pattern, const std::vector<int>& perm, int panel, bool lu) {
    const std::size_t n = perm.size();
    std::vector<std::size_t> place(n + 1);
    for (std::size_t k = 0; k < n; ++k) place[static_cast<std::size_t>(perm[k])] = k;
    std::vector<std::set<std::size_t>> column(n);
    for (const auto& [a, b] : pattern.edges) {
        const auto [low, high] = std::minmax(place[static_cast<std::size_t>(a)], place[static_cast<std::size_t>(b)]);
        column[low].insert(high);
    }
    int l = 0, u = 0, width = 0;
    std::size_t rows = 0;
    const auto end_supernode = [&] {
        l += width * static_cast<int>(rows);
        u += width * (static_cast<int>(rows) - width);
    };
    for (std::size_t j = 0; j < n; ++j) {
        if (!column[j].empty()) column[*column[j].begin()].insert(std::next(column[j].begin()), column[j].end());
        const bool same = j > 0 && !column[j - 1].empty() && *column[j - 1].begin() == j &&
                          column[j - 1].size() == column[j].size() + 1 && width < panel;
        if (!same) {
            end_supernode();
            rows = column[j].size() + 1;
            width = 0;
        }
        ++width;
    }
    end_supernode();
    return l + (lu && u > 0 ? u : 1);
}

struct Analysed {
    const char* name;
    int mtype;
    Pattern pattern;
};

class PardisoAnalysis : public testing::TestWithParam<Analysed> {
  protected:
    static void SetUpTestSuite() { NXL_Set_Num_Threads(1); }
};
INSTANTIATE_TEST_SUITE_P(, PardisoAnalysis,
                         testing::Values(Analysed{"grid", 2, grid(13, 11)},
                                         Analysed{"random", -2, random_pattern(90, 150, 1)},
                                         Analysed{"dense_200", 11, clique(200)}, Analysed{"panel", 2, clique(80)},
                                         Analysed{"panel_and_one", 4, clique(81)}, Analysed{"arrow", 1, star(40, 1)},
                                         Analysed{"pieces", 6, apart(apart(grid(5, 5), clique(9)), chain(30))},
                                         Analysed{"complex", 13, random_pattern(60, 100, 2)},
                                         Analysed{"symmetric_pattern", 3, random_pattern(60, 120, 3)},
                                         Analysed{"two_rows", 2, chain(2)}, Analysed{"eight_rows", -4, chain(8)},
                                         Analysed{"nine_rows", 11, star(9, 4)}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(PardisoAnalysis, CountsTheFactorsOfEachOrder) {
    const auto& [name, mtype, pattern] = GetParam();
    const bool lu = mtype == 1 || mtype == 3 || mtype > 10;
    const SparseRows rows = mtype % 2 == 0 ? upper_triangle(pattern) : all_entries(pattern);
    for (const int ordering : {0, 1, 2}) {
        Solver solver(mtype, rows);
        solver.parameter(1) = solver.parameter(27) = 1;
        solver.parameter(2) = ordering;
        solver.parameter(5) = -1;
        solver.parameter(18) = solver.parameter(19) = -1;
        ASSERT_EQ(solver.run(11), 0) << ordering;
        EXPECT_TRUE(is_permutation_of_rows(solver.perm));
        EXPECT_EQ(solver.parameter(18), stored_entries(pattern, solver.perm, lu ? 128 : 80, lu)) << ordering;
        EXPECT_GE(solver.parameter(19), 0);
        EXPECT_GT(solver.parameter(15), 0);
        EXPECT_GT(solver.parameter(16), 0);
        EXPECT_EQ(solver.parameter(17), 0);
        EXPECT_EQ(solver.ia, rows.ia);
        EXPECT_EQ(solver.ja, rows.ja);
        const int entries = solver.parameter(18);
        solver.parameter(5) = 2; // the computed order, and the same as the caller's
        ASSERT_EQ(solver.run(11), 0);
        const std::vector<int> computed = solver.perm;
        solver.parameter(5) = 1;
        solver.parameter(18) = -1;
        ASSERT_EQ(solver.run(11), 0);
        EXPECT_EQ(solver.perm, computed);
        EXPECT_EQ(solver.parameter(18), entries);
        solver.run(-1);
    }
}

TEST(PardisoAnalysisFaults, NoPermutation) {
    for (const std::vector<int>& perm : {std::vector<int>{1, 2, 2, 4}, {0, 1, 2, 3}, {1, 2, 3, 5}}) {
        Solver solver(11, all_entries(chain(4)));
        solver.parameter(1) = solver.parameter(5) = solver.msglvl = 1;
        solver.perm = perm;
        const std::string printed = printed_by([&] { EXPECT_EQ(solver.run(11), -3); });
        EXPECT_EQ(printed.substr(0, printed.find("====")),
                  "*** Error in PARDISO  (        reordering_phase) error_num= -191\n"
                  "*** error PARDISO: reordering, symb. factorization\n");
        EXPECT_EQ(solver.pt[0], 0);
    }
}

TEST(PardisoAnalysisFaults, StructurallySingular) { // rows 2 and 3 have the same single column
    Solver solver(11, {});
    solver = Solver(11, all_entries(chain(3)));
    solver.ia = {1, 4, 5, 6};
    solver.ja = {1, 2, 3, 2, 2};
    solver.msglvl = 1;
    const SparseRows before{solver.ia, solver.ja};
    const std::string printed = printed_by([&] { EXPECT_EQ(solver.run(11), -6); });
    EXPECT_EQ(printed.substr(0, printed.find("====")),
              "*** Error in PARDISO  (prereordering_mtype11,13) error_num= -2\n"
              "*** Error in PARDISO: preordering failed after 2 neqns out of 3\n"
              "structure singular or input/parameter problem (matrixtype 11,13)\n");
    EXPECT_EQ(solver.ia, before.ia);
    EXPECT_EQ(solver.ja, before.ja);
    solver.parameter(1) = 1;
    for (const int mode : {2, 3, 4}) {
        solver.parameter(13) = mode;
        solver.msglvl = 0;
        EXPECT_EQ(solver.run(11), -6) << mode;
    }
}

TEST(PardisoAnalysisFaults, PatternThatIsNotSymmetric) {
    Solver solver(1, all_entries(chain(5)));
    solver.ia = {1, 3, 5, 6, 7, 8};
    solver.ja = {1, 4, 2, 5, 3, 4, 5};
    EXPECT_EQ(solver.run(11), -3);
    EXPECT_EQ(solver.run(-1), 0);
}

/// Large entries in the places of a random permutation come to the diagonal of the factor.
TEST(PardisoMatching, PutsLargeEntriesOnTheDiagonal) {
    const int n = 60;
    const std::vector<int> place = shuffled(n, 6);
    const SparseRows dominant = all_entries(random_pattern(n, 120, 5));
    Solver solver(11, with_rows_moved(dominant, place));
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i)
        for (int k = solver.ia[i]; k < solver.ia[i + 1]; ++k) {
            const int column = solver.ja[static_cast<std::size_t>(k - 1)];
            solver.a[static_cast<std::size_t>(k - 1)] =
                place[static_cast<std::size_t>(column - 1)] == static_cast<int>(i + 1) ? 1000.0 : 1.0;
        }
    solver.parameter(27) = 1;
    ASSERT_EQ(solver.run(11), 0);
    const auto start = inside<int>(solver, ArrayBase::scatter_start),
               source = inside<int>(solver, ArrayBase::scatter_source);
    const auto position = inside<nxl::i64>(solver, ArrayBase::scatter_position),
               xlnz = inside<nxl::i64>(solver, ArrayBase::xlnz);
    const auto snode = inside<int>(solver, ArrayBase::snode), xsup = inside<int>(solver, ArrayBase::xsup);
    int on_diagonal = 0;
    for (int j = 1; j <= n; ++j)
        for (int k = start[j]; k < start[j + 1]; ++k)
            if (solver.a[static_cast<std::size_t>(source[k] - 1)] > 1.0)
                on_diagonal += position[k] == xlnz[j] + j - xsup[snode[j]];
    EXPECT_EQ(on_diagonal, n);
    solver.run(-1);
}

/// Every second node of a chain has a diagonal that may be a pivot, the others are two by two.
TEST(PardisoMatching, KeepsPairsTogetherAndKnowsSinglePivots) {
    Pattern pattern = random_pattern(60, 60, 4);
    for (int i = 1; i < 40; i += 2) connect(pattern, i, i + 1);
    for (const int ordering : {0, 1, 2}) {
        Solver solver(-2, upper_triangle(pattern));
        for (std::size_t i = 0; i < 60; ++i)
            for (int k = solver.ia[i]; k < solver.ia[i + 1]; ++k) {
                const int row = static_cast<int>(i) + 1, column = solver.ja[static_cast<std::size_t>(k - 1)];
                const bool pair = row < 40 && row % 2 == 1 && column == row + 1;
                solver.a[static_cast<std::size_t>(k - 1)] = pair || (row == column && row > 40) ? 100.0
                                                            : row == column                     ? 0.0
                                                                                                : 1e-3;
            }
        solver.parameter(1) = solver.parameter(13) = solver.parameter(11) = 1;
        solver.parameter(2) = ordering;
        ASSERT_EQ(solver.run(11), 0) << ordering;
        const auto perm = inside<int>(solver, ArrayBase::perm), invp = inside<int>(solver, ArrayBase::invp);
        const auto bits = inside<std::uint32_t>(solver, ArrayBase::one_by_one);
        for (int k = 1; k <= 60; ++k)
            EXPECT_EQ(bits[(k - 1) / 32 + 1] >> ((k - 1) % 32) & 1u, perm[k] > 40 ? 1u : 0u) << k;
        for (int i = 1; i < 40; i += 2) EXPECT_EQ(std::abs(invp[i] - invp[i + 1]), 1);
        solver.run(-1);
    }
}

/// Refuses the first, second, ... allocation of a step until it needs no more.
class PardisoMemory : public testing::TestWithParam<std::pair<int, int>> {};
INSTANTIATE_TEST_SUITE_P(, PardisoMemory,
                         testing::Values(std::pair{2, 0}, std::pair{2, 1}, std::pair{2, 2}, std::pair{-2, 0},
                                         std::pair{-2, 1}, std::pair{-2, 2}, std::pair{6, 2}, std::pair{11, 0},
                                         std::pair{11, 2}, std::pair{13, 1}));

TEST_P(PardisoMemory, EachAllocationMayFail) {
    const auto [mtype, ordering] = GetParam();
    const Pattern pattern = grid(9, 8);
    Solver solver(mtype, mtype % 2 == 0 ? upper_triangle(pattern) : all_entries(pattern));
    const std::vector<int> ia = solver.ia, ja = solver.ja;
    solver.parameter(1) = solver.parameter(11) = solver.parameter(13) = 1;
    solver.parameter(2) = ordering;
    NXL_Set_Num_Threads(2);
    solver.run(11); // the caches of threads are filled
    solver.run(-1);
    for (const bool restart : {false, true}) {
        bool failed = true;
        for (long k = 1; failed; ++k) {
            ASSERT_LT(k, 1000);
            const long live = live_blocks();
            if (restart) ASSERT_EQ(solver.run(11), 0);
            fail_allocation(k);
            const int error = solver.run(11);
            fail_allocation(0);
            failed = error != 0;
            if (failed) EXPECT_TRUE(error == -2 || error == -3) << error << " after " << k;
            if (failed && !restart) EXPECT_EQ(live_blocks(), live) << "allocation " << k;
            EXPECT_EQ(solver.ia, ia);
            EXPECT_EQ(solver.ja, ja);
            EXPECT_EQ(solver.run(-1), 0);
            EXPECT_EQ(live_blocks(), live) << "allocation " << k;
        }
    }
    NXL_Set_Num_Threads(1);
}

TEST(PardisoMemoryReport, NamesTheArray) {
    const struct {
        long allocation;
        const char* line;
    } rows[] = {{1, "BASIC   , size to allocate: 1760 bytes"}, {2, "FACT_ADR, size to allocate: 48 bytes"},
                {4, "FACT_ADR, size to allocate: 1024 bytes"}, {7, "STRUC_S0, size to allocate: "},
                {8, "WORK_I0 , size to allocate: "},           {9, "STRUC_S1, size to allocate: "}};
    for (const auto& [allocation, line] : rows) {
        Solver solver(2, upper_triangle(grid(4, 4)));
        solver.parameter(1) = solver.msglvl = 1;
        fail_allocation(allocation);
        const std::string printed = printed_by([&] { EXPECT_EQ(solver.run(11), -2); });
        fail_allocation(0);
        EXPECT_NE(printed.find(std::string("\n*** Error in PARDISO memory allocation: ") + line), std::string::npos)
            << printed;
        EXPECT_NE(printed.find("\ntotal memory wanted here: "), std::string::npos);
        EXPECT_NE(printed.find("\nsymbolic (max): "), std::string::npos);
        EXPECT_NE(printed.find("\n real(including 1 factor): 0\n"), std::string::npos);
    }
}

} // namespace
