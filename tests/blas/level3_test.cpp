// Level 3 beside the general product through its drivers, against the reference BLAS with a bound for every element.
// CTest runs this program once for each processor class and vector width.
#include "blas/kernel/default_em64t/level3/rank_update_omp.hpp"
#include "blas/kernel/default_em64t/level3/symm_omp.hpp"
#include "blas/kernel/default_em64t/level3/trsm_omp.hpp"
#include "tests/support/blas_call.hpp"
#include "tests/support/host_allocator.hpp"

namespace nxl {
namespace {

using nxl_test::BlasCall;
using nxl_test::Family;
using nxl_test::Generator;
using nxl_test::Routine;

const Routine routines[] = {
    nxl_test::routine<Family::symm>("dsymm", nxl_blas_dsymm),
    nxl_test::routine<Family::symm>("zsymm", nxl_blas_zsymm),
    nxl_test::routine<Family::symm>("zhemm", nxl_blas_zhemm),
    nxl_test::routine<Family::syrk>("dsyrk", nxl_blas_dsyrk),
    nxl_test::routine<Family::syrk>("zsyrk", nxl_blas_zsyrk),
    nxl_test::routine<Family::syrk>("zherk", nxl_blas_zherk),
    nxl_test::routine<Family::syr2k>("dsyr2k", nxl_blas_dsyr2k),
    nxl_test::routine<Family::syr2k>("zsyr2k", nxl_blas_zsyr2k),
    nxl_test::routine<Family::syr2k>("zher2k", nxl_blas_zher2k),
    nxl_test::routine<Family::trm>("dtrmm", nxl_blas_dtrmm),
    nxl_test::routine<Family::trm>("ztrmm", nxl_blas_ztrmm),
    nxl_test::routine<Family::trm>("dtrsm", nxl_blas_dtrsm, "dtrmm"),
    nxl_test::routine<Family::trm>("ztrsm", nxl_blas_ztrsm, "ztrmm"),
};

class Level3 : public ::testing::TestWithParam<Routine> {
  protected:
    void SetUp() override { NXL_Set_Dynamic(0); }

