// TSLD1 and TSLZ1 against elimination with pivoting in extended precision.
#include "nxl.h"
#include "tests/support/guarded_vector.hpp"
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

using nxl_test::StridedVector;
using zcomplex = std::complex<double>;

template <class T> struct Extended;
template <> struct Extended<double> {
    using type = long double;
};
template <> struct Extended<zcomplex> {
    using type = std::complex<long double>;
};

void solve(const double* a1, const double* a2, const double* b, double* x, double* c1, double* c2, const int* m) {
    TSLD1(a1, a2, b, x, c1, c2, m);
}
void solve(const zcomplex* a1, const zcomplex* a2, const zcomplex* b, zcomplex* x, zcomplex* c1, zcomplex* c2,
           const int* m) {
    TSLZ1(a1, a2, b, x, c1, c2, m);
}

/// A system whose arrays end at unreadable pages: m elements of each, or m - 1.
template <class T> struct System {
    using Long = typename Extended<T>::type;
    int m;
    StridedVector<T> a1, a2, b, x, c1, c2;

    System(int order, unsigned seed)
        : m(order),
          a1(m, 1, seed),
          a2(m - 1, 1, seed + 1),
          b(m, 1, seed + 2),
          x(m, 1, seed + 3),
          c1(m - 1, 1, seed + 4),
          c2(m - 1, 1, seed + 5) {}

    Long at(int i, int j) const { return Long(j >= i ? a1[j - i] : a2[i - j - 1]); }

    void call() const { solve(a1.data(), a2.data(), b.data(), x.data(), c1.data(), c2.data(), &m); }

    /// The solution by Gaussian elimination.
    std::vector<Long> eliminated() const {
        const auto n = static_cast<std::size_t>(m);
        std::vector<std::vector<Long>> t(n, std::vector<Long>(n + 1));
        for (int i = 0; i < m; ++i) {
            for (int j = 0; j < m; ++j) t[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)] = at(i, j);
            t[static_cast<std::size_t>(i)][n] = Long(b.original(i));
        }
        for (std::size_t k = 0; k < n; ++k) {
            std::size_t pivot = k;
            for (std::size_t i = k; i < n; ++i)
                if (std::abs(t[i][k]) > std::abs(t[pivot][k])) pivot = i;
            std::swap(t[k], t[pivot]);
            for (std::size_t i = k + 1; i < n; ++i) {
                const Long factor = t[i][k] / t[k][k];
                for (std::size_t j = k; j <= n; ++j) t[i][j] -= factor * t[k][j];
            }
        }
        std::vector<Long> solution(n);
        for (std::size_t k = n; k-- > 0;) {
            Long sum = t[k][n];
            for (std::size_t j = k + 1; j < n; ++j) sum -= t[k][j] * solution[j];
            solution[k] = sum / t[k][k];
        }
        return solution;
    }

    /// |x - exact| / |exact|, in the largest element.
    double error() const {
        const auto exact = eliminated();
        long double worst = 0.0L, scale = 0.0L;
        for (int i = 0; i < m; ++i) {
            worst = std::max<long double>(worst, std::abs(Long(x[i]) - exact[static_cast<std::size_t>(i)]));
            scale = std::max<long double>(scale, std::abs(exact[static_cast<std::size_t>(i)]));
        }
        return static_cast<double>(worst / scale);
    }
    bool inputs_unaltered() const {
        bool same = true;
        for (int i = 0; i < m; ++i) same = same && a1[i] == a1.original(i) && b[i] == b.original(i);
        for (int i = 0; i + 1 < m; ++i) same = same && a2[i] == a2.original(i);
        return same;
    }
};

/// A diagonal that makes all leading minors well conditioned; the elements off it differ and are complex where T is.
template <class T> void dominate(System<T>& s) { s.a1[0] += T(s.m < 10 ? 3.0 : 0.9 * std::sqrt(s.m) + 3.0); }

template <class T> class Toeplitz : public ::testing::Test {};
using Scalars = ::testing::Types<double, zcomplex>;
TYPED_TEST_SUITE(Toeplitz, Scalars);

TYPED_TEST(Toeplitz, SolvesUnsymmetricSystems) { // 257 to 514: both sides of a block of the recursion
    for (const int m : {1, 2, 3, 4, 10, 57, 200, 257, 258, 514}) {
        System<TypeParam> s(m, 11u * static_cast<unsigned>(m));
        dominate(s);
        const TypeParam diagonal = s.a1[0];
        s.call();
        EXPECT_LE(s.error(), 1e-13) << m;
        EXPECT_EQ(s.a1[0], diagonal);
        s.a1[0] = s.a1.original(0);
        EXPECT_TRUE(s.inputs_unaltered()) << m;
    }
}

TYPED_TEST(Toeplitz, NeedsNoDominance) { // a random matrix loses digits to its smallest leading minor
    for (const int m : {2, 3, 5, 10, 30}) {
        const System<TypeParam> s(m, 100u + static_cast<unsigned>(m));
        s.call();
        EXPECT_LE(s.error(), 1e-9) << m;
    }
}

TEST(RealToeplitz, SolvesPositiveDefiniteSystems) { // of a stationary process: decaying correlations and noise
    for (const double decay : {0.3, 0.9, 0.999}) {
        const System<double> s(200, 5);
        for (int k = 0; k < s.m; ++k) s.a1[k] = std::pow(decay, k) + (k == 0 ? 0.01 : 0.0);
        for (int k = 1; k < s.m; ++k) s.a2[k - 1] = s.a1[k];
        s.call();
        EXPECT_LE(s.error(), 1e-11) << decay;
    }
}

TYPED_TEST(Toeplitz, SolutionMayReplaceTheRightHandSide) {
    System<TypeParam> s(300, 7);
    dominate(s);
    s.call();
    solve(s.a1.data(), s.a2.data(), s.b.data(), s.b.data(), s.c1.data(), s.c2.data(), &s.m);
    for (int i = 0; i < s.m; ++i) EXPECT_EQ(s.b[i], s.x[i]) << i;
}

TYPED_TEST(Toeplitz, ZeroMinorEndsWithoutFiniteSolution) {
    for (const int order : {1, 2, 3}) { // of the minor
        const System<TypeParam> s(20, 3);
        s.a1[0] = TypeParam(order == 1 ? 0.0 : 1.0);
        s.a1[1] = s.a2[0] = TypeParam(order == 2 ? 1.0 : 0.5);
        if (order == 3) s.a1[2] = s.a2[1] = TypeParam(-0.5); // 1 + 2 p p q - q q - 2 p p = 0 for p = 1/2, q = -1/2
        s.call();
        bool finite = true;
        for (int i = 0; i < s.m; ++i) finite = finite && std::isfinite(std::abs(s.x[i]));
        EXPECT_FALSE(finite) << order;
    }
}

TYPED_TEST(Toeplitz, NoOrderNoAccess) {
    for (const int m : {0, -1, -2147483647 - 1})
        solve(static_cast<const TypeParam*>(nullptr), nullptr, nullptr, nullptr, nullptr, nullptr, &m);
    const int one = 1;
    const TypeParam a(4.0), b(2.0);
    TypeParam x(0.0);
    solve(&a, nullptr, &b, &x, nullptr, nullptr, &one);
    EXPECT_EQ(x, TypeParam(0.5));
}

} // namespace
