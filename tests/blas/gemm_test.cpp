// The general matrix product through its drivers, against the reference BLAS with a bound for every element. CTest runs
// this program once for each processor class and vector width.
#include "blas/kernel/default_em64t/level3/gemm_omp.hpp"
#include "service/kernel_slot.hpp"
#include "tests/support/blas_call.hpp"

namespace nxl {
namespace {

using nxl_test::BlasCall;
using nxl_test::Family;
using nxl_test::Generator;
using nxl_test::random_values;

class Gemm : public ::testing::TestWithParam<nxl_test::Routine> {
  protected:
    void SetUp() override { NXL_Set_Dynamic(0); }

    static BlasCall sized(BlasCall call, int m, int n, int k) {
        call.m = m, call.n = n, call.k = k;
        return call;
    }
};

TEST_P(Gemm, EverySmallShapeInEveryForm) { // register tiles, their tails, the limits below which nothing is packed
    constexpr std::array sizes = {0, 1, 2, 3, 4, 5, 7, 8, 9, 11, 12, 13};
    Generator generator(1);
    const std::vector<BlasCall> letters = letters_of(GetParam());
    for (const int m : sizes)
        for (const int n : sizes)
            for (const int k : sizes)
                for (int form = 0; form < 3; ++form) { // a third of the nine: every form meets any two of the sizes
                    const auto at = static_cast<std::size_t>(4 * form + 3 * (m + n + k)) % letters.size();
                    ASSERT_TRUE(GetParam().check(randomised(sized(letters[at], m, n, k), generator)));
                }
}

TEST_P(Gemm, EdgesOfBlocks) {
    struct Shape {
        int m, n, k;
    };
    std::vector<Shape> shapes = {{40, 2003, 5}, {9, 5003, 10}, {12, 10003, 30}, {5, 10001, 3}, {9, 4993, 9}};
    for (const int k : {27,  55,  56,  57,  111, 112, 113, 127, 128, 129, 223, 224,
                        225, 255, 256, 257, 258, 384, 447, 448, 511, 512, 513, 1025})
        shapes.insert(shapes.end(), {{11, 9, k}, {18, 31, k}, {4, 70, k}, {67, 5, k}});
    for (const int m : {447, 448, 449, 479, 480, 481, 511, 512, 513, 600, 601, 704, 1001, 1025, 1537})
        shapes.insert(shapes.end(), {{m, 5, 17}, {m, 12, 9}, {m, 3, 120}});
    for (const int size : {17, 31, 33, 64, 65, 130}) shapes.push_back({size, size + 1, size - 1});
    Generator generator(2);
    const std::vector<BlasCall> letters = letters_of(GetParam());
    for (const auto& [m, n, k] : shapes)
        ASSERT_TRUE(GetParam().check(randomised(sized(pick(generator, letters), m, n, k), generator)));
}

TEST_P(Gemm, AllDimensionsOfSeveralBlocksOverThreads) {
    Generator generator(3);
    for (const BlasCall& letters : letters_of(GetParam())) {
        BlasCall call = randomised(sized(letters, 131, 77, 115), generator);
        if (letters.transa == 'N' && letters.transb != 'C') call = sized(call, 485, 93, 261);
        call.alpha = {0.7, -0.3};
        call.threads = {1, 2, 3, 7};
        ASSERT_TRUE(GetParam().check(call));
    }
}

INSTANTIATE_TEST_SUITE_P(, Gemm,
                         ::testing::Values(nxl_test::routine<Family::gemm>("dgemm", nxl_blas_dgemm),
                                           nxl_test::routine<Family::gemm>("zgemm", nxl_blas_zgemm)),
                         nxl_test::name_of);

std::size_t at(i64 i, i64 j, i64 ld) { return static_cast<std::size_t>(i + j * ld); }

TEST(GemmValues, NanStaysInItsRowAndColumn) { // padding and unused lanes must not mix rows, zeros must not hide a NaN
    const double one = 1.0, zero = 0.0;
    for (const i64 size : {3, 8, 19, 70}) {
        const int order = static_cast<int>(size), bad_row = order - 1, bad_column = order / 2;
        std::vector<double> a = random_values<double>(size * size, 1), b(a.size(), 0.0), c(a.size());
        a[at(bad_row, 1, order)] = std::nan("");
        b[at(2, bad_column, order)] = std::numeric_limits<double>::infinity();
        nxl_blas_dgemm('N', 'N', size, size, size, one, a.data(), size, b.data(), size, zero, c.data(), size);
        for (int j = 0; j < order; ++j)
            for (int i = 0; i < order; ++i)
                ASSERT_EQ(std::isfinite(c[at(i, j, order)]), i != bad_row && j != bad_column)
                    << "order " << order << " element " << i << ", " << j;
    }
}

TEST(GemmValues, RowsOfTheTailAreSummedAsTheOthers) { // the last rows of m = 13 to 15 are not packed with the rest
    const int lda = 16, n = 70;
    const double alpha = 1.7, beta = -0.7;
    for (const int k : {115, 257, 300, 449, 700}) {
        const std::vector<double> a = random_values<double>(lda * k, 1), b = random_values<double>(k * n, 2),
                                  c = random_values<double>(lda * n, 3);
        const auto product = [&](int m) {
            std::vector<double> result = c;
            kernels_of(nxl_cpu_class())
                .xdgemm('N', 'N', m, n, k, alpha, a.data(), lda, b.data(), k, beta, result.data(), lda);
            return result;
        };
        const std::vector<double> whole = product(lda);
        for (const int m : {13, 14, 15}) {
            const std::vector<double> cut = product(m);
            for (int j = 0; j < n; ++j)
                for (int i = 0; i < lda; ++i)
                    ASSERT_EQ(cut[at(i, j, lda)], (i < m ? whole : c)[at(i, j, lda)]) << m << ' ' << k << ": " << i;
        }
    }
}

} // namespace
} // namespace nxl
