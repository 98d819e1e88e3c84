// The thread decision of the matrix-vector product as a pure function, and dgemv and zgemv over threads on class 3.
#include "blas/kernel/default_em64t/level2/gemv_omp.hpp"
#include "service/kernel_slot.hpp"
#include "service/threads.hpp"
#include "tests/support/guarded_matrix.hpp"
#include "tests/support/scalars.hpp"
#include <omp.h>

namespace nxl {
namespace {

using nxl_test::Generator, nxl_test::GuardedMatrix;

template <class T> GuardedMatrix<T> random_matrix(i64 m, i64 n, i64 lda, Generator& generator) {
    return {{int(m), int(n), int(lda)}, nxl_test::Flush::end, [&](int, int) {
                return nxl_test::random_value<T>(generator);
            }};
}
template <class T> GuardedMatrix<T> random_vector(i64 n, i64 inc, Generator& generator) {
    return random_matrix<T>(1, n, std::abs(inc), generator);
}

constexpr auto none = GemvSplit::none, rows = GemvSplit::rows, columns = GemvSplit::columns;

struct Decision {
    const GemvLimits& limits;
    char trans;
    i64 m, n;
    CpuClass cpu_class;
    int threads;
    GemvSplit split;
    i64 block;
};

TEST(GemvDecision, BothSidesOfEveryThreshold) {
    constexpr auto mc = CpuClass::mc, mc3 = CpuClass::mc3;
    for (const Decision& c : {
             // A side of 64 goes on to the work test, whichever it is.
             Decision{zgemv_limits, 'N', 63, 63, mc3, 2, none, 0},
             {zgemv_limits, 'N', 64, 63, mc3, 2, rows, 32},
             {zgemv_limits, 'T', 63, 64, mc3, 2, columns, 32},
             {zgemv_limits, 'N', 63, 64, mc3, 2, rows, 24},
             {dgemv_limits, 'N', 64, 1, mc3, 2, none, 0},
             // Class and thread count.
             {dgemv_limits, 'N', 9999, 9999, CpuClass::def, 8, none, 0},
             {dgemv_limits, 'T', 9999, 9999, CpuClass::p4n, 8, none, 0},
             {dgemv_limits, 'N', 9999, 9999, mc, 1, none, 0},
             {dgemv_limits, 'N', 1000, 1000, mc, 4, rows, 248},
             {dgemv_limits, 'N', 1000, 1000, mc3, 4, rows, 248},
             {dgemv_limits, 'T', 1000, 999, mc3, 4, columns, 249},
             {dgemv_limits, 'C', 1000, 999, mc3, 4, columns, 249},
             // Work per thread: short blocks, and those of 64 or 32 and more.
             {dgemv_limits, 'N', 112, 28, mc3, 2, rows, 56}, // 1568
             {dgemv_limits, 'N', 112, 27, mc3, 2, none, 0},  // 1512
             {dgemv_limits, 'N', 128, 48, mc3, 2, rows, 64},
             {dgemv_limits, 'N', 128, 47, mc3, 2, none, 0},
             {dgemv_limits, 'N', 127, 47, mc3, 2, rows, 56},
             {dgemv_limits, 'T', 64, 64, mc3, 2, columns, 32},
             {dgemv_limits, 'T', 63, 65, mc3, 2, none, 0},
             {dgemv_limits, 'T', 64, 128, mc3, 2, columns, 64},
             {dgemv_limits, 'T', 63, 128, mc3, 2, none, 0},
             {dgemv_limits, 'T', 63, 127, mc3, 2, columns, 63},
             {zgemv_limits, 'N', 48, 64, mc3, 2, rows, 24},
             {zgemv_limits, 'N', 64, 8, mc3, 4, none, 0},
             {zgemv_limits, 'N', 64, 32, mc3, 4, rows, 16},
             {zgemv_limits, 'N', 64, 31, mc3, 4, none, 0},
             {zgemv_limits, 'N', 128, 32, mc3, 4, rows, 32},
             {zgemv_limits, 'N', 128, 31, mc3, 4, none, 0},
             {zgemv_limits, 'C', 32, 64, mc3, 4, columns, 16},
             {zgemv_limits, 'C', 31, 64, mc3, 4, none, 0},
             {zgemv_limits, 'C', 32, 128, mc3, 4, columns, 32},
             {zgemv_limits, 'C', 31, 128, mc3, 4, none, 0},
             // Blocks of no rows or columns.
             {dgemv_limits, 'N', 100, 100000, mc3, 13, none, 0},
             {dgemv_limits, 'T', 100000, 100, mc3, 101, none, 0},
         }) {
        const GemvPlan plan = plan_gemv(c.limits, c.trans, c.m, c.n, c.cpu_class, c.threads);
        EXPECT_EQ(plan.split, c.split) << c.trans << " " << c.m << " by " << c.n << " on " << c.threads;
        EXPECT_EQ(plan.block, c.block) << c.trans << " " << c.m << " by " << c.n << " on " << c.threads;
    }
}

template <class T> struct Routine;
template <> struct Routine<double> {
    static constexpr auto driver = nxl_blas_dgemv;
    static constexpr auto& kernel = slot<&KernelTable::dgemv>;
    static constexpr auto& limits = dgemv_limits;
};
template <> struct Routine<zcomplex> {
    static constexpr auto driver = nxl_blas_zgemv;
    static constexpr auto& kernel = slot<&KernelTable::zgemv>;
    static constexpr auto& limits = zgemv_limits;
};

template <class T> class GemvThreads : public ::testing::Test {
  protected:
    void SetUp() override { set_dynamic(false); }
    void TearDown() override {
        set_num_threads(1);
        set_dynamic(true);
        omp_set_dynamic(0);
    }
};
TYPED_TEST_SUITE(GemvThreads, nxl_test::Scalars);

/// y as one thread computes it, block after block.
template <class T>
void run_blocks(int threads, char trans, i64 m, i64 n, T alpha, const T* a, i64 lda, const T* x, i64 incx, T beta, T* y,
                i64 incy) {
    const GemvPlan plan = plan_gemv(Routine<T>::limits, trans, m, n, CpuClass::mc3, threads);
    if (plan.split == none) return Routine<T>::kernel(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
    const i64 total = plan.split == rows ? m : n;
    for (i64 k = 0; k < total; k += plan.block) {
        const i64 length = k / plan.block >= threads - 1 ? total - k : plan.block;
        // Element k of a reversed vector stands length elements before the end of what is left.
        T* part = incy < 0 ? y - (total - k - length) * incy : y + k * incy;
        if (plan.split == rows) Routine<T>::kernel(trans, length, n, alpha, a + k, lda, x, incx, beta, part, incy);
        else Routine<T>::kernel(trans, m, length, alpha, a + k * lda, lda, x, incx, beta, part, incy);
        if (length != plan.block) break;
    }
}

TYPED_TEST(GemvThreads, EveryBlockIsComputedOnceWhateverTheTeam) {
    using T = TypeParam;
    Generator random(5);
    const T alpha(0.5), beta(-2.0);
    for (const auto& [m, n] : {std::pair<i64, i64>{203, 301}, {301, 99}, {64, 2001}, {2001, 64}, {4096, 1}}) {
        const i64 lda = m + 3;
        const auto a = random_matrix<T>(m, n, lda, random);
        for (const char trans : {'N', 'T', 'C'})
            for (const auto& [incx, incy] : {std::pair<i64, i64>{1, 1}, {-2, -1}, {2, 3}, {-1, -3}}) {
                const auto x = random_vector<T>(trans == 'N' ? n : m, incx, random);
                auto y = random_vector<T>(trans == 'N' ? m : n, incy, random);
                for (const int threads : {1, 2, 3, 7, 5000}) {
                    y.restore();
                    std::vector<T> want = y.original();
                    run_blocks(threads, trans, m, n, alpha, a.data(), lda, x.data(), incx, beta, want.data(), incy);
                    set_num_threads(threads);
                    Routine<T>::driver(trans, m, n, alpha, a.data(), lda, x.data(), incx, beta, y.data(), incy);
                    ASSERT_EQ(std::memcmp(y.data(), want.data(), want.size() * sizeof(T)), 0)
                        << trans << " " << m << " by " << n << " incy " << incy << " on " << threads;
                }
            }
    }
}

/// A call inside a parallel region gets a team of one, which still has to walk all blocks.
TYPED_TEST(GemvThreads, ASmallerTeamGivesTheSameBits) {
    using T = TypeParam;
    Generator random(5);
    const i64 m = 500, n = 300, one = 1;
    const T alpha(0.5), beta(1.0);
    const auto a = random_matrix<T>(m, n, m, random);
    const auto x = random_vector<T>(m, 1, random), y = random_vector<T>(m, 1, random);
    set_num_threads(5);
    for (const char trans : {'N', 'T'}) {
        std::vector<T> outside = y.original(), inside = y.original();
        Routine<T>::driver(trans, m, n, alpha, a.data(), m, x.data(), one, beta, outside.data(), one);
#pragma omp parallel num_threads(2)
#pragma omp single
        Routine<T>::driver(trans, m, n, alpha, a.data(), m, x.data(), one, beta, inside.data(), one);
        EXPECT_EQ(std::memcmp(outside.data(), inside.data(), outside.size() * sizeof(T)), 0) << trans;
    }
}

} // namespace
} // namespace nxl
