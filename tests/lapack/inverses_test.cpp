// Inverses and solutions from LU and Cholesky factors and from triangular matrices, through the entries. CTest runs
// this program for each processor class and vector width.
#include "blas/calls.hpp"
#include "lapack/kernel/source/cholesky/lauum.hpp"
#include "tests/support/captured.hpp"
#include "tests/support/dense.hpp"
#include "tests/support/guarded_matrix.hpp"
#include "tests/support/host_allocator.hpp"
#include "tests/support/lapack.hpp"
#include <array>
#include <numeric>

namespace nxl {
namespace {

using namespace nxl_test;
using zcomplex = std::complex<double>;

/// op(A) B - C.
template <class T> Dense<T> residual(char trans, const Dense<T>& a, char transb, const Dense<T>& b, Dense<T> c) {
    const int inner = transb == 'N' ? b.rows : b.cols;
    gemm(trans, transb, c.rows, c.cols, inner, 1.0, a.data.data(), std::max(a.rows, 1), b.data.data(),
         std::max(b.rows, 1), -1.0, c.data.data(), std::max(c.rows, 1));
    return c;
}

/// |residual| / (n |A| |X| eps).
template <class T> double scaled(const Dense<T>& r, const Dense<T>& a, const Dense<T>& x) {
    if (r.norm() == 0.0) return 0.0;
    return r.norm() / (a.rows * a.norm() * x.norm() * eps);
}
constexpr double bound = 8.0; // of scaled(): the methods promise a small constant

template <class T> Dense<T> identity(int n) {
    Dense<T> result(n, n);
    for (int i = 0; i < n; ++i) result(i, i) = 1.0;
    return result;
}

template <class T> class Inverses : public ::testing::Test {
  protected:
    using R = Lapack<T>;
    Generator generator{5};

    void SetUp() override {
        NXL_Set_Dynamic(0);
        NXL_Set_Num_Threads(1);
    }
    static std::string refusal(const char* suffix, int position) {
        return "NXL ERROR: Parameter " + std::to_string(position) + " was incorrect on entry to " +
               routine_name<T>(suffix) + "\n";
    }

    T value() { return random_value<T>(generator); }
    GuardedMatrix<T> general(int rows, int cols, int slack) {
        return {{rows, cols, std::max(rows, 1) + slack}, Flush::end, [this](int, int) { return value(); }};
    }
    /// A triangle with a mild condition; a factor has a real, positive diagonal.
    GuardedMatrix<T> triangle(const MatrixShape& shape, bool factor = false) {
        return {shape, Flush::end, [&, factor](int i, int j) {
                    const T v = value();
                    if (i != j) return v * (2.0 / shape.rows);
                    return factor ? T(1.5 + 0.5 * std::real(v)) : v + (std::real(v) < 0.0 ? -1.0 : 1.0);
                }};
    }
    static MatrixShape shape_of(char uplo, char diag, int n, int slack) {
        return {n, n, std::max(n, 1) + slack, uplo == 'U' ? Part::upper : Part::lower,
                diag == 'U' ? Diagonal::unit : Diagonal::general};
    }
    /// What a routine sees of a matrix: zeros beside a triangle, ones on a unit diagonal.
    static Dense<T> seen(const MatrixShape& shape, const T* data) {
        Dense<T> result(shape.rows, shape.cols);
        for (int j = 0; j < shape.cols; ++j)
            for (int i = 0; i < shape.rows; ++i) {
                if (shape.has(i, j)) result(i, j) = data[shape.at(i, j)];
                else if (i == j) result(i, j) = 1.0;
            }
        return result;
    }
    /// The whole of a Hermitian matrix of which one triangle is stored.
    static Dense<T> whole(const MatrixShape& shape, const T* data) {
        Dense<T> result = seen(shape, data);
        for (int j = 0; j < shape.cols; ++j)
            for (int i = 0; i < shape.rows; ++i)
                if (!shape.has(i, j)) result(i, j) = conjugate(result(j, i));
        return result;
    }

    /// A matrix with its factors and pivots by the reference.
    struct Lu {
        Dense<T> a;
        GuardedMatrix<T> factors;
        std::vector<int> pivots;
        MatrixShape shape;
    };
    Lu factored(int n, int slack) {
        const MatrixShape shape{n, n, std::max(n, 1) + slack};
        GuardedMatrix<T> matrix = general(n, n, slack);
        Dense<T> a = seen(shape, matrix.data()), lu = a;
        std::vector<int> pivots(static_cast<std::size_t>(n));
        const int ld = std::max(n, 1);
        int info = -99;
        reference_lu<T>()(&n, &n, lu.data.data(), &ld, pivots.data(), &info);
        EXPECT_EQ(info, 0);
        return {a, GuardedMatrix<T>(shape, Flush::end, [&](int i, int j) { return lu(i, j); }), pivots, shape};
    }
    GuardedMatrix<T> workspace(int lwork) {
        return {{lwork, 1, lwork}, Flush::end, [](int, int) { return T(7.0); }};
    }
    static int getri_info(Lu& lu, T* work, int lwork) {
        int info = -99;
        const int n = lu.shape.rows;
        R::getri(&n, lu.factors.data(), &lu.shape.ld, lu.pivots.data(), work, &lwork, &info);
        return info;
    }
    static double inverse_error(const Lu& lu) {
        const Dense<T> x = seen(lu.shape, lu.factors.data());
        return scaled(residual('N', x, 'N', lu.a, identity<T>(lu.a.rows)), lu.a, x);
    }
    void check_getri(int n, int slack, int lwork) {
        Lu lu = factored(n, slack);
        const auto work = workspace(lwork);
        ASSERT_EQ(getri_info(lu, work.data(), lwork), 0);
        EXPECT_LE(inverse_error(lu), bound);
        EXPECT_TRUE(lu.factors.rest_untouched());
    }
};
TYPED_TEST_SUITE(Inverses, Scalars);

/// Around tiles, the unblocked order, wide blocks.
constexpr std::array sizes = {0, 1, 2, 3, 5, 8, 17, 31, 32, 33, 63, 64, 65, 100, 127, 128, 129, 130, 257, 300};
std::vector<int> threads_at(int n) {
    if (n == 257) return {1, 2, 3};
    return {n < 65 ? 1 : n == 300 ? 8 : 1 + n % 3};
}

/// Calls body(n, slack) for all sizes, on one to eight threads.
template <class Body> void over_sizes(const Body& body) {
    for (const int n : sizes)
        for (const int threads : threads_at(n)) {
            NXL_Set_Num_Threads(threads);
            SCOPED_TRACE("n " + std::to_string(n) + ", threads " + std::to_string(threads));
            ASSERT_NO_FATAL_FAILURE(body(n, n % 3 == 0 ? 0 : 3));
        }
}

TYPED_TEST(Inverses, OfTriangles) {
    for (const char uplo : {'U', 'L'})
        for (const char diag : {'N', 'U'})
            over_sizes([&](int n, int slack) {
                const MatrixShape shape = this->shape_of(uplo, diag, n, slack);
                const auto a = this->triangle(shape);
                const Dense<TypeParam> before = this->seen(shape, a.data());
                int info = -99;
                Lapack<TypeParam>::trtri(&uplo, &diag, &n, a.data(), &shape.ld, &info, 1, 1);
                ASSERT_EQ(info, 0);
                const Dense<TypeParam> x = this->seen(shape, a.data());
                EXPECT_LE(scaled(residual('N', x, 'N', before, identity<TypeParam>(n)), before, x), bound)
                    << uplo << diag;
                EXPECT_TRUE(a.rest_untouched()) << uplo << diag;
            });
}

TYPED_TEST(Inverses, ProductsWithTheAdjoint) {
    for (const char uplo : {'U', 'L'})
        over_sizes([&](int n, int slack) {
            const MatrixShape shape = this->shape_of(uplo, 'N', n, slack);
            const auto a = this->triangle(shape, true);
            const Dense<TypeParam> factor = this->seen(shape, a.data());
            const i64 n64 = n, lda64 = shape.ld;
            i64 info = -99;
            lauum<TypeParam>(uplo, n64, a.data(), lda64, info);
            ASSERT_EQ(info, 0);
            const Dense<TypeParam> product = this->whole(shape, a.data());
            const auto wrong =
                uplo == 'U' ? residual('N', factor, 'C', factor, product) : residual('C', factor, 'N', factor, product);
            EXPECT_LE(scaled(wrong, factor, factor), bound) << uplo;
            EXPECT_TRUE(a.rest_untouched()) << uplo;
            for (int i = 0; i < n; ++i) ASSERT_EQ(std::imag(product(i, i)), 0.0) << uplo << i;
        });
}

TYPED_TEST(Inverses, FromCholeskyFactors) {
    for (const char uplo : {'u', 'L'})
        over_sizes([&](int n, int slack) {
            const MatrixShape shape = this->shape_of(uplo == 'u' ? 'U' : 'L', 'N', n, slack);
            const auto a = this->triangle(shape, true);
            const Dense<TypeParam> factor = this->seen(shape, a.data());
            const Dense<TypeParam> zero(n, n);
            const Dense<TypeParam> before =
                uplo == 'u' ? residual('C', factor, 'N', factor, zero) : residual('N', factor, 'C', factor, zero);
            int info = -99;
            Lapack<TypeParam>::potri(&uplo, &n, a.data(), &shape.ld, &info, 1);
            ASSERT_EQ(info, 0);
            const Dense<TypeParam> x = this->whole(shape, a.data());
            EXPECT_LE(scaled(residual('N', x, 'N', before, identity<TypeParam>(n)), before, x), bound) << uplo;
            EXPECT_TRUE(a.rest_untouched()) << uplo;
        });
}

TYPED_TEST(Inverses, FromLuFactors) {
    over_sizes([&](int n, int slack) { this->check_getri(n, slack, std::max(64 * n, 1)); });
    NXL_Set_Num_Threads(3);
    this->check_getri(530, 2, 530 * 256); // threads move rows of their own; wide blocks in the caller's workspace
}

TYPED_TEST(Inverses, WorkspaceOfGetri) {
    for (const int n : {1, 17, 65, 300}) {
        this->check_getri(n, 1, n);
        this->check_getri(n, 0, 3 * n + 1);
        auto lu = this->factored(n, 0);
        TypeParam work[1] = {};
        EXPECT_EQ(this->getri_info(lu, work, -1), 0); // a query
        EXPECT_EQ(work[0], TypeParam(64.0 * n));
        EXPECT_EQ(printed_by([&] { EXPECT_EQ(this->getri_info(lu, work, n - 1), -6); }), this->refusal("GETRI", 6));
        EXPECT_TRUE(lu.factors.untouched());
    }
}

TYPED_TEST(Inverses, SolutionsOfTriangularSystems) {
    for (const char uplo : {'U', 'L'})
        for (const char diag : {'N', 'U'})
            for (const char trans : {'N', 'T', 'C'})
                for (const int n : {0, 1, 5, 64, 130}) {
                    const int nrhs = n % 7;
                    const MatrixShape shape = this->shape_of(uplo, diag, n, 2), sides{n, nrhs, std::max(n, 1) + 1};
                    const auto a = this->triangle(shape), b = this->general(n, nrhs, 1);
                    const Dense<TypeParam> matrix = this->seen(shape, a.data()), right = this->seen(sides, b.data());
                    int info = -99;
                    Lapack<TypeParam>::trtrs(&uplo, &trans, &diag, &n, &nrhs, a.data(), &shape.ld, b.data(), &sides.ld,
                                             &info, 1, 1, 1);
                    ASSERT_EQ(info, 0);
                    const Dense<TypeParam> x = this->seen(sides, b.data());
                    EXPECT_LE(scaled(residual(trans, matrix, 'N', x, right), matrix, x), bound)
                        << uplo << trans << diag << n;
                    EXPECT_TRUE(b.rest_untouched() && a.untouched()) << uplo << trans << diag << n;
                }
}

TYPED_TEST(Inverses, SingularMatricesAreLeftAsTheyAre) {
    using R = Lapack<TypeParam>;
    const int n = 70, one = 1;
    std::vector<int> pivots(70);
    std::iota(pivots.begin(), pivots.end(), 1);
    for (const char uplo : {'U', 'L'}) {
        const MatrixShape shape{n, n, n};
        const GuardedMatrix<TypeParam> a(shape, Flush::end, [&](int i, int j) {
            return i == j && (i == 3 || i == 68) ? TypeParam{} : this->value(); // the first zero is reported
        });
        const auto b = this->general(n, 1, 0), work = this->workspace(n);
        const auto expect_singular = [&](const auto& call) {
            int info = -99;
            call(&info);
            EXPECT_EQ(info, 4) << uplo;
        };
        expect_singular([&](int* info) { R::trtri(&uplo, "N", &n, a.data(), &n, info, 1, 1); });
        expect_singular(
            [&](int* info) { R::trtrs(&uplo, "T", "n", &n, &one, a.data(), &n, b.data(), &n, info, 1, 1, 1); });
        expect_singular([&](int* info) { R::potri(&uplo, &n, a.data(), &n, info, 1); });
        expect_singular([&](int* info) { R::getri(&n, a.data(), &n, pivots.data(), work.data(), &n, info); });
        EXPECT_TRUE(a.untouched() && b.untouched()) << uplo;
    }
}

/// With the k-th allocation failing for every k, a result is right, or the pivots' copy failed and nothing happened.
TYPED_TEST(Inverses, EveryAllocationMayFail) {
    const int n = 300, nrhs = 3;
    int reports = 0;
    auto lu = this->factored(n, 0);
    auto work = this->workspace(40 * n), b = this->general(n, nrhs, 0);
    const Dense<TypeParam> right = this->seen({n, nrhs, n}, b.data());
    for (long failing = 1; failing <= 12; ++failing)
        for (const bool inverse : {false, true}) {
            lu.factors.restore(), b.restore();
            NXL_FreeBuffers();
            fail_allocation(failing);
            int info = -99;
            const std::string printed = printed_by([&] {
                if (inverse) info = this->getri_info(lu, work.data(), 40 * n);
                else
                    Lapack<TypeParam>::getrs("N", &n, &nrhs, lu.factors.data(), &n, lu.pivots.data(), b.data(), &n,
                                             &info, 1);
            });
            fail_allocation(0);
            EXPECT_EQ(info, printed.empty() ? 0 : -1000);
            if (!printed.empty()) {
                ++reports;
                EXPECT_NE(printed.find(routine_name<TypeParam>(inverse ? "GETRI" : "GETRS")), std::string::npos)
                    << printed;
                EXPECT_TRUE(lu.factors.untouched() && (inverse || b.untouched()));
            } else if (inverse) {
                EXPECT_LE(this->inverse_error(lu), bound) << failing;
            } else {
                const Dense<TypeParam> x = this->seen({n, nrhs, n}, b.data());
                EXPECT_LE(scaled(residual('N', lu.a, 'N', x, right), lu.a, x), bound) << failing;
            }
        }
    EXPECT_GE(reports, 2);
    EXPECT_LE(reports, 4); // the thread's record or the copy itself, of each routine
}

} // namespace
} // namespace nxl