    /// The two sizes that the routine takes: m and n, or n and k.
    static BlasCall sized(BlasCall call, int first, int second) {
        const bool update = GetParam().is({Family::syrk, Family::syr2k});
        call.m = first, call.n = update ? first : second, call.k = second;
        return call;
    }
};

TEST_P(Level3, EverySmallShapeInEveryForm) {
    constexpr std::array sizes = {0, 1, 2, 3, 4, 5, 7, 8, 9, 12, 13, 16, 17, 20};
    Generator generator(1);
    const std::vector<BlasCall> letters = letters_of(GetParam());
    for (const int first : sizes)
        for (const int second : sizes) // a third of the forms: each meets every size on either side
            for (auto form = static_cast<std::size_t>(first + second) % 3; form < letters.size(); form += 3)
                ASSERT_TRUE(GetParam().check(randomised(sized(letters[form], first, second), generator)));
}

TEST_P(Level3, EdgesOfBlocks) { // in one dimension, and a few in both
    Generator generator(2);
    const std::vector<BlasCall> letters = letters_of(GetParam());
    for (const int size : {31, 32, 33, 47, 48, 49, 63, 64, 65, 95, 96, 97, 127, 128, 129, 191, 193, 255, 256, 257})
        for (const int thin : {1, 3, 4, 9})
            for (const auto& [first, second] : {std::pair(size, thin), std::pair(thin, size)})
                ASSERT_TRUE(GetParam().check(randomised(sized(pick(generator, letters), first, second), generator)));
    for (const int size : {31, 33, 48, 64, 65, 96, 97, 129, 160})
        ASSERT_TRUE(GetParam().check(randomised(sized(pick(generator, letters), size, size + 5), generator)));
}

TEST_P(Level3, EveryFormOverThreads) { // sizes that fork and that do not, also over more threads than rows or columns
    Generator generator(3);
    for (const BlasCall& letters : letters_of(GetParam()))
        for (const auto& [first, second] :
             {std::pair(101, 37), std::pair(37, 130), std::pair(17, 1), std::pair(40, 0)}) {
            BlasCall call = randomised(sized(letters, first, second), generator);
            if (second > 1) call.alpha = {0.7, -0.3};
            call.threads = {1, 2, 3, 7};
            if (first == 17) call.threads.push_back(40);
            ASSERT_TRUE(GetParam().check(call));
        }
    for (const auto& [first, second] : {std::pair(301, 61), std::pair(30, 3000), std::pair(450, 3), std::pair(3, 450),
                                        std::pair(520, 21), std::pair(21, 520), std::pair(150, 131)})
        for (const bool plain : {true, false}) {
            const auto letters = letters_of(GetParam());
            const int columns = plain ? second : std::min(second, 700); // where they are the order of a triangle too
            BlasCall call = randomised(sized(plain ? letters.front() : letters.back(), first, columns), generator);
            call.alpha = {0.7, -0.3};
            call.threads = {2, 3, 8};
            ASSERT_TRUE(GetParam().check(call));
        }
}

INSTANTIATE_TEST_SUITE_P(, Level3, ::testing::ValuesIn(routines), nxl_test::name_of);

/// Calls body(routine, letters) for every form of the products with and solutions of triangular matrices.
template <class Body> void for_each_triangular_form(Body body) {
    NXL_Set_Dynamic(0);
    for (const Routine& routine : routines)
        if (routine.is({Family::trm}))
            for (const BlasCall& letters : letters_of(routine)) body(routine, letters);
}

TEST(Triangular, ManyBlocksOfTheTriangleAndOfRightHandSides) {
    struct Shape {
        int order, count;
    };
    Generator generator(4);
    for_each_triangular_form([&](const Routine& routine, const BlasCall& letters) {
        for (const auto& [order, count] : {Shape{597, 5}, {203, 530}, {3, 5003}}) {
            const bool left = letters.side == 'L', twin = left == (letters.diag == 'U');
            if (count != 5003 && (twin || (letters.transa == 'C' && !routine.is_complex))) continue; // dear
            BlasCall call = randomised(letters, generator);
            call.m = left ? order : count, call.n = left ? count : order;
            ASSERT_TRUE(routine.check(call));
        }
    });
}

TEST(Triangular, FewRightHandSidesOfATriangleLongerThanItsStreams) {
    const i64 order = 4200, count = 3;
    const auto at = [=](i64 i, i64 j) { return static_cast<std::size_t>(i + j * order); };
    std::vector<double> a(static_cast<std::size_t>(order * order));
    for (i64 j = 0; j < order; ++j)
        for (i64 i = 0; i <= j; ++i)
            a[at(i, j)] = i == j ? 2.0 : (static_cast<double>((5 * i + 3 * j) % 16) - 7.5) / (8.0 * order);
    const std::vector<double> x = nxl_test::random_values<double>(order * count, 6);
    for (const char trans : {'N', 'T'}) {
        std::vector<double> b(x.size());
        for (i64 c = 0; c < count; ++c)
            for (i64 j = 0; j < order; ++j)
                for (i64 i = 0; i <= j; ++i)
                    if (trans == 'N') b[at(i, c)] += a[at(i, j)] * x[at(j, c)];
                    else b[at(j, c)] += a[at(i, j)] * x[at(i, c)];
        nxl_blas_dtrsm('L', 'U', trans, 'N', order, count, 1.0, a.data(), order, b.data(), order);
        for (std::size_t i = 0; i < x.size(); ++i) ASSERT_NEAR(b[i], x[i], 1e-13) << trans << ' ' << i;
    }
}

TEST(Triangular, RightWithoutMemory) {
    Generator generator(5);
    for_each_triangular_form([&](const Routine& routine, const BlasCall& letters) {
        BlasCall call = randomised(letters, generator);
        call.alpha = {0.7, -0.3};
        call.m = 21, call.n = 18;
        for (const long failing : {1, 2}) { // the thread's record, its first block
            NXL_FreeBuffers();
            nxl_test::fail_allocation(failing);
            const auto result = routine.check(call);
            nxl_test::fail_allocation(0);
            ASSERT_TRUE(result) << "allocation " << failing;
        }
    });
}

TEST(Trsm, ComplexDiagonalsWhoseSquaresLeaveTheRange) {
    using nxl_test::zcomplex;
    const std::array<zcomplex, 4> diagonal = {{{3e200, 4e200}, {4e-200, -3e-200}, {0.0, 1e-310}, {-1e300, 0.0}}};
    const i64 order = 4;
    const zcomplex alpha = 1.0;
    for (const i64 count : {1, 3, 8})
        for (const char trans : {'N', 'T', 'C'}) {
            std::array<zcomplex, 16> a{};
            std::vector<zcomplex> b(static_cast<std::size_t>(order * count));
            for (std::size_t i = 0; i < 4; ++i) a[5 * i] = diagonal[i];
            for (std::size_t i = 0; i < b.size(); ++i)
                b[i] = trans == 'C' ? std::conj(diagonal[i % 4]) : diagonal[i % 4];
            nxl_blas_ztrsm('L', 'U', trans, 'N', order, count, alpha, a.data(), order, b.data(), order);
            for (const zcomplex& x : b)
                EXPECT_LE(std::abs(x - 1.0), 8 * std::numeric_limits<double>::epsilon()) << trans << ' ' << x;
        }
}

TEST(Trsm, FewRightHandSidesAreDividedByTheDiagonal) { // whose reciprocals leave the range
    const double alpha = 1.0;
    const i64 order = 3;
    const std::array<double, 9> a = {1e-310, 0.0, 0.0, 0.0, -3e-320, 0.0, 0.0, 0.0, 1e308};
    for (const i64 count : {1, 2, 8}) {
        std::vector<double> b(static_cast<std::size_t>(order * count));
        for (std::size_t i = 0; i < b.size(); ++i) b[i] = a[i % 3 * 4];
        nxl_blas_dtrsm('L', 'L', 'N', 'N', order, count, alpha, a.data(), order, b.data(), order);
        EXPECT_EQ(b, std::vector<double>(b.size(), 1.0)) << count;
    }
}

TEST(Trsm, SingularAndInfiniteTrianglesReturn) { // nothing is promised of the values but that a division shows
    const double alpha = 1.0;
    for (const char side : {'L', 'R'})
        for (const char uplo : {'U', 'L'})
            for (const char trans : {'N', 'T'})
                for (const double odd : {0.0, std::numeric_limits<double>::infinity(), std::nan("")})
                    for (const i64 order : {5, 37, 130}) {
                        const auto size = static_cast<std::size_t>(order);
                        std::vector<double> a(size * size, 0.25 / static_cast<double>(order)), b(size * size, 1.0);
                        for (std::size_t i = 0; i < size; ++i) a[i * (size + 1)] = 2.0;
                        a[size / 2 * (size + 1)] = odd;
                        nxl_blas_dtrsm(side, uplo, trans, 'N', order, order, alpha, a.data(), order, b.data(), order);
                        const bool finite = std::all_of(b.begin(), b.end(), [](double v) { return std::isfinite(v); });
                        EXPECT_EQ(finite, std::isinf(odd)) << side << uplo << trans << ' ' << odd << " order " << order;
                    }
}

} // namespace
} // namespace nxl
