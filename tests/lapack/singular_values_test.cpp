// Singular values and vectors: every pair of letters on matrices of every shape; bidiagonal ones to the last digit.
#include "tests/support/singular.hpp"

namespace nxl_test {
namespace {

constexpr std::array<int, 2> shapes[] = {{1, 1},   {1, 6},   {6, 1},     {2, 2},   {20, 20},
                                         {24, 17}, {17, 24}, {50, 20},   {20, 50}, {60, 56},
                                         {54, 58}, {70, 30}, {150, 140}, {0, 3},   {3, 0}};

template <class T> struct Decomposed {
    LapackMatrix<T> a, u, vt;
    std::vector<double> s;
    int info = -99;
};

/// How well `count` columns, or with `rows` rows, of q are orthonormal, in units of eps.
template <class T> double orthogonality(const LapackMatrix<T>& q, int length, int count, bool rows) {
    double worst = 0.0;
    for (int j = 0; j < count; ++j)
        for (int k = 0; k <= j; ++k) {
            T sum = j == k ? T{-1.0} : T{};
            for (int i = 0; i < length; ++i)
                sum += rows ? q.at(j, i) * conjugate(q.at(k, i)) : conjugate(q.at(i, k)) * q.at(i, j);
            if (!(std::abs(sum) <= worst)) worst = std::abs(sum);
        }
    return worst / (eps * std::max(length, 1));
}

template <class T> double largest(const LapackMatrix<T>& a) {
    double result = 0.0;
    for (int j = 0; j < a.cols; ++j)
        for (int i = 0; i < a.rows; ++i) result = std::max(result, std::abs(a.at(i, j)));
    return result;
}

template <class T> class SingularValues : public ::testing::Test {
  protected:
    using R = Singular<T>;
    static constexpr int length = 100000;
    std::vector<T> work_ = std::vector<T>(length);
    std::vector<double> reals_ = std::vector<double>(length);

    /// jobz for gesdd alone, where jobu is 0.
    Decomposed<T> decompose(const LapackMatrix<T>& a, char jobu, char job) {
        const int m = a.rows, n = a.cols, order = std::min(m, n);
        const bool tall = m >= n;
        const char left = jobu != 0 ? jobu : job != 'O' ? job : tall ? 'O' : 'A';
        const char right = jobu != 0 ? job : job != 'O' ? job : tall ? 'A' : 'O';
        const auto columns = [&](char letter, int all) { return letter == 'A' ? all : letter == 'S' ? order : 0; };
        Decomposed<T> result{a, LapackMatrix<T>(m, columns(left, m), 2), LapackMatrix<T>(columns(right, n), n, 2),
                             std::vector<double>(static_cast<std::size_t>(order) + 1, 7.0)};
        auto& [own, u, vt, s, info] = result;
        if constexpr (is_complex<T>) {
            if (jobu != 0)
                R::gesvd(&jobu, &job, &m, &n, own.data(), &own.lda, s.data(), u.data(), &u.lda, vt.data(), &vt.lda,
                         work_.data(), &length, reals_.data(), &info, 1, 1);
            else
                R::gesdd(&job, &m, &n, own.data(), &own.lda, s.data(), u.data(), &u.lda, vt.data(), &vt.lda,
                         work_.data(), &length, reals_.data(), integers_.data(), &info, 1);
        } else {
            if (jobu != 0)
                R::gesvd(&jobu, &job, &m, &n, own.data(), &own.lda, s.data(), u.data(), &u.lda, vt.data(), &vt.lda,
                         work_.data(), &length, &info, 1, 1);
            else
                R::gesdd(&job, &m, &n, own.data(), &own.lda, s.data(), u.data(), &u.lda, vt.data(), &vt.lda,
                         work_.data(), &length, integers_.data(), &info, 1);
        }
        if (u.cols > 0) EXPECT_TRUE(u.slack_untouched());
        if (vt.rows > 0) EXPECT_TRUE(vt.slack_untouched());
        if (order > 0) EXPECT_TRUE(own.slack_untouched());
        if (left == 'O') u = own;
        if (right == 'O') vt = own;
        left_ = left == 'N' ? 0 : std::max(columns(left, m), order);
        right_ = right == 'N' ? 0 : std::max(columns(right, n), order);
        return result;
    }

    /// Orthonormal vectors, |A v| = s and |A^H u| = s for each of them, and A = U S V^H where there are both.
    void expect_vectors(const LapackMatrix<T>& a, const Decomposed<T>& r) const {
        const int m = a.rows, n = a.cols, order = std::min(m, n);
        EXPECT_LE(orthogonality(r.u, m, left_, false), 8.0);
        EXPECT_LE(orthogonality(r.vt, n, right_, true), 8.0);
        const double size = largest(a), scale = size > 0.0 ? std::ldexp(1.0, -std::ilogb(size)) : 1.0;
        const double s1 = r.s[0] * (size < 1.0 ? scale : 1.0) / (size < 1.0 ? 1.0 : 1.0 / scale);
        const double allowed = 4.0 * eps * std::max(m, n) * s1;
        double worst = 0.0;
        const auto take = [&](double error) {
            if (!(error <= worst)) worst = error;
        };
        for (int k = 0; k < std::max(left_, right_); ++k) {
            double squares = 0.0;
            const bool by_left = left_ > k;
            const double value = k < order ? r.s[static_cast<std::size_t>(k)] * scale : 0.0;
            for (int j = 0; j < (by_left ? n : m); ++j) { // A^H u or A v, less s v or s u where there is that
                T sum{};
                for (int i = 0; i < (by_left ? m : n); ++i)
                    sum += by_left ? conjugate(a.at(i, j) * scale) * r.u.at(i, k)
                                   : a.at(j, i) * scale * conjugate(r.vt.at(k, i));
                squares += std::norm(sum);
                if (by_left && right_ > k && k < order) take(std::abs(sum - value * conjugate(r.vt.at(k, j))));
            }
            take(std::abs(std::sqrt(squares) - value));
        }
        EXPECT_LE(worst, allowed);
    }

    std::vector<int> integers_ = std::vector<int>(length);
    int left_ = 0, right_ = 0; // vectors that the last call gave
};
TYPED_TEST_SUITE(SingularValues, Scalars);

TYPED_TEST(SingularValues, EveryPairOfLetters) {
    using T = TypeParam;
    for (const Given given : all_given)
        for (const auto [m, n] : shapes) {
            if (m > 100 && given != Given::random && given != Given::graded) continue;
            if (m * n > 1000 && (given == Given::unit || given == Given::tiny || given == Given::huge)) continue;
            const Team team(given == Given::random ? 2 : 1);
            const auto a = given_matrix<T>(given, m, n);
            const std::vector<double> values = this->decompose(a, 'N', 'N').s;
            for (const char jobu : {'\0', 'A', 'S', 'O', 'N'})
                for (const char job : {'A', 'S', 'O', 'N'}) {
                    if (jobu == 'O' && job == 'O') continue;
                    if ((given != Given::random || m * n > 1000) && jobu != 0 && jobu != job) continue;
                    if (m > 100 && (jobu != 0 || job != 'S')) continue; // a larger tree
                    SCOPED_TRACE(::testing::Message() << m << " x " << n << ", kind " << static_cast<int>(given) << ' '
                                                      << (jobu != 0 ? jobu : '-') << job);
                    const Decomposed<T> r = this->decompose(a, jobu, job);
                    ASSERT_EQ(r.info, 0);
                    const std::size_t order = r.s.size() - 1;
                    EXPECT_EQ(r.s[order], 7.0);
                    if (order == 0) continue;
                    EXPECT_TRUE(std::is_sorted(r.s.rbegin() + 1, r.s.rend()));
                    EXPECT_GE(r.s[order - 1], 0.0);
                    for (std::size_t i = 0; i < order; ++i)
                        EXPECT_NEAR(r.s[i], values[i], 4.0 * eps * std::max(m, n) * values[0] + 0x1p-1070);
                    this->expect_vectors(a, r);
                }
        }
}

/// The values are those of the matrix: the reference finds the same ones.
TYPED_TEST(SingularValues, AreThoseOfTheReference) {
    using T = TypeParam;
    for (const auto [m, n] : {std::array{60, 60}, {90, 31}, {31, 90}}) {
        const auto a = given_matrix<T>(Given::random, m, n);
        Decomposed<T> ours = this->decompose(a, 'N', 'N'), theirs = ours;
        theirs.a = a;
        const auto reference_gesvd = by_reference<T>(Singular<T>::gesvd, "gesvd");
        if constexpr (is_complex<T>)
            reference_gesvd("N", "N", &m, &n, theirs.a.data(), &a.lda, theirs.s.data(), theirs.u.data(), &m,
                            theirs.vt.data(), &n, this->work_.data(), &this->length, this->reals_.data(), &theirs.info,
                            1, 1);
        else
            reference_gesvd("N", "N", &m, &n, theirs.a.data(), &a.lda, theirs.s.data(), theirs.u.data(), &m,
                            theirs.vt.data(), &n, this->work_.data(), &this->length, &theirs.info, 1, 1);
        for (std::size_t i = 0; i < ours.s.size(); ++i) EXPECT_NEAR(ours.s[i], theirs.s[i], 20 * eps * theirs.s[0]);
    }
}

/// Blocks, their edges, strips of threads, and a wide matrix by its adjoint.
TYPED_TEST(SingularValues, ReductionAsByTheReference) {
    using T = TypeParam;
    for (const auto [m, n] : {std::array{1, 1}, {5, 1}, {1, 5}, {40, 40}, {90, 33}, {33, 90}, {400, 250}}) {
        SCOPED_TRACE(::testing::Message() << m << " x " << n);
        const std::size_t order = static_cast<std::size_t>(std::min(m, n));
        const Team team(m > 300 ? 3 : 1);
        std::vector<double> d(2 * order), e(2 * order);
        std::vector<T> taup(2 * order);
        std::size_t run = 0;
        const int lwork = std::max(m, n);
        const auto call = [&](auto* entry, Call<T>& c) {
            entry(&c.a.rows, &c.a.cols, c.a.data(), &c.a.lda, d.data() + run, e.data() + run, c.tau.data(),
                  taup.data() + run, this->work_.data(), &lwork, &c.info);
            run += order;
        };
        same_as_reference<T>(Singular<T>::gebrd, "gebrd", Call<T>(matrix_of<T>(MatrixKind::random, m, n)), 300.0, call);
        for (std::size_t i = 0; i < order; ++i) {
            EXPECT_NEAR(d[i], d[order + i], 1e-10);
            if (i + 1 < order) EXPECT_NEAR(e[i], e[order + i], 1e-10);
            EXPECT_LE(std::abs(taup[i] - taup[order + i]), 1e-10);
        }
    }
}

TYPED_TEST(SingularValues, NanAndInfinityGiveAnAnswer) {
    using T = TypeParam;
    for (const double value : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        auto a = given_matrix<T>(Given::random, 30, 20);
        a.at(7, 5) = value;
        for (const char job : {'N', 'S'}) EXPECT_GT(this->decompose(a, job, job).info, 0);
        const int info = this->decompose(a, 0, 'S').info;
        if (std::isnan(value)) EXPECT_EQ(info, -4);
        else EXPECT_GT(info, 0);
    }
}

struct Bidiagonal {
    std::vector<double> d, e;
};
/// Kinds: random, graded down, graded up, ones, tiny couplings, a zero on the diagonal, over 600 orders.
Bidiagonal bidiagonal_of(int kind, int n) {
    Bidiagonal b{std::vector<double>(static_cast<std::size_t>(n)), std::vector<double>(static_cast<std::size_t>(n))};
    Generator generator(static_cast<unsigned long>(kind) + 1);
    for (int i = 0; i < n; ++i) {
        double &d = b.d[static_cast<std::size_t>(i)], &e = b.e[static_cast<std::size_t>(i)];
        d = random_value<double>(generator);
        e = random_value<double>(generator);
        if (kind == 1 || kind == 2) d *= std::pow(10.0, (kind == 1 ? -i : i - n) * 3.0);
        if (kind == 1 || kind == 2) e *= std::pow(10.0, (kind == 1 ? -i : i - n) * 3.0);
        if (kind == 3) d = e = 1.0;
        if (kind == 4) e *= 1e-14;
        if (kind == 5 && i == n / 2) d = 0.0;
        if (kind == 6) d *= std::pow(10.0, 290.0 - 580.0 * i / n), e *= std::pow(10.0, 290.0 - 580.0 * i / n);
    }
    return b;
}

/// Every value to its own last digits, however small it is, by dqds and by QR; VT, U and C turned by the same
/// rotations.
TYPED_TEST(SingularValues, OfBidiagonalsToTheirLastDigits) {
    using T = TypeParam;
    for (int kind = 0; kind < 7; ++kind)
        for (const int n : {1, 2, 3, 25, 60}) {
            SCOPED_TRACE(::testing::Message() << "kind " << kind << " n " << n);
            const Bidiagonal b = bidiagonal_of(kind, n);
            const std::vector<double> exact = bisected_values(b.d, b.e);
            for (const char uplo : {'U', 'L'})
                for (const int vectors : {0, n}) {
                    Bidiagonal own = b;
                    LapackMatrix<T> vt(n, vectors, 1), u(vectors, n, 1), c(n, std::min(vectors, 3), 1);
                    for (LapackMatrix<T>* q : {&vt, &u, &c})
                        for (int j = 0; j < q->cols; ++j)
                            for (int i = 0; i < q->rows; ++i) q->at(i, j) = i == j ? 1.0 : 0.0;
                    int info = -9;
                    Singular<T>::bdsqr(&uplo, &n, &vt.cols, &u.rows, &c.cols, own.d.data(), own.e.data(), vt.data(),
                                       &vt.lda, u.data(), &u.lda, c.data(), &c.lda, nullptr, &info, 1);
                    ASSERT_EQ(info, 0);
                    // The transposed matrix, lower, has the same values.
                    for (int i = 0; i < n; ++i) {
                        const double value = exact[static_cast<std::size_t>(i)];
                        EXPECT_NEAR(own.d[static_cast<std::size_t>(i)], value, 40 * eps * n * value) << i << uplo;
                    }
                    double worst = 0.0;
                    for (int j = 0; j < vectors; ++j) // B v = s u, or of the transposed one
                        for (int i = 0; i < n; ++i) {
                            const auto at = [&](const std::vector<double>& x, int k) {
                                return x[static_cast<std::size_t>(k)];
                            };
                            T sum = at(b.d, i) * vt.at(j, i);
                            if (uplo == 'U' && i + 1 < n) sum += at(b.e, i) * vt.at(j, i + 1);
                            if (uplo == 'L' && i > 0) sum += at(b.e, i - 1) * vt.at(j, i - 1);
                            worst = std::max(worst, std::abs(sum - at(own.d, j) * u.at(i, j)));
                            if (j < c.cols) worst = std::max(worst, exact[0] * std::abs(c.at(i, j) - u.at(j, i)));
                        }
                    EXPECT_LE(worst, 10 * eps * n * exact[0]) << uplo;
                    if (vectors > 0) EXPECT_LE(orthogonality(u, n, n, false) + orthogonality(vt, n, n, true), 8.0);
                }
        }
}

} // namespace
} // namespace nxl_test
