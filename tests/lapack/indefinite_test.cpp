// Symmetric indefinite and Hermitian systems through the entries: factors, solutions, inverses, conditions, refinement.
// CTest runs this program on two of the kernel targets.
#include "tests/support/captured.hpp"
#include "tests/support/host_allocator.hpp"
#include "tests/support/lapack.hpp"
#include <array>

namespace {

using namespace nxl_test;

template <class T> using Trf = void(const char*, const int*, T*, const int*, int*, T*, const int*, int*, std::size_t);

struct RealSymmetric {
    using T = double;
    static constexpr bool hermitian = true;
    static constexpr auto trf = dsytrf;
    static constexpr auto trs = dsytrs;
    static constexpr auto tri = dsytri;
    static constexpr auto con = dsycon;
    static constexpr auto rfs = dsyrfs;
    static constexpr const char* reference_trf = "dsytrf_";
};
struct ComplexSymmetric {
    using T = zcomplex;
    static constexpr bool hermitian = false;
    static constexpr auto trf = zsytrf;
    static constexpr auto trs = zsytrs;
    static constexpr auto tri = zsytri;
    static constexpr auto con = zsycon;
    static constexpr auto rfs = zsyrfs;
    static constexpr const char* reference_trf = "zsytrf_";
};
struct Hermitian {
    using T = zcomplex;
    static constexpr bool hermitian = true;
    static constexpr auto trf = zhetrf;
    static constexpr auto trs = zhetrs;
    static constexpr auto tri = zhetri;
    static constexpr auto con = zhecon;
    static constexpr auto rfs = zherfs;
    static constexpr const char* reference_trf = "zhetrf_";
};

/// What a matrix is like. hollow: zeros on the diagonal, so that all pivots are blocks of two. integers: small ones,
/// whose products are exact.
enum class Kind { random, hollow, graded, near_singular, hilbert, huge, tiny, integers };
constexpr std::array kinds = {Kind::random,  Kind::hollow, Kind::graded, Kind::near_singular,
                              Kind::hilbert, Kind::huge,   Kind::tiny};

template <class F> class Indefinite : public ::testing::Test {
  protected:
    using T = typename F::T;
    using Vector = std::vector<T>;
    static std::size_t index(int i) { return static_cast<std::size_t>(i); }
    static T mirrored(T x) { return F::hermitian ? conjugate(x) : x; }

    /// All of the matrix; triangle_of leaves NaN on the other side of the diagonal.
    static LapackMatrix<T> matrix(Kind kind, int n) {
        const MatrixKind general = kind == Kind::graded          ? MatrixKind::graded
                                   : kind == Kind::near_singular ? MatrixKind::near_singular
                                   : kind == Kind::hilbert       ? MatrixKind::hilbert
                                                                 : MatrixKind::random;
        LapackMatrix<T> a = matrix_of<T>(general, n, n, 3, static_cast<unsigned>(n) + 1);
        Generator generator(7);
        for (int j = 0; j < n; ++j)
            for (int i = j; i < n; ++i) {
                T v = a.at(i, j);
                if (kind == Kind::integers) v = random_integer<T>(generator, 9);
                if (kind == Kind::huge) v *= 1e300;
                if (kind == Kind::tiny) v *= 1e-300;
                if (kind == Kind::hollow && i == j) v = T{};
                if (F::hermitian && i == j) v = std::real(v);
                a.at(i, j) = v;
                a.at(j, i) = mirrored(v);
            }
        return a;
    }
    static bool stored(char uplo, int i, int j) { return uplo == 'U' || uplo == 'u' ? i <= j : i >= j; }
    static LapackMatrix<T> triangle_of(char uplo, const LapackMatrix<T>& a) {
        LapackMatrix<T> result(a.rows, a.cols, a.lda - std::max(1, a.rows));
        for (int j = 0; j < a.cols; ++j)
            for (int i = 0; i < a.rows; ++i)
                if (stored(uplo, i, j)) result.at(i, j) = a.at(i, j);
        if (is_complex<T> && F::hermitian)
            for (int i = 0; i < a.rows; ++i) result.at(i, i) = scalar<T>(std::real(a.at(i, i)), 5.0); // not read
        return result;
    }
    static void expect_other_triangle_untouched(char uplo, const LapackMatrix<T>& a) {
        EXPECT_TRUE(a.slack_untouched());
        const T nan = LapackMatrix<T>(0, 0, 0).elements[0];
        for (int j = 0; j < a.cols; ++j)
            for (int i = 0; i < a.rows; ++i)
                if (!stored(uplo, i, j)) ASSERT_EQ(std::memcmp(&a.at(i, j), &nan, sizeof nan), 0) << i << ' ' << j;
    }

    static Factored<T> factors(char uplo, const LapackMatrix<T>& a, int lwork, bool ours = true) {
        Factored<T> f{triangle_of(uplo, a), std::vector<int>(index(a.rows), -99), -99};
        Vector work(index(std::max(lwork, 1)));
        const auto call = [&](auto* routine) {
            routine(&uplo, &a.rows, f.factors.data(), &a.lda, f.ipiv.data(), work.data(), &lwork, &f.info, 1);
        };
        if (ours) call(F::trf);
        else call(reference<Trf<T>>(F::reference_trf));
        return f;
    }

    static Vector product(const LapackMatrix<T>& a, const Vector& x) {
        Vector y(x.size());
        for (int j = 0; j < a.cols; ++j)
            for (int i = 0; i < a.rows; ++i) y[index(i)] += a.at(i, j) * x[index(j)];
        return y;
    }
    /// A x from the factors, pivot by pivot, as the format is published.
    static Vector product_of_factors(char uplo, const Factored<T>& f, Vector x) {
        const int n = f.factors.rows;
        const bool upper = uplo == 'U';
        const auto at = [&](int step) { return upper ? n - 1 - step : step; };
        std::vector<std::array<int, 2>> pivots; // step, size
        for (int s = 0; s < n; s += pivots.back()[1]) pivots.push_back({s, f.ipiv[index(at(s))] < 0 ? 2 : 1});
        const auto interchange = [&](const auto& p) {
            std::swap(x[index(at(p[0] + p[1] - 1))], x.at(index(std::abs(f.ipiv[index(at(p[0]))]) - 1)));
        };
        for (const auto& p : pivots) {
            interchange(p);
            for (int s = p[0]; s < p[0] + p[1]; ++s)
                for (int r = p[0] + p[1]; r < n; ++r)
                    x[index(at(s))] += mirrored(f.factors.at(at(r), at(s))) * x[index(at(r))];
        }
        for (const auto& p : pivots) {
            const int j = at(p[0]), k = at(p[0] + p[1] - 1);
            const T first = x[index(j)], second = x[index(k)], off = f.factors.at(k, j);
            x[index(j)] = f.factors.at(j, j) * first + (p[1] == 2 ? mirrored(off) * second : T{});
            if (p[1] == 2) x[index(k)] = off * first + f.factors.at(k, k) * second;
        }
        for (auto p = pivots.rbegin(); p != pivots.rend(); ++p) {
            for (int r = (*p)[0] + (*p)[1]; r < n; ++r)
                for (int s = (*p)[0]; s < (*p)[0] + (*p)[1]; ++s)
                    x[index(at(r))] += f.factors.at(at(r), at(s)) * x[index(at(s))];
            interchange(*p);
        }
        return x;
    }
    static double largest(const Vector& x) {
        double result = 0.0;
        for (const T& v : x)
            if (!(std::abs(v) <= result)) result = std::abs(v);
        return result;
    }
    static double norm(const LapackMatrix<T>& a) { // largest column sum
        double result = 0.0;
        for (int j = 0; j < a.cols; ++j) {
            double sum = 0.0;
            for (int i = 0; i < a.rows; ++i) sum += std::abs(a.at(i, j));
            result = std::max(result, sum);
        }
        return result;
    }
    static Vector difference(Vector x, const Vector& y) {
        for (std::size_t i = 0; i < x.size(); ++i) x[i] -= y[i];
        return x;
    }
    /// Each call on a matrix of order n with its factors, for both triangles.
    template <class Body> static void with_factors(Kind kind, int n, const Body& body) {
        const LapackMatrix<T> a = matrix(kind, n);
        for (const char uplo : {'U', 'L'}) {
            SCOPED_TRACE(testing::Message() << uplo << " n " << n << " kind " << static_cast<int>(kind));
            Factored<T> f = factors(uplo, a, 1);
            ASSERT_EQ(f.info, 0);
            body(uplo, a, f);
        }
    }
};
using Families = ::testing::Types<RealSymmetric, ComplexSymmetric, Hermitian>;
TYPED_TEST_SUITE(Indefinite, Families);

constexpr std::array sizes = {1, 2, 3, 31, 64, 65, 66, 140};

/// L D L^T is A, with any workspace, and pivots are the published ones.
TYPED_TEST(Indefinite, FactorsMultiplyToTheMatrix) {
    using This = TestFixture;
    for (const Kind kind : kinds)
        for (const int n : sizes)
            for (const char uplo : {'U', 'L'})
                for (const int lwork : {1, 64 * n}) {
                    if (kind == Kind::hollow && n == 1) continue;
                    SCOPED_TRACE(testing::Message() << uplo << " n " << n << " kind " << static_cast<int>(kind));
                    const auto a = This::matrix(kind, n);
                    const auto f = This::factors(uplo, a, lwork);
                    EXPECT_TRUE(f.info == 0 || kind == Kind::hilbert); // which is singular to rounding
                    This::expect_other_triangle_untouched(uplo, f.factors);
                    const auto x = random_values<typename TypeParam::T>(n, 3);
                    const auto ax = This::product(a, x);
                    const double error = This::largest(This::difference(This::product_of_factors(uplo, f, x), ax));
                    EXPECT_LE(error / This::norm(a), 8.0 * n * eps);
                    if (kind == Kind::random || kind == Kind::hollow)
                        EXPECT_EQ(f.ipiv, This::factors(uplo, a, 64 * n, false).ipiv);
                }
}

/// Columns of zeros, and nothing but zeros: the singular pivot is the reference's. A NaN comes out again.
TYPED_TEST(Indefinite, SingularMatricesAndNaN) {
    using T = typename TypeParam::T;
    for (const int n : {1, 4, 70, 140})
        for (const char uplo : {'U', 'L'}) {
            SCOPED_TRACE(testing::Message() << uplo << " n " << n);
            auto a = TestFixture::matrix(Kind::random, n);
            for (const int zero : {0, n / 2, n - 1})
                for (int i = 0; i < n; ++i) a.at(i, zero) = a.at(zero, i) = T{};
            auto f = TestFixture::factors(uplo, a, 64 * n);
            EXPECT_EQ(f.info, TestFixture::factors(uplo, a, 64 * n, false).info);
            const auto before = f.factors.elements;
            std::vector<T> work(2 * TestFixture::index(n));
            int info = -99;
            TypeParam::tri(&uplo, &n, f.factors.data(), &a.lda, f.ipiv.data(), work.data(), &info, 1);
            EXPECT_EQ(info, f.info);
            EXPECT_EQ(std::memcmp(before.data(), f.factors.data(), before.size() * sizeof(T)), 0);
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) a.at(i, j) = T{};
            EXPECT_EQ(TestFixture::factors(uplo, a, 1).info, uplo == 'U' ? n : 1);

            a = TestFixture::matrix(Kind::random, n);
            a.at(n / 2, n / 2) = scalar<T>(std::nan(""), 0.0);
            f = TestFixture::factors(uplo, a, 1);
            std::vector<T> x(TestFixture::index(n), T(1.0));
            const int one = 1;
            TypeParam::trs(&uplo, &n, &one, f.factors.data(), &a.lda, f.ipiv.data(), x.data(), &n, &info, 1);
            EXPECT_TRUE(std::isnan(TestFixture::largest(x)));
        }
}

