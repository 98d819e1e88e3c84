// Level 1 through the exported entries, against plain loops over the published definitions. CTest runs this program
// once for each processor class and vector width.
#include "nxl.h"
#include "tests/support/guarded_vector.hpp"
#include "tests/support/scalars.hpp"
#include <array>
#include <bit>

namespace {

using namespace nxl_test;

constexpr double inf = std::numeric_limits<double>::infinity();
const double nan_value = std::numeric_limits<double>::quiet_NaN();

int class_under_test() {
    const char* text = std::getenv("NXL_DEBUG_CPU_TYPE");
    return text ? std::atoi(text) : -1;
}

/// The routines of one scalar type under common names.
template <class T> struct Blas;
template <> struct Blas<double> {
    static constexpr auto axpy = daxpy;
    static constexpr auto copy = dcopy;
    static constexpr auto swap = dswap;
    static constexpr auto scal = dscal;
    static constexpr auto asum = dasum;
    static constexpr auto nrm2 = dnrm2;
    static constexpr auto iamax = idamax;
    static constexpr auto iamin = idamin;
    static constexpr auto rot = drot;
    static double dot(const int* n, const double* x, const int* incx, const double* y, const int* incy) {
        return ddot(n, x, incx, y, incy);
    }
    static constexpr double alpha = -0.75;
};
template <> struct Blas<zcomplex> {
    static constexpr auto axpy = zaxpy;
    static constexpr auto copy = zcopy;
    static constexpr auto swap = zswap;
    static constexpr auto scal = zscal;
    static constexpr auto asum = dzasum;
    static constexpr auto nrm2 = dznrm2;
    static constexpr auto iamax = izamax;
    static constexpr auto iamin = izamin;
    static constexpr auto rot = zdrot;
    static zcomplex dot(const int* n, const zcomplex* x, const int* incx, const zcomplex* y, const int* incy) {
        zcomplex result(nan_value, nan_value);
        zdotc(&result, n, x, incx, y, incy);
        return result;
    }
    static constexpr zcomplex alpha{-0.75, 0.5};
};

/// Around every unroll of both widths, and across the block lengths of nrm2 and iamax.
constexpr std::array sizes = {-1, 0,  1,  2,  3,  4,  5,  6,  7,  8,  9,   11,  12,   13,   15,   16,  17,
                              18, 19, 23, 31, 32, 33, 35, 63, 64, 65, 100, 129, 2047, 2048, 2049, 4103};
constexpr std::array<std::array<int, 2>, 9> increments = {
    {{1, 1}, {-1, -1}, {1, -1}, {-1, 1}, {2, 3}, {-2, 3}, {3, -2}, {0, 1}, {2, 0}}};

template <class T> class Level1 : public ::testing::Test {
  public:
    /// Calls body(n, incx, incy, flush) for every size and pair of increments, at every place of x in a guarded block.
    template <class Body> static void for_all(Body body) {
        for (const int n : sizes)
            for (const auto& [incx, incy] : increments)
                for (const Flush flush : {Flush::start, Flush::end, Flush::off_by_8}) {
                    SCOPED_TRACE(::testing::Message() << "n " << n << " incx " << incx << " incy " << incy);
                    body(n, incx, incy, flush);
                    if (::testing::Test::HasFailure()) return;
                }
    }
};

TYPED_TEST_SUITE(Level1, Scalars);

/// Where y goes beside x: to the same end, or, with an x off its boundary, on one of its own.
Flush beside(Flush x) { return x == Flush::off_by_8 ? Flush::start : x; }

/// Runs an update of two vectors through the library and, element after element in the published order, through `step`;
/// then compares, with an allowance of `ulps` roundings of values near 1 for each time that an element is met.
template <class T, class Call, class Step>
void expect_same_update(int n, int incx, int incy, Flush flush, double ulps, Call call, Step step) {
    StridedVector<T> x(n, incx, 1, flush), y(n, incy, 2, beside(flush)), x_want(n, incx, 1), y_want(n, incy, 2);
    call(x.data(), y.data());
    for (int k = 0; k < n; ++k) step(x_want[k], y_want[k]);
    const double tolerance = ulps * eps * (incx == 0 || incy == 0 ? n : 1);
    for (int k = 0; k < n; ++k) {
        ASSERT_LE(std::abs(x[k] - x_want[k]), tolerance * (1 + std::abs(x_want[k]))) << "x, element " << k;
        ASSERT_LE(std::abs(y[k] - y_want[k]), tolerance * (1 + std::abs(y_want[k]))) << "y, element " << k;
    }
    ASSERT_TRUE(x.gaps_untouched() && y.gaps_untouched());
}

TYPED_TEST(Level1, Updates) {
    using T = TypeParam;
    const T alpha = Blas<T>::alpha;
    const double c = 0.6, s = -0.8;
    this->for_all([&](int n, int incx, int incy, Flush flush) {
        const auto check = [&](const char* name, double ulps, auto call, auto step) {
            SCOPED_TRACE(name);
            expect_same_update<T>(n, incx, incy, flush, ulps, call, step);
        };
        check(
            "axpy", 4.0, [&](T* x, T* y) { Blas<T>::axpy(&n, &alpha, x, &incx, y, &incy); },
            [&](const T& x, T& y) { y += alpha * x; });
        check("scal", 4.0, [&](T* x, T*) { Blas<T>::scal(&n, &alpha, x, &incx); }, [&](T& x, const T&) { x *= alpha; });
        check("copy", 0.0, [&](T* x, T* y) { Blas<T>::copy(&n, x, &incx, y, &incy); }, [](const T& x, T& y) { y = x; });
        check(
            "swap", 0.0, [&](T* x, T* y) { Blas<T>::swap(&n, x, &incx, y, &incy); },
            [](T& x, T& y) { std::swap(x, y); });
        check(
            "rot", 4.0, [&](T* x, T* y) { Blas<T>::rot(&n, x, &incx, y, &incy, &c, &s); },
            [&](T& x, T& y) {
                const T old = x;
                x = c * x + s * y;
                y = c * y - s * old;
            });
    });
}

TYPED_TEST(Level1, DotAsumNrm2) {
    using T = TypeParam;
    this->for_all([&](int n, int incx, int incy, Flush flush) {
        StridedVector<T> x(n, incx, 1, flush), y(n, incy, 2, beside(flush));
        // The norm starts at the first element whatever the sign, which over all n elements is the same sum.
        T dot{};
        double asum = 0.0, squares = 0.0, products = 0.0;
        for (int k = 0; k < n; ++k) {
            dot += conjugate(x[k]) * y[k];
            asum += abs1(x[k]);
            squares += std::norm(x[k]);
            products += std::abs(x[k]) * std::abs(y[k]);
        }
        const double roundings = eps * (n + 4);
        ASSERT_LE(std::abs(Blas<T>::dot(&n, x.data(), &incx, y.data(), &incy) - dot), roundings * products);
        ASSERT_LE(std::fabs(Blas<T>::asum(&n, x.data(), &incx) - asum), roundings * asum);
        ASSERT_LE(std::fabs(Blas<T>::nrm2(&n, x.data(), &incx) - std::sqrt(squares)), roundings * std::sqrt(squares));
    });
}

/// The first position at which `better(candidate, best)` holds over all before it; a NaN never wins and never loses.
template <class T, class Better> int expected_position(const std::vector<T>& x, Better better) {
    std::size_t where = 0;
    for (std::size_t k = 1; k < x.size(); ++k)
        if (better(abs1(x[k]), abs1(x[where]))) where = k;
    return static_cast<int>(where) + 1;
}

TYPED_TEST(Level1, PositionsOfExtremes) {
    using T = TypeParam;
    Generator generator(5);
    for (const int n : sizes) {
        if (n < 1) continue;
        for (int round = 0; round < 8; ++round) {
            std::vector<T> x(static_cast<std::size_t>(n));
            for (auto& v : x) v = T(static_cast<int>(generator() % 9) - 4); // many ties
            if (round % 4 == 1) x[generator() % x.size()] = T(nan_value);
            if (round % 4 == 2) x[generator() % x.size()] = T(-inf);
            if (round % 4 == 3) x[0] = T(nan_value);
            if (round == 4) x.assign(x.size(), T(nan_value));
            const int largest = expected_position(x, std::greater<>()), smallest = expected_position(x, std::less<>());
            for (const int inc : {1, 3}) {
                StridedVector<T> v(n, inc, 1);
                for (int k = 0; k < n; ++k) v[k] = x[static_cast<std::size_t>(k)];
                EXPECT_EQ(Blas<T>::iamax(&n, v.data(), &inc), largest) << "n " << n << " round " << round;
                EXPECT_EQ(Blas<T>::iamin(&n, v.data(), &inc), smallest) << "n " << n << " round " << round;
            }
        }
    }
}

TYPED_TEST(Level1, PositionsOfDegenerateVectors) {
    using T = TypeParam;
    const T x[2] = {T(1.0), T(2.0)};
    struct Case {
        int n, incx, position;
    };
    for (const auto& [n, incx, position] : {Case{0, 1, 0}, {-3, 1, 0}, {2, 0, 0}, {2, -1, 0}, {1, 0, 0}, {1, 5, 1}}) {
        EXPECT_EQ(Blas<T>::iamax(&n, x, &incx), position);
        EXPECT_EQ(Blas<T>::iamin(&n, x, &incx), position);
    }
}

TYPED_TEST(Level1, AxpyWithZeroAlphaLeavesEveryBit) {
    using T = TypeParam;
    const int n = 7, one = 1;
    const T zero(0.0);
    std::vector<T> x(7, T(inf)), y(7, T(nan_value)), before = y;
    Blas<T>::axpy(&n, &zero, x.data(), &one, y.data(), &one);
    EXPECT_EQ(std::memcmp(y.data(), before.data(), y.size() * sizeof(T)), 0);
}

TYPED_TEST(Level1, NormsOfTheWholeRange) {
    using T = TypeParam;
    const double lowest = std::numeric_limits<double>::denorm_min(), largest = std::numeric_limits<double>::max();
    for (const double size : {lowest * 1024, 1e-300, 1e-160, 1.0, 1e160, largest / 128}) {
        for (const int inc : {1, -1, 2, -3}) {
            const int n = 5000;
            StridedVector<T> x(n, inc, 3);
            for (int k = 0; k < n; ++k) x[k] = T(size);
            const double want = std::sqrt(5000.0) * size;
            EXPECT_NEAR(Blas<T>::nrm2(&n, x.data(), &inc) / want, 1.0, size < 1e-305 ? 1e-3 : 1e-13) << size;
        }
    }
    // A few extreme elements in one block must not cost the digits of the others.
    const int n = 10000, one = 1;
    std::vector<T> x(static_cast<std::size_t>(n), T(1e-170));
    x[4000] = T(3e200);
    x[9000] = T(4e200);
    EXPECT_NEAR(Blas<T>::nrm2(&n, x.data(), &one) / 5e200, 1.0, 1e-14);
    x[4000] = x[9000] = T(1.0);
    EXPECT_NEAR(Blas<T>::nrm2(&n, x.data(), &one) / std::sqrt(2.0), 1.0, 1e-14);
    x[5000] = T(nan_value);
    EXPECT_TRUE(std::isnan(Blas<T>::nrm2(&n, x.data(), &one)));
    x[5000] = T(inf);
    EXPECT_EQ(Blas<T>::nrm2(&n, x.data(), &one), inf);
    x.assign(x.size(), T(0.0));
    EXPECT_EQ(Blas<T>::nrm2(&n, x.data(), &one), 0.0);
}

TEST(Level1Real, ZeroAlphaStillMultiplies) {
    const int n = 5, one = 1;
    const double zero = 0.0;
    double x[5] = {1.0, nan_value, inf, -2.0, 0.0};
    dscal(&n, &zero, x, &one);
    EXPECT_EQ(x[0], 0.0);
    EXPECT_TRUE(std::isnan(x[1]) && std::isnan(x[2]));
    EXPECT_TRUE(std::signbit(x[3]));
}

TEST(Level1Real, UnitAlphaIsAShortCutOfSomeClasses) {
    const int cpu_class = class_under_test(), n = 3, one = 1;
    if (cpu_class < 0) return;
    // A multiplication quiets a signalling NaN; returning at once leaves its bits.
    const std::uint64_t signalling = 0x7FF0000000000001;
    std::array<std::uint64_t, 3> x = {signalling, signalling, signalling};
    const double unit = 1.0;
    dscal(&n, &unit, reinterpret_cast<double*>(x.data()), &one);
    for (const std::uint64_t bits : x) EXPECT_EQ(bits == signalling, cpu_class >= 1);
    // With an infinite real part 1 + 0i makes the imaginary part NaN.
    zcomplex z(inf, 1.0);
    const zcomplex unit_z(1.0, 0.0);
    zscal(&one, &unit_z, &z, &one);
    EXPECT_EQ(std::isnan(z.imag()), cpu_class < 2);
}

TEST(Level1Complex, DotUDoesNotConjugate) {
    for (const int n : sizes) {
        for (const int inc : {1, -1, 2}) {
            const int incy = 1;
            StridedVector<zcomplex> x(n, inc, 1), y(n, incy, 2, Flush::off_by_8);
            zcomplex want{}, got(nan_value, nan_value);
            for (int k = 0; k < n; ++k) want += x[k] * y[k];
            zdotu(&got, &n, x.data(), &inc, y.data(), &incy);
            EXPECT_LE(std::abs(got - want), 4 * eps * (n + 4)) << n;
        }
    }
}

TEST(Level1Complex, RotationWithComplexSineAndRealScaling) {
    const double c = 0.6, alpha = -0.875;
    const zcomplex s(0.48, 0.64);
    Level1<zcomplex>::for_all([&](int n, int incx, int incy, Flush flush) {
        expect_same_update<zcomplex>(
            n, incx, incy, flush, 6.0, [&](zcomplex* x, zcomplex* y) { ZROT(&n, x, &incx, y, &incy, &c, &s); },
            [&](zcomplex& x, zcomplex& y) {
                const zcomplex old = x;
                x = c * x + s * y;
                y = c * y - std::conj(s) * old;
            });
        expect_same_update<zcomplex>(
            n, incx, incy, flush, 2.0, [&](zcomplex* x, zcomplex*) { zdscal(&n, &alpha, x, &incx); },
            [&](zcomplex& x, const zcomplex&) { x *= alpha; });
    });
}

TEST(Level1Real, ModifiedRotationReadsWhatItsFlagSays) {
    struct Case {
        double param[5], h11, h21, h12, h22;
    };
    const double unread = nan_value;
    for (const Case& h : {Case{{-1.0, 0.5, -0.25, 0.75, 2.0}, 0.5, -0.25, 0.75, 2.0},
                          Case{{0.0, unread, -0.25, 0.75, unread}, 1.0, -0.25, 0.75, 1.0},
                          Case{{1.0, 0.5, unread, unread, 2.0}, 0.5, -1.0, 1.0, 2.0},
                          Case{{-2.0, unread, unread, unread, unread}, 1.0, 0.0, 0.0, 1.0}}) {
        for (const int n : sizes) {
            for (const auto& [incx, incy] : increments) {
                SCOPED_TRACE(::testing::Message() << "flag " << h.param[0] << " n " << n << " incx " << incx);
                if ((incx == 0 || incy == 0) && n > 32) continue; // grows beyond the range
                expect_same_update<double>(
                    n, incx, incy, Flush::end, 4.0,
                    [&, ix = incx, iy = incy](double* x, double* y) { drotm(&n, x, &ix, y, &iy, h.param); },
                    [&](double& x, double& y) {
                        const double old = x;
                        x = h.h11 * x + h.h12 * y;
                        y = h.h21 * old + h.h22 * y;
                    });
            }
        }
    }
}

TEST(Level1Real, RotationAnnihilatesAndEncodes) {
    struct Case {
        double a, b;
    };
    for (const auto& [a, b] :
         {Case{3, 4}, {-3, 4}, {3, -4}, {4, 3}, {-4, -3}, {0, 2}, {2, 0}, {1e300, 1e300}, {5e-324, 1}}) {
        double r = a, z = b, c = nan_value, s = nan_value;
        drotg(&r, &z, &c, &s);
        const double size = std::hypot(a, b);
        EXPECT_NEAR(c * a / size + s * b / size, r / size, 4 * eps);
        EXPECT_NEAR(c * b / size - s * a / size, 0.0, 4 * eps);
        EXPECT_EQ(std::signbit(r), std::signbit(std::fabs(a) > std::fabs(b) ? a : b)) << a << ' ' << b;
        const double z_want = std::fabs(a) > std::fabs(b) ? s : c != 0.0 ? 1.0 / c : 1.0;
        EXPECT_EQ(z, z_want);
    }
    double a = 0.0, b = -0.0, c = nan_value, s = nan_value;
    drotg(&a, &b, &c, &s);
    EXPECT_TRUE(a == 0.0 && b == 0.0 && c == 1.0 && s == 0.0);
}

TEST(Level1Complex, RotationAnnihilates) {
    const zcomplex b(1.5, 2.0);
    zcomplex a(-0.5, 1.0), s;
    double c = nan_value;
    const zcomplex a_before = a;
    zrotg(&a, &b, &c, &s);
    EXPECT_NEAR(std::abs(c * a_before + s * b - a), 0.0, 8 * eps);
    EXPECT_NEAR(std::abs(c * b - std::conj(s) * a_before), 0.0, 8 * eps);
    zcomplex zero(0.0, 0.0);
    zrotg(&zero, &b, &c, &s);
    EXPECT_TRUE(c == 0.0 && s == zcomplex(1.0, 0.0) && zero == b);
}

TEST(Level1Real, ModifiedRotationAnnihilates) {
    // sqrt(d1) x1 and sqrt(d2) y1 are the vector; H must move it onto the first axis and keep its length.
    for (const double d1 : {0.0, 1e-12, 0.5, 3.0, 1e12, 1e300})
        for (const double d2 : {1e-12, 0.7, 2.0, 1e12, -0.1})
            for (const double x1 : {0.0, 1.5, -2.0})
                for (const double y1 : {0.25, -3.0}) {
                    double e1 = d1, e2 = d2, x = x1, param[5] = {9, 0, 0, 0, 0};
                    drotmg(&e1, &e2, &x, &y1, param);
                    const double squared = d1 * x1 * x1 + d2 * y1 * y1;
                    const int one = 1;
                    double u = x1, v = y1;
                    drotm(&one, &u, &one, &v, &one, param);
                    SCOPED_TRACE(::testing::Message() << d1 << ' ' << d2 << ' ' << x1 << ' ' << y1);
                    if (param[0] == -1.0 && e1 == 0.0) {
                        EXPECT_TRUE(x == 0.0 && e2 == 0.0 && param[1] == 0.0 && param[4] == 0.0);
                        EXPECT_LT(d2, 0.0); // only a negative weight has no rotation here
                        continue;
                    }
                    EXPECT_NEAR(u / x, 1.0, 1e-13);
                    EXPECT_LE(std::fabs(v), 1e-13 * (std::fabs(x1) + std::fabs(y1)));
                    EXPECT_NEAR(e1 * x * x / squared, 1.0, 1e-13);
                    if (e1 != 0.0) EXPECT_TRUE(e1 > 5.9e-8 && e1 < 1.7e7);
                    if (e2 != 0.0) EXPECT_TRUE(std::fabs(e2) > 5.9e-8 && std::fabs(e2) < 1.7e7);
                }
}

TEST(Level1Real, ModifiedRotationOfDegenerateInput) {
    double d1 = -1.0, d2 = 2.0, x = 3.0, y = 4.0, param[5] = {9, 9, 9, 9, 9};
    drotmg(&d1, &d2, &x, &y, param);
    EXPECT_TRUE(d1 == 0.0 && d2 == 0.0 && x == 0.0);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(param[i], i == 0 ? -1.0 : 0.0);

    double e1 = 1.0, e2 = 0.0, u = 3.0, untouched[5] = {9, 9, 9, 9, 9};
    drotmg(&e1, &e2, &u, &y, untouched);
    EXPECT_TRUE(e1 == 1.0 && e2 == 0.0 && u == 3.0 && untouched[0] == -2.0 && untouched[1] == 9.0);

    double infinite = inf, other = 1.0, w = 1.0; // must end
    drotmg(&infinite, &other, &w, &y, param);
    EXPECT_FALSE(std::isfinite(infinite));
}

TEST(Level1Real, LongCopiesGoPastTheCacheAndStayExact) {
    const int n = (1 << 22) + 13, one = 1;
    StridedVector<double> x(n, 1, 1), y(n, 1, 2, Flush::end);
    dcopy(&n, x.data(), &one, y.data(), &one);
    EXPECT_EQ(std::memcmp(x.data(), y.data(), static_cast<std::size_t>(n) * sizeof(double)), 0);
}

} // namespace
