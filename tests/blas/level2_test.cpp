// Level 2 through the exported entries, against the reference BLAS with a bound for every element. CTest runs this
// program once for each processor class and vector width.
#include "tests/blas/exported_level2.hpp"

namespace {

using nxl_test::BlasCall;
using nxl_test::Family;
using nxl_test::Generator;
using nxl_test::zcomplex;

class Level2 : public ::testing::TestWithParam<nxl_test::Routine> {
  protected:
    void SetUp() override { NXL_Set_Dynamic(0); }

    static ::testing::AssertionResult check(BlasCall letters, int m, int n, Generator& generator) {
        letters.m = m, letters.n = n;
        return GetParam().check(randomised(letters, generator));
    }
};

TEST_P(Level2, EverySmallShapeInEveryForm) {
    Generator generator(1);
    const int most = GetParam().is({Family::gemv, Family::ger}) ? 21 : 5; // the others have one size: as many repeats
    for (const BlasCall& letters : letters_of(GetParam()))
        for (int m = 0; m <= most; ++m)
            for (int n = 0; n <= 21; ++n) ASSERT_TRUE(check(letters, m, n, generator));
}

TEST_P(Level2, EdgesOfBlocks) {
    Generator generator(2);
    for (const BlasCall& letters : letters_of(GetParam()))
        for (const int size : {31, 33, 63, 64, 65, 100, 127, 129, 257})
            for (const int other : {7, size, size + 3}) {
                ASSERT_TRUE(check(letters, size, other, generator));
                ASSERT_TRUE(check(letters, other, size, generator));
            }
    if (GetParam().is({Family::gemv, Family::ger})) // vectors longer than what is copied, or kept in a cache, at a time
        for (const BlasCall& letters : letters_of(GetParam()))
            for (const int size : {511, 513, 1023, 1025, 8191, 16385})
                for (const int other : {1, 5, 11}) {
                    ASSERT_TRUE(check(letters, size, other, generator));
                    ASSERT_TRUE(check(letters, other, size, generator));
                }
}

INSTANTIATE_TEST_SUITE_P(, Level2, ::testing::ValuesIn(nxl_test::exported_level2), nxl_test::name_of);

/// A quotient by a divisor near the ends of the range must not pass through its square.
TEST(Ztrsv, DividesOverTheWholeRange) {
    const int one = 1;
    for (const double size : {1e-300, 1e300})
        for (const zcomplex divisor : {zcomplex(3, 4), zcomplex(4, -3), zcomplex(0, 2), zcomplex(-2, 0)}) {
            const zcomplex a = divisor * size, want(0.6, -0.8);
            zcomplex x = divisor * want * size;
            ztrsv("U", "N", "N", &one, &a, &one, &x, &one);
            EXPECT_LE(std::abs(x - want), 1e-15) << divisor << size;
        }
}

/// What is not stored of a triangle does not take part, not even as a zero: times infinity it would make NaN.
TEST(Dsymv, InfiniteElementsOfXStayInfinite) {
    constexpr int n = 19;
    const int one = 1;
    const double alpha = 1.0, beta = 0.0;
    const std::vector<double> a(n * n, 1.0);
    for (const char* uplo : {"L", "U"})
        for (int infinite = 0; infinite < n; ++infinite) {
            std::vector<double> x(n, 1.0), y(n);
            x[static_cast<std::size_t>(infinite)] = HUGE_VAL;
            dsymv(uplo, &n, &alpha, a.data(), &n, x.data(), &one, &beta, y.data(), &one);
            EXPECT_EQ(y, std::vector<double>(n, HUGE_VAL)) << uplo << infinite;
        }
}

} // namespace
