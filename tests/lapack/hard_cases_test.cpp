// Matrices on which roundings and ranges decide: singular and semidefinite ones of integers, which fail where the
// published routines find them to fail, and entries near the ends of the range. CTest runs this program for each
// processor class and vector width.
#include "nxl.h"
#include "tests/support/lapack.hpp"
#include "tests/support/scalars.hpp"

namespace {

using namespace nxl_test;

template <class T> class HardCases : public ::testing::Test {
  protected:
    using R = Lapack<T>;
    Generator random_{7};

    T integer(int largest) { return random_integer<T>(random_, largest); }
    int below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    template <class Value> static LapackMatrix<T> matrix(int m, int n, const Value& value) {
        LapackMatrix<T> a(m, n, 2);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < m; ++i) a.at(i, j) = value(i, j);
        return a;
    }
};
TYPED_TEST_SUITE(HardCases, Scalars);

TYPED_TEST(HardCases, LuOfSmallIntegersIsTheReferences) {
    using T = TypeParam;
    auto* const oracle = reference_lu<T>();
    int singular = 0;
    for (const int n : {2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 23, 32}) {
        if (n > 16 && sizeof(T) > sizeof(double)) continue; // larger complex ones go by fused operations
        for (int trial = 0; trial < 60; ++trial) {
            auto a = this->matrix(n, n, [&](int, int) { return this->integer(9); });
            const int c = this->below(n);
            const T f = this->below(5) - 2.0, g = this->below(5) - 2.0; // times columns beside c, or of one if n is 2
            for (int i = 0; i < n; ++i)
                a.at(i, c) = f * a.at(i, (c + 1) % n) + (n > 2 ? g * a.at(i, (c + 2) % n) : T{});
            auto want = a;
            std::vector<int> pivots(static_cast<std::size_t>(n));
            int info = -99;
            oracle(&n, &n, want.data(), &a.lda, pivots.data(), &info);
            const auto got = factored(a);
            ASSERT_EQ(got.info, info) << n;
            ASSERT_EQ(got.ipiv, pivots) << n;
            for (int j = 0; j < n; ++j)
                for (int i = 0; i < n; ++i) ASSERT_EQ(got.factors.at(i, j), want.at(i, j)) << n;
            singular += info > 0;
        }
    }
    EXPECT_GT(singular, 60);
}

TYPED_TEST(HardCases, SemidefiniteIntegersFailWhereTheReferenceFails) {
    using T = TypeParam;
    auto* const oracle =
        reference<void(const char*, const int*, T*, const int*, int*, std::size_t)>(TestFixture::R::reference_cholesky);
    for (const char uplo : {'U', 'L'})
        for (int n = 2; n <= 16; ++n)
            for (int trial = 0; trial < 60; ++trial) {
                const int rank = 1 + this->below(n - 1);
                const auto b = this->matrix(rank, n, [&](int, int) { return this->integer(3); });
                auto a = this->matrix(n, n, [&](int i, int j) {
                    T sum{};
                    for (int k = 0; k < rank; ++k) sum += conjugate(b.at(k, i)) * b.at(k, j);
                    return sum;
                });
                auto want = a;
                int info = -99, got = -99;
                oracle(&uplo, &n, want.data(), &a.lda, &info, 1);
                TestFixture::R::potrf(&uplo, &n, a.data(), &a.lda, &got, 1);
                ASSERT_EQ(got, info) << uplo << n << " rank " << rank;
            }
}

/// Exponents of 2, by which one row of a problem and all others are scaled. Its solution stays what it was.
struct Scales {
    int one, others;
    int of(bool is_one) const { return is_one ? one : others; }
};

template <class T> T times(T value, int exponent) {
    return scalar<T>(std::ldexp(std::real(value), exponent), std::ldexp(std::imag(value), exponent));
}

/// Integers with a weighty diagonal, in both triangles or one, and b = a x; nothing is rounded.
template <class T> struct Problem {
    LapackMatrix<T> a, x, b;

    Problem(int n, int nrhs, char part, T diagonal) : a(n, n, 1), x(n, nrhs, 2), b(n, nrhs, 2) {
        Generator random(11);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) {
                const bool inside = part == 'F' || (part == 'U' ? i < j : i > j);
                a.at(i, j) = i == j ? diagonal : inside ? random_integer<T>(random, 1) : T{};
            }
        for (int k = 0; k < nrhs; ++k)
            for (int j = 0; j < n; ++j) x.at(j, k) = random_integer<T>(random, 3) / 64.0; // b stays below the diagonal
    }
    void multiply() {
        for (int k = 0; k < b.cols; ++k)
            for (int i = 0; i < b.rows; ++i) {
                b.at(i, k) = T{};
                for (int j = 0; j < a.cols; ++j) b.at(i, k) += a.at(i, j) * x.at(j, k);
            }
    }
    void scale_rows(int one, Scales scales) {
        for (int i = 0; i < a.rows; ++i) {
            for (int j = 0; j < a.cols; ++j) a.at(i, j) = times(a.at(i, j), scales.of(i == one));
            for (int k = 0; k < b.cols; ++k) b.at(i, k) = times(b.at(i, k), scales.of(i == one));
        }
    }
};