TYPED_TEST(Indefinite, Solutions) {
    using T = typename TypeParam::T;
    for (const Kind kind : {Kind::random, Kind::hollow, Kind::huge})
        for (const int n : {2, 5, 64, 65, 130, 200})
            TestFixture::with_factors(kind, n, [&](char uplo, const auto& a, const auto& f) {
                const Team team(kind == Kind::random ? 3 : 1);
                for (const int nrhs : {1, 3, 40}) {
                    const LapackMatrix<T> b = matrix_of<T>(MatrixKind::random, n, nrhs);
                    LapackMatrix<T> x = b;
                    int info = -99;
                    TypeParam::trs(&uplo, &n, &nrhs, f.factors.elements.data(), &a.lda, f.ipiv.data(), x.data(), &x.lda,
                                   &info, 1);
                    EXPECT_EQ(info, 0);
                    EXPECT_TRUE(x.slack_untouched());
                    for (int j = 0; j < nrhs; ++j) {
                        const std::vector<T> column(&x.at(0, j), &x.at(0, j) + n), right(&b.at(0, j), &b.at(0, j) + n);
                        const auto r = TestFixture::difference(TestFixture::product(a, column), right);
                        EXPECT_LE(TestFixture::largest(r) / TestFixture::norm(a) / TestFixture::largest(column),
                                  8.0 * n * eps);
                    }
                }
            });
}

