// Condition numbers and error bounds of triangular matrices, and the 2 by 2 eigenproblem, against the reference LAPACK:
// ordinary matrices, and those whose solutions overflow on the way.
#include "nxl.h"
#include "tests/support/reference_blas.hpp"
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace {

using nxl_test::reference;
using zcomplex = nxl_z;
using std::size_t;

template <class T>
using Con = void(const char*, const char*, const char*, const int*, const T*, const int*, double*, T*, void*, int*,
                 size_t, size_t, size_t);
template <class T>
using Rfs = void(const char*, const char*, const char*, const int*, const int*, const T*, const int*, const T*,
                 const int*, const T*, const int*, double*, double*, T*, void*, int*, size_t, size_t, size_t);

template <class T> constexpr bool is_real = sizeof(T) == sizeof(double);

/// Columns of n rows, ld apart.
template <class T> struct Square {
    int n, ld;
    std::vector<T> a;
    explicit Square(int order) : n(order), ld(order + 2), a(static_cast<size_t>(ld) * static_cast<size_t>(order) + 1) {}
    T& at(int i, int j) { return a[static_cast<size_t>(i) + static_cast<size_t>(j) * static_cast<size_t>(ld)]; }
};

/// What a triangle is like. The other triangle and what lies between columns are NaN.
enum class Kind { mild, random, tiny_pivots, huge, subnormal, singular, nan };
constexpr Kind kinds[] = {Kind::mild,      Kind::random,   Kind::tiny_pivots, Kind::huge,
                          Kind::subnormal, Kind::singular, Kind::nan};

template <class T> class TriangularCondition : public ::testing::Test {
  protected:
    std::mt19937_64 generator{11};

    T value() {
        std::uniform_real_distribution<double> uniform(-1.0, 1.0);
        const double real = uniform(generator);
        if constexpr (is_real<T>) return real;
        else return {real, uniform(generator)};
    }
    Square<T> triangle(Kind kind, char uplo, int n) {
        Square<T> m(n);
        std::ranges::fill(m.a, T(std::numeric_limits<double>::quiet_NaN()));
        for (int j = 0; j < n; ++j)
            for (int i = uplo == 'U' ? 0 : j; i < (uplo == 'U' ? j + 1 : n); ++i) {
                T v = value();
                if (kind == Kind::mild) v = i == j ? v + 3.0 : v / static_cast<double>(n);
                if (kind == Kind::tiny_pivots && i == j) v *= 1e-280;
                if (kind == Kind::huge) v *= i == j ? 1e10 : 1.7e308;
                if (kind == Kind::subnormal) v *= 1e-309;
                if (kind == Kind::singular && i == j && i == n / 2) v = T{};
                if (kind == Kind::nan && i == n / 2 && j == n / 2) v = std::numeric_limits<double>::quiet_NaN();
                m.at(i, j) = v;
            }
        return m;
    }
    static double condition(bool ours, const char* options, Square<T>& m) {
        const auto n = static_cast<size_t>(m.n) + 1;
        std::vector<T> work(3 * n);
        std::vector<double> real_work(n);
        std::vector<int> integers(n);
        double rcond = -1.0;
        int info = -1;
        if (!ours) {
            void* const extra = is_real<T> ? static_cast<void*>(integers.data()) : real_work.data();
            reference<Con<T>>(is_real<T> ? "dtrcon_" : "ztrcon_")(options, options + 1, options + 2, &m.n, m.a.data(),
                                                                  &m.ld, &rcond, work.data(), extra, &info, 1, 1, 1);
        } else if constexpr (is_real<T>)
            dtrcon(options, options + 1, options + 2, &m.n, m.a.data(), &m.ld, &rcond, work.data(), integers.data(),
                   &info);
        else
            ztrcon(options, options + 1, options + 2, &m.n, m.a.data(), &m.ld, &rcond, work.data(), real_work.data(),
                   &info);
        EXPECT_EQ(info, 0);
        return rcond;
    }
    struct Bounds {
        std::vector<double> forward, backward;
    };
    static Bounds bounds(bool ours, const char* options, Square<T>& m, const std::vector<T>& b, const std::vector<T>& x,
                         int count) {
        const auto n = static_cast<size_t>(m.n) + 1, columns = static_cast<size_t>(count);
        std::vector<T> work(3 * n);
        std::vector<double> real_work(n);
        std::vector<int> integers(n);
        Bounds result{std::vector<double>(columns, -1.0), std::vector<double>(columns, -1.0)};
        double *const ferr = result.forward.data(), *const berr = result.backward.data();
        const char *const uplo = options, *const trans = options + 1, *const diag = options + 2;
        int info = -1;
        if (!ours) {
            void* const extra = is_real<T> ? static_cast<void*>(integers.data()) : real_work.data();
            reference<Rfs<T>>(is_real<T> ? "dtrrfs_" : "ztrrfs_")(uplo, trans, diag, &m.n, &count, m.a.data(), &m.ld,
                                                                  b.data(), &m.ld, x.data(), &m.ld, ferr, berr,
                                                                  work.data(), extra, &info, 1, 1, 1);
        } else if constexpr (is_real<T>)
            dtrrfs(uplo, trans, diag, &m.n, &count, m.a.data(), &m.ld, b.data(), &m.ld, x.data(), &m.ld, ferr, berr,
                   work.data(), integers.data(), &info);
        else
            ztrrfs(uplo, trans, diag, &m.n, &count, m.a.data(), &m.ld, b.data(), &m.ld, x.data(), &m.ld, ferr, berr,
                   work.data(), real_work.data(), &info);
        EXPECT_EQ(info, 0);
        return result;
    }
};

using Scalars = ::testing::Types<double, zcomplex>;
TYPED_TEST_SUITE(TriangularCondition, Scalars);

/// The estimates climb the same hill. Ours keeps the highest point, so that it may say less; both are seldom low.
TYPED_TEST(TriangularCondition, AgreesWithReference) {
    for (const Kind kind : kinds)
        for (const char* options : {"1UN", "ILn", "OLN", "iuN", "1uU", "IlU", "oLU"})
            for (const int n : {0, 1, 2, 3, 5, 34, 65}) {
                SCOPED_TRACE(testing::Message() << options << " n " << n << " kind " << static_cast<int>(kind));
                const bool unit = std::toupper(options[2]) == 'U';
                Square<TypeParam> m = this->triangle(kind, static_cast<char>(std::toupper(options[1])), n);
                const double expected = this->condition(false, options, m), found = this->condition(true, options, m);
                if (kind == Kind::nan && n > 0 && !unit) EXPECT_TRUE(std::isnan(found));
                else if (expected == 0.0) EXPECT_LE(found, 1e-280);
                else if (std::isfinite(expected)) {
                    EXPECT_LE(found, expected * (1.0 + 1e-10));
                    EXPECT_GE(found, expected / 4.0);
                }
            }
}

/// Solutions with a known error: both bounds cover it and are the reference's.
TYPED_TEST(TriangularCondition, ErrorBounds) {
    using T = TypeParam;
    for (const char* options : {"UNN", "UTU", "ucn", "LNN", "LTN", "lcu"})
        for (const int n : {1, 2, 7, 40}) {
            SCOPED_TRACE(testing::Message() << options << " n " << n);
            const int count = 3;
            int info = -1;
            Square<T> m = this->triangle(Kind::mild, static_cast<char>(std::toupper(options[0])), n);
            std::vector<T> b(static_cast<size_t>(m.ld * count)), x;
            for (T& element : b) element = this->value();
            x = b;
            if constexpr (is_real<T>)
                dtrtrs(options, options + 1, options + 2, &n, &count, m.a.data(), &m.ld, x.data(), &m.ld, &info);
            else ztrtrs(options, options + 1, options + 2, &n, &count, m.a.data(), &m.ld, x.data(), &m.ld, &info);
            const T exact = x[0];
            x[0] *= 1.0 + 1e-6; // of the first solution; the other columns are good
            const auto expected = this->bounds(false, options, m, b, x, count);
            const auto found = this->bounds(true, options, m, b, x, count);
            double largest = 0.0;
            for (int i = 0; i < n; ++i)
                largest = std::max(largest, std::abs(std::real(x[static_cast<size_t>(i)])) +
                                                std::abs(std::imag(x[static_cast<size_t>(i)])));
            EXPECT_GE(found.forward[0] * 1.5, std::abs(x[0] - exact) / largest);
            EXPECT_NEAR(found.backward[0], expected.backward[0], 1e-8 * expected.backward[0]);
            for (size_t k = 0; k < 3; ++k) {
                EXPECT_LE(found.backward[k], k == 0 ? 1e-5 : 4.0 * n * 1.2e-16);
                EXPECT_GE(found.forward[k], expected.forward[k] / 2.0);
                EXPECT_LE(found.forward[k], expected.forward[k] * 4.0);
            }
        }
}

/// Every combination of sizes and signs, far apart and equal.
TEST(TwoByTwo, AgreesWithReference) {
    using Laev2 = void(const zcomplex*, const zcomplex*, const zcomplex*, double*, double*, double*, zcomplex*);
    const double values[] = {0.0, 1.0, -1.0, 3.5, -2e-170, 1e-20, 4e150, -4e150};
    for (const double a : values)
        for (const double re : values)
            for (const double im : {0.0, 0.75, -1e-160})
                for (const double c : values) {
                    const zcomplex first{a, 9.0}, middle{re, im}, last{c, -7.0}; // imaginary parts that do not count
                    double e[3], f[3];
                    zcomplex sine, expected;
                    ZLAEV2(&first, &middle, &last, e, e + 1, e + 2, &sine);
                    reference<Laev2>("zlaev2_")(&first, &middle, &last, f, f + 1, f + 2, &expected);
                    SCOPED_TRACE(testing::Message() << first << middle << last);
                    for (int i = 0; i < 3; ++i) EXPECT_NEAR(e[i], f[i], 1e-14 * std::abs(f[i]));
                    EXPECT_LE(std::abs(sine - expected), 1e-14);
                }
}

} // namespace