/// Fails for NaN too.
template <class T> bool is_close(const LapackMatrix<T>& got, const LapackMatrix<T>& want) {
    for (int j = 0; j < got.cols; ++j)
        for (int i = 0; i < got.rows; ++i)
            if (!(abs1(got.at(i, j) - want.at(i, j)) <= 1e-5)) return false; // subnormal numbers have few digits
    return true;
}

// Diagonals weigh 32, which the larger scales bring to the last power of two, in both parts.
TYPED_TEST(HardCases, TriangularProblemsAtTheEndsOfTheRange) {
    using T = TypeParam;
    using R = typename TestFixture::R;
    const T one = 1.0;
    const int single = 1;
    for (const Scales scales : {Scales{-1044, -1044}, Scales{1018, 1018}, Scales{-1044, 0}, Scales{1018, 0}})
        for (const char uplo : {'U', 'L'})
            for (const int n : {5, 70, 200}) {
                const int nrhs = 5, first = uplo == 'U' ? 0 : n - 1; // the first row of the inverse, from its corner
                Problem<T> problem(n, nrhs, uplo, scalar<T>(32.0, 32.0));
                problem.multiply();
                LapackMatrix<T> inverse = problem.a, scaled(n, n, 1);
                for (const int row : {n / 3, first}) {
                    Problem<T> p = problem;
                    p.scale_rows(row, scales);
                    LapackMatrix<T> x = p.b;
                    R::trsm("L", &uplo, "N", "N", &n, &nrhs, &one, p.a.data(), &p.a.lda, x.data(), &x.lda);
                    EXPECT_TRUE(is_close(x, p.x)) << "trsm " << uplo << n << ' ' << scales.one << ' ' << row;
                    x = p.b;
                    int info = -99;
                    R::trtrs(&uplo, "N", "N", &n, &nrhs, p.a.data(), &p.a.lda, x.data(), &x.lda, &info, 1, 1, 1);
                    EXPECT_TRUE(info == 0 && is_close(x, p.x)) << "trtrs " << uplo << n << ' ' << scales.one;
                    x = p.b;
                    for (int k = 0; k < nrhs; ++k)
                        R::trsv(&uplo, "N", "N", &n, p.a.data(), &p.a.lda, &x.at(0, k), &single);
                    EXPECT_TRUE(is_close(x, p.x)) << "trsv " << uplo << n << ' ' << scales.one;
                    scaled = p.a;
                }
                int info = -99;
                if (scales.others != 0) continue;
                R::trtri(&uplo, "N", &n, inverse.data(), &inverse.lda, &info, 1, 1);
                R::trtri(&uplo, "N", &n, scaled.data(), &scaled.lda, &info, 1, 1);
                scaled.at(first, first) = inverse.at(first, first); // beyond the range, alone in its column
                EXPECT_TRUE(is_close(scaled, inverse)) << "trtri " << uplo << n << ' ' << scales.one;
            }
}

TYPED_TEST(HardCases, FactorisationsAtTheEndsOfTheRange) {
    using T = TypeParam;
    using R = typename TestFixture::R;
    for (const int n : {5, 20, 100})
        for (const Scales scales : {Scales{-1044, -1044}, Scales{1018, 1018}}) {
            Problem<T> p(n, 3, 'F', scalar<T>(32.0, 32.0));
            p.multiply();
            p.scale_rows(0, scales);
            const auto lu = factored(p.a);
            EXPECT_EQ(lu.info, 0);
            int info = -99;
            R::getrs("N", &n, &p.b.cols, lu.factors.elements.data(), &p.a.lda, lu.ipiv.data(), p.b.data(), &p.b.lda,
                     &info, 1);
            EXPECT_TRUE(is_close(p.b, p.x)) << "getrs " << n << ' ' << scales.one;
        }
    for (const char uplo : {'U', 'L'})
        for (const int n : {5, 20, 100})
            for (const Scales scales : {Scales{-522, -522}, Scales{508, 508}, Scales{-534, 508}}) { // of D A D
                Problem<T> p(n, 3, 'L', T(128.0));
                for (int j = 0; j < n; ++j)
                    for (int i = 0; i < j; ++i) p.a.at(i, j) = conjugate(p.a.at(j, i));
                p.multiply();
                const int one = 0;
                p.scale_rows(one, scales);
                for (int j = 0; j < n; ++j)
                    for (int i = 0; i < n; ++i) p.a.at(i, j) = times(p.a.at(i, j), scales.of(j == one));
                int info = -99;
                R::potrf(&uplo, &n, p.a.data(), &p.a.lda, &info, 1);
                ASSERT_EQ(info, 0) << uplo << n << ' ' << scales.one;
                R::potrs(&uplo, &n, &p.b.cols, p.a.data(), &p.a.lda, p.b.data(), &p.b.lda, &info, 1);
                for (int k = 0; k < p.b.cols; ++k)
                    for (int i = 0; i < n; ++i) p.b.at(i, k) = times(p.b.at(i, k), scales.of(i == one));
                EXPECT_TRUE(is_close(p.b, p.x)) << "potrs " << uplo << n << ' ' << scales.one;
            }
}

} // namespace
