// The Cholesky family through its exports: factors and solutions on every strategy, failures, progress, bad arguments.
#include "tests/support/captured.hpp"
#include "tests/support/host_allocator.hpp"
#include "tests/support/lapack.hpp"
#include "tests/support/positive_definite.hpp"
#include <atomic>
#include <mutex>
#include <omp.h>
#include <thread>

namespace {

using namespace nxl_test;

constexpr double tolerance = 4.0; // of residuals in units of n eps

/// What the host's progress function has seen, and when it asks to stop.
struct Progress {
    struct Report {
        int thread, column;
        std::string name;
        bool operator==(const Report&) const = default;
    };
    std::mutex mutex;
    std::vector<Report> reports;
    std::size_t stop_at = 0; // the report that is answered with an odd number, from 1
    bool watching = false;
} progress;

/// The reports of one call, which is asked to stop at one of them, or at none for 0.
template <class Body> std::vector<Progress::Report> reports_of(std::size_t stop_at, Body body) {
    progress.reports.clear();
    progress.stop_at = stop_at;
    progress.watching = true;
    body();
    progress.watching = false;
    return progress.reports;
}

template <class T> int factor(char uplo, int n, T* a, int lda) {
    int info = 77;
    Lapack<T>::potrf(&uplo, &n, a, &lda, &info, 1);
    return info;
}

/// The factorisation of `a` on `threads` threads succeeds and stays where it belongs.
template <class T> void expect_factored(const PositiveDefinite<T>& a, char uplo, int threads) {
    const int n = a.n(), lda = n + 3;
    const GuardedMatrix<T> factors = a.triangle(uplo, lda);
    NXL_Set_Num_Threads(threads);
    EXPECT_EQ(factor(uplo, n, factors.data(), lda), 0) << uplo << " n " << n << " threads " << threads;
    EXPECT_LE(a.factor_residual(uplo, factors.data(), lda), tolerance) << uplo << " n " << n << " threads " << threads;
    EXPECT_TRUE(factors.rest_untouched()) << uplo << " n " << n << " threads " << threads;
}

template <class T> class Cholesky : public ::testing::Test {
  protected:
    void SetUp() override { NXL_Set_Dynamic(0); }
};
TYPED_TEST_SUITE(Cholesky, Scalars);

// Either side of every block size's step, and of the crossover; tables of one, two and many tiles.
TYPED_TEST(Cholesky, FactorsOfEverySizeOnOneThreadAndMany) {
    int threads = 2; // to 8, with the triangles in turn
    for (const int n : {1, 2, 5, 63, 64, 65, 127, 128, 129, 200, 450, 451, 700, 901, 1051}) {
        const PositiveDefinite<TypeParam> a(n, Spectrum::random, static_cast<unsigned>(n));
        if (n < 600) {
            expect_factored(a, 'U', 1);
            expect_factored(a, 'l', 1);
        }
        expect_factored(a, n % 2 == 0 ? 'u' : 'L', threads);
        threads = threads == 8 ? 2 : threads + 1;
    }
}

TYPED_TEST(Cholesky, HardMatrices) {
    for (const Spectrum spectrum : {Spectrum::graded, Spectrum::nearly_singular, Spectrum::hilbert})
        for (const int n : {60, 300})
            for (const char uplo : {'u', 'L'})
                for (const int threads : {1, 4})
                    expect_factored(PositiveDefinite<TypeParam>(n, spectrum, 5), uplo, threads);
}

TYPED_TEST(Cholesky, InfoIsTheFirstMinorThatIsNotPositive) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const int n : {100, 300})
        for (const int column : {1, 20, n / 2, n - 1, n})
            for (const double pivot : {-1.0, 0.0, nan}) {
                PositiveDefinite<TypeParam> a(n, Spectrum::random, 8);
                for (const int bad : {column, n}) a.at(bad - 1, bad - 1) = pivot;
                for (const char uplo : {'U', 'L'})
                    for (const int threads : {1, 2, 8}) {
                        NXL_Set_Num_Threads(threads);
                        const GuardedMatrix<TypeParam> factors = a.triangle(uplo, n);
                        EXPECT_EQ(factor(uplo, n, factors.data(), n), column) << n << uplo << threads << ' ' << pivot;
                        EXPECT_TRUE(factors.rest_untouched());
                    }
            }
}

