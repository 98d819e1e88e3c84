// Level 2 against the reference BLAS. The same call of the oracle on moduli, |A| |x| and so on, bounds the error of
// each element. CTest runs this program once for each processor class and vector width.
#include "blas/kernel/default_em64t/level2/gemv_omp.hpp"
#include "service/kernel_slot.hpp"
#include "tests/support/guarded_operand.hpp"
#include "tests/support/reference_blas.hpp"
#include <array>
#include <limits>
#include <string>

namespace nxl {
namespace {

using nxl_test::Flush;
using nxl_test::GuardedOperand;
using nxl_test::reference;

const double nan_value = std::numeric_limits<double>::quiet_NaN();

/// Around every vector and panel of both widths; and past a block of rows, which is 8 KiB.
constexpr std::array small_sizes = {0, 1, 2, 3, 4, 5, 7, 8, 9, 15, 17, 33};
template <class T> constexpr std::array large_sizes = {100, int(8192 / sizeof(T)) + 7};
constexpr std::array<std::array<int, 2>, 4> increments = {{{1, 1}, {2, -1}, {-1, 2}, {-3, -1}}};

/// Roundings of a sum of n products, complex ones included, of the call under test and of the oracle.
double tolerance(int n) { return 8.0 * (n + 8) * std::numeric_limits<double>::epsilon(); }

template <class T> T value(double re, double im) {
    if constexpr (std::is_same_v<T, double>) return re;
    else return {re, im};
}

const KernelTable& kernels() { return kernels_of(nxl_cpu_class()); }

// Signatures of the oracle.
template <class T>
using Gemv = void(const char*, const int*, const int*, const T*, const T*, const int*, const T*, const int*, const T*,
                  T*, const int*);
template <class T>
using Ger = void(const int*, const int*, const T*, const T*, const int*, const T*, const int*, T*, const int*);
template <class T>
using Symv = void(const char*, const int*, const T*, const T*, const int*, const T*, const int*, const T*, T*,
                  const int*);
template <class T> using Syr = void(const char*, const int*, const double*, const T*, const int*, T*, const int*);
template <class T>
using Syr2 = void(const char*, const int*, const T*, const T*, const int*, const T*, const int*, T*, const int*);
template <class T> using Trv = void(const char*, const char*, const char*, const int*, const T*, const int*, T*,
                                    const int*);

/// The routines of one scalar type under common names.
template <class T> struct Blas;
template <> struct Blas<double> {
    static constexpr auto gemv = nxl_blas_dgemv;
    struct GerVariant {
        GerKernel<double> kernel = kernels().dger;
        const char* name = "dger_";
    };
    static std::array<GerVariant, 1> ger() { return {}; }
    SymvKernel<double> symv = kernels().dsymv;
    SyrKernel<double, double> syr = kernels().dsyr;
    Syr2Kernel<double> syr2 = kernels().dsyr2;
    TrvKernel<double> trmv = kernels().dtrmv, trsv = kernels().dtrsv;
    const char *gemv_name = "dgemv_", *symv_name = "dsymv_", *syr_name = "dsyr_", *syr2_name = "dsyr2_",
               *trmv_name = "dtrmv_";
};
template <> struct Blas<zcomplex> {
    static constexpr auto gemv = nxl_blas_zgemv;
    struct GerVariant {
        GerKernel<zcomplex> kernel;
        const char* name;
    };
    static std::array<GerVariant, 2> ger() { return {{{kernels().zgeru, "zgeru_"}, {kernels().zgerc, "zgerc_"}}}; }
    SymvKernel<zcomplex> symv = kernels().zhemv;
    SyrKernel<zcomplex, double> syr = kernels().zher;
    Syr2Kernel<zcomplex> syr2 = kernels().zher2;
    TrvKernel<zcomplex> trmv = kernels().ztrmv, trsv = kernels().ztrsv;
    const char *gemv_name = "zgemv_", *symv_name = "zhemv_", *syr_name = "zher_", *syr2_name = "zher2_",
               *trmv_name = "ztrmv_";
};

auto whole = [](int, int) { return true; };
auto triangle(char uplo, bool with_diagonal = true) {
    const bool upper = uplo == 'U' || uplo == 'u';
    return [=](int row, int column) { return row == column ? with_diagonal : upper == (row < column); };
}

template <class T> class Level2 : public ::testing::Test {
  protected:
    std::mt19937_64 random{7};
    const Blas<T> blas;
    using Operand = GuardedOperand<T>;

    /// Calls body(n, lda, incx, incy, flush): small orders with all increments, large ones with some. That the lower
    /// case of an option letter means the same takes one order to see.
    template <class Body> void for_orders(const std::string& options, Body body) {
        for (const char option : options)
            if (option > 'Z') return run(body, 17, 20, -3, 2, Flush::end);
        for (const int n : small_sizes)
            for (const auto& [incx, incy] : increments)
                for (const Flush flush : {Flush::end, Flush::off_by_8})
                    run(body, n, std::max(n, 1) + 3, incx, incy, flush);
        for (const int n : large_sizes<T>) {
            run(body, n, n, 1, 1, Flush::end);
            run(body, n, n + 1, -3, 2, Flush::end);
        }
    }

    template <class Body> void run(Body body, int n, int lda, int incx, int incy, Flush flush) {
        if (this->HasFailure()) return; // one fault, one report
        SCOPED_TRACE(::testing::Message() << "n " << n << " incx " << incx << " incy " << incy);
        body(n, lda, incx, incy, flush);
    }

    void expect_gemv(char trans, int m, int n, int lda, int incx, int incy, T alpha, T beta, Flush flush) {
        SCOPED_TRACE(::testing::Message()
                     << trans << " m " << m << " n " << n << " alpha " << alpha << " beta " << beta);
        const bool plain = trans == 'N' || trans == 'n';
        Operand a = Operand::matrix(m, n, lda, whole, random, flush);
        Operand x = Operand::vector(plain ? n : m, incx, random, flush),
                y = Operand::vector(plain ? m : n, incy, random, flush);
        if (beta == T(0) && m > 0 && n > 0) y.fill(T(nan_value));
        if (alpha == T(0)) a.fill(T(nan_value)), x.fill(T(nan_value));
        auto want = y.copy();
        reference<Gemv<T>>(blas.gemv_name)(&trans, &m, &n, &alpha, a.copy().data(), &lda, x.copy().data(), &incx, &beta,
                                           want.data(), &incy);
        auto bound = y.moduli();
        const double alpha1 = std::abs(alpha), beta1 = std::abs(beta);
        reference<Gemv<double>>("dgemv_")(&trans, &m, &n, &alpha1, a.moduli().data(), &lda, x.moduli().data(), &incx,
                                          &beta1, bound.data(), &incy);
        const i64 m64 = m, n64 = n, lda64 = lda, incx64 = incx, incy64 = incy;
        Blas<T>::gemv(&trans, &m64, &n64, &alpha, a.data(), &lda64, x.data(), &incx64, &beta, y.data(), &incy64);
        ASSERT_TRUE(y.is_near(want, bound, tolerance(m + n)));
    }

    void expect_ger(const typename Blas<T>::GerVariant& ger, int m, int n, int lda, int incx, int incy, T alpha,
                    Flush flush) {
        SCOPED_TRACE(::testing::Message() << ger.name << " m " << m << " n " << n << " alpha " << alpha);
        Operand a = Operand::matrix(m, n, lda, whole, random, flush);
        Operand x = Operand::vector(m, incx, random, flush), y = Operand::vector(n, incy, random, flush);
        if (alpha == T(0)) x.fill(T(nan_value)), y.fill(T(nan_value));
        auto want = a.copy();
        reference<Ger<T>>(ger.name)(&m, &n, &alpha, x.copy().data(), &incx, y.copy().data(), &incy, want.data(), &lda);
        auto bound = a.moduli();
        const double alpha1 = std::abs(alpha);
        reference<Ger<double>>("dger_")(&m, &n, &alpha1, x.moduli().data(), &incx, y.moduli().data(), &incy,
                                        bound.data(), &lda);
        ger.kernel(m, n, alpha, x.data(), incx, y.data(), incy, a.data(), lda);
        ASSERT_TRUE(a.is_near(want, bound, tolerance(1)));
    }

    /// A triangular matrix of which products and solutions stay of moderate size.
    Operand triangular(char uplo, bool unit, int n, int lda, Flush flush) {
        Operand a = Operand::matrix(n, n, lda, triangle(uplo, !unit), random, flush);
        a.change([&](std::size_t place, T& v) {
            const bool diagonal = place % unsigned(lda) == place / unsigned(lda);
            v = diagonal ? v + value<T>(1.5, 0.5) : v * (1.0 / n);
        });
        return a;
    }

    /// Runs body(uplo, trans, diag, n, incx, A, x) for every form of a triangular matrix.
    template <class Body> void for_triangular(Body body) {
        for (const char uplo : std::string("UuLl"))
            for (const char trans : std::string("NnTtCc"))
                for (const char diag : std::string("NnUu"))
                    for_orders({uplo, trans, diag}, [&](int n, int lda, int incx, int, Flush flush) {
                        SCOPED_TRACE(::testing::Message() << uplo << trans << diag);
                        const bool unit = diag == 'U' || diag == 'u';
                        body(uplo, trans, diag, n, lda, incx, triangular(uplo, unit, n, lda, flush),
                             Operand::vector(n, incx, random, flush));
                    });
    }
};

using Scalars = ::testing::Types<double, zcomplex>;
TYPED_TEST_SUITE(Level2, Scalars);

TYPED_TEST(Level2, Gemv) {
    using T = TypeParam;
    const T factors[] = {T(0), T(1), value<T>(-0.75, 0.5)};
    for (const char trans : std::string("NnTtCc"))
        this->for_orders({trans}, [&](int n, int, int incx, int incy, Flush flush) {
            for (const int m : {n, 2, 9})
                for (const T alpha : factors)
                    for (const T beta : factors) {
                        if (n > 100 && (m == n || alpha != factors[2])) continue;
                        this->expect_gemv(trans, m, n, m + 3, incx, incy, alpha, beta, flush);
                        this->expect_gemv(trans, n, m, n + 1, incx, incy, alpha, beta, flush);
                    }
        });
    for (const char trans : {'N', 'T'}) // past a contiguous block of rows, 128 KiB
        this->expect_gemv(trans, 16400, 3, 16400, 1, 1, factors[2], factors[2], Flush::end);
}

TYPED_TEST(Level2, Ger) {
    using T = TypeParam;
    for (const auto& variant : Blas<T>::ger()) {
        this->for_orders("", [&](int n, int, int incx, int incy, Flush flush) {
            for (const int m : {n, 2, 9})
                for (const T alpha : {T(0), T(1), value<T>(-0.75, 0.5)}) {
                    if (m == n && n > 100) continue;
                    this->expect_ger(variant, m, n, m + 3, incx, incy, alpha, flush);
                    this->expect_ger(variant, n, m, n + 1, incx, incy, alpha, flush);
                }
        });
        this->expect_ger(variant, 16400, 3, 16400, 1, 1, value<T>(-0.75, 0.5), Flush::end);
    }
}

TYPED_TEST(Level2, SymvTakesTheOtherTriangleAsAMirrorImage) {
    using T = TypeParam;
    using Operand = GuardedOperand<T>;
    const T factors[] = {T(0), T(1), value<T>(-0.75, 0.5)};
    for (const char uplo : std::string("UuLl"))
        this->for_orders({uplo}, [&](int n, int lda, int incx, int incy, Flush flush) {
            for (const T alpha : factors)
                for (const T beta : factors) {
                    if (n > 100 && alpha != factors[2]) continue;
                    SCOPED_TRACE(::testing::Message() << uplo << " alpha " << alpha << " beta " << beta);
                    Operand a = Operand::matrix(n, n, lda, triangle(uplo), this->random, flush);
                    Operand x = Operand::vector(n, incx, this->random, flush);
                    Operand y = Operand::vector(n, incy, this->random, flush);
                    if (beta == T(0)) y.fill(T(nan_value));
                    if (alpha == T(0)) a.fill(T(nan_value)), x.fill(T(nan_value));
                    auto want = y.copy();
                    auto bound = y.moduli();
                    const double alpha1 = std::abs(alpha), beta1 = std::abs(beta);
                    reference<Symv<T>>(this->blas.symv_name)(&uplo, &n, &alpha, a.copy().data(), &lda, x.copy().data(),
                                                             &incx, &beta, want.data(), &incy);
                    reference<Symv<double>>("dsymv_")(&uplo, &n, &alpha1, a.moduli().data(), &lda, x.moduli().data(),
                                                      &incx, &beta1, bound.data(), &incy);
                    this->blas.symv(uplo, n, alpha, a.data(), lda, x.data(), incx, beta, y.data(), incy);
                    ASSERT_TRUE(y.is_near(want, bound, tolerance(n)));
                }
        });
}

TYPED_TEST(Level2, Syr) {
    using T = TypeParam;
    using Operand = GuardedOperand<T>;
    for (const char uplo : std::string("UuLl"))
        this->for_orders({uplo}, [&](int n, int lda, int incx, int, Flush flush) {
            for (const double alpha : {0.0, 1.0, -0.75}) {
                if (n > 100 && alpha != -0.75) continue;
                SCOPED_TRACE(::testing::Message() << uplo << " alpha " << alpha);
                Operand a = Operand::matrix(n, n, lda, triangle(uplo), this->random, flush);
                Operand x = Operand::vector(n, incx, this->random, flush);
                if (alpha == 0.0) x.fill(T(nan_value));
                auto want = a.copy();
                auto bound = a.moduli();
                const double alpha1 = std::abs(alpha);
                reference<Syr<T>>(this->blas.syr_name)(&uplo, &n, &alpha, x.copy().data(), &incx, want.data(), &lda);
                reference<Syr<double>>("dsyr_")(&uplo, &n, &alpha1, x.moduli().data(), &incx, bound.data(), &lda);
                this->blas.syr(uplo, n, alpha, x.data(), incx, a.data(), lda);
                ASSERT_TRUE(a.is_near(want, bound, tolerance(1)));
            }
        });
}

TYPED_TEST(Level2, Syr2) {
    using T = TypeParam;
    using Operand = GuardedOperand<T>;
    for (const char uplo : std::string("UuLl"))
        this->for_orders({uplo}, [&](int n, int lda, int incx, int incy, Flush flush) {
            for (const T alpha : {T(0), T(1), value<T>(-0.75, 0.5)}) {
                if (n > 100 && std::abs(alpha) != std::abs(value<T>(-0.75, 0.5))) continue;
                SCOPED_TRACE(::testing::Message() << uplo << " alpha " << alpha);
                Operand a = Operand::matrix(n, n, lda, triangle(uplo), this->random, flush);
                Operand x = Operand::vector(n, incx, this->random, flush);
                Operand y = Operand::vector(n, incy, this->random, flush);
                if (alpha == T(0)) x.fill(T(nan_value)), y.fill(T(nan_value));
                auto want = a.copy();
                auto bound = a.moduli();
                const double alpha1 = std::abs(alpha);
                reference<Syr2<T>>(this->blas.syr2_name)(&uplo, &n, &alpha, x.copy().data(), &incx, y.copy().data(),
                                                         &incy, want.data(), &lda);
                reference<Syr2<double>>("dsyr2_")(&uplo, &n, &alpha1, x.moduli().data(), &incx, y.moduli().data(),
                                                  &incy, bound.data(), &lda);
                this->blas.syr2(uplo, n, alpha, x.data(), incx, y.data(), incy, a.data(), lda);
                ASSERT_TRUE(a.is_near(want, bound, tolerance(2)));
            }
        });
}

TYPED_TEST(Level2, Trmv) {
    using T = TypeParam;
    this->for_triangular([&](char uplo, char trans, char diag, int n, int lda, int incx, const auto& a, const auto& x) {
        auto want = x.copy();
        auto bound = x.moduli();
        reference<Trv<T>>(this->blas.trmv_name)(&uplo, &trans, &diag, &n, a.copy().data(), &lda, want.data(), &incx);
        reference<Trv<double>>("dtrmv_")(&uplo, &trans, &diag, &n, a.moduli().data(), &lda, bound.data(), &incx);
        this->blas.trmv(uplo, trans, diag, n, a.data(), lda, x.data(), incx);
        ASSERT_TRUE(x.is_near(want, bound, tolerance(n)));
    });
}

/// The residual |op(A) x - b| is within roundings of |op(A)| |x|, whatever the condition of A.
TYPED_TEST(Level2, TrsvLeavesASmallResidual) {
    using T = TypeParam;
    this->for_triangular([&](char uplo, char trans, char diag, int n, int lda, int incx, const auto& a, const auto& b) {
        const std::size_t span = b.copy().size();
        this->blas.trsv(uplo, trans, diag, n, a.data(), lda, b.data(), incx);
        std::vector<T> product(b.data(), b.data() + span), rhs = b.copy();
        std::vector<double> bound;
        for (const T& v : product) bound.push_back(std::abs(v));
        reference<Trv<T>>(this->blas.trmv_name)(&uplo, &trans, &diag, &n, a.copy().data(), &lda, product.data(), &incx);
        reference<Trv<double>>("dtrmv_")(&uplo, &trans, &diag, &n, a.moduli().data(), &lda, bound.data(), &incx);
        for (std::size_t k = 0; k < span; ++k) {
            if (k % unsigned(std::abs(incx)) == 0)
                ASSERT_LE(std::abs(product[k] - rhs[k]), tolerance(n) * bound[k]) << "place " << k;
            else ASSERT_EQ(std::memcmp(&b.data()[k], &rhs[k], sizeof(T)), 0) << "place " << k;
        }
    });
}

/// The reference BLAS has no zsyr; the same elements come from a full update with y = x.
TEST(Level2Complex, SyrDoesNotConjugate) {
    using Operand = GuardedOperand<zcomplex>;
    std::mt19937_64 random(3);
    for (const char uplo : std::string("UuLl"))
        for (const int n : {1, 3, 17, 33, 513})
            for (const int incx : {1, -2}) {
                const int lda = n + 2;
                const zcomplex alpha(-0.75, 0.5);
                Operand a = Operand::matrix(n, n, lda, triangle(uplo), random);
                Operand x = Operand::vector(n, incx, random);
                auto want = a.copy();
                auto bound = a.moduli();
                const double alpha1 = std::abs(alpha);
                reference<Ger<zcomplex>>("zgeru_")(&n, &n, &alpha, x.data(), &incx, x.data(), &incx, want.data(), &lda);
                reference<Ger<double>>("dger_")(&n, &n, &alpha1, x.moduli().data(), &incx, x.moduli().data(), &incx,
                                                bound.data(), &lda);
                kernels().zsyr(uplo, n, alpha, x.data(), incx, a.data(), lda);
                ASSERT_TRUE(a.is_near(want, bound, tolerance(1))) << uplo << " n " << n << " incx " << incx;
            }
}

/// A quotient by a divisor near the ends of the range must not pass through its square.
TEST(Level2Complex, SolvesWithDivisorsOfTheWholeRange) {
    for (const double size : {1e-300, 1e300}) {
        for (const zcomplex divisor : {zcomplex(3, 4), zcomplex(4, -3), zcomplex(0, 2), zcomplex(-2, 0)}) {
            const zcomplex a = divisor * size, want(0.6, -0.8);
            zcomplex x = divisor * want * size;
            kernels().ztrsv('U', 'N', 'N', 1, &a, 1, &x, 1);
            EXPECT_LE(std::abs(x - want), 1e-15) << divisor << size;
        }
    }
}

} // namespace
} // namespace nxl
