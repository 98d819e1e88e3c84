// Sylvester equations of Schur forms: residuals by the full matrices, over every form and around the sizes of leaves.
// CTest runs this program for each processor class and vector width.
#include "tests/support/nonsymmetric.hpp"

namespace {

using namespace nxl_test;

template <class T> class Sylvester : public ::testing::Test {
  public:
    /// A Schur form of a random matrix whose spectrum is around `centre`.
    static LapackMatrix<T> form(int n, double centre, unsigned seed) {
        LapackMatrix<T> a = nxl_test::matrix_of<T>(MatrixKind::random, n, n, 2, seed);
        for (int i = 0; i < n; ++i) a.at(i, i) += centre;
        LapackMatrix<T> t = SchurForm<T>(a).t;
        for (int j = 0; j < n && is_complex<T>; ++j)
            for (int i = j + 1; i < n; ++i) t.at(i, j) = all_nan<T>(); // not looked at
        return t;
    }
    static LapackMatrix<T> cleared(LapackMatrix<T> t) {
        for (int j = 0; j < t.cols && is_complex<T>; ++j)
            for (int i = j + 1; i < t.cols; ++i) t.at(i, j) = T{};
        return t;
    }
    struct Solved {
        double scale = -1.0;
        int info = -99;
    };
    static Solved solve(char opa, char opb, int sign, LapackMatrix<T>& a, LapackMatrix<T>& b, LapackMatrix<T>& c) {
        Solved s;
        Nonsymmetric<T>::trsyl(&opa, &opb, &sign, &a.cols, &b.cols, a.data(), &a.lda, b.data(), &b.lda, c.data(),
                               &c.lda, &s.scale, &s.info, 1, 1);
        return s;
    }
    /// |op(A) X + sign X op(B) - scale C| / (n eps (|A| + |B|) |X|)
    static double error(char opa, char opb, int sign, const LapackMatrix<T>& a, const LapackMatrix<T>& b,
                        const LapackMatrix<T>& c, const LapackMatrix<T>& x, double scale) {
        LapackMatrix<T> left = product(cleared(a), x, opa), right = product(x, cleared(b), 'N', opb);
        for (int j = 0; j < x.cols; ++j)
            for (int i = 0; i < x.rows; ++i) {
                left.at(i, j) = left.at(i, j) - scale * c.at(i, j);
                right.at(i, j) *= -sign;
            }
        const double size = largest(cleared(a)) + largest(cleared(b)), of_x = std::max(largest(x), 1e-300);
        return largest_difference(left, right) / (std::max(a.cols, b.cols) * eps * of_x) / size;
    }
};
TYPED_TEST_SUITE(Sylvester, Scalars);

TYPED_TEST(Sylvester, EveryFormAndSize) {
    using T = TypeParam;
    for (const int m : {1, 2, 24, 25, 70})
        for (const int n : {1, 3, 24, 49}) {
            LapackMatrix<T> a = this->form(m, 30.0, 3), b = this->form(n, 55.0, 4);
            for (int j = 0; j < n && m == 25; ++j) // blocks of order 2 whose elements off the diagonal are far apart
                for (int i = 0; i < n; ++i) b.at(i, j) *= std::pow(1e3, j % 2 - i % 2);
            for (const char opa : {'N', 'C'})
                for (const char opb : {'N', Orthogonal<T>::transposed})
                    for (const int sign : {1, -1}) {
                        SCOPED_TRACE(testing::Message() << m << ' ' << n << opa << opb << sign);
                        const LapackMatrix<T> c = nxl_test::matrix_of<T>(MatrixKind::random, m, n, 3, 5);
                        LapackMatrix<T> x = c;
                        const auto s = this->solve(opa, opb, sign, a, b, x);
                        EXPECT_TRUE(s.info == 0 && s.scale == 1.0 && x.slack_untouched());
                        EXPECT_LE(this->error(opa, opb, sign, a, b, c, x, s.scale), 8.0);
                    }
        }
}

/// Solutions beyond the range come with a scale; equal eigenvalues are told; NaN comes to an end.
TYPED_TEST(Sylvester, NearSingularAndHuge) {
    using T = TypeParam;
    for (const int n : {2, 40}) {
        LapackMatrix<T> a = identity<T>(n), b = a, c = nxl_test::matrix_of<T>(MatrixKind::random, n, n, 3, 5), x = c;
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) {
                if (i < j) a.at(i, j) = b.at(i, j) = 1.0; // inverses grow with every row
                if (i == j) a.at(i, j) = b.at(i, j) = 3e-5;
            }
        const auto grown = this->solve('N', 'N', 1, a, b, x);
        EXPECT_TRUE(grown.info == 0 && grown.scale > 0.0 && std::isfinite(largest(x)));
        EXPECT_TRUE(n == 2 || grown.scale < 1e-10);
        EXPECT_LE(this->error('N', 'N', 1, a, b, c, x, grown.scale), 8.0);
        x = c;
        EXPECT_EQ(this->solve('N', 'N', -1, a, b, x).info, 1);
        EXPECT_TRUE(std::isfinite(largest(x)));
        x = c;
        for (int i = 0; i < n; ++i) x.at(i, 0) *= 1e307;
        a = identity<T>(n);
        const auto huge = this->solve('C', 'N', 1, a, a, x);
        EXPECT_TRUE(huge.info == 0 && huge.scale <= 1.0 && std::isfinite(largest(x)));
        x.at(0, 0) = all_nan<T>();
        EXPECT_EQ(this->solve('N', 'C', 1, a, a, x).info, 0);
    }
}

} // namespace
