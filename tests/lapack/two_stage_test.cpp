// Reduction to tridiagonal and to bidiagonal form by way of a band, and the drivers that take it for large matrices.
#include "lapack/kernel/source/eigen/two_stage.hpp"
#include "lapack/kernel/source/singular/two_stage_values.hpp"
#include "tests/support/hermitian.hpp"
#include "tests/support/lapack.hpp"
#include "tests/support/singular.hpp"
#include <tuple>

namespace {

using namespace nxl_test;
using std::size_t;

template <class T> class TwoStage : public ::testing::Test {};
TYPED_TEST_SUITE(TwoStage, Scalars);

template <class T> std::vector<T> product(const LapackMatrix<T>& a, const T* x) {
    std::vector<T> y(static_cast<size_t>(a.rows));
    for (int j = 0; j < a.cols; ++j)
        for (size_t i = 0; i < y.size(); ++i) y[i] += a.at(static_cast<int>(i), j) * x[j];
    return y;
}
template <class T> double norm(int n, const T* x) {
    double sum = 0.0;
    for (int i = 0; i < n; ++i) sum += std::norm(x[i]);
    return std::sqrt(sum);
}

struct Sizes {
    int b;
    std::vector<int> orders;
};

/// A Q x = Q T x and |Q x| = |x|, with one panel and less, the last of one row, groups of sweeps and a part of one, and
/// products in several pieces; several threads have columns of their own.
TYPED_TEST(TwoStage, ReductionAndProductsWithQ) {
    using T = TypeParam;
    const int columns = 40;
    for (const auto& [b, orders] :
         {Sizes{1, {1, 2, 3, 20}}, Sizes{4, {1, 2, 4, 5, 6, 8, 9, 13, 70, 150}}, Sizes{32, {33, 34, 64, 65, 97, 310}}})
        for (const int n : orders)
            for (const char uplo : {'U', 'L'})
                for (const int threads : {1, 3}) {
                    SCOPED_TRACE(testing::Message() << uplo << n << " b " << b << " threads " << threads);
                    const Team team(threads);
                    Hermitian<T> a(uplo, n, 3);
                    std::vector<double> d(static_cast<size_t>(n)), e(static_cast<size_t>(n));
                    const nxl::TwoStageReduction<T> reduction(uplo, {a.stored.data(), n, n, a.stored.lda}, b, true);
                    ASSERT_TRUE(reduction.reduce(d.data(), e.data()));
                    const LapackMatrix<T> x = matrix_of<T>(MatrixKind::random, n, columns, 0, 9);
                    LapackMatrix<T> qx(n, columns, 2); // and, in odd columns, Q T x
                    for (int j = 0; j < columns; ++j)
                        for (int i = 0; i < n; ++i) {
                            const auto at = static_cast<size_t>(i);
                            const int from = j / 2 * 2;
                            T tx = d[at] * x.at(i, from);
                            if (i > 0) tx += e[at - 1] * x.at(i - 1, from);
                            if (i + 1 < n) tx += e[at] * x.at(i + 1, from);
                            qx.at(i, j) = j == from ? x.at(i, j) : tx;
                        }
                    ASSERT_TRUE(reduction.multiply({qx.data(), n, columns, qx.lda}));
                    EXPECT_TRUE(a.stored.slack_untouched() && qx.slack_untouched());
                    for (int j = 0; j < n; ++j)
                        for (int i = 0; i < j; ++i) {
                            const T other = uplo == 'U' ? a.stored.at(j, i) : a.stored.at(i, j);
                            EXPECT_TRUE(std::isnan(std::real(other)));
                        }
                    double error = 0.0;
                    for (int j = 0; j < columns; j += 2) {
                        const std::vector<T> left = product(a.full, &qx.at(0, j));
                        for (int i = 0; i < n; ++i) {
                            const double here = std::abs(left[static_cast<size_t>(i)] - qx.at(i, j + 1));
                            error = here <= error ? error : here;
                        }
                        EXPECT_NEAR(norm(n, &qx.at(0, j)), norm(n, &x.at(0, j)), 5.0 * (n + 10) * eps);
                    }
                    EXPECT_LE(error, 10.0 * (n + 10) * eps);
                }
}

/// Sweeps that follow each other on several threads, or on one thread in other groups, do the same arithmetic.
TYPED_TEST(TwoStage, ChaseIsTheSameOnAnyTeam) {
    using T = TypeParam;
    const int n = 1040, b = 16;
    const LapackMatrix<T> values = matrix_of<T>(MatrixKind::random, b + 1, n, 0, 4);
    std::vector<std::vector<double>> results;
    for (const int threads : {1, 2, 5}) {
        const Team team(threads);
        const nxl::BandReduction<T> reduction(n, b, false);
        const nxl::Matrix<T> band = reduction.band();
        for (int j = 0; j < n; ++j)
            for (int i = j; i < std::min(n, j + b + 1); ++i)
                band(i, j) = i == j ? T(std::real(values.at(0, j))) : values.at(i - j, j);
        results.emplace_back(2 * size_t{n});
        reduction.reduce(results.back().data(), results.back().data() + n);
    }
    EXPECT_TRUE(results[1] == results[0] && results[2] == results[0]);
}

/// Singular values as by gebrd and QR; one block and less, the last one narrow, tall matrices. The range of a column
/// may end in denormal numbers.
TYPED_TEST(TwoStage, SingularValuesOfTheBidiagonalForm) {
    using T = TypeParam;
    for (const double size : {1.0, 1e-170})
        for (const auto& [b, orders] :
             {Sizes{1, {1, 2, 9}}, Sizes{4, {1, 3, 4, 5, 8, 30}}, Sizes{20, {70}}, Sizes{32, {33, 96, 150}}})
            for (const int n : orders)
                for (const int m : {n, n + 3, 3 * n}) {
                    SCOPED_TRACE(testing::Message() << m << " by " << n << " b " << b << " size " << size);
                    LapackMatrix<T> a = matrix_of<T>(MatrixKind::random, m, n, 2, 5), u(m, n, 0), vt(n, n, 0);
                    for (int i = 0; i < m && size != 1.0; ++i) a.at(i, n - 1) *= size; // squares below the range
                    LapackMatrix<T> copy = a;
                    const auto count = static_cast<size_t>(n);
                    std::vector<double> d(count), e(count), expected(count), reals(count * 8);
                    std::vector<T> work(count * 100 + 1000);
                    const int lwork = static_cast<int>(work.size()), none = 0, one = 1;
                    int info = -99;
                    const auto qr = [&](auto... more) {
                        Singular<T>::gesvd("S", "S", &m, &n, copy.data(), &copy.lda, expected.data(), u.data(), &u.lda,
                                           vt.data(), &vt.lda, work.data(), &lwork, more..., &info, 1, 1);
                    };
                    if constexpr (is_complex<T>) qr(reals.data());
                    else qr();
                    ASSERT_EQ(info, 0);
                    ASSERT_TRUE(nxl::bidiagonalise_in_two_stages<T>({a.data(), m, n, a.lda}, b, d.data(), e.data()));
                    EXPECT_TRUE(a.slack_untouched());
                    dbdsqr("U", &n, &none, &none, &none, d.data(), e.data(), reals.data(), &one, reals.data(), &one,
                           reals.data(), &one, reals.data(), &info, 1);
                    ASSERT_EQ(info, 0);
                    for (size_t j = 0; j < count; ++j) EXPECT_NEAR(d[j], expected[j], 40.0 * eps * expected[0]);
                }
}

/// The smallest order for which two stages are taken with vectors, values by one driver and the lowest vectors by the
/// other; values as of sytrd.
TYPED_TEST(TwoStage, DriversAgreeWithOneStage) {
    using T = TypeParam;
    const int n = int{nxl::two_stage_order_for_vectors}, il = 1, few = 4, lwork = 70 * n, lreals = 24 * n,
              lintegers = 10 * n;
    const Team team(1);
    Hermitian<T> upper('U', n, 5), lower('L', n, 5);
    const auto size = static_cast<size_t>(n);
    std::vector<double> expected(size), w(size), lowest(size), reals(24 * size);
    std::vector<T> work(70 * size), tau(size);
    std::vector<int> integers(10 * size), others(2 * size);
    LapackMatrix<T> a = upper.stored, z(n, few, 0);
    int info = -99, m = 0;
    const double unused = 0.0;
    const auto solve = [&](auto* reduce, auto* evr, auto* evx, const auto& reals_of_evr, const auto&... reals_of_evx) {
        reduce("U", &n, a.data(), &a.lda, expected.data(), reals.data(), tau.data(), work.data(), &lwork, &info, 1);
        dsterf(&n, expected.data(), reals.data(), &info);
        std::apply(
            [&](auto... more) {
                evr("N", "A", "U", &n, upper.stored.data(), &a.lda, &unused, &unused, &il, &few, &unused, &m, w.data(),
                    z.data(), &z.lda, others.data(), work.data(), &lwork, more..., integers.data(), &lintegers, &info,
                    1, 1, 1);
            },
            reals_of_evr);
        EXPECT_TRUE(info == 0 && m == n);
        evx("V", "I", "L", &n, lower.stored.data(), &a.lda, &unused, &unused, &il, &few, &unused, &m, lowest.data(),
            z.data(), &z.lda, work.data(), &lwork, reals_of_evx..., integers.data(), others.data(), &info, 1, 1, 1);
        EXPECT_TRUE(info == 0 && m == few);
    };
    if constexpr (is_complex<T>) solve(zhetrd, zheevr, zheevx, std::tuple(reals.data(), &lreals), reals.data());
    else solve(dsytrd, dsyevr, dsyevx, std::tuple());
    double error = 0.0;
    for (size_t i = 0; i < size; ++i) error = std::max(error, std::abs(w[i] - expected[i]));
    for (int j = 0; j < few; ++j) {
        const double value = lowest[static_cast<size_t>(j)];
        const std::vector<T> left = product(upper.full, &z.at(0, j));
        for (int i = 0; i < n; ++i)
            error = std::max(error, std::abs(left[static_cast<size_t>(i)] - value * z.at(i, j)));
        error = std::max(error, std::abs(value - expected[static_cast<size_t>(j)]));
        EXPECT_NEAR(norm(n, &z.at(0, j)), 1.0, 20.0 * n * eps);
    }
    EXPECT_LE(error, 20.0 * n * eps);
}

} // namespace
