// The threaded ways of the LU factorisation: large enough for every setting of the queue, teams of all sizes, failing
// memory, callers side by side and inside a region, the host's progress hook; and bad arguments.
#include "nxl.h"
#include "tests/support/captured.hpp"
#include "tests/support/host_allocator.hpp"
#include "tests/support/lapack.hpp"
#include <atomic>
#include <gtest/gtest.h>
#include <mutex>
#include <omp.h>
#include <set>
#include <string>
#include <thread>

namespace {

/// What the hook was told, while it listens.
struct Heard {
    std::mutex lock;
    bool listening = false;
    int stop_at = 1 << 30; // column from which on it asks to stop
    std::vector<int> columns;
    std::set<int> threads;
    std::set<std::string> names;
} heard;

} // namespace

extern "C" int NXL_PROGRESS(const int* thread, const int* step, const char* stage, int stage_length) noexcept {
    const std::lock_guard guard(heard.lock);
    if (!heard.listening) return 0;
    heard.columns.push_back(*step);
    heard.threads.insert(*thread);
    heard.names.insert(std::string(stage, static_cast<std::size_t>(stage_length)));
    return *step >= heard.stop_at ? 3 : 2; // the lowest bit alone counts
}

namespace {

using namespace nxl_test;

template <class Body> void listen(int stop_at, const Body& body) {
    heard.columns.clear();
    heard.threads.clear();
    heard.names.clear();
    heard.stop_at = stop_at;
    heard.listening = true;
    body();
    heard.listening = false;
}

/// Makes the n-th block that a call takes fail. The thread's record of its blocks, which comes first, succeeds.
void fail_nth_block(long n) {
    NXL_FreeBuffers();
    fail_allocation(n + 1);
}

template <class T> void expect_factored(MatrixKind kind, int m, int n, int threads) {
    const Team team(threads);
    const auto a = matrix_of<T>(kind, m, n);
    const auto lu = factored(a);
    EXPECT_EQ(lu.info, 0);
    EXPECT_LE(lu_error(a, lu.factors, lu.ipiv), 4.0) << m << " by " << n << " threads " << threads;
    EXPECT_TRUE(lu.factors.slack_untouched());
}

template <class T> class GetrfThreads : public ::testing::Test {};
TYPED_TEST_SUITE(GetrfThreads, Scalars);

TYPED_TEST(GetrfThreads, EveryTeamFinishesTheMatrix) {
    for (int threads = 1; threads <= 9; ++threads)
        for (const auto [m, n] : {std::pair{65, 65}, {130, 450}, {450, 450}, {500, 131}})
            expect_factored<TypeParam>(MatrixKind::graded, m, n, threads);
    expect_factored<TypeParam>(MatrixKind::random, 300, 300, 1000);
}

// Block sizes, strips and pools change at these widths.
TYPED_TEST(GetrfThreads, LargerMatrices) {
    for (const int n : {900, 901}) expect_factored<TypeParam>(MatrixKind::random, n, n, 4);
    for (const int n : {701, 1501}) expect_factored<TypeParam>(MatrixKind::random, n, n, 8);
    expect_factored<TypeParam>(MatrixKind::random, 700, 1701, 8);
}

TEST(GetrfThreads, StaticShareOfEightThreads) {
    expect_factored<double>(MatrixKind::random, 2801, 2801, 8); // by columns shared out beforehand
    expect_factored<double>(MatrixKind::random, 400, 2800, 8);  // still by the queue
    expect_factored<double>(MatrixKind::random, 400, 3000, 8);
}

// The queue's memory is the second block that the call takes.
TYPED_TEST(GetrfThreads, WithoutMemoryForTheQueueTheColumnsAreSharedOut) {
    for (const auto [m, n] : {std::pair{66, 66}, {300, 300}, {500, 400}, {256, 600}, {257, 600}, {129, 1200}})
        for (const int threads : {2, 3, 8}) {
            const Team team(threads);
            auto a = matrix_of<TypeParam>(MatrixKind::random, m, n);
            a.clear_column(m / 2);
            fail_nth_block(2);
            const auto lu = factored(a);
            EXPECT_EQ(lu.info, m / 2 + 1);
            EXPECT_LE(lu_error(a, lu.factors, lu.ipiv), 4.0) << m << " by " << n << " threads " << threads;
        }
}

TYPED_TEST(GetrfThreads, WithoutMemoryForThePivotsNothingIsDone) {
    const auto a = matrix_of<TypeParam>(MatrixKind::random, 20, 20, 0);
    fail_nth_block(1);
    Factored<TypeParam> lu{a, {}, 0};
    const std::string text = printed_by([&] { lu = factored(a); });
    EXPECT_EQ(lu.info, -1000);
    EXPECT_EQ(lu.factors.elements, a.elements);
    EXPECT_NE(text.find(routine_name<TypeParam>("GETRF")), std::string::npos) << text;
}

TYPED_TEST(GetrfThreads, CallsSideBySideAndInsideARegion) {
    const Team team(3);
    const auto a = matrix_of<TypeParam>(MatrixKind::random, 260, 260);
    const auto check = [&a] {
        const auto lu = factored(a);
        EXPECT_LE(lu_error(a, lu.factors, lu.ipiv), 4.0);
    };
    std::vector<std::thread> callers;
    for (int i = 0; i < 3; ++i) callers.emplace_back(check);
    for (std::thread& caller : callers) caller.join();
    for (const int dynamic : {0, 1}) {
        NXL_Set_Dynamic(dynamic);
#pragma omp parallel num_threads(2)
        check();
    }
    NXL_Set_Dynamic(0);
    omp_set_max_active_levels(2); // each caller's factorisation has a team of its own
#pragma omp parallel num_threads(2)
    check();
    omp_set_max_active_levels(1);
}

TYPED_TEST(GetrfThreads, TheHostFollowsAndStops) {
    const std::set<std::string> name = {routine_name<TypeParam>("GETRF")};
    const auto a = matrix_of<TypeParam>(MatrixKind::random, 600, 600);
    for (const int threads : {1, 2, 4})
        for (const bool queue : {true, false}) {
            const Team team(threads);
            const auto factor = [&] {
                if (!queue) fail_nth_block(2);
                auto result = factored(a);
                fail_allocation(0);
                return result;
            };
            listen(601, [&] {
                const auto lu = factor();
                EXPECT_LE(lu_error(a, lu.factors, lu.ipiv), 4.0);
            });
            EXPECT_EQ(heard.names, name);
            EXPECT_EQ(*std::max_element(heard.columns.begin(), heard.columns.end()), 600);
            EXPECT_LE(*heard.threads.rbegin(), threads - 1);
            listen(200, [&] { EXPECT_EQ(factor().info, 0); });
            ASSERT_FALSE(heard.columns.empty());
            EXPECT_TRUE(std::is_sorted(heard.columns.begin(), heard.columns.end()));
            EXPECT_GE(heard.columns.back(), 200) << "threads " << threads << " queue " << queue;
            const auto late = [](int column) { return column >= 200; };
            EXPECT_EQ(std::count_if(heard.columns.begin(), heard.columns.end(), late), 1);
        }
}

// The block goes by the number of columns, also of those without a pivot: no narrower panels, no reports of them.
TYPED_TEST(GetrfThreads, AWideMatrixThatNeedsNoBlocksIsReportedOnce) {
    const Team team(1);
    for (const auto [m, n] : {std::pair{20, 100}, {60, 300}}) {
        const auto a = matrix_of<TypeParam>(MatrixKind::random, m, n);
        const int rows = m;
        listen(rows + 1, [&] {
            const auto lu = factored(a);
            EXPECT_LE(lu_error(a, lu.factors, lu.ipiv), 4.0);
        });
        EXPECT_EQ(heard.columns, std::vector<int>{rows});
    }
}

} // namespace
