// Cumulative sums and products. CTest runs this program at both vector widths.
#include "nxl.h"
#include "tests/primitives/guarded_array.hpp"
#include <algorithm>
#include <cmath>
#include <ranges>

namespace {

using namespace nxl_test;

template <class T> class CumulativeSums : public ::testing::Test {
  protected:
    static void sum(const T* src, T* dst, std::uint32_t n) {
        if constexpr (std::is_same_v<T, double>) CumSum_d(src, dst, n);
        else CumSumc_d(src, dst, n);
    }
    static void sum_at_lag(const T* src, T* dst, std::uint32_t n, std::uint32_t delta) {
        if constexpr (std::is_same_v<T, double>) CumSumDelta_d(src, dst, n, delta);
        else CumSumDeltac_d(src, dst, n, delta);
    }
    /// The definition, over single elements, whatever overlaps.
    static void plain(const T* src, T* dst, std::size_t n, std::size_t delta) {
        for (std::size_t i = 0; i < std::min(n, delta); ++i) dst[i] = src[i];
        for (std::size_t i = delta; i < n; ++i) dst[i] = src[i] + dst[i - delta];
    }
};
using Scalars = ::testing::Types<double, zcomplex>;
TYPED_TEST_SUITE(CumulativeSums, Scalars);

TYPED_TEST(CumulativeSums, AreAddedInTheOrderOfTheArray) {
    for (const std::uint32_t n : sizes) {
        const auto source = Values(n, Values::finite).take<TypeParam>(n);
        auto wanted = source;
        this->plain(source.data(), wanted.data(), n, 1);
        GuardedArray<TypeParam> src(source), dst(n);
        this->sum(src.data(), dst.data(), n);
        dst.expect(wanted, "apart");
        this->sum(src.data(), src.data(), n);
        src.expect(wanted, "in place");
    }
}

/// Destinations before, at and behind the source, nearer than any register is long and further; lags with a path of
/// their own, beside them, and beyond the array.
TYPED_TEST(CumulativeSums, AtAnyLagAndOverlapAreThoseOfTheForwardLoop) {
    constexpr std::size_t source_at = 400;
    const auto start = Values(11, Values::finite).take<TypeParam>(source_at + 2100);
    for (const std::uint32_t n : sizes)
        for (const std::uint32_t delta : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 8U, 16U, 17U, 31U, 32U, 33U, 70U, n, n + 3, ~0U})
            for (const int offset : {0, 1, 2, 3, 4, 5, 7, 8, 9, 31, 40, 1020, -1, -2, -3, -4, -5, -8, -33, -400}) {
                auto arena = start, wanted = start;
                const auto destination_at = source_at + static_cast<std::size_t>(offset);
                this->plain(wanted.data() + source_at, wanted.data() + destination_at, n, delta);
                this->sum_at_lag(arena.data() + source_at, arena.data() + destination_at, n, delta);
                const auto differs = [&](std::size_t i) { return !same_bits(arena[i], wanted[i]); };
                const auto places = std::views::iota(std::size_t{0}, arena.size());
                const auto first = std::ranges::find_if(places, differs);
                ASSERT_EQ(first, places.end())
                    << "n " << n << ", delta " << delta << ", offset " << offset << ", place " << *first;
            }
}

double in_order(const std::vector<double>& values) {
    double product = 1.0;
    for (const double v : values) product *= v;
    return product;
}
double product(const std::vector<double>& values) {
    return Product_d(values.data(), static_cast<std::uint32_t>(values.size()));
}

TEST(Product, OfEverySize) {
    std::mt19937 generator(3);
    for (const std::uint32_t n : sizes) {
        std::vector<double> values(n);
        long double wanted = 1.0L;
        for (double& v : values) wanted *= v = std::uniform_real_distribution<>(0.7, 1.35)(generator);
        EXPECT_NEAR(product(values), static_cast<double>(wanted), 1.2e-16 * n * static_cast<double>(wanted)) << n;
    }
}

TEST(Product, KeepsRangeWhereTheOrderOfTheArrayDoes) {
    std::vector<double> swings(100);
    for (std::size_t i = 0; i < swings.size(); ++i) swings[i] = i % 2 == 0 ? 1e200 : 1e-200;
    EXPECT_EQ(product(swings), in_order(swings)); // every second element alone would overflow, the others underflow

    std::vector<double> dips(100, 1.0); // every sixteenth element: through the subnormal range and back
    dips[0] = dips[16] = 1.3e-160, dips[32] = 1e200;
    dips[1] = dips[17] = 1e150, dips[33] = 1e-200;
    EXPECT_EQ(product(dips), in_order(dips));

    for (const double special : {0.0, std::numeric_limits<double>::infinity(), 1e-320}) {
        std::vector<double> values(41, -1.0);
        values[21] = special;
        EXPECT_EQ(product(values), special);
    }
    EXPECT_TRUE(std::isnan(product({1.0, std::numeric_limits<double>::quiet_NaN()})));
}

TEST(Product, OfComplexNumbers) {
    for (const std::uint32_t n : sizes) {
        const auto values = Values(n + 5, Values::finite).take<zcomplex>(n);
        zcomplex wanted = n == 0 ? 1.0 : values[0], result{7.0, 7.0};
        for (std::size_t i = 1; i < n; ++i) {
            const zcomplex a = wanted, b = values[i];
            wanted = {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
        }
        Productc_d(values.data(), &result, n);
        EXPECT_TRUE(same_bits(result, wanted)) << n << ": " << result << ", not " << wanted;
    }
}

} // namespace
