// Eigenvalues and vectors of symmetric tridiagonal matrices, easy ones and those that are hard.
#include "nxl.h"
#include "tests/support/lapack.hpp"
#include "tests/support/tridiagonals.hpp"

namespace {

using namespace nxl_test;
using std::size_t;

constexpr int sizes[] = {0, 1, 2, 3, 17, 90};

void expect_values(const Tridiagonal& t, const std::vector<double>& w) {
    const std::vector<double> expected = reference_values(t);
    const double bound = (20.0 + t.order()) * eps * t.norm() + std::numeric_limits<double>::denorm_min() * 10;
    EXPECT_TRUE(std::is_sorted(w.begin(), w.end()));
    for (size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(w[i], expected[i], bound) << i;
}

template <class T> LapackMatrix<T> identity(int n) {
    LapackMatrix<T> z(n, n, 2);
    for (int j = 0; j < n; ++j) {
        z.clear_column(j);
        z.at(j, j) = 1.0;
    }
    return z;
}

template <class T> class TridiagonalVectors : public ::testing::Test {
  public:
    static constexpr auto steqr = [] {
        if constexpr (is_complex<T>) return zsteqr;
        else return dsteqr;
    }();
    static int run(const char* compz, Tridiagonal& t, LapackMatrix<T>& z) {
        const int n = t.order();
        int info = -99;
        steqr(compz, &n, t.d.data(), t.e.data(), z.data(), &z.lda, nullptr, &info, 1);
        return info;
    }
};
TYPED_TEST_SUITE(TridiagonalVectors, Scalars);

TYPED_TEST(TridiagonalVectors, QlAndItsRotations) {
    using T = TypeParam;
    for (const Kind kind : all_kinds)
        for (const int n : sizes) {
            SCOPED_TRACE(name_of(kind, n));
            const Tridiagonal t = tridiagonal_of(kind, n);
            Tridiagonal values = t, vectors = t;
            LapackMatrix<T> z(n, n, 2);
            ASSERT_EQ(this->run("n", values, z), 0);
            ASSERT_EQ(this->run("i", vectors, z), 0);
            expect_values(t, values.d);
            expect_values(t, vectors.d);
            EXPECT_TRUE(z.slack_untouched());
            const auto quality = quality_of(t, vectors.d, z, n);
            EXPECT_LE(quality.residual, 10.0);
            EXPECT_LE(quality.orthogonality, 10.0);
        }
}

/// One sweep, four or eight at once, as the order asks for.
TEST(ValuesAlone, BySweepsTogether) {
    for (const Kind kind : all_kinds)
        for (const int n : {15, 16, 119, 120, 200}) {
            SCOPED_TRACE(name_of(kind, n));
            const Tridiagonal t = tridiagonal_of(kind, n);
            Tridiagonal values = t;
            int info = -99;
            dsterf(&n, values.d.data(), values.e.data(), &info);
            ASSERT_EQ(info, 0);
            expect_values(t, values.d);
        }
}

/// As a band, whose off-diagonal a complex matrix has with phases: these turn the rows of the vectors alone.
TYPED_TEST(TridiagonalVectors, DivideAndConquer) {
    using T = TypeParam;
    for (const Kind kind : all_kinds)
        for (const int n : {1, 2, 25, 26, 120}) {
            SCOPED_TRACE(name_of(kind, n));
            const Tridiagonal t = tridiagonal_of(kind, n);
            const int kd = 1, lwork = 2 * n * n + 5 * n + 1, liwork = 5 * n + 3;
            const auto phase = [](int i) { return is_complex<T> ? std::polar(1.0, 1.0 * i) : zcomplex(1.0); };
            LapackMatrix<T> ab(2, n, 1), z(n, n, 2);
            for (int j = 0; j < n; ++j) {
                const zcomplex off = t.e[static_cast<size_t>(j)] * phase(j + 1) * std::conj(phase(j));
                ab.at(0, j) = t.d[static_cast<size_t>(j)];
                ab.at(1, j) = scalar<T>(off.real(), off.imag());
            }
            std::vector<T> work(static_cast<size_t>(lwork));
            std::vector<double> w(static_cast<size_t>(n)), reals(work.size());
            std::vector<int> integers(static_cast<size_t>(liwork));
            int info = -99;
            if constexpr (is_complex<T>)
                zhbevd("v", "l", &n, &kd, ab.data(), &ab.lda, w.data(), z.data(), &z.lda, work.data(), &lwork,
                       reals.data(), &lwork, integers.data(), &liwork, &info, 1, 1);
            else
                dsbevd("v", "l", &n, &kd, ab.data(), &ab.lda, w.data(), z.data(), &z.lda, work.data(), &lwork,
                       integers.data(), &liwork, &info, 1, 1);
            ASSERT_EQ(info, 0);
            expect_values(t, w);
            EXPECT_TRUE(z.slack_untouched());
            for (int j = 0; j < n; ++j)
                for (int i = 0; i < n; ++i) {
                    const zcomplex back = std::conj(phase(i));
                    z.at(i, j) *= scalar<T>(back.real(), back.imag());
                }
            const auto quality = quality_of(t, w, z, n);
            EXPECT_LE(quality.residual, 2.0);
            EXPECT_LE(quality.orthogonality, 2.0);
        }
}

/// As a full matrix, which its reduction leaves as it is: then supports are those of the vectors that come.
TYPED_TEST(TridiagonalVectors, Representations) {
    using T = TypeParam;
    for (const Kind kind : all_kinds)
        for (const int n : {1, 2, 3, 21, 110}) {
            SCOPED_TRACE(name_of(kind, n));
            const Tridiagonal t = tridiagonal_of(kind, n);
            const auto count = static_cast<size_t>(n);
            const auto run = [&](LapackMatrix<T>& z, std::vector<double>& w, std::vector<int>& support) {
                LapackMatrix<T> a(n, n, 1);
                for (int j = 0; j < n; ++j) {
                    a.clear_column(j);
                    a.at(j, j) = t.d[static_cast<size_t>(j)];
                    if (j + 1 < n) a.at(j + 1, j) = t.e[static_cast<size_t>(j)];
                }
                const int lwork = 40 * n, liwork = 10 * n;
                const double unused = 0.0;
                std::vector<T> work(40 * count);
                std::vector<double> reals(40 * count);
                std::vector<int> integers(10 * count);
                int m = -1, info = -99;
                const auto call = [&](auto* routine, auto... more) {
                    routine("V", "A", "L", &n, a.data(), &a.lda, &unused, &unused, &n, &n, &unused, &m, w.data(),
                            z.data(), &z.lda, support.data(), work.data(), &lwork, more..., integers.data(), &liwork,
                            &info, 1, 1, 1);
                };
                if constexpr (is_complex<T>) call(zheevr, reals.data(), &lwork);
                else call(dsyevr);
                EXPECT_EQ(m, n);
                EXPECT_EQ(info, 0);
            };
            LapackMatrix<T> z(n, n, 2), again = z;
            std::vector<double> w(count);
            std::vector<int> support(2 * count);
            run(z, w, support);
            expect_values(t, w);
            EXPECT_TRUE(z.slack_untouched());
            for (int j = 0; j < n; ++j) {
                const int first = support[2 * static_cast<size_t>(j)], last = support[2 * static_cast<size_t>(j) + 1];
                for (int i = 0; i < n; ++i) EXPECT_TRUE((i + 1 >= first && i < last) || z.at(i, j) == T{}) << i << j;
            }
            const auto quality = quality_of(t, w, z, n);
            EXPECT_LE(quality.residual, 5.0);
            EXPECT_LE(quality.orthogonality, 10.0);
            const Team team(7);
            run(again, w, support);
            EXPECT_EQ(std::memcmp(z.data(), again.data(), z.elements.size() * sizeof(T)), 0);
        }
}

/// The Cholesky factor's singular values: a positive definite matrix, or the first minor that is not.
TYPED_TEST(TridiagonalVectors, OfPositiveDefiniteOnes) {
    using T = TypeParam;
    constexpr auto pteqr = [] {
        if constexpr (is_complex<T>) return zpteqr;
        else return dpteqr;
    }();
    for (const Kind kind : {Kind::identity, Kind::laplacian, Kind::steep, Kind::clustered, Kind::zero})
        for (const int n : sizes)
            for (const char compz : {'N', 'I', 'V'}) {
                SCOPED_TRACE(name_of(kind, n) + compz);
                const Tridiagonal t = tridiagonal_of(kind, n);
                Tridiagonal own = t;
                LapackMatrix<T> z = identity<T>(n);
                int info = -99;
                pteqr(&compz, &n, own.d.data(), own.e.data(), z.data(), &z.lda, nullptr, &info, 1);
                ASSERT_EQ(info, kind == Kind::zero ? std::min(n, 1) : 0);
                if (info != 0) continue;
                const auto quality = quality_of(t, own.d, z, compz == 'N' ? 0 : n);
                EXPECT_LE(quality.residual, 10.0);
                EXPECT_LE(quality.orthogonality, 10.0);
                std::reverse(own.d.begin(), own.d.end());
                expect_values(t, own.d);
                EXPECT_TRUE(z.slack_untouched());
            }
}

struct Bisected {
    int m = -1, parts = -1, info = -1;
    std::vector<double> w;
    std::vector<int> block, end;
};

Bisected bisected(const Tridiagonal& t, const char* options, double vl, double vu, int il, int iu) {
    const int n = t.order();
    const size_t room = static_cast<size_t>(n) + 1;
    Bisected b{.w = std::vector<double>(room), .block = std::vector<int>(room), .end = std::vector<int>(room)};
    std::vector<double> work(4 * room);
    std::vector<int> integers(3 * room);
    const double tolerance = 0.0;
    dstebz(options, options + 1, &n, &vl, &vu, &il, &iu, &tolerance, t.d.data(), t.e.data(), &b.m, &b.parts, b.w.data(),
           b.block.data(), b.end.data(), work.data(), integers.data(), &b.info, 1, 1);
    b.w.resize(static_cast<size_t>(std::max(b.m, 0)));
    return b;
}

TEST(Bisection, RangesAndIndices) {
    for (const Kind kind : all_kinds)
        for (const int n : sizes) {
            SCOPED_TRACE(name_of(kind, n));
            const Tridiagonal t = tridiagonal_of(kind, n);
            const Bisected all = bisected(t, "AE", 0.0, 0.0, 0, 0);
            ASSERT_EQ(all.m, n);
            EXPECT_EQ(all.info, 0);
            expect_values(t, all.w);
            if (n < 3) continue;
            const int il = n / 3 + 1, iu = n - 1;
            const double low = all.w[static_cast<size_t>(il) - 1], high = all.w[static_cast<size_t>(iu) - 1];
            const Bisected some = bisected(t, "iE", 0.0, 0.0, il, iu);
            ASSERT_EQ(some.m, iu - il + 1);
            EXPECT_EQ(some.info, 0);
            for (int i = 0; i < some.m; ++i)
                EXPECT_NEAR(some.w[static_cast<size_t>(i)], all.w[static_cast<size_t>(il - 1 + i)], 8 * eps * t.norm());
            if (!(low < high)) continue;
            const Bisected between = bisected(t, "VB", low, high, 0, 0); // up to and with the upper end
            const auto inside = [&](double slack) {
                return std::count_if(all.w.begin(), all.w.end(),
                                     [&](double v) { return v > low + slack && v <= high - slack; });
            };
            const double slack = 8 * eps * t.norm();
            EXPECT_GE(between.m, inside(slack));
            EXPECT_LE(between.m, inside(-slack));
            EXPECT_TRUE(std::is_sorted(between.block.begin(), between.block.begin() + between.m));
            EXPECT_EQ(between.end[static_cast<size_t>(between.parts) - 1], n);
        }
    Tridiagonal broken = tridiagonal_of(Kind::laplacian, 9);
    broken.d[4] = std::nan("");
    EXPECT_EQ(bisected(broken, "AE", 0.0, 0.0, 0, 0).info, 1);
}

TYPED_TEST(TridiagonalVectors, InverseIteration) {
    using T = TypeParam;
    constexpr auto stein = [] {
        if constexpr (is_complex<T>) return zstein;
        else return dstein;
    }();
    for (const Kind kind : all_kinds)
        for (const int n : sizes) {
            SCOPED_TRACE(name_of(kind, n));
            const Tridiagonal t = tridiagonal_of(kind, n);
            const Bisected all = bisected(t, "AB", 0.0, 0.0, 0, 0);
            const auto run = [&](LapackMatrix<T>& z) {
                std::vector<int> failed(static_cast<size_t>(n) + 1, -1), integers(failed);
                int info = -99;
                stein(&n, t.d.data(), t.e.data(), &all.m, all.w.data(), all.block.data(), all.end.data(), z.data(),
                      &z.lda, nullptr, integers.data(), failed.data(), &info);
                EXPECT_EQ(info, 0);
                for (int j = 0; j < n; ++j) EXPECT_EQ(failed[static_cast<size_t>(j)], 0);
            };
            LapackMatrix<T> z(n, n, 2), again = z;
            run(z);
            EXPECT_TRUE(z.slack_untouched());
            const auto quality = quality_of(t, all.w, z, n);
            EXPECT_LE(quality.residual, 10.0);
            EXPECT_LE(quality.orthogonality, 10.0);
            const Team team(7);
            run(again);
            EXPECT_EQ(std::memcmp(z.data(), again.data(), z.elements.size() * sizeof(T)), 0);
        }
}

/// V turns what z holds: by the same rotations, whatever the number of threads.
TYPED_TEST(TridiagonalVectors, TurnsTheGivenMatrix) {
    using T = TypeParam;
    const int n = 301;
    const Tridiagonal t = tridiagonal_of(Kind::random, n);
    LapackMatrix<T> own(n, n, 2), first = own;
    Tridiagonal values = t;
    ASSERT_EQ(this->run("I", values, own), 0);
    for (const int threads : {1, 2, 5, 8}) {
        const Team team(threads);
        Tridiagonal again = t;
        LapackMatrix<T> z = identity<T>(n);
        for (int j = 0; j < n; ++j) z.at(j, j) = scalar<T>(0.0, 1.0) + scalar<T>(is_complex<T> ? 0.0 : 2.0, 0.0);
        ASSERT_EQ(this->run("V", again, z), 0);
        double largest = 0.0;
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i)
                largest = std::max(
                    largest, std::abs(z.at(i, j) - own.at(i, j) * (is_complex<T> ? scalar<T>(0.0, 1.0) : T(2.0))));
        EXPECT_LE(largest, 1e-15);
    }
}

/// No hang, and the number of what has not converged.
TYPED_TEST(TridiagonalVectors, NanAndInfinityAreTold) {
    using T = TypeParam;
    for (const double value : {std::nan(""), std::numeric_limits<double>::infinity()})
        for (const bool off : {false, true}) {
            const int n = 40;
            Tridiagonal t = tridiagonal_of(Kind::laplacian, n);
            (off ? t.e : t.d)[20] = value;
            for (const char* compz : {"N", "I"}) {
                Tridiagonal broken = t;
                LapackMatrix<T> z(n, n, 0);
                const int info = this->run(compz, broken, z);
                if (std::isnan(value) || off) EXPECT_GT(info, 0);
            }
        }
}

} // namespace