/// With the k-th allocation failing for every k, factors and solution are as ever, or that there was no memory is told.
TYPED_TEST(Indefinite, EveryAllocationMayFail) {
    using T = typename TypeParam::T;
    const int n = 150, nrhs = 3;
    TestFixture::with_factors(Kind::random, n, [&](char uplo, const auto& a, const auto& f) {
        const LapackMatrix<T> b = matrix_of<T>(MatrixKind::random, n, nrhs);
        for (long failing = 1; failing <= 6; ++failing) {
            Factored<T> ours = f;
            NXL_FreeBuffers();
            fail_allocation(failing);
            std::string printed = printed_by([&] { ours = TestFixture::factors(uplo, a, 1); });
            fail_allocation(0);
            EXPECT_EQ(ours.info, printed.empty() ? 0 : -1000) << failing;
            if (printed.empty()) EXPECT_EQ(ours.ipiv, f.ipiv) << failing;
            LapackMatrix<T> x = b;
            int info = -99;
            NXL_FreeBuffers();
            fail_allocation(failing);
            printed = printed_by([&] {
                TypeParam::trs(&uplo, &n, &nrhs, f.factors.elements.data(), &a.lda, f.ipiv.data(), x.data(), &x.lda,
                               &info, 1);
            });
            fail_allocation(0);
            EXPECT_EQ(info, printed.empty() ? 0 : -1000) << failing;
            const std::vector<T> column(&x.at(0, 0), &x.at(0, 0) + n), right(&b.at(0, 0), &b.at(0, 0) + n);
            const auto r = TestFixture::difference(TestFixture::product(a, column), right);
            if (!printed.empty()) EXPECT_EQ(column, right) << failing;
            else EXPECT_LE(TestFixture::largest(r) / TestFixture::norm(a) / TestFixture::largest(column), n * eps);
        }
    });
}

