// Symmetric and Hermitian eigenproblems: the reduction to tridiagonal form.
#include "lapack/kernel/source/eigen/trailing_update.hpp"
#include "nxl.h"
#include "tests/support/lapack.hpp"

namespace {

using namespace nxl_test;
using std::size_t;

/// A Hermitian matrix, of which triangle `uplo` alone is there, and the imaginary parts of the diagonal are NaN.
template <class T> struct Hermitian {
    LapackMatrix<T> full, stored;

    Hermitian(char uplo, int n, unsigned seed)
        : full(matrix_of<T>(MatrixKind::random, n, n, 0, seed)),
          stored(n, n, 3) {
        for (int j = 0; j < n; ++j)
            for (int i = 0; i <= j; ++i) {
                if (i == j) full.at(i, i) = std::real(full.at(i, i));
                full.at(j, i) = conjugate(full.at(i, j));
                const int row = uplo == 'U' ? i : j, column = uplo == 'U' ? j : i;
                stored.at(row, column) = full.at(row, column);
                if (i == j) stored.at(i, i) = scalar<T>(std::real(full.at(i, i)), std::nan(""));
            }
    }
};

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
            for (const int n : {0, 1, 2, 3, 31, 32, 33, 34, 67, 150})
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
