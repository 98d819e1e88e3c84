// QR and LQ factorisations, Q formed and applied, pivots: against the reference on matrices for which the result is
// settled, by residuals on those for which it is not.
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "lapack/kernel/source/orthogonal/geqp3.hpp"
#include "lapack/kernel/source/orthogonal/tall_panel.hpp"
#include "tests/support/orthogonal.hpp"
#include <algorithm>
#include <numeric>

namespace nxl_test {
namespace {

/// For any `work` a routine here may ask for.
template <class T> std::vector<T> room(int length) { return std::vector<T>(static_cast<std::size_t>(length)); }

/// |Q^H Q - I| / (m eps) for the m by k columns of q.
template <class T> double lost_orthogonality(const LapackMatrix<T>& q) {
    double worst = 0.0;
    for (int j = 0; j < q.cols; ++j)
        for (int l = 0; l <= j; ++l) {
            T sum = l == j ? -1.0 : 0.0;
            for (int i = 0; i < q.rows; ++i) sum += conjugate(q.at(i, l)) * q.at(i, j);
            if (!(std::abs(sum) <= worst)) worst = std::abs(sum);
        }
    return worst / (q.rows * eps);
}
/// Of each column of A P - Q R, with the factors in the call as geqrf leaves them, relative to the column. Sums are
/// taken of scaled columns, so that the limits of the range do not show.
template <class T>
double residual(const LapackMatrix<T>& a, const Call<T>& f, const LapackMatrix<T>& q, const std::vector<int>& from) {
    double worst = 0.0;
    for (int j = 0; j < a.cols; ++j) {
        const int source = from[static_cast<std::size_t>(j)] - 1;
        double size = 0.0, error = 0.0;
        for (int i = 0; i < a.rows; ++i) size = std::max(size, std::abs(a.at(i, source)));
        const double scale = size == 0.0 ? 1.0 : std::exp2(-std::ilogb(size));
        for (int i = 0; i < a.rows; ++i) {
            T sum = a.at(i, source) * scale;
            for (int l = 0; l <= std::min(j, q.cols - 1); ++l) sum -= q.at(i, l) * (f.a.at(l, j) * scale);
            if (!(std::abs(sum) <= error)) error = std::abs(sum);
        }
        worst = std::max(worst, std::isnan(error) ? 1e300 : error / (a.rows * eps));
    }
    return worst;
}
template <class T> LapackMatrix<T> formed(const Call<T>& f) {
    LapackMatrix<T> q(f.a.rows, std::min(f.a.rows, f.a.cols), 1);
    for (int j = 0; j < q.cols; ++j) std::copy_n(&f.a.at(0, j), q.rows, &q.at(0, j));
    auto work = room<T>(q.cols);
    int info;
    Orthogonal<T>::orgqr(&q.rows, &q.cols, &q.cols, q.data(), &q.lda, f.tau.data(), work.data(), &q.cols, &info);
    return q;
}
template <class T> Call<T> factored_here(const LapackMatrix<T>& a) {
    Call<T> call(a);
    auto work = room<T>(std::max(a.cols, 1));
    Orthogonal<T>::geqrf(&a.rows, &a.cols, call.a.data(), &a.lda, call.tau.data(), work.data(), &a.cols, &call.info);
    return call;
}
/// The same factors, or by rows those of the adjoint.
template <class T> Call<T> vectors_of(const Call<T>& f, bool by_rows) {
    if (!by_rows) return f;
    Call<T> result(LapackMatrix<T>(f.a.cols, f.a.rows, 2));
    result.tau = f.tau;
    for (int j = 0; j < f.a.cols; ++j)
        for (int i = 0; i < f.a.rows; ++i) result.a.at(j, i) = conjugate(f.a.at(i, j));
    return result;
}

template <class T> class OrthogonalFactors : public ::testing::Test {
  protected:
    using R = Orthogonal<T>;
};
TYPED_TEST_SUITE(OrthogonalFactors, Scalars);

struct Shape {
    int m, n;
};

// Around the widths of narrow panels and of blocks, on both sides of square.
constexpr int shapes[][2] = {{0, 3},   {3, 0},   {1, 1},   {1, 5},   {5, 1},    {4, 4},    {8, 8},     {9, 7},
                             {31, 33}, {33, 32}, {64, 70}, {70, 65}, {300, 20}, {20, 300}, {290, 330}, {7000, 20}};

TYPED_TEST(OrthogonalFactors, AreThoseOfTheReferenceWithTheLeastWorkspace) {
    for (const auto& [m, n] : shapes) {
        SCOPED_TRACE(::testing::Message() << m << " x " << n);
        const Call<TypeParam> given(matrix_of<TypeParam>(MatrixKind::random, m, n));
        const Team threads(std::max(m, n) > 300 ? 3 : 1); // panels beside the update of others, or by rows
        const auto with_length = [&](int lwork) {
            return [&, lwork](auto* entry, Call<TypeParam>& c) {
                auto work = room<TypeParam>(std::max(lwork, 1));
                entry(&m, &n, c.a.data(), &c.a.lda, c.tau.data(), work.data(), &lwork, &c.info);
            };
        };
        const double size = std::sqrt(m + n) + 1.0;
        same_as_reference<TypeParam>(TestFixture::R::geqrf, "geqrf", given, size, with_length(std::max(n, 1)));
        same_as_reference<TypeParam>(TestFixture::R::gelqf, "gelqf", given, size, with_length(std::max(m, 1)));
    }
}

/// Vectors as a reduction leaves them, by the reference: `make` calls it.
template <class T, class Fn, class Make>
Call<T> reduced(const std::string& name, const Call<T>& given, const Make& make) {
    Call<T> result = given;
    make(reference<Fn>(published_name<T>(name).c_str()), result);
    return result;
}

TYPED_TEST(OrthogonalFactors, GiveTheReferencesQ) {
    using T = TypeParam;
    for (const auto [length, count, k] :
         {std::array{1, 1, 1}, {9, 4, 4}, {40, 33, 9}, {90, 90, 70}, {70, 70, 0}, {150, 140, 140}}) {
        SCOPED_TRACE(::testing::Message() << length << " " << count << " " << k);
        for (const bool by_rows : {false, true}) {
            const int m = by_rows ? count : length, n = by_rows ? length : count;
            const auto given = vectors_of(factored_here(matrix_of<T>(MatrixKind::random, length, count)), by_rows);
            same_as_reference<T>(by_rows ? TestFixture::R::orglq : TestFixture::R::orgqr, by_rows ? "orglq" : "orgqr",
                                 given, 1.0, [&](auto* entry, Call<T>& c) {
                                     auto work = room<T>(count);
                                     entry(&m, &n, &k, c.a.data(), &c.a.lda, c.tau.data(), work.data(), &count,
                                           &c.info);
                                 });
        }
    }
}

TYPED_TEST(OrthogonalFactors, GiveTheReferencesProductsOnTeamsOfEverySize) {
    using T = TypeParam;
    const auto f = factored_here(matrix_of<T>(MatrixKind::random, 110, 80));
    for (const int team : {1, 3})
        for (const int others : {1, 90})
            for (const char side : {'L', 'R'})
                for (const char trans : {'N', TestFixture::R::transposed})
                    for (const bool by_rows : {false, true}) {
                        SCOPED_TRACE(::testing::Message() << team << side << trans << others << by_rows);
                        const Team threads(team);
                        const int m = side == 'L' ? 110 : others, n = side == 'L' ? others : 110, k = 80;
                        auto given = vectors_of(f, by_rows);
                        given.c = matrix_of<T>(MatrixKind::random, m, n);
                        same_as_reference<T>(by_rows ? TestFixture::R::ormlq : TestFixture::R::ormqr,
                                             by_rows ? "ormlq" : "ormqr", given, 4.0, [&](auto* entry, Call<T>& c) {
                                                 auto work = room<T>(others);
                                                 entry(&side, &trans, &m, &n, &k, c.a.data(), &c.a.lda, c.tau.data(),
                                                       c.c.data(), &c.c.lda, work.data(), &others, &c.info, 1, 1);
                                             });
                    }
}

TYPED_TEST(OrthogonalFactors, OfReductionsAreFormedAndApplied) {
    using T = TypeParam;
    using R = typename TestFixture::R;
    const auto as_it_is = [](auto& call) { return call.a.data(); };
    for (const int n : {1, 2, 10, 75}) {
        SCOPED_TRACE(n);
        const Call<T> square(matrix_of<T>(MatrixKind::random, n, n));
        const int length = 4 * n;
        for (const char uplo : {'U', 'L'}) {
            std::vector<double> d(static_cast<std::size_t>(n)), e(d);
            auto f =
                reduced<T, void(const char*, const int*, T*, const int*, double*, double*, T*, T*, const int*, int*,
                                std::size_t)>(is_complex<T> ? "hetrd" : "sytrd", square, [&](auto* trd, Call<T>& c) {
                    auto work = room<T>(length);
                    trd(&uplo, &n, as_it_is(c), &c.a.lda, d.data(), e.data(), c.tau.data(), work.data(), &length,
                        &c.info, 1);
                });
            same_as_reference<T>(R::orgtr, "orgtr", f, 1.0, [&](auto* entry, Call<T>& c) {
                auto work = room<T>(length);
                entry(&uplo, &n, c.a.data(), &c.a.lda, c.tau.data(), work.data(), &length, &c.info, 1);
            });
            for (const char side : {'L', 'R'})
                for (const char trans : {'N', R::transposed}) {
                    const int m = side == 'L' ? n : 6, columns = side == 'L' ? 6 : n;
                    Call<T> given = f;
                    given.c = matrix_of<T>(MatrixKind::random, m, columns);
                    same_as_reference<T>(R::ormtr, "ormtr", given, 4.0, [&](auto* entry, Call<T>& c) {
                        auto work = room<T>(length + 6);
                        const int lwork = 6;
                        entry(&side, &uplo, &trans, &m, &columns, c.a.data(), &c.a.lda, c.tau.data(), c.c.data(),
                              &c.c.lda, work.data(), &lwork, &c.info, 1, 1, 1);
                    });
                }
        }
        const int ilo = n > 4 ? 3 : 1, ihi = n > 4 ? n - 1 : n;
        auto hessenberg =
            reduced<T, void(const int*, const int*, const int*, T*, const int*, T*, T*, const int*, int*)>(
                "gehrd", square, [&](auto* hrd, Call<T>& c) {
                    auto work = room<T>(length);
                    hrd(&n, &ilo, &ihi, c.a.data(), &c.a.lda, c.tau.data(), work.data(), &length, &c.info);
                });
        same_as_reference<T>(R::orghr, "orghr", hessenberg, 1.0, [&](auto* entry, Call<T>& c) {
            auto work = room<T>(length);
            entry(&n, &ilo, &ihi, c.a.data(), &c.a.lda, c.tau.data(), work.data(), &length, &c.info);
        });
    }
}

/// A reduction of m by n to bidiagonal form: both factors, of the shapes that the published calls for an SVD have.
TYPED_TEST(OrthogonalFactors, OfBidiagonalFormAreFormedAndApplied) {
    using T = TypeParam;
    for (const auto [m, n] : {Shape{1, 1}, {12, 7}, {7, 12}, {50, 50}}) {
        const int length = 8 * std::max(m, n), order = std::min(m, n);
        std::vector<double> d(static_cast<std::size_t>(order)), e(d);
        for (const char vect : {'Q', 'P'}) {
            SCOPED_TRACE(::testing::Message() << m << " x " << n << vect);
            Call<T> f(matrix_of<T>(MatrixKind::random, m, n));
            std::vector<T> other = f.tau;
            auto work = room<T>(length);
            reference<void(const int*, const int*, T*, const int*, double*, double*, T*, T*, T*, const int*, int*)>(
                published_name<T>("gebrd").c_str())(
                &m, &n, f.a.data(), &f.a.lda, d.data(), e.data(), vect == 'Q' ? f.tau.data() : other.data(),
                vect == 'Q' ? other.data() : f.tau.data(), work.data(), &length, &f.info);
            const int rows = vect == 'Q' ? m : order, columns = vect == 'Q' ? order : n, k = vect == 'Q' ? n : m;
            Call<T> given = f;
            same_as_reference<T>(TestFixture::R::orgbr, "orgbr", given, 1.0, [&](auto* entry, Call<T>& c) {
                entry(&vect, &rows, &columns, &k, c.a.data(), &c.a.lda, c.tau.data(), work.data(), &length, &c.info, 1);
            });
            if constexpr (!is_complex<T>)
                for (const char side : {'L', 'R'})
                    for (const char trans : {'N', 'T'}) {
                        const int q = vect == 'Q' ? m : n, cm = side == 'L' ? q : 5, cn = side == 'L' ? 5 : q;
                        given = f;
                        given.c = matrix_of<T>(MatrixKind::random, cm, cn);
                        same_as_reference<T>(dormbr, "ormbr", given, 4.0, [&](auto* entry, Call<T>& c) {
                            entry(&vect, &side, &trans, &cm, &cn, &k, c.a.data(), &c.a.lda, c.tau.data(), c.c.data(),
                                  &c.c.lda, work.data(), &length, &c.info, 1, 1, 1);
                        });
                    }
        }
    }
}

/// Columns whose norms leave the range when they are squared, that are zero, or depend on each other.
template <class T> std::vector<LapackMatrix<T>> hard_matrices(int m, int n) {
    std::vector<LapackMatrix<T>> result;
    for (const MatrixKind kind : {MatrixKind::graded, MatrixKind::near_singular, MatrixKind::hilbert})
        result.push_back(matrix_of<T>(kind, m, n));
    for (const double factor : {1e-300, 1e-160, 1e160, 1e300}) {
        result.push_back(matrix_of<T>(MatrixKind::random, m, n));
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < m; ++i) result.back().at(i, j) *= j % 3 == 1 ? 1e6 / factor : factor;
    }
    result.push_back(matrix_of<T>(MatrixKind::random, m, n));
    for (int j = 0; j < n; j += 2) result.back().clear_column(j);
    return result;
}

/// With T, by blocks of so few rows that their triangles go by blocks too.
template <class T> Call<T> factored_by_rows(const LapackMatrix<T>& a, LapackMatrix<T>& t) {
    Call<T> call(a);
    nxl::factor_tall_panel<T>({call.a.data(), a.rows, a.cols, a.lda}, call.tau.data(),
                              {t.data(), a.cols, a.cols, t.lda}, 16);
    return call;
}

TYPED_TEST(OrthogonalFactors, ByBlocksOfRowsHaveTheirFactorWhateverTheTeam) {
    using T = TypeParam;
    for (const auto [m, n] : {Shape{90, 1}, {1300, 2}, {4200, 16}}) {
        auto a = matrix_of<T>(MatrixKind::random, m, n);
        LapackMatrix<T> t(n, n, 1), expected(n, n, 1);
        const auto on_team = [&](int threads) {
            const Team team(threads);
            return factored_by_rows(a, t);
        };
        Call<T> f = on_team(1);
        nxl::make_factor<T>({{f.a.data(), m, n, f.a.lda}, nxl::Order::forward, nxl::Storage::columns}, f.tau.data(),
                            {expected.data(), n, n, expected.lda});
        for (int j = 0; j < n; ++j)
            for (int i = 0; i <= j; ++i) EXPECT_LE(std::abs(t.at(i, j) - expected.at(i, j)), 1e-13) << m << i << j;
        EXPECT_TRUE(f.a.slack_untouched());
        EXPECT_EQ(largest_difference(f.a, on_team(3).a), 0.0) << m;

        // Where nothing is to be eliminated, neither are signs changed.
        for (int j = 0; j < n; ++j) std::fill_n(&a.at(j, j) + 1, m - j - 1, T{});
        for (int j = 0; j < n; ++j) a.at(j, j) = j + 1.0;
        f = on_team(1);
        EXPECT_EQ(largest_difference(f.a, a), 0.0) << m;
        for (const T tau : f.tau) EXPECT_EQ(tau, T{}) << m;
    }
}

TYPED_TEST(OrthogonalFactors, ReproduceHardMatricesColumnByColumn) {
    for (const auto [m, n] : {Shape{60, 45}, {45, 60}, {700, 5}})
        for (const auto& a : hard_matrices<TypeParam>(m, n)) {
            LapackMatrix<TypeParam> t(n, n, 0);
            const Call<TypeParam> f = m > 16 * n ? factored_by_rows(a, t) : factored_here(a);
            const auto q = formed(f);
            std::vector<int> from(static_cast<std::size_t>(n));
            std::iota(from.begin(), from.end(), 1);
            EXPECT_LE(lost_orthogonality(q), 2.0) << a.at(1, 1);
            EXPECT_LE(residual(a, f, q, from), 4.0) << a.at(1, 1);
        }
}

/// A P = Q R. The complex one has no entry; drivers use it.
void factor_pivoted(Call<double>& f, std::vector<int>& jpvt) {
    const int lwork = 3 * f.a.cols + 1;
    auto work = room<double>(lwork);
    dgeqp3(&f.a.rows, &f.a.cols, f.a.data(), &f.a.lda, jpvt.data(), f.tau.data(), work.data(), &lwork, &f.info);
}
void factor_pivoted(Call<zcomplex>& f, std::vector<int>& jpvt) {
    std::vector<nxl::i64> wide(jpvt.begin(), jpvt.end());
    const nxl::Matrix<zcomplex> a{f.a.data(), f.a.rows, f.a.cols, f.a.lda};
    f.info = nxl::factor_qr_pivoted(a, wide.data(), f.tau.data()) ? 0 : -1000;
    std::transform(wide.begin(), wide.end(), jpvt.begin(), [](nxl::i64 from) { return static_cast<int>(from); });
}

TYPED_TEST(OrthogonalFactors, WithPivotsHaveADiagonalThatDoesNotGrow) {
    using T = TypeParam;
    for (const auto [m, n] : {Shape{1, 1}, {50, 40}, {40, 50}, {70, 70}})
        for (const int kind : {0, 1, 2, 3}) {
            auto a = matrix_of<T>(kind == 1 ? MatrixKind::near_singular : MatrixKind::random, m, n);
            const double c = std::cos(1.2), s = std::sin(1.2); // Kahan's matrix
            for (int j = 0; kind == 2 && j < n; ++j)
                for (int i = 0; i < m; ++i) a.at(i, j) = std::pow(s, i) * (i == j ? 1.0 : i < j ? -c : 0.0);
            std::vector<int> jpvt(static_cast<std::size_t>(n), 0);
            int marked = 0;
            for (int j = 2; kind == 3 && j < n; j += 7, ++marked) jpvt[static_cast<std::size_t>(j)] = j;
            Call<T> f(a);
            factor_pivoted(f, jpvt);
            const auto q = formed(f);
            SCOPED_TRACE(::testing::Message() << m << " x " << n << ", kind " << kind);
            EXPECT_EQ(f.info, 0);
            EXPECT_LE(lost_orthogonality(q), 2.0);
            EXPECT_LE(residual(a, f, q, jpvt), 4.0);
            for (int i = marked + 1; i < std::min(m, n); ++i)
                EXPECT_LE(std::abs(f.a.at(i, i)), std::abs(f.a.at(i - 1, i - 1)) * (1.0 + 1e-12) + 1e-300) << i;
            for (int j = 0; j < marked; ++j) EXPECT_EQ(jpvt[static_cast<std::size_t>(j)] % 7, 3) << j;
        }
}

} // namespace
} // namespace nxl_test