TYPED_TEST(Cholesky, ProgressGoesByColumnsAndCanStopTheRun) {
    const int n = 400;
    const PositiveDefinite<TypeParam> a(n, Spectrum::random, 6);
    for (const char uplo : {'U', 'L'})
        for (const int threads : {1, 4}) {
            NXL_Set_Num_Threads(threads);
            const auto run = [&] {
                const GuardedMatrix<TypeParam> factors = a.triangle(uplo, n);
                EXPECT_EQ(factor(uplo, n, factors.data(), n), 0);
                const bool complete = a.factor_residual(uplo, factors.data(), n) <= tolerance;
                EXPECT_EQ(complete, progress.reports.back().column == n);
            };
            const auto all = reports_of(0, run);
            ASSERT_GT(all.size(), 3U);
            EXPECT_EQ(all.back().column, n);
            for (std::size_t i = 0; i < all.size(); ++i) {
                EXPECT_EQ(all[i].name, routine_name<TypeParam>("POTRF"));
                EXPECT_TRUE(all[i].thread >= 0 && all[i].thread < threads);
                EXPECT_GT(all[i].column, i == 0 ? 0 : all[i - 1].column);
            }
            for (const std::size_t stop : {std::size_t{1}, all.size() / 2}) {
                const auto some = reports_of(stop, run);
                ASSERT_EQ(some.size(), stop);
                EXPECT_EQ(some.back().column, all[stop - 1].column);
            }
        }
}

TYPED_TEST(Cholesky, ProgressIncludesTheBlockThatFails) {
    NXL_Set_Num_Threads(1);
    PositiveDefinite<TypeParam> a(200, Spectrum::random, 9);
    a.at(99, 99) = -1.0; // blocks have 24 columns
    for (const char uplo : {'U', 'L'}) {
        const GuardedMatrix<TypeParam> factors = a.triangle(uplo, 200);
        const auto reports = reports_of(0, [&] { EXPECT_EQ(factor(uplo, 200, factors.data(), 200), 100); });
        ASSERT_EQ(reports.size(), 5U);
        EXPECT_EQ(reports.back().column, 120);
    }
}

TYPED_TEST(Cholesky, WithoutMemoryForItsTableTheRunIsSerial) {
    const int n = 300;
    const PositiveDefinite<TypeParam> a(n, Spectrum::random, 7);
    const auto serial = reports_of(0, [&] { expect_factored(a, 'L', 1); });
    bool became_serial = false;
    for (long k = 1; k <= 3; ++k) {
        NXL_FreeBuffers();
        fail_allocation(k);
        became_serial |= reports_of(0, [&] { expect_factored(a, 'L', 4); }) == serial;
        fail_allocation(0);
    }
    EXPECT_TRUE(became_serial);
}

TYPED_TEST(Cholesky, HostThreadsFactorAtTheSameTime) {
    std::vector<std::thread> hosts;
    for (unsigned seed = 1; seed <= 4; ++seed)
        hosts.emplace_back([seed] {
            const PositiveDefinite<TypeParam> a(350, Spectrum::random, seed);
            for (const char uplo : {'U', 'L'}) expect_factored(a, uplo, 3);
        });
    for (std::thread& host : hosts) host.join();
}

// Inside a region the runtime delivers a team of one thread for the three that are asked for.
TYPED_TEST(Cholesky, SmallerTeamsFinish) {
    const PositiveDefinite<TypeParam> a(260, Spectrum::random, 9);
#pragma omp parallel num_threads(2)
    for (const char uplo : {'U', 'L'}) expect_factored(a, uplo, 3);
    expect_factored(PositiveDefinite<TypeParam>(130, Spectrum::random, 9), 'L', 50); // more threads than tiles
}

TEST(CholeskyOfSmall, UnblockedExport) {
    for (const char uplo : {'U', 'l'}) {
        const PositiveDefinite<zcomplex> a(200, Spectrum::random, 2);
        const GuardedMatrix<zcomplex> factors = a.triangle(uplo, 205);
        const int n = 200, lda = 205;
        int info = 77;
        const auto heard = reports_of(0, [&] { ZPOTF2(&uplo, &n, factors.data(), &lda, &info, 1); });
        EXPECT_EQ(info, 0);
        EXPECT_LE(a.factor_residual(uplo, factors.data(), lda), tolerance);
        EXPECT_TRUE(factors.rest_untouched() && heard.empty());
    }
}

} // namespace

// The host's own, in place of the library's.
extern "C" [[gnu::visibility("default")]] int NXL_PROGRESS(const int* thread, const int* step, const char* stage,
                                                           int stage_length) noexcept {
    if (!progress.watching) return 0;
    const std::scoped_lock lock(progress.mutex);
    progress.reports.push_back({*thread, *step, std::string(stage, static_cast<std::size_t>(stage_length))});
    return progress.reports.size() == progress.stop_at ? 3 : 2; // the low bit counts
}
