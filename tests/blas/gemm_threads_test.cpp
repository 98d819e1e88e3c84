// The threaded matrix product: every strategy of the class at hand, and the drivers around them, against the reference
// BLAS with a bound for every element.
#include "blas/gemm_processor_seams.hpp"
#include "blas/kernel/default_em64t/level3/gemm_omp.hpp"
#include "blas/kernel/default_em64t/level3/gemm_strategies.hpp"
#include "service/cpu_class.hpp"
#include "service/memory.hpp"
#include "service/threads.hpp"
#include "tests/support/blas_call.hpp"
#include "tests/support/host_allocator.hpp"
#include <numeric>
#include <omp.h>

namespace nxl {
namespace {

using nxl_test::BlasCall;
using nxl_test::Family;

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

/// A strategy as a routine, on a number of threads of its own and with caches as given, or the processor's.
template <class T> struct Variant {
    Strategy<T> strategy;
    i64 threads;
    const GemmCacheSizes* caches = nullptr;
};
template <class T> std::vector<Variant<T>> variants;
template <class T> Variant<T> chosen;
template <class T> void choose(int variant) {
    chosen<T> = variants<T>[static_cast<std::size_t>(variant)];
    pretend_sse41(chosen<T>.strategy.sse41);
    pretend_cache_sizes(chosen<T>.caches);
}
template <class T>
void carry_out(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k, const T& alpha,
               const T* a, const i64& lda, const T* b, const i64& ldb, const T& beta, T* c, const i64& ldc) {
    chosen<T>.strategy.run(chosen<T>.threads, {transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc});
}

template <class T> class GemmThreads : public ::testing::Test {
  protected:
    static constexpr bool real = sizeof(T) == sizeof(double);
    static constexpr auto driver = [] {
        if constexpr (real) return nxl_blas_dgemm;
        else return nxl_blas_zgemm;
    }();
    static constexpr const char* name = real ? "dgemm" : "zgemm";
    const nxl_test::Routine driver_ = nxl_test::routine<Family::gemm>(name, driver);
    const nxl_test::Routine strategy_ = nxl_test::routine<Family::gemm>(name, carry_out<T>);
    nxl_test::Generator generator_{1};

    void SetUp() override { set_dynamic(false); }
    void TearDown() override {
        pretend_sse41(Pretended::of_processor);
        pretend_cache_sizes(nullptr);
        omp_set_max_active_levels(1);
        set_num_threads(1);
        set_dynamic(true);
    }
    /// Letters, slack and places at random.
    BlasCall call_of(const GemmShape& s) {
        BlasCall call = randomised(pick(generator_, letters_of(driver_)), generator_);
        call.m = static_cast<int>(s.m), call.n = static_cast<int>(s.n), call.k = static_cast<int>(s.k);
        return call;
    }
    /// All variants on the same operands. Strategies only add, products times anything but 0.
    ::testing::AssertionResult check_variants(const GemmShape& shape, std::vector<Variant<T>> given) {
        variants<T> = std::move(given);
        set_num_threads(1);
        BlasCall call = call_of(shape);
        call.alpha = {0.7, -0.3}, call.beta = 1.0;
        call.prepare = choose<T>;
        call.threads.resize(variants<T>.size());
        std::iota(call.threads.begin(), call.threads.end(), 0);
        const auto result = strategy_.check(call);
        return result ? result
                      : ::testing::AssertionFailure()
                            << result.message() << ' ' << chosen<T>.strategy.name << ' ' << chosen<T>.threads;
    }
};
TYPED_TEST_SUITE(GemmThreads, nxl_test::Scalars);

// Sizes around the units of all cuts; some leave threads without rows, without columns, or all to the last.
constexpr GemmShape ragged_shapes[] = {{64, 64, 64}, {101, 67, 33},  {103, 66, 6}, {9, 131, 40},
                                       {131, 9, 40}, {6, 3, 301},    {7, 1, 130},  {2, 90, 17},
                                       {37, 2, 515}, {258, 70, 257}, {90, 97, 9},  {1, 1, 5}};

TYPED_TEST(GemmThreads, EachStrategyComputesTheProduct) {
    std::vector<Variant<TypeParam>> few, many;
    for (const auto& strategy : strategies_of<TypeParam>(nxl_cpu_class())) {
        for (const i64 threads : {2, 3, 5, 8}) few.push_back({strategy, threads});
        many.push_back({strategy, 40});
    }
    for (const GemmShape& shape : ragged_shapes)
        for (int letters = 0; letters < 3; ++letters) ASSERT_TRUE(this->check_variants(shape, few));
    for (const GemmShape& shape : ragged_shapes) ASSERT_TRUE(this->check_variants(shape, many));
}

TYPED_TEST(GemmThreads, StrategiesCrossTheirBlocks) {
    constexpr GemmCacheSizes small{2, {32768, 1 << 20, 0, 0}}; // so that blocks of A are short
    std::vector<Variant<TypeParam>> all;
    for (const auto& strategy : strategies_of<TypeParam>(nxl_cpu_class()))
        for (const GemmCacheSizes* const caches : {static_cast<const GemmCacheSizes*>(nullptr), &small})
            for (const i64 threads : {2, 3}) all.push_back({strategy, threads, caches});
    for (const GemmShape& shape : {GemmShape{2309, 30, 300}, GemmShape{70, 10090, 9}, GemmShape{1301, 25, 520}})
        ASSERT_TRUE(this->check_variants(shape, all));
}

TYPED_TEST(GemmThreads, DriverOnBothSidesOfItsGates) { // in reach of both; few columns; deep and thin; nothing to add
    for (const Pretended sse41 : {Pretended::absent, Pretended::present}) {
        pretend_sse41(sse41);
        for (const GemmShape& shape : {GemmShape{101, 67, 33}, {1700, 5, 20}, {16, 5, 600}, {9, 9, 0}, {67, 1100, 33}})
            for (const nxl_test::zcomplex alpha : {1.0, -2.0, 0.0}) // 1024 threads are costly: once for each shape
                for (const nxl_test::zcomplex beta : {1.0, 0.0, 3.0}) {
                    BlasCall call = this->call_of(shape);
                    call.alpha = alpha, call.beta = beta;
                    call.threads = {1, 2, 3, 8};
                    if (alpha == 1.0 && beta == 1.0) call.threads.push_back(1024);
                    ASSERT_TRUE(this->driver_.check(call));
                }
    }
    BlasCall copies = this->call_of(this->real ? GemmShape{1003, 1001, 150} : GemmShape{403, 401, 201});
    copies.alpha = {1.0, -0.5}, copies.beta = 2.0;
    copies.threads = {2, 3, 8};
    EXPECT_TRUE(this->driver_.check(copies));
}

/// Operands of one product and C, without slack.
template <class T> struct Product {
    GemmShape shape;
    std::vector<T> a = nxl_test::random_values<T>(shape.m * shape.k, 1),
                   b = nxl_test::random_values<T>(shape.n * shape.k, 2),
                   c = nxl_test::random_values<T>(shape.m * shape.n, 3);

    GemmCall<T> call(T alpha, T beta) {
        return {'N',     'T',      shape.m, shape.n, shape.k,  alpha,  a.data(),
                shape.m, b.data(), shape.n, beta,    c.data(), shape.m};
    }
};

TYPED_TEST(GemmThreads, NothingIsReadThatTheScalarsRuleOut) {
    using T = TypeParam;
    set_num_threads(4);
    Product<T> still{{101, 67, 33}};
    const std::vector<T> before = still.c;
    GemmCall<T> call = still.call(T{0.0}, T{1.0});
    if (nxl_cpu_class() == CpuClass::mc || nxl_cpu_class() == CpuClass::mc3) call.a = call.b = nullptr;
    call.run(this->driver);
    EXPECT_TRUE(still.c == before);
}

/// Where C is scaled first, a NaN passes for the value that it is compared with; elsewhere it enters the product.
TYPED_TEST(GemmThreads, NaNScalarsOnTheThreadedRoads) {
    using T = TypeParam;
    const bool enters = nxl_cpu_class() != CpuClass::mc && nxl_cpu_class() != CpuClass::mc3;
    set_num_threads(2);
    const T nan = nxl_test::all_nan<T>();
    for (const auto& [given, taken] :
         {std::pair(std::pair(T{2.0}, nan), std::pair(T{2.0}, T{1.0})), {{nan, T{3.0}}, {T{0.0}, T{3.0}}}}) {
        Product<T> got{{101, 67, 33}}, want = got;
        got.call(given.first, given.second).run(this->driver);
        want.call(taken.first, taken.second).run(this->driver);
        const bool all_nan = std::all_of(got.c.begin(), got.c.end(), [](T v) { return std::isnan(nxl_test::abs1(v)); });
        EXPECT_TRUE(enters ? all_nan : got.c == want.c);
    }
}

int team_size() {
    int size = 0;
#pragma omp parallel num_threads(4)
#pragma omp single
    size = omp_get_num_threads();
    return size;
}

/// Runs `multiply` with full teams and with teams of one.
template <class T, class Multiply> void expect_same_bits(const GemmShape& shape, T beta, const Multiply& multiply) {
    Product<T> full{shape}, alone = full;
    const std::vector<T> before = full.c;
    ASSERT_EQ(team_size(), 4);
    multiply(full.call(T{0.7}, beta));
    omp_set_max_active_levels(0);
    ASSERT_EQ(team_size(), 1);
    multiply(alone.call(T{0.7}, beta));
    omp_set_max_active_levels(1);
    EXPECT_FALSE(full.c == before);
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
                expect_same_bits(shape, T{1.3}, [&](const GemmCall<T>& call) { call.run(this->driver); });
            }
}

TYPED_TEST(GemmThreads, MemoryThatCannotBeHadChangesNothing) {
    for (const Strategy<TypeParam>& strategy : strategies_of<TypeParam>(nxl_cpu_class()))
        for (const long failing : {1, 2, 3}) {
            free_buffers();
            const long live = nxl_test::live_blocks();
            nxl_test::fail_allocation(failing);
            EXPECT_TRUE(this->check_variants({101, 67, 33}, {{strategy, 3}})) << "without block " << failing;
            nxl_test::fail_allocation(0);
            free_buffers();
            EXPECT_EQ(nxl_test::live_blocks(), live) << strategy.name;
        }
}

} // namespace
} // namespace nxl
