// The threaded matrix product: every strategy of the class at hand, and the drivers around them. Numbers are integers,
// so that a product is exact; C is checked through C x = alpha op(A) (op(B) x) + beta C0 x.
#include "blas/gemm_processor_seams.hpp"
#include "blas/kernel/default_em64t/level3/gemm_omp.hpp"
#include "blas/kernel/default_em64t/level3/gemm_strategies.hpp"
#include "service/cpu_class.hpp"
#include "service/memory.hpp"
#include "service/threads.hpp"
#include "tests/support/host_allocator.hpp"
#include "tests/support/integer_matrix.hpp"
#include <gtest/gtest.h>
#include <omp.h>
#include <string>

namespace nxl {
namespace {

using nxl_test::IntegerMatrix;

void driver(const GemmCall<double>& p) {
    nxl_blas_dgemm(p.transa, p.transb, p.m, p.n, p.k, p.alpha, p.a, p.lda, p.b, p.ldb, p.beta, p.c, p.ldc);
}
void driver(const GemmCall<zcomplex>& p) {
    nxl_blas_zgemm(p.transa, p.transb, p.m, p.n, p.k, p.alpha, p.a, p.lda, p.b, p.ldb, p.beta, p.c, p.ldc);
}

template <class T> struct Strategy {
    const char* name;
    Pretended sse41;
    void (*run)(i64 nt, const GemmCall<T>& call);
};

template <class T> std::vector<Strategy<T>> strategies_of(CpuClass cpu_class);
template <> std::vector<Strategy<double>> strategies_of(CpuClass cpu_class) {
    if (cpu_class == CpuClass::mc3) return {{"2D_nhm", Pretended::present, dgemm_2D_nhm}};
    if (cpu_class == CpuClass::mc)
        return {{"2D", Pretended::absent, dgemm_2D},
                {"2D htn", Pretended::present, dgemm_2D},
                {"1D_with_copy", Pretended::absent, dgemm_1D_with_copy},
                {"abcopy", Pretended::present, dgemm_2D_abcopy_abx_m_km_par_p_htn}};
    return {{"1d", Pretended::present, nxl_blas_dgemm_1d}};
}
template <> std::vector<Strategy<zcomplex>> strategies_of(CpuClass cpu_class) {
    if (cpu_class == CpuClass::mc3) return {{"2D_nhm", Pretended::present, zgemm_2D_nhm}};
    if (cpu_class == CpuClass::mc)
        return {{"2D", Pretended::absent, zgemm_2D},
                {"2D htn", Pretended::present, zgemm_2D},
                {"abcopy", Pretended::present, zgemm_2D_abcopy_abx_m_km_par_p_htn}};
    return {{"1d", Pretended::present, nxl_blas_zgemm_1d}};
}

/// Operands of one product, and C before and after it.
template <class T> struct Product {
    char transa, transb;
    IntegerMatrix<T> a, b, before, c;
    T alpha, beta;

    Product(char ta, char tb, const GemmShape& s, T scale, T old)
        : transa(ta),
          transb(tb),
          a(IntegerMatrix<T>::operand(ta, s.m, s.k, 1)),
          b(IntegerMatrix<T>::operand(tb, s.k, s.n, 2)),
          before(s.m, s.n, 3),
          c(before),
          alpha(scale),
          beta(old) {}

    i64 k() const { return transa == 'N' || transa == 'n' ? a.columns() : a.rows(); }
    GemmCall<T> call() {
        return {transa, transb,   c.rows(), c.columns(), k(),      alpha, a.data(),
                a.ld(), b.data(), b.ld(),   beta,        c.data(), c.ld()};
    }

    /// C = alpha op(A) op(B) + beta C0, with what the scalars are taken for.
    ::testing::AssertionResult right(T scale, T old) const {
        const std::vector<T> x = nxl_test::probe<T>(c.columns(), 4);
        const std::vector<T> got = times(c, 'N', x), was = times(before, 'N', x);
        const std::vector<T> product = times(a, transa, times(b, transb, x));
        for (std::size_t i = 0; i < got.size(); ++i)
            if (got[i] != scale * product[i] + old * was[i])
                return ::testing::AssertionFailure() << "row " << i << " of " << c.rows() << " x " << c.columns()
                                                     << " x " << k() << ' ' << transa << transb;
        if (!c.margin_untouched()) return ::testing::AssertionFailure() << "written below C";
        return ::testing::AssertionSuccess();
    }
    ::testing::AssertionResult right() const { return right(alpha, beta); }
};

/// The letters of op(), in turn.
template <class T> std::pair<char, char> letters(int turn) {
    constexpr char real[] = {'N', 'T', 'n', 'c'}, complex[] = {'N', 'T', 'C', 'n', 't', 'c'};
    if constexpr (sizeof(T) == sizeof(double)) return {real[turn % 4], real[turn / 2 % 4]};
    else return {complex[turn % 6], complex[turn / 2 % 6]};
}

template <class T> class GemmThreads : public ::testing::Test {
  protected:
    void SetUp() override { set_dynamic(false); }
    void TearDown() override {
        pretend_sse41(Pretended::of_processor);
        pretend_cache_sizes(nullptr);
        omp_set_max_active_levels(1);
        set_num_threads(1);
        set_dynamic(true);
    }
    static bool class_scales_c_first() { return nxl_cpu_class() == CpuClass::mc || nxl_cpu_class() == CpuClass::mc3; }
};
using Scalars = ::testing::Types<double, zcomplex>;
TYPED_TEST_SUITE(GemmThreads, Scalars);

// Sizes around the units of all cuts; some leave threads without rows, without columns, or all to the last.
constexpr GemmShape ragged_shapes[] = {{64, 64, 64}, {101, 67, 33},  {103, 66, 6}, {9, 131, 40},
                                       {131, 9, 40}, {6, 3, 301},    {7, 1, 130},  {2, 90, 17},
                                       {37, 2, 515}, {258, 70, 257}, {90, 97, 9},  {1, 1, 5}};

TYPED_TEST(GemmThreads, EachStrategyComputesTheProduct) {
    using T = TypeParam;
    int turn = 0;
    for (const Strategy<T>& strategy : strategies_of<T>(nxl_cpu_class())) {
        pretend_sse41(strategy.sse41);
        for (const GemmShape& shape : ragged_shapes)
            for (const i64 threads : {2, 3, 5, 8, 40}) {
                const auto [transa, transb] = letters<T>(turn++);
                Product<T> product(transa, transb, shape, T{-2.0}, T{1.0});
                strategy.run(threads, product.call());
                EXPECT_TRUE(product.right()) << strategy.name << " on " << threads;
            }
    }
}

TYPED_TEST(GemmThreads, StrategiesCrossTheirBlocks) {
    using T = TypeParam;
    constexpr GemmCacheSizes small{2, {32768, 1 << 20, 0, 0}}; // so that blocks of A are short
    int turn = 0;
    for (const Strategy<T>& strategy : strategies_of<T>(nxl_cpu_class())) {
        pretend_sse41(strategy.sse41);
        for (const bool caches_known : {false, true})
            for (const GemmShape& shape : {GemmShape{2309, 50, 300}, GemmShape{70, 10090, 9}, GemmShape{1301, 45, 520}})
                for (const i64 threads : {2, 3}) {
                    pretend_cache_sizes(caches_known ? &small : nullptr);
                    const auto [transa, transb] = letters<T>(turn++);
                    Product<T> product(transa, transb, shape, T{3.0}, T{1.0});
                    strategy.run(threads, product.call());
                    EXPECT_TRUE(product.right()) << strategy.name << " on " << threads;
                }
    }
}

TYPED_TEST(GemmThreads, DriverAppliesTheScalarsOnce) {
    using T = TypeParam;
    struct Pair {
        T alpha, beta;
    };
    std::vector<Pair> scalars{{1.0, 1.0}, {1.0, 0.0}, {-2.0, 3.0}, {0.0, 2.0}, {0.0, 0.0}};
    if constexpr (sizeof(T) > sizeof(double)) scalars.push_back({T{2.0, 1.0}, T{1.0, -2.0}});
    int turn = 0;
    for (const Pretended sse41 : {Pretended::absent, Pretended::present})
        for (const Pair& pair : scalars)
            for (const int threads : {1, 2, 3, 8})
                // In reach of both gates; fewer columns than threads; deep and thin; nothing to add.
                for (const GemmShape& shape : {GemmShape{101, 67, 33}, {1700, 5, 20}, {16, 5, 600}, {9, 9, 0}}) {
                    pretend_sse41(sse41);
                    set_num_threads(threads);
                    const auto [transa, transb] = letters<T>(turn++);
                    Product<T> product(transa, transb, shape, pair.alpha, pair.beta);
                    driver(product.call());
                    EXPECT_TRUE(product.right()) << pair.alpha << ' ' << pair.beta << " on " << threads;
                }
}

TYPED_TEST(GemmThreads, DriverTakesThePrivateCopies) {
    using T = TypeParam;
    constexpr bool real = sizeof(T) == sizeof(double);
    constexpr GemmShape shape = real ? GemmShape{1003, 1001, 150} : GemmShape{403, 401, 201};
    pretend_sse41(Pretended::present);
    for (const int threads : {2, 3, 8}) {
        set_num_threads(threads);
        Product<T> product('T', 'N', shape, T{1.0}, T{2.0});
        driver(product.call());
        EXPECT_TRUE(product.right()) << threads;
    }
}

TYPED_TEST(GemmThreads, MoreThreadsThanRowsAndColumns) {
    using T = TypeParam;
    set_num_threads(1024);
    for (const Pretended sse41 : {Pretended::absent, Pretended::present})
        for (const GemmShape& shape : {GemmShape{101, 67, 33}, {67, 1100, 33}}) {
            pretend_sse41(sse41);
            Product<T> product('N', 'T', shape, T{1.0}, T{2.0});
            driver(product.call());
            EXPECT_TRUE(product.right());
        }
}

TYPED_TEST(GemmThreads, BetaZeroDoesNotReadC) {
    using T = TypeParam;
    for (const int threads : {1, 3, 8}) {
        set_num_threads(threads);
        Product<T> product('N', 'N', {101, 67, 33}, T{1.0}, T{0.0});
        for (i64 j = 0; j < product.c.columns(); ++j)
            for (i64 i = 0; i < product.c.rows(); ++i) product.c.at(i, j) = nxl_test::all_nan<T>();
        driver(product.call());
        EXPECT_TRUE(product.right()) << threads;
    }
}

TYPED_TEST(GemmThreads, NothingIsReadOrWrittenThatTheScalarsRuleOut) {
    using T = TypeParam;
    set_num_threads(4);
    Product<T> still('N', 'N', {101, 67, 33}, T{0.0}, T{1.0});
    GemmCall<T> call = still.call();
    if (this->class_scales_c_first()) call.a = nullptr, call.b = nullptr;
    driver(call);
    EXPECT_TRUE(still.c == still.before);
    for (const GemmShape& none : {GemmShape{0, 5, 5}, GemmShape{5, 0, 5}}) {
        call.m = none.m, call.n = none.n, call.beta = T{2.0};
        driver(call);
        EXPECT_TRUE(still.c == still.before);
    }
}

template <class T> bool all_are_nan(IntegerMatrix<T>& matrix) {
    for (i64 j = 0; j < matrix.columns(); ++j)
        for (i64 i = 0; i < matrix.rows(); ++i)
            if (matrix.at(i, j) == matrix.at(i, j)) return false;
    return true;
}

/// Where C is scaled first, a NaN passes for the value that it is compared with; elsewhere it enters the product.
TYPED_TEST(GemmThreads, NaNScalarsOnTheThreadedRoads) {
    using T = TypeParam;
    const bool enters = !this->class_scales_c_first();
    set_num_threads(2);
    const T nan = nxl_test::all_nan<T>();
    Product<T> beta_is_one('N', 'T', {101, 67, 33}, T{2.0}, nan);
    driver(beta_is_one.call());
    EXPECT_TRUE(enters ? all_are_nan(beta_is_one.c) : beta_is_one.right(T{2.0}, T{1.0}));
    Product<T> alpha_is_zero('N', 'T', {101, 67, 33}, nan, T{3.0});
    driver(alpha_is_zero.call());
    EXPECT_TRUE(enters ? all_are_nan(alpha_is_zero.c) : alpha_is_zero.right(T{0.0}, T{3.0}));
}

int team_size() {
    int size = 0;
#pragma omp parallel num_threads(4)
#pragma omp single
    size = omp_get_num_threads();
    return size;
}

/// Fractions that do not add up exactly, so that the order of additions shows.
template <class T> void make_inexact(IntegerMatrix<T>& matrix) {
    for (i64 j = 0; j < matrix.columns(); ++j)
        for (i64 i = 0; i < matrix.rows(); ++i)
            matrix.at(i, j) = (matrix.at(i, j) + T{0.3}) / T{static_cast<double>(7 + i % 5)};
}

/// Runs `multiply` with full teams and with teams of one, on operands whose sums depend on the order of additions.
template <class T, class Multiply> void expect_same_bits(const GemmShape& shape, T beta, const Multiply& multiply) {
    Product<T> full('N', 'T', shape, T{0.7}, beta);
    make_inexact(full.a);
    make_inexact(full.b);
    Product<T> alone = full;
    ASSERT_EQ(team_size(), 4);
    multiply(full.call());
    omp_set_max_active_levels(0);
    ASSERT_EQ(team_size(), 1);
    multiply(alone.call());
    omp_set_max_active_levels(1);
    EXPECT_FALSE(full.c == full.before);
    EXPECT_TRUE(full.c == alone.c) << shape.m << " x " << shape.n << " x " << shape.k;
}

TYPED_TEST(GemmThreads, ResultDoesNotDependOnTheTeamThatIsDelivered) {
    using T = TypeParam;
    for (const i64 threads : {2, 3, 8})
        for (const GemmShape& shape : {GemmShape{101, 67, 33}, {200, 9, 300}, {403, 201, 301}})
            for (const Strategy<T>& strategy : strategies_of<T>(nxl_cpu_class())) {
                SCOPED_TRACE(std::string(strategy.name) + " on " + std::to_string(threads));
                pretend_sse41(strategy.sse41);
                expect_same_bits(shape, T{1.0}, [&](const GemmCall<T>& call) { strategy.run(threads, call); });
                set_num_threads(static_cast<int>(threads));
                expect_same_bits(shape, T{1.3}, [](const GemmCall<T>& call) { driver(call); });
            }
}

TYPED_TEST(GemmThreads, MemoryThatCannotBeHadChangesNothing) {
    using T = TypeParam;
    for (const Strategy<T>& strategy : strategies_of<T>(nxl_cpu_class())) {
        pretend_sse41(strategy.sse41);
        for (const long failing : {1, 2, 3}) {
            free_buffers();
            const long live = nxl_test::live_blocks();
            Product<T> product('N', 'N', {101, 67, 33}, T{2.0}, T{1.0});
            nxl_test::fail_allocation(failing);
            strategy.run(3, product.call());
            nxl_test::fail_allocation(0);
            EXPECT_TRUE(product.right()) << strategy.name << " without block " << failing;
            free_buffers();
            EXPECT_EQ(nxl_test::live_blocks(), live) << strategy.name;
        }
    }
}

} // namespace
} // namespace nxl
