// Least squares and minimum norm solutions against the reference, near the limits of the range, and without a solution.
#include "tests/support/orthogonal.hpp"

namespace nxl_test {
namespace {

template <class T> class LeastSquares : public ::testing::Test {
  protected:
    using R = Orthogonal<T>;

    static auto caller(char trans, int nrhs) {
        return [=](auto* entry, Call<T>& c) {
            const int order = std::min(c.a.rows, c.a.cols), lwork = std::max(1, order + std::max(order, nrhs));
            std::vector<T> work(static_cast<std::size_t>(lwork));
            entry(&trans, &c.a.rows, &c.a.cols, &nrhs, c.a.data(), &c.a.lda, c.c.data(), &c.c.lda, work.data(), &lwork,
                  &c.info, 1);
        };
    }
    static void scale(LapackMatrix<T>& a, double factor) {
        for (int j = 0; j < a.cols; ++j)
            for (int i = 0; i < a.rows; ++i) a.at(i, j) *= factor;
    }
};
TYPED_TEST_SUITE(LeastSquares, Scalars);

TYPED_TEST(LeastSquares, AllFourCasesAreSolvedAsByTheReference) {
    using T = TypeParam;
    for (const auto [m, n] : {std::array{1, 1}, {40, 12}, {12, 40}, {170, 90}, {90, 170}, {0, 4}, {4, 0}})
        for (const int nrhs : {0, 1, 20})
            for (const char trans : {'N', TestFixture::R::transposed}) {
                SCOPED_TRACE(::testing::Message() << m << " x " << n << ", " << nrhs << trans);
                auto a = matrix_of<T>(MatrixKind::random, m, n);
                for (int i = 0; i < std::min(m, n); ++i) a.at(i, i) += 4.0; // a mild condition
                const Call<T> given(a, matrix_of<T>(MatrixKind::random, std::max(m, n), nrhs));
                const auto solve = TestFixture::caller(trans, nrhs);
                same_as_reference<T>(TestFixture::R::gels, "gels", given, 64.0, solve);
            }
}

TYPED_TEST(LeastSquares, ScalesWhatComesNearTheLimitsOfTheRange) {
    using T = TypeParam;
    constexpr double tiny = 0x1p-1010, huge = 0x1p1010;
    for (const auto [of_a, of_b] : {std::array{tiny, tiny}, {huge, huge}, {huge, 1.0}, {1.0, tiny}, {tiny, 0x1p-900}}) {
        auto a = matrix_of<T>(MatrixKind::random, 30, 20);
        Call<T> plain(a, matrix_of<T>(MatrixKind::random, 30, 2)), scaled = plain;
        TestFixture::scale(scaled.a, of_a);
        TestFixture::scale(scaled.c, of_b);
        const auto solve = TestFixture::caller('N', 2);
        solve(TestFixture::R::gels, plain);
        solve(TestFixture::R::gels, scaled);
        EXPECT_EQ(scaled.info, 0);
        const double back = of_a / of_b; // a power of two within the range
        for (int j = 0; j < 2; ++j)
            for (int i = 0; i < 20; ++i) {
                const double size = std::max(std::abs(plain.c.at(i, j)), 0.01);
                EXPECT_LE(std::abs(scaled.c.at(i, j) * back - plain.c.at(i, j)), 1e-12 * size + back * 0x1p-1073);
            }
    }
}

TYPED_TEST(LeastSquares, TellsTheFirstZeroOfTheTriangleAndSolvesNothingWithZero) {
    using T = TypeParam;
    Call<T> call(matrix_of<T>(MatrixKind::random, 9, 5), matrix_of<T>(MatrixKind::random, 9, 2));
    call.a.clear_column(2);
    TestFixture::caller('N', 2)(TestFixture::R::gels, call);
    EXPECT_EQ(call.info, 3);
    Call<T> zero(LapackMatrix<T>(4, 6, 1), matrix_of<T>(MatrixKind::random, 6, 2));
    for (int j = 0; j < 6; ++j) zero.a.clear_column(j);
    TestFixture::caller('N', 2)(TestFixture::R::gels, zero);
    EXPECT_EQ(zero.info, 0);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(zero.c.at(i, 1), T{});
}

} // namespace
} // namespace nxl_test