/// The inverse, and with it the condition: the estimate is not below the true one and seldom far above.
TYPED_TEST(Indefinite, InversesAndConditions) {
    using T = typename TypeParam::T;
    for (const Kind kind : {Kind::random, Kind::hollow, Kind::tiny})
        for (const int n : {2, 3, 16, 64, 66, 150})
            TestFixture::with_factors(kind, n, [&](char uplo, const auto& a, auto& f) {
                std::vector<T> work(TestFixture::index(2 * n));
                std::vector<int> integers(TestFixture::index(n));
                const double anorm = TestFixture::norm(a);
                double rcond = -1.0;
                int info = -99;
                if constexpr (is_complex<T>)
                    TypeParam::con(&uplo, &n, f.factors.data(), &a.lda, f.ipiv.data(), &anorm, &rcond, work.data(),
                                   &info, 1);
                else
                    TypeParam::con(&uplo, &n, f.factors.data(), &a.lda, f.ipiv.data(), &anorm, &rcond, work.data(),
                                   integers.data(), &info, 1);
                EXPECT_EQ(info, 0);
                TypeParam::tri(&uplo, &n, f.factors.data(), &a.lda, f.ipiv.data(), work.data(), &info, 1);
                EXPECT_EQ(info, 0);
                TestFixture::expect_other_triangle_untouched(uplo, f.factors);
                LapackMatrix<T> inverse = f.factors;
                for (int j = 0; j < n; ++j)
                    for (int i = 0; i < n; ++i)
                        if (!TestFixture::stored(uplo, i, j))
                            inverse.at(i, j) = TestFixture::mirrored(f.factors.at(j, i));
                const auto x = random_values<T>(n, 4);
                const auto r = TestFixture::difference(TestFixture::product(a, TestFixture::product(inverse, x)), x);
                EXPECT_LE(TestFixture::largest(r), 8.0 * n * eps * anorm * TestFixture::norm(inverse));
                const double exact = 1.0 / anorm / TestFixture::norm(inverse);
                EXPECT_GE(rcond, exact * (1.0 - 1e-6));
                EXPECT_LE(rcond, exact * 5.0);
            });
}

