// The thread decisions of level 1 as pure functions, and daxpy and ddot over threads on class 3.
#include "blas/kernel/default_em64t/level1/xf_l1_omp.hpp"
#include "nxl.h"
#include "tests/support/guarded_vector.hpp"
#include <atomic>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>

namespace nxl {
namespace {

using nxl_test::StridedVector;

TEST(Level1Decision, OnlyLongVectorsOnClasses2And3Fork) {
    struct Case {
        const Level1Gates& gates;
        i64 n, incx, incy;
        CpuClass cpu_class;
        bool fork;
    };
    for (const Case& c : {Case{ddot_gates, 2600, 1, 1, CpuClass::mc3, false},
                          {ddot_gates, 2601, 1, 1, CpuClass::mc3, true},
                          {ddot_gates, 2601, 1, 1, CpuClass::mc, true},
                          {ddot_gates, 1 << 30, 1, 1, CpuClass::p4n, false},
                          {ddot_gates, 1 << 30, 1, 1, CpuClass::def, false},
                          {ddot_gates, 9999, 0, 1, CpuClass::mc3, false},
                          {ddot_gates, 9999, 1, 0, CpuClass::mc3, false},
                          {ddot_gates, 9999, -3, 2, CpuClass::mc3, true},
                          {daxpy_gates, 4300, 1, 1, CpuClass::mc, false},
                          {daxpy_gates, 4301, 1, 1, CpuClass::mc, true}})
        EXPECT_EQ(may_fork(c.gates, c.n, c.incx, c.incy, c.cpu_class), c.fork) << c.n;
}

TEST(Level1Decision, DynamicReducesThreadsBySize) {
    struct Case {
        const Level1Gates& gates;
        i64 n;
        int offered, dynamic_on, dynamic_off;
    };
    for (const Case& c : {Case{ddot_gates, 5999, 8, 2, 8},
                          {ddot_gates, 6000, 8, 4, 8},
                          {ddot_gates, 9999, 8, 4, 8},
                          {ddot_gates, 10000, 8, 8, 8},
                          {ddot_gates, 5999, 3, 2, 3},
                          {ddot_gates, 6000, 3, 3, 3},
                          {daxpy_gates, 4301, 8, 4, 8},
                          {daxpy_gates, 10999, 8, 4, 8},
                          {daxpy_gates, 11000, 8, 8, 8},
                          {daxpy_gates, 4301, 1, 1, 1}}) {
        EXPECT_EQ(threads_for(c.gates, c.n, c.offered, true), c.dynamic_on) << c.n;
        EXPECT_EQ(threads_for(c.gates, c.n, c.offered, false), c.dynamic_off) << c.n;
    }
}

TEST(Level1Blocks, CoverTheVectorOnceInWholeUnrolls) {
    for (const i64 n : {2601, 4301, 5000, 10007})
        for (const i64 count : {2, 3, 7, 64, 500, 9000}) {
            i64 next = 0;
            for (i64 i = 0; i < count; ++i) {
                const Slice block = vector_block(n, i, count);
                EXPECT_LT(block.start, n); // a pointer that may be formed
                if (i + 1 < count) EXPECT_EQ(block.count % 8, 0);
                if (block.count > 0) EXPECT_EQ(block.start, next) << "block " << i << " of " << count;
                next += block.count;
            }
            EXPECT_EQ(next, n);
        }
}

class Level1Threads : public ::testing::Test {
  protected:
    void SetUp() override { NXL_Set_Dynamic(0); }
    void TearDown() override {
        NXL_Set_Num_Threads(1);
        NXL_Set_Dynamic(1);
    }

