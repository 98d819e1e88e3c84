// Least squares by singular values: ranks, solutions of least norm, and what is left of the right-hand sides.
#include "tests/support/singular.hpp"

namespace nxl_test {
namespace {

template <class T> struct Solved {
    LapackMatrix<T> a, b;
    std::vector<double> s;
    int rank = -1, info = -99;
};

template <class T> class SvdLeastSquares : public ::testing::Test {
  protected:
    static constexpr int length = 40000;
    std::vector<T> work_ = std::vector<T>(length);
    std::vector<double> reals_ = std::vector<double>(length);
    std::vector<int> integers_ = std::vector<int>(length);

    template <class Gelss> Solved<T> by_gelss(Gelss gelss, Solved<T> p, double rcond) {
        if constexpr (is_complex<T>)
            gelss(&p.a.rows, &p.a.cols, &p.b.cols, p.a.data(), &p.a.lda, p.b.data(), &p.b.lda, p.s.data(), &rcond,
                  &p.rank, work_.data(), &length, reals_.data(), &p.info);
        else
            gelss(&p.a.rows, &p.a.cols, &p.b.cols, p.a.data(), &p.a.lda, p.b.data(), &p.b.lda, p.s.data(), &rcond,
                  &p.rank, work_.data(), &length, &p.info);
        return p;
    }
    Solved<T> by_gelsd(Solved<T> p, double rcond, int lwork = length) {
        if constexpr (is_complex<T>)
            zgelsd(&p.a.rows, &p.a.cols, &p.b.cols, p.a.data(), &p.a.lda, p.b.data(), &p.b.lda, p.s.data(), &rcond,
                   &p.rank, work_.data(), &lwork, reals_.data(), integers_.data(), &p.info);
        else
            dgelsd(&p.a.rows, &p.a.cols, &p.b.cols, p.a.data(), &p.a.lda, p.b.data(), &p.b.lda, p.s.data(), &rcond,
                   &p.rank, work_.data(), &lwork, integers_.data(), &p.info);
        return p;
    }
    static Solved<T> problem(Given given, int m, int n, int nrhs) {
        return {given_matrix<T>(given, m, n), matrix_of<T>(MatrixKind::random, std::max(m, n), nrhs, 2, 5),
                std::vector<double>(static_cast<std::size_t>(std::min(m, n)) + 1, 7.0)};
    }
    static void expect_same(const Solved<T>& ours, const Solved<T>& theirs, int m, int n) {
        EXPECT_EQ(ours.info, 0);
        EXPECT_EQ(ours.rank, theirs.rank);
        const bool residual_below = m > n && ours.rank == n;
        double size = 0.0;
        for (int j = 0; j < ours.b.cols; ++j)
            for (int i = 0; i < n; ++i) size = std::max(size, std::abs(theirs.b.at(i, j)));
        for (int j = 0; j < ours.b.cols; ++j) {
            double below = 0.0, expected = 0.0;
            for (int i = 0; i < (residual_below ? m : n); ++i)
                if (i < n) EXPECT_LE(std::abs(ours.b.at(i, j) - theirs.b.at(i, j)), 1e-10 * size) << i;
                else below += std::norm(ours.b.at(i, j)), expected += std::norm(theirs.b.at(i, j));
            EXPECT_NEAR(below, expected, 1e-10 * std::max(expected, size * size * 1e-12));
        }
        for (std::size_t i = 0; i < ours.s.size(); ++i)
            EXPECT_NEAR(ours.s[i], theirs.s[i], 200 * eps * theirs.s[0]) << i;
        EXPECT_TRUE(ours.b.slack_untouched());
    }
};
TYPED_TEST_SUITE(SvdLeastSquares, Scalars);

TYPED_TEST(SvdLeastSquares, AsByTheReference) {
    using T = TypeParam;
    const auto reference_gelss = by_reference<T>(Singular<T>::gelss, "gelss");
    for (const Given given : {Given::random, Given::short_rank, Given::zero, Given::near_singular, Given::unit})
        for (const auto [m, n] : {std::array{1, 1}, {40, 12}, {12, 40}, {33, 30}, {30, 33}, {1, 9}, {9, 1}, {0, 4}})
            for (const int nrhs : {0, 1, 7}) {
                SCOPED_TRACE(::testing::Message() << m << " x " << n << ", " << nrhs << " kind " << int(given));
                const Solved<T> p = TestFixture::problem(given, m, n, nrhs);
                const double rcond = 1e-8;
                // The reference writes one column even where there is none.
                const Solved<T> theirs =
                    this->by_gelss(reference_gelss, TestFixture::problem(given, m, n, std::max(nrhs, 1)), rcond);
                const Solved<T> ours = this->by_gelss(Singular<T>::gelss, p, rcond);
                TestFixture::expect_same(ours, theirs, m, n);
                TestFixture::expect_same(this->by_gelsd(p, rcond), theirs, m, n);
                // The first rows of A are the right singular vectors: A^H A v = s^2 v.
                const int order = std::min(m, n);
                for (int k = 0; k < order; ++k)
                    for (int l = 0; l <= k; ++l) {
                        T sum = k == l ? T{-1.0} : T{};
                        for (int j = 0; j < n; ++j) sum += ours.a.at(k, j) * conjugate(ours.a.at(l, j));
                        EXPECT_LE(std::abs(sum), given == Given::zero ? 1.0 : 40 * n * eps);
                    }
            }
}

TYPED_TEST(SvdLeastSquares, RankTurnsAtRcond) {
    using T = TypeParam;
    Solved<T> p = TestFixture::problem(Given::unit, 5, 3, 1);
    p.a.at(1, 1) = 0.5;
    p.a.at(2, 2) = 0.125;
    struct Expected {
        double rcond;
        int gelss, gelsd;
    };
    for (const auto [rcond, gelss, gelsd] :
         {Expected{0.124, 3, 3}, {0.126, 2, 2}, {0.6, 1, 1}, {0.0, 3, 3}, {-1.0, 3, 3}, {1.0, 0, 3}}) {
        const Solved<T> with = this->by_gelss(Singular<T>::gelss, p, rcond), without = this->by_gelsd(p, rcond);
        EXPECT_EQ(with.rank, gelss) << rcond;
        EXPECT_EQ(without.rank, gelsd) << rcond;
        for (int i = 0; i < 3; ++i) {
            const T x = p.b.at(i, 0) / p.a.at(i, i);
            EXPECT_LE(std::abs(with.b.at(i, 0) - (i < gelss ? x : T{})), 1e-14);
            EXPECT_LE(std::abs(without.b.at(i, 0) - (i < gelsd ? x : T{})), 1e-14);
        }
    }
}

TYPED_TEST(SvdLeastSquares, NearTheLimitsOfTheRangeAndBeyond) {
    using T = TypeParam;
    const Solved<T> p = TestFixture::problem(Given::random, 30, 20, 2);
    const Solved<T> plain = this->by_gelsd(p, 1e-8);
    for (const double factor : {0x1p-1010, 0x1p1010}) {
        Solved<T> scaled = p;
        for (int j = 0; j < 20; ++j)
            for (int i = 0; i < 30; ++i) scaled.a.at(i, j) *= factor;
        for (int j = 0; j < 2; ++j)
            for (int i = 0; i < 30; ++i) scaled.b.at(i, j) *= factor;
        for (const Solved<T>& x : {this->by_gelsd(scaled, 1e-8), this->by_gelss(Singular<T>::gelss, scaled, 1e-8)}) {
            EXPECT_EQ(x.rank, 20);
            for (int i = 0; i < 20; ++i) {
                EXPECT_LE(std::abs(x.b.at(i, 1) - plain.b.at(i, 1)), 1e-11);
                EXPECT_NEAR(x.s[static_cast<std::size_t>(i)] / factor, plain.s[static_cast<std::size_t>(i)], 1e-11);
            }
        }
    }
    Solved<T> broken = p;
    broken.a.at(3, 3) = std::nan("");
    EXPECT_GT(this->by_gelsd(broken, 1e-8).info, 0);
    EXPECT_GT(this->by_gelss(Singular<T>::gelss, broken, 1e-8).info, 0);
}

TYPED_TEST(SvdLeastSquares, AQueryTellsEverySize) {
    Solved<TypeParam> p = TestFixture::problem(Given::random, 200, 120, 3);
    EXPECT_EQ(this->by_gelsd(p, 0.0, -1).info, 0);
    EXPECT_EQ(this->integers_[0], 3 * 120 * 3 + 11 * 120); // log2(120 / 26) is 2.2
    const double least = is_complex<TypeParam> ? 2 * 120 + 120 * 3 : 62 * 120 + 8 * 120 * 3 + 120 * 3 + 676;
    EXPECT_GE(std::real(this->work_[0]), least);
    if (is_complex<TypeParam>) EXPECT_EQ(this->reals_[0], 60 * 120 + 8 * 120 * 3 + 75 * 3 + std::max(676, 120 * 4 + 6));
    EXPECT_EQ(this->by_gelsd(p, 0.0, static_cast<int>(least)).rank, 120);
}

} // namespace
} // namespace nxl_test