/// Solutions of integers, which are known exactly, deliberately spoilt: refined to roundoff, and within the bound.
TYPED_TEST(Indefinite, RefinementImprovesAndItsBoundsHold) {
    using T = typename TypeParam::T;
    for (const int n : {1, 2, 20, 90})
        TestFixture::with_factors(Kind::integers, n, [&](char uplo, const auto& a, const auto& f) {
            Generator generator(9);
            std::vector<T> exact(TestFixture::index(n)), work(TestFixture::index(3 * n));
            for (T& v : exact) v = random_integer<T>(generator, 20) + T(30.0);
            const std::vector<T> b = TestFixture::product(a, exact);
            std::vector<T> x = exact;
            for (T& v : x) v *= 1.0 + 1e-5 * std::real(random_value<T>(generator));
            std::vector<double> real_work(TestFixture::index(n));
            std::vector<int> integers(TestFixture::index(n));
            const LapackMatrix<T> triangle = TestFixture::triangle_of(uplo, a);
            const int one = 1;
            double ferr = -1.0, berr = -1.0;
            int info = -99;
            const auto call = [&](auto* spare) {
                TypeParam::rfs(&uplo, &n, &one, triangle.elements.data(), &a.lda, f.factors.elements.data(), &a.lda,
                               f.ipiv.data(), b.data(), &n, x.data(), &n, &ferr, &berr, work.data(), spare, &info, 1);
            };
            if constexpr (is_complex<T>) call(real_work.data());
            else call(integers.data());
            EXPECT_EQ(info, 0);
            EXPECT_LE(berr, 4.0 * eps);
            const double error = TestFixture::largest(TestFixture::difference(x, exact)) / TestFixture::largest(x);
            EXPECT_LE(error, ferr * 1.5);
            EXPECT_LE(ferr, 1e-9);
        });
}

TYPED_TEST(Indefinite, QueriesAndNothingToDo) {
    using T = typename TypeParam::T;
    const int n = 100, none = 0, lda = 100, query = -1, one = 1;
    T work{};
    int info = -99, untouched = -99;
    TypeParam::trf("l", &n, nullptr, &lda, &untouched, &work, &query, &info, 1);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(std::real(work), 6400.0);
    EXPECT_EQ(untouched, -99);
    TypeParam::trf("u", &none, nullptr, &one, nullptr, &work, &one, &info, 1);
    EXPECT_EQ(info, 0);
    TypeParam::trs("u", &none, &one, nullptr, &one, nullptr, nullptr, &one, &info, 1);
    EXPECT_EQ(info, 0);
}

} // namespace