    /// ddot as the sum of its blocks in ascending order, each short enough to stay on one thread.
    static double sum_of_blocks(int n, int threads, const StridedVector<double>& x, int incx,
                                const StridedVector<double>& y, int incy) {
        NXL_Set_Num_Threads(1);
        double sum = 0.0;
        for (int i = 0; i < threads; ++i) {
            const Slice block = vector_block(n, i, threads);
            const int length = static_cast<int>(block.count);
            sum +=
                ddot(&length, block_base(x.data(), n, incx, block), &incx, block_base(y.data(), n, incy, block), &incy);
        }
        return sum;
    }
};

TEST_F(Level1Threads, DotIsTheOrderedSumOfItsBlocks) {
    for (const int n : {2601, 8003, 20001})
        for (const int threads : {2, 3, 5, 130, 4000})
            for (const auto& increments : {std::pair{1, 1}, {-1, -1}, {-2, 3}, {2, -1}}) {
                const int incx = increments.first, incy = increments.second;
                const StridedVector<double> x(n, incx, 1), y(n, incy, 2);
                const double want = sum_of_blocks(n, threads, x, incx, y, incy);
                NXL_Set_Num_Threads(threads);
                EXPECT_EQ(ddot(&n, x.data(), &incx, y.data(), &incy), want) << n << " on " << threads;
                // A team of one, as inside a region, gives the same bits.
                double inside = 0.0;
#pragma omp parallel num_threads(1)
                inside = ddot(&n, x.data(), &incx, y.data(), &incy);
                EXPECT_EQ(inside, want);
            }
}

TEST_F(Level1Threads, ThresholdOfTheDotProduct) {
    const int incs = 1;
    const StridedVector<double> x(2601, 1, 1), y(2601, 1, 2);
    for (const int n : {2600, 2601}) {
        NXL_Set_Num_Threads(1);
        const double serial = ddot(&n, x.data(), &incs, y.data(), &incs);
        NXL_Set_Num_Threads(7);
        const double result = ddot(&n, x.data(), &incs, y.data(), &incs);
        EXPECT_EQ(result, n == 2600 ? serial : sum_of_blocks(n, 7, x, 1, y, 1));
    }
}

TEST_F(Level1Threads, AxpyReachesEveryElementOnce) {
    const double alpha = 0.5;
    for (const int n : {4300, 4301, 30011})
        for (const int threads : {2, 3, 11, 5000})
            for (const auto& [incx, incy] : {std::pair{1, 1}, {-1, -1}, {3, -2}, {-1, 1}}) {
                const StridedVector<double> x(n, incx, 1), y(n, incy, 2);
                NXL_Set_Num_Threads(threads);
                daxpy(&n, &alpha, x.data(), &incx, y.data(), &incy);
                for (int k = 0; k < n; ++k)
                    ASSERT_DOUBLE_EQ(y[k], y.original(k) + alpha * x[k]) << n << " on " << threads << " at " << k;
                ASSERT_TRUE(y.gaps_untouched());
            }
}

TEST_F(Level1Threads, ConcurrentCallersWhileTheThreadCountChanges) {
    const int n = 20000, one = 1;
    std::vector<std::thread> callers;
    std::atomic<bool> done{false};
    std::atomic<int> wrong{0};
    const StridedVector<double> x(n, 1, 1), ones(n, 1, 2);
    for (int k = 0; k < n; ++k) x[k] = k % 7, ones[k] = 1.0; // integers: exact under any split
    double want = 0.0;
    for (int k = 0; k < n; ++k) want += x[k];
    for (int caller = 0; caller < 6; ++caller)
        callers.emplace_back([&] {
            for (int round = 0; round < 200; ++round)
                if (ddot(&n, x.data(), &one, ones.data(), &one) != want) ++wrong;
        });
    std::thread setter([&] {
        for (int count = 1; !done; count = count % 5 + 1) {
            NXL_Set_Num_Threads(count);
            NXL_Set_Dynamic(count % 2);
        }
    });
    for (auto& caller : callers) caller.join();
    done = true;
    setter.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(Level1Threads, AChildAfterForkStillComputes) {
    const int n = 20000, one = 1;
    const StridedVector<double> x(n, 1, 1), y(n, 1, 2);
    NXL_Set_Num_Threads(3);
    const double want = ddot(&n, x.data(), &one, y.data(), &one);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) _exit(ddot(&n, x.data(), &one, y.data(), &one) == want ? 0 : 1);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

} // namespace
} // namespace nxl
