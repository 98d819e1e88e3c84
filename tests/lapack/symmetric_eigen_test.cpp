// Symmetric and Hermitian eigenproblems: the reduction to tridiagonal form.
#include "lapack/kernel/source/eigen/trailing_update.hpp"
#include "nxl.h"
#include "tests/support/hermitian.hpp"
#include "tests/support/lapack.hpp"

namespace {

using namespace nxl_test;
using std::size_t;

template <class T> class SymmetricEigen : public ::testing::Test {
  public:
    static constexpr auto sytrd = [] {
        if constexpr (is_complex<T>) return zhetrd;
        else return dsytrd;
    }();
    struct Reduced {
        std::vector<double> d, e;
        std::vector<T> tau;
    };
    static Reduced reduce(char uplo, LapackMatrix<T>& a, int lwork) {
        const int n = a.cols;
        const size_t room = static_cast<size_t>(n) + 1;
        Reduced r{std::vector<double>(room), std::vector<double>(room), std::vector<T>(room)};
        std::vector<T> work(static_cast<size_t>(std::max(lwork, 1)));
        int info = -99;
        sytrd(&uplo, &n, a.data(), &a.lda, r.d.data(), r.e.data(), r.tau.data(), work.data(), &lwork, &info, 1);
        EXPECT_EQ(info, 0);
        EXPECT_EQ(std::real(work[0]), std::max(1, 32 * n));
        return r;
    }
    /// C := Q C for the Q that stands in a.
    static void apply_q(char uplo, const LapackMatrix<T>& a, const std::vector<T>& tau, LapackMatrix<T>& c) {
        const int n = a.cols;
        for (int step = 0; step + 1 < n; ++step) {
            const int k = uplo == 'L' ? n - 2 - step : step; // the last factor first
            const int column = uplo == 'L' ? k : k + 1, one = uplo == 'L' ? k + 1 : k;
            const int first = uplo == 'L' ? one : 0, end = uplo == 'L' ? n : one + 1;
            const auto v = [&](int i) { return i == one ? T(1.0) : a.at(i, column); };
            for (int j = 0; j < c.cols; ++j) {
                T sum{};
                for (int i = first; i < end; ++i) sum += conjugate(v(i)) * c.at(i, j);
                sum *= tau[static_cast<size_t>(k)];
                for (int i = first; i < end; ++i) c.at(i, j) -= v(i) * sum;
            }
        }
    }
};
TYPED_TEST_SUITE(SymmetricEigen, Scalars);

/// A Q x = Q T x for some x, and what stands in the triangle; with workspaces that allow blocks, narrow ones, and none.
TYPED_TEST(SymmetricEigen, ReductionToTridiagonalForm) {
    using T = TypeParam;
    for (const int threads : {1, 2, 5})
        for (const char uplo : {'U', 'L'})
            for (const int n : {0, 1, 2, 3, 32, 33, 34, 99})
                for (const int lwork : {1, std::max(5 * n, 1), std::max(32 * n, 1)}) {
                    SCOPED_TRACE(testing::Message() << threads << uplo << n << " lwork " << lwork);
                    const Team team(threads);
                    Hermitian<T> a(uplo, n, 3);
                    const auto r = this->reduce(uplo, a.stored, lwork);
                    EXPECT_TRUE(a.stored.slack_untouched());
                    LapackMatrix<T> x = matrix_of<T>(MatrixKind::random, n, 2, 0, 9), tx = x;
                    for (int j = 0; j < 2; ++j)
                        for (int i = 0; i < n; ++i) {
                            const auto at = static_cast<size_t>(i);
                            tx.at(i, j) = r.d[at] * x.at(i, j);
                            if (i > 0) tx.at(i, j) += r.e[at - 1] * x.at(i - 1, j);
                            if (i + 1 < n) tx.at(i, j) += r.e[at] * x.at(i + 1, j);
                            EXPECT_EQ(a.stored.at(i, i), T(r.d[at]));
                            if (i + 1 < n)
                                EXPECT_EQ(uplo == 'L' ? a.stored.at(i + 1, i) : a.stored.at(i, i + 1), T(r.e[at]));
                        }
                    this->apply_q(uplo, a.stored, r.tau, x);
                    this->apply_q(uplo, a.stored, r.tau, tx);
                    double error = 0.0;
                    for (int j = 0; j < 2; ++j)
                        for (int i = 0; i < n; ++i) {
                            T sum = -tx.at(i, j);
                            for (int k = 0; k < n; ++k) sum += a.full.at(i, k) * x.at(k, j);
                            error = std::abs(sum) <= error ? error : std::abs(sum);
                        }
                    EXPECT_LE(error, 10.0 * n * eps);
                }
}

/// F^-1 A F^-H times a vector, or F^H A F, by the full matrices; F is L, or U^H.
TYPED_TEST(SymmetricEigen, GeneralisedToOrdinary) {
    using T = TypeParam;
    constexpr auto sygst = [] {
        if constexpr (is_complex<T>) return zhegst;
        else return dsygst;
    }();
    for (const int itype : {1, 2, 3})
        for (const char uplo : {'U', 'L'})
            for (const int n : {0, 1, 2, 32, 33, 71}) {
                SCOPED_TRACE(testing::Message() << itype << uplo << n);
                Hermitian<T> a(uplo, n, 5);
                LapackMatrix<T> b(n, n, 2), x = matrix_of<T>(MatrixKind::random, n, 1, 0, 8);
                LapackMatrix<T> values = matrix_of<T>(MatrixKind::random, n, n, 0, 6);
                const bool lower = uplo == 'L';
                const auto factor = [&](int i, int j) { // F, a lower triangle
                    if (i < j) return T{};
                    return i == j ? T(2.0) : values.at(i, j) / static_cast<double>(n);
                };
                for (int j = 0; j < n; ++j)
                    for (int i = j; i < n; ++i)
                        (lower ? b.at(i, j) : b.at(j, i)) = lower ? factor(i, j) : conjugate(factor(i, j));
                int info = -99;
                sygst(&itype, &uplo, &n, a.stored.data(), &a.stored.lda, b.data(), &b.lda, &info, 1);
                EXPECT_EQ(info, 0);
                EXPECT_TRUE(a.stored.slack_untouched());
                using Vector = std::vector<T>;
                const auto product = [n](const auto& element, const Vector& v) {
                    Vector result(v.size());
                    for (int i = 0; i < n; ++i)
                        for (int j = 0; j < n; ++j)
                            result[static_cast<size_t>(i)] += element(i, j) * v[static_cast<size_t>(j)];
                    return result;
                };
                const auto adjoint = [&](int i, int j) { return conjugate(factor(j, i)); };
                const auto original = [&](int i, int j) { return a.full.at(i, j); };
                const auto changed = [&](int i, int j) {
                    const bool stored = lower ? i >= j : i <= j;
                    return stored ? a.stored.at(i, j) : conjugate(a.stored.at(j, i));
                };
                Vector left, right; // for itype 1 F C F^H x and A x; else C x and F^H A F x
                if (itype == 1) {
                    left = product(factor, product(changed, product(adjoint, x.elements)));
                    right = product(original, x.elements);
                } else {
                    left = product(changed, x.elements);
                    right = product(adjoint, product(original, product(factor, x.elements)));
                }
                for (size_t i = 0; i < static_cast<size_t>(n); ++i)
                    EXPECT_LE(std::abs(left[i] - right[i]), 200.0 * (n + 1) * eps);
            }
}

/// Eigenpairs as a driver has left them.
template <class T> struct Found {
    int m = -1, info = -99;
    std::vector<double> w;
    LapackMatrix<T> z;
    std::vector<int> failed;
    explicit Found(int n) : w(static_cast<size_t>(n) + 1), z(n, n, 2), failed(static_cast<size_t>(n) + 1, -7) {}
};

/// A z = w z and orthonormal z, for A of norm 1 to within a factor of n.
template <class T> void expect_pairs(const LapackMatrix<T>& a, const Found<T>& found, double slack) {
    const int n = a.cols;
    const auto count = static_cast<size_t>(found.m);
    EXPECT_TRUE(std::is_sorted(found.w.begin(), found.w.begin() + found.m));
    EXPECT_TRUE(found.z.slack_untouched() || n == 0);
    double worst = 0.0;
    for (size_t k = 0; k < count; ++k) {
        const int j = static_cast<int>(k);
        for (int i = 0; i < n; ++i) {
            T sum = -found.w[k] * found.z.at(i, j);
            for (int c = 0; c < n; ++c) sum += a.at(i, c) * found.z.at(c, j);
            worst = std::abs(sum) <= worst ? worst : std::abs(sum);
        }
        for (int other = 0; other <= j; ++other) {
            T sum = other == j ? T(-1.0) : T{};
            for (int i = 0; i < n; ++i) sum += conjugate(found.z.at(i, other)) * found.z.at(i, j);
            worst = std::abs(sum) <= worst ? worst : std::abs(sum);
        }
        EXPECT_EQ(found.failed[k], found.failed[0]); // 0, or not among the arguments
    }
    EXPECT_LE(worst, slack * (n + 10) * eps);
}

/// One matrix through all drivers: full with a band, and as a band; by QL, by bisection with a tolerance, and in part.
TYPED_TEST(SymmetricEigen, DriversAgree) {
    using T = TypeParam;
    for (const char uplo : {'U', 'L'})
        for (const int n : {0, 1, 2, 3, 29})
            for (const int kd : {0, 1, 2, 7, n + 1})
                for (const double size : {1.0, 1e-300, 1e300}) {
                    if (size != 1.0 && kd != 2) continue;
                    SCOPED_TRACE(testing::Message() << uplo << n << " kd " << kd << " size " << size);
                    Hermitian<T> a(uplo, n, 7);
                    LapackMatrix<T> ab(kd + 1, n, 2);
                    for (int j = 0; j < n; ++j)
                        for (int i = 0; i < n; ++i) {
                            if (std::abs(i - j) > kd) a.full.at(i, j) = T{};
                            const bool stored = uplo == 'U' ? i <= j : i >= j;
                            if (!stored) continue;
                            const T value =
                                i == j ? scalar<T>(std::real(a.full.at(i, i)), std::nan("")) : a.full.at(i, j);
                            a.stored.at(i, j) = size * value;
                            if (std::abs(i - j) <= kd) ab.at(uplo == 'U' ? kd + i - j : i - j, j) = size * value;
                        }
                    const auto solve = [&](const char* options, double vl, double vu, int il, int iu, double abstol,
                                           bool band) {
                        Found<T> found(n);
                        LapackMatrix<T> copy = a.stored, q(n, n, 1);
                        const double low = vl * size, high = vu * size, tolerance = abstol * size;
                        std::vector<T> work(static_cast<size_t>(40 * n + 1));
                        std::vector<double> reals(static_cast<size_t>(7 * n + 1));
                        std::vector<int> integers(static_cast<size_t>(5 * n + 1));
                        const int lwork = static_cast<int>(work.size());
                        const char *const jobz = options, *const range = options + 1;
                        const auto call = [&](auto* full, auto* banded, auto... more) {
                            if (band)
                                banded(jobz, range, &uplo, &n, &kd, ab.data(), &ab.lda, q.data(), &q.lda, &low, &high,
                                       &il, &iu, &tolerance, &found.m, found.w.data(), found.z.data(), &found.z.lda,
                                       work.data(), more..., integers.data(), found.failed.data(), &found.info, 1, 1,
                                       1);
                            else
                                full(jobz, range, &uplo, &n, copy.data(), &copy.lda, &low, &high, &il, &iu, &tolerance,
                                     &found.m, found.w.data(), found.z.data(), &found.z.lda, work.data(), &lwork,
                                     more..., integers.data(), found.failed.data(), &found.info, 1, 1, 1);
                        };
                        if constexpr (is_complex<T>) call(zheevx, zhbevx, reals.data());
                        else call(dsyevx, dsbevx);
                        EXPECT_EQ(found.info, 0);
                        for (double& value : found.w) value /= size;
                        return found;
                    };
                    const Found<T> all = solve("VA", 0.0, 0.0, 0, 0, 0.0, false);
                    ASSERT_EQ(all.m, n);
                    expect_pairs(a.full, all, 20.0);
                    const int il = n / 2, iu = n - 1;
                    const bool some = n > 3;
                    for (const bool band : {false, true}) {
                        for (const Found<T>& found :
                             {solve("va", 0.0, 0.0, 0, 0, 0.0, band), solve("Va", 0.0, 0.0, 0, 0, 1e-15, band),
                              solve("NA", 0.0, 0.0, 0, 0, 0.0, band)}) {
                            ASSERT_EQ(found.m, n);
                            for (size_t i = 0; i < static_cast<size_t>(n); ++i)
                                EXPECT_NEAR(found.w[i], all.w[i], 20.0 * (n + 10) * eps);
                            if (found.failed[0] == 0) expect_pairs(a.full, found, 20.0);
                        }
                        if (!some) continue;
                        const Found<T> part = solve("VI", 0.0, 0.0, il, iu, 0.0, band);
                        ASSERT_EQ(part.m, iu - il + 1);
                        expect_pairs(a.full, part, 20.0);
                        EXPECT_NEAR(part.w[0], all.w[static_cast<size_t>(il) - 1], 20.0 * (n + 10) * eps);
                        const double low = all.w[1] - 1e-12, high = all.w[static_cast<size_t>(n) - 2] + 1e-12;
                        const Found<T> between = solve("VV", low, high, 0, 0, 0.0, band);
                        EXPECT_GE(between.m, n - 2);
                        expect_pairs(a.full, between, 20.0);
                    }
                }
}

/// Full matrices of a given spectrum through representations: pairs, supports as the letters tell, queries.
TYPED_TEST(SymmetricEigen, Representations) {
    using T = TypeParam;
    const double unused = 0.0;
    for (const int n : {1, 2, 40}) {
        std::vector<double> first;
        for (const char* options : {"VA", "VI", "va", "NA", "VP"}) { // P: the second half, by number
            SCOPED_TRACE(testing::Message() << options << n);
            Hermitian<T> a('L', n, 6);
            Found<T> found(n);
            const int il = options[1] == 'P' ? n / 2 + 1 : 1, iu = n, liwork = 10 * n, lwork = 40 * n, ask = -1;
            const char range = options[1] == 'P' ? 'I' : options[1];
            std::vector<int> support(2 * static_cast<size_t>(n) + 1, -7), integers(static_cast<size_t>(liwork));
            std::vector<T> work(static_cast<size_t>(lwork));
            std::vector<double> reals(static_cast<size_t>(lwork));
            const auto solve = [&](const int* length) {
                const auto call = [&](auto* routine, auto... more) {
                    routine(options, &range, "L", &n, a.stored.data(), &a.stored.lda, &unused, &unused, &il, &iu,
                            &unused, &found.m, found.w.data(), found.z.data(), &found.z.lda, support.data(),
                            work.data(), length, more..., integers.data(), &liwork, &found.info, 1, 1, 1);
                };
                if constexpr (is_complex<T>) call(zheevr, reals.data(), length);
                else call(dsyevr);
            };
            solve(&ask);
            EXPECT_EQ(found.info, 0);
            EXPECT_EQ(found.m, -1);
            EXPECT_EQ(integers[0], 10 * n);
            EXPECT_EQ(std::real(work[0]), std::max(is_complex<T> ? 2 : 26, 35) * n);
            solve(&lwork);
            EXPECT_EQ(found.info, 0);
            EXPECT_EQ(found.m, iu - il + 1);
            const bool told = options[0] == 'V' && (options[1] != 'P' || il == 1);
            for (int i = 0; i < 2 * n; ++i) {
                const int bound = support[static_cast<size_t>(i)];
                EXPECT_TRUE(told ? bound >= 1 && bound <= n : bound == -7) << bound;
            }
            EXPECT_EQ(support.back(), -7);
            if (options[0] != 'N') expect_pairs(a.full, found, 20.0);
            if (first.empty()) first = found.w;
            for (int i = 0; i < found.m; ++i)
                EXPECT_NEAR(found.w[static_cast<size_t>(i)], first[static_cast<size_t>(il - 1 + i)], 50.0 * n * eps);
        }
    }
}

/// QL and divide and conquer, which multiplies by what has made the band tridiagonal, on any number of threads.
TYPED_TEST(SymmetricEigen, BandDriversAgree) {
    using T = TypeParam;
    const int n = 150, kd = 6, lwork = 2 * n * n + 5 * n + 1, liwork = 5 * n + 3;
    Hermitian<T> a('U', n, 4);
    LapackMatrix<T> ab(kd + 1, n, 1);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            if (std::abs(i - j) > kd) a.full.at(i, j) = T{};
            else if (i <= j) ab.at(kd + i - j, j) = a.full.at(i, j);
        }
    std::vector<T> work(static_cast<size_t>(lwork));
    std::vector<double> reals(work.size()), first;
    std::vector<int> integers(static_cast<size_t>(liwork));
    for (const int threads : {0, 1, 4}) {
        const Team team(std::max(threads, 1));
        Found<T> found(n);
        found.m = n;
        const auto solve = [&](auto* routine, auto... more) {
            routine("V", "U", &n, &kd, ab.data(), &ab.lda, found.w.data(), found.z.data(), &found.z.lda, work.data(),
                    more..., &found.info, 1, 1);
        };
        const bool divide = threads > 0;
        if constexpr (is_complex<T>)
            if (divide) solve(zhbevd, &lwork, reals.data(), &lwork, integers.data(), &liwork);
            else solve(zhbev, reals.data());
        else if (divide) solve(dsbevd, &lwork, integers.data(), &liwork);
        else solve(dsbev);
        EXPECT_EQ(found.info, 0);
        expect_pairs(a.full, found, 20.0);
        if (first.empty()) first = found.w;
        for (size_t i = 0; i < static_cast<size_t>(n); ++i) EXPECT_NEAR(found.w[i], first[i], 20.0 * (n + 10) * eps);
    }
}

/// Every element of the triangle belongs to one block, and the threads' areas differ by little.
TEST(TrailingUpdate, BlocksCoverTheTriangleInEqualShares) {
    for (std::int64_t threads = 1; threads < 9; ++threads)
        for (std::int64_t m = 0; m < 200; ++m) {
            std::vector<int> covered(static_cast<size_t>(m));
            std::int64_t least = m * m, most = 0;
            for (std::int64_t t = 0; t < threads; ++t) {
                const auto [low, high] = nxl::trailing_share(m, threads, t);
                std::int64_t area = 0;
                for (const auto [offset, width] : {low, high}) {
                    for (std::int64_t c = offset; c < offset + width; ++c) ++covered[static_cast<size_t>(c)];
                    area += width * offset + width * (width + 1) / 2;
                }
                least = std::min(least, area);
                most = std::max(most, area);
                EXPECT_EQ(low.offset % 2 + low.width % 2 + high.offset % 2, 0);
            }
            EXPECT_TRUE(std::all_of(covered.begin(), covered.end(), [](int count) { return count == 1; }));
            EXPECT_LE(most - least, 2 * (2 * threads + 1) * (m + 1)); // what is beyond a multiple, and the diagonal
        }
}

} // namespace
