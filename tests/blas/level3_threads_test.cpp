// The drivers of level 3 beside the general product over threads: against plain loops, on sizes that fork and sizes
// that do not. Numbers are integers, so that all but the solutions are exact.
#include "blas/kernel/default_em64t/level3/rank_update_omp.hpp"
#include "blas/kernel/default_em64t/level3/symm_omp.hpp"
#include "blas/kernel/default_em64t/level3/trsm_omp.hpp"
#include "service/threads.hpp"
#include "tests/support/integer_matrix.hpp"
#include <gtest/gtest.h>
#include <omp.h>

namespace nxl {
namespace {

using nxl_test::conjugate;
using nxl_test::IntegerMatrix;

template <class T> class Level3Threads : public ::testing::Test {
  protected:
    void SetUp() override { set_dynamic(false); }
    void TearDown() override {
        omp_set_max_active_levels(1);
        set_num_threads(1);
        set_dynamic(true);
    }
};
using Scalars = ::testing::Types<double, zcomplex>;
TYPED_TEST_SUITE(Level3Threads, Scalars);

constexpr int thread_counts[] = {1, 2, 3, 8, 100};

/// The routines of T.
template <class T> struct Routines;
template <> struct Routines<double> {
    static constexpr auto symm = nxl_blas_dsymm;
    static constexpr auto syrk = nxl_blas_dsyrk;
    static constexpr auto syr2k = nxl_blas_dsyr2k;
    static constexpr auto trmm = nxl_blas_dtrmm;
    static constexpr auto trsm = nxl_blas_dtrsm;
};
template <> struct Routines<zcomplex> {
    static constexpr auto symm = nxl_blas_zsymm;
    static constexpr auto syrk = nxl_blas_zsyrk;
    static constexpr auto syr2k = nxl_blas_zsyr2k;
    static constexpr auto trmm = nxl_blas_ztrmm;
    static constexpr auto trsm = nxl_blas_ztrsm;
};

bool in_triangle(char uplo, i64 i, i64 j) { return uplo == 'L' ? i >= j : i <= j; }

/// Fills the other triangle with what nobody may read.
template <class T> void hide_other_triangle(char uplo, IntegerMatrix<T>& a) {
    for (i64 j = 0; j < a.columns(); ++j)
        for (i64 i = 0; i < a.rows(); ++i)
            if (!in_triangle(uplo, i, j)) a.at(i, j) = nxl_test::all_nan<T>();
}

/// The whole of a matrix of which one triangle is stored.
template <class T> IntegerMatrix<T> completed(char uplo, const IntegerMatrix<T>& a, bool hermitian) {
    IntegerMatrix<T> full = a;
    for (i64 j = 0; j < a.columns(); ++j)
        for (i64 i = 0; i < a.rows(); ++i) {
            if (!in_triangle(uplo, i, j)) full.at(i, j) = hermitian ? conjugate(a.at(j, i)) : a.at(j, i);
            if (hermitian && i == j) full.at(i, j) = std::real(a.at(i, j));
        }
    return full;
}

/// alpha op(x) op(y) added to c, where c is there.
template <class T>
void add_product(IntegerMatrix<T>& c, T alpha, const IntegerMatrix<T>& x, char transx, const IntegerMatrix<T>& y,
                 char transy) {
    const i64 depth = transx == 'N' ? x.columns() : x.rows();
    for (i64 j = 0; j < c.columns(); ++j)
        for (i64 i = 0; i < c.rows(); ++i) {
            T sum{};
            for (i64 p = 0; p < depth; ++p) sum += x.op(transx, i, p) * y.op(transy, p, j);
            c.at(i, j) += alpha * sum;
        }
}

template <class T> void scale(IntegerMatrix<T>& c, T beta) {
    for (i64 j = 0; j < c.columns(); ++j)
        for (i64 i = 0; i < c.rows(); ++i) c.at(i, j) *= beta;
}

template <class T> void test_symm(char side, char uplo, bool hermitian, i64 m, i64 n) {
    const i64 order = side == 'L' ? m : n;
    const T alpha{-2.0}, beta{3.0};
    IntegerMatrix<T> a(order, order, 1);
    const IntegerMatrix<T> b(m, n, 2), before(m, n, 3), full = completed(uplo, a, hermitian);
    hide_other_triangle(uplo, a);
    IntegerMatrix<T> want = before;
    scale(want, beta);
    if (side == 'L') add_product(want, alpha, full, 'N', b, 'N');
    else add_product(want, alpha, b, 'N', full, 'N');
    const i64 lda = a.ld(), ldb = b.ld(), ldc = want.ld();
    for (const int threads : thread_counts) {
        set_num_threads(threads);
        IntegerMatrix<T> c = before;
        if constexpr (sizeof(T) > sizeof(double)) {
            const auto routine = hermitian ? nxl_blas_zhemm : nxl_blas_zsymm;
            routine(side, uplo, m, n, alpha, a.data(), lda, b.data(), ldb, beta, c.data(), ldc);
        } else nxl_blas_dsymm(side, uplo, m, n, alpha, a.data(), lda, b.data(), ldb, beta, c.data(), ldc);
        EXPECT_TRUE(c.agrees_with(want)) << side << uplo << ' ' << m << " x " << n << " on " << threads;
    }
}

TYPED_TEST(Level3Threads, SymmetricProducts) {
    for (const bool hermitian : {false, sizeof(TypeParam) > sizeof(double)})
        for (const char side : {'L', 'R'})
            for (const char uplo : {'L', 'U'})
                for (const auto& [m, n] : {std::pair<i64, i64>{131, 150}, {150, 131}, {450, 3}, {3, 450}, {30, 30}})
                    test_symm<TypeParam>(side, uplo, hermitian, m, n);
}

/// One update of rank k or 2k, with what varies between the routines.
template <class T> struct Update {
    bool hermitian, twice;
    char uplo, trans;
    i64 n, k;

    char adjoint() const { return hermitian ? 'C' : 'T'; }
    T alpha() const {
        if constexpr (sizeof(T) > sizeof(double)) return hermitian && !twice ? T{-2.0} : T{-2.0, 1.0};
        else return -2.0;
    }

    void reference(IntegerMatrix<T>& c, const IntegerMatrix<T>& a, const IntegerMatrix<T>& b) const {
        const char first = trans == 'N' ? 'N' : adjoint(), second = trans == 'N' ? adjoint() : 'N';
        scale(c, T{3.0});
        add_product(c, alpha(), a, first, twice ? b : a, second);
        if (twice) add_product(c, hermitian ? conjugate(alpha()) : alpha(), b, first, a, second);
    }

    void run(IntegerMatrix<T>& c, const IntegerMatrix<T>& a, const IntegerMatrix<T>& b) const {
        const i64 lda = a.ld(), ldb = b.ld(), ldc = c.ld();
        const T scale_a = alpha(), beta{3.0};
        const double real_alpha = -2.0, real_beta = 3.0;
        if constexpr (sizeof(T) > sizeof(double)) {
            if (hermitian && twice)
                return nxl_blas_zher2k(uplo, trans, n, k, scale_a, a.data(), lda, b.data(), ldb, real_beta, c.data(),
                                       ldc);
            if (hermitian)
                return nxl_blas_zherk(uplo, trans, n, k, real_alpha, a.data(), lda, real_beta, c.data(), ldc);
        }
        if (twice) Routines<T>::syr2k(uplo, trans, n, k, scale_a, a.data(), lda, b.data(), ldb, beta, c.data(), ldc);
        else Routines<T>::syrk(uplo, trans, n, k, scale_a, a.data(), lda, beta, c.data(), ldc);
    }
};

template <class T> void test_update(const Update<T>& update) {
    const auto a = IntegerMatrix<T>::operand(update.trans, update.n, update.k, 1);
    const auto b = IntegerMatrix<T>::operand(update.trans, update.n, update.k, 2);
    IntegerMatrix<T> before = completed('L', IntegerMatrix<T>(update.n, update.n, 3), update.hermitian);
    IntegerMatrix<T> want = before;
    update.reference(want, a, b);
    hide_other_triangle(update.uplo, want);
    hide_other_triangle(update.uplo, before);
    for (const int threads : thread_counts) {
        set_num_threads(threads);
        IntegerMatrix<T> c = before;
        update.run(c, a, b);
        EXPECT_TRUE(c.agrees_with(want)) << update.uplo << update.trans << (update.hermitian ? " hermitian " : " ")
                                         << (update.twice ? "2k " : "k ") << update.n << " on " << threads;
    }
}

TYPED_TEST(Level3Threads, RankUpdates) {
    using T = TypeParam;
    for (const bool twice : {false, true})
        for (const bool hermitian : {false, sizeof(T) > sizeof(double)})
            for (const char uplo : {'L', 'U'})
                for (const char trans : {'N', hermitian ? 'C' : 'T'})
                    for (const auto& [n, k] : {std::pair<i64, i64>{301, 61}, {30, 5000}, {30, 30}})
                        test_update<T>({hermitian, twice, uplo, trans, n, k});
}

/// A triangle whose solutions neither grow nor lose digits: diagonal 4, little beside it.
template <class T> IntegerMatrix<T> tame_triangle(char uplo, char diag, i64 order) {
    IntegerMatrix<T> a(order, order, 1, 1);
    for (i64 j = 0; j < order; ++j) {
        for (i64 i = 0; i < order; ++i) a.at(i, j) /= static_cast<double>(order);
        a.at(j, j) = diag == 'U' ? nxl_test::all_nan<T>() : T{4.0};
    }
    hide_other_triangle(uplo, a);
    return a;
}

/// The triangle with its zeros and its diagonal.
template <class T> IntegerMatrix<T> spelled_out(char uplo, char diag, const IntegerMatrix<T>& a) {
    IntegerMatrix<T> full = a;
    for (i64 j = 0; j < a.columns(); ++j)
        for (i64 i = 0; i < a.rows(); ++i)
            if (!in_triangle(uplo, i, j)) full.at(i, j) = T{};
            else if (i == j && diag == 'U') full.at(i, j) = T{1.0};
    return full;
}

template <class T> double largest_difference(const IntegerMatrix<T>& x, const IntegerMatrix<T>& y) {
    double largest = 0.0;
    for (i64 j = 0; j < x.columns(); ++j)
        for (i64 i = 0; i < x.rows(); ++i)
            if (const double d = std::abs(x.at(i, j) - y.at(i, j)); !(d <= largest)) largest = d; // so that NaN counts
    return largest;
}

template <class T> void test_triangular(char side, char uplo, char trans, char diag, i64 m, i64 n) {
    const i64 order = side == 'L' ? m : n;
    const IntegerMatrix<T> a = tame_triangle<T>(uplo, diag, order), full = spelled_out(uplo, diag, a), before(m, n, 2);
    const T alpha{2.0};
    const auto times_triangle = [&](const IntegerMatrix<T>& x, T factor) {
        IntegerMatrix<T> product = before;
        scale(product, T{});
        if (side == 'L') add_product(product, factor, full, trans, x, 'N');
        else add_product(product, factor, x, 'N', full, trans);
        return product;
    };
    const IntegerMatrix<T> want_product = times_triangle(before, alpha);
    const i64 lda = a.ld(), ldb = before.ld();
    for (const int threads : thread_counts) {
        const auto text = [&] {
            return ::testing::Message() << side << uplo << trans << diag << ' ' << m << " x " << n << " on " << threads;
        };
        set_num_threads(threads);
        IntegerMatrix<T> b = before;
        Routines<T>::trmm(side, uplo, trans, diag, m, n, alpha, a.data(), lda, b.data(), ldb);
        EXPECT_LT(largest_difference(b, want_product), 1e-12) << text();
        EXPECT_TRUE(b.margin_untouched()) << text();
        b = before;
        Routines<T>::trsm(side, uplo, trans, diag, m, n, alpha, a.data(), lda, b.data(), ldb);
        EXPECT_LT(largest_difference(times_triangle(b, T{0.5}), before), 1e-12) << text();
        EXPECT_TRUE(b.margin_untouched()) << text();
    }
}

TYPED_TEST(Level3Threads, TriangularProductsAndSolutions) {
    for (const char side : {'L', 'R'})
        for (const char uplo : {'L', 'U'})
            for (const char trans : {'N', 'T', 'C'})
                for (const auto& [m, n] : {std::pair<i64, i64>{61, 53}, {90, 7}, {7, 90}, {17, 1}, {16, 16}})
                    test_triangular<TypeParam>(side, uplo, trans, uplo == 'L' ? 'U' : 'N', m, n);
    test_triangular<TypeParam>('L', 'L', 'N', 'N', 520, 21); // above 512 blocks are rounded
    test_triangular<TypeParam>('R', 'U', 'N', 'N', 21, 520);
}

TYPED_TEST(Level3Threads, NothingToDoTouchesNothing) {
    using T = TypeParam;
    set_num_threads(4);
    IntegerMatrix<T> b(40, 40, 1);
    const IntegerMatrix<T> before = b;
    const T alpha{2.0}, one{1.0};
    const i64 none = 0, n = 40, k = 1000000, ld = b.ld();
    for (const char side : {'L', 'R'}) {
        for (const auto& [rows, columns] : {std::pair{none, n}, {n, none}}) {
            Routines<T>::trsm(side, 'L', 'N', 'N', rows, columns, alpha, nullptr, ld, b.data(), ld);
            Routines<T>::trmm(side, 'L', 'N', 'N', rows, columns, alpha, nullptr, ld, b.data(), ld);
            Routines<T>::symm(side, 'L', rows, columns, alpha, nullptr, ld, nullptr, ld, one, b.data(), ld);
        }
    }
    const T zero{};
    Routines<T>::syrk('L', 'N', n, k, zero, nullptr, ld, one, b.data(), ld);
    Routines<T>::syrk('L', 'N', n, none, alpha, nullptr, ld, one, b.data(), ld);
    Routines<T>::syr2k('L', 'N', none, k, alpha, nullptr, ld, nullptr, ld, one, b.data(), ld);
    EXPECT_TRUE(b == before);
}

} // namespace
} // namespace nxl
