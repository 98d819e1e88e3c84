// The LU factorisation as callers see it, on every processor class: factors, pivots and info; and the routines that
// interchange rows and conjugate.
#include "nxl.h"
#include "tests/support/lapack.hpp"
#include <cstdlib>
#include <gtest/gtest.h>
#include <numeric>

namespace {

using namespace nxl_test;

template <class T> class Getrf : public ::testing::Test {};
TYPED_TEST_SUITE(Getrf, Scalars);

struct Shape {
    int m, n;
};

// Around the widths at which the recursion, the crossover to threads and the queue's blocks change.
constexpr Shape shapes[] = {{1, 1},     {2, 3},    {8, 8},     {9, 9},     {33, 32},   {40, 70},
                            {64, 64},   {65, 65},  {127, 127}, {128, 128}, {129, 129}, {257, 200},
                            {131, 260}, {900, 66}, {30, 300},  {300, 70}};

TYPED_TEST(Getrf, FactorsAreThoseOfTheMatrix) {
    using enum MatrixKind;
    const double largest = sizeof(TypeParam) == sizeof(double) ? 1.0 + 1e-15 : std::sqrt(2.0) + 1e-15;
    for (const auto [m, n] : shapes)
        for (const MatrixKind kind : {random, graded, near_singular, hilbert})
            for (const int threads : {1, 4}) {
                const Team team(threads);
                const auto a = matrix_of<TypeParam>(kind, m, n);
                const auto lu = factored(a);
                EXPECT_EQ(lu.info, 0);
                EXPECT_LE(lu_error(a, lu.factors, lu.ipiv), 4.0)
                    << m << " by " << n << " kind " << static_cast<int>(kind) << " threads " << threads;
                EXPECT_LE(largest_multiplier(lu.factors), largest);
                EXPECT_TRUE(lu.factors.slack_untouched());
            }
}

TYPED_TEST(Getrf, PivotsAreTheReferences) {
    auto* const oracle = reference_lu<TypeParam>();
    for (const auto [m, n] : shapes) {
        const auto a = matrix_of<TypeParam>(MatrixKind::random, m, n, 1, 17);
        auto copy = a;
        std::vector<int> pivots(static_cast<std::size_t>(std::min(m, n)));
        int info = -1;
        oracle(&m, &n, copy.data(), &copy.lda, pivots.data(), &info);
        for (const int threads : {1, 3}) {
            const Team team(threads);
            EXPECT_EQ(factored(a).ipiv, pivots) << m << " by " << n << " threads " << threads;
        }
    }
}

// The first zero pivot is reported, from whatever panel, and all columns behind it are factored all the same.
TYPED_TEST(Getrf, ZeroColumnsAreReportedAndPassedOver) {
    constexpr Shape sizes[] = {{20, 20}, {200, 200}, {260, 170}, {100, 180}};
    for (const auto [m, n] : sizes)
        for (const int first : {0, 1, 7, 19, 23, 24, 64, 99, 128, 169, 199}) {
            if (first >= std::min(m, n)) continue;
            auto a = matrix_of<TypeParam>(MatrixKind::random, m, n);
            a.clear_column(first);
            a.clear_column(std::min(first + 40, n - 1));
            for (const int threads : {1, 4}) {
                const Team team(threads);
                const auto lu = factored(a);
                EXPECT_EQ(lu.info, first + 1) << m << " by " << n << " threads " << threads;
                EXPECT_LE(lu_error(a, lu.factors, lu.ipiv), 4.0) << m << " by " << n << " column " << first;
            }
        }
    auto wide = matrix_of<TypeParam>(MatrixKind::random, 70, 150);
    wide.clear_column(70); // no pivot stands there
    EXPECT_EQ(factored(wide).info, 0);
}

TYPED_TEST(Getrf, NothingIsDoneWithoutElements) {
    for (const auto [m, n] : {Shape{0, 0}, Shape{0, 5}, Shape{5, 0}}) {
        LapackMatrix<TypeParam> a(5, 5, 0);
        int info = 7, pivot = 99;
        Lapack<TypeParam>::getrf(&m, &n, a.data(), &a.lda, &pivot, &info);
        EXPECT_EQ(info, 0);
        EXPECT_EQ(pivot, 99);
    }
}

template <class T> class Laswp : public ::testing::Test {};
TYPED_TEST_SUITE(Laswp, Scalars);

TYPED_TEST(Laswp, MovesRowsAsTheReference) {
    constexpr bool real = std::is_same_v<TypeParam, double>;
    using Oracle = void(const int*, TypeParam*, const int*, const int*, const int*, const int*, const int*);
    auto* const oracle = reference<Oracle>(real ? "dlaswp_" : "zlaswp_");
    const auto ours = [] {
        if constexpr (real) return DLASWP;
        else return ZLASWP;
    }();
    const int rows = 23;
    Generator generator(3);
    for (const int incx : {1, -1, 2, -3, 0})
        for (const auto [k1, k2] : {std::pair{1, 11}, {4, 9}, {6, 6}, {7, 6}})
            for (const int n : {-1, 0, 1, 3, 4, 9, 40}) {
                std::vector<int> pivots(static_cast<std::size_t>(std::max(1, std::abs(incx) * k2)));
                for (int& pivot : pivots) pivot = 1 + static_cast<int>(generator() % rows);
                auto got = matrix_of<TypeParam>(MatrixKind::random, rows, std::max(n, 1)), want = got;
                ours(&n, got.data(), &got.lda, &k1, &k2, pivots.data(), &incx);
                oracle(&n, want.data(), &want.lda, &k1, &k2, pivots.data(), &incx);
                EXPECT_EQ(std::memcmp(got.data(), want.data(), got.elements.size() * sizeof(TypeParam)), 0)
                    << "incx " << incx << " rows " << k1 << " to " << k2 << " columns " << n;
            }
}

TEST(Lacgv, ConjugatesAsTheReference) {
    auto* const oracle = reference<void(const int*, zcomplex*, const int*)>("zlacgv_");
    for (const int n : {-1, 0, 1, 5})
        for (const int incx : {1, 2, -1, -3, 0}) {
            std::vector<zcomplex> got = matrix_of<zcomplex>(MatrixKind::random, 16, 1).elements, want = got;
            ZLACGV(&n, got.data(), &incx);
            oracle(&n, want.data(), &incx);
            EXPECT_EQ(got, want) << n << " elements " << incx << " apart";
        }
}

} // namespace
