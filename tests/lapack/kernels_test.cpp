// The unblocked kernels of LU and Cholesky, and the band's solution, called through their slots. CTest runs this
// program once for each processor class and vector width.
#include "service/kernel_slot.hpp"
#include "service/memory.hpp"
#include "tests/support/dense.hpp"
#include "tests/support/guarded_matrix.hpp"
#include "tests/support/host_allocator.hpp"

namespace nxl {
namespace {

using namespace nxl_test;

constexpr double infinity = std::numeric_limits<double>::infinity();

template <class T> Dense<T> random_matrix(int m, int n, unsigned seed) {
    return {m, n, random_values<T>(std::int64_t{m} * n, seed)};
}

// ---------------------------------------------------------------------------------------------------------------- LU

template <class T> struct Lu {
    Dense<T> factors;
    std::vector<i64> pivots;
    i64 info;
    bool rest_untouched;
};

/// The kernel's factors of a, which stands against an unreadable page, with NaN in the slack.
template <class T> Lu<T> factor(const Dense<T>& a, int slack = 3, Flush flush = Flush::end) {
    const int m = a.rows, n = a.cols, steps = std::min(m, n);
    const MatrixShape shape{m, n, std::max(1, m) + slack};
    GuardedMatrix<T> memory(shape, flush, [&](int i, int j) { return a(i, j); });
    std::vector<i64> pivots(static_cast<std::size_t>(steps) + 1, -1); // one more than the kernel may write
    const i64 m64 = m, n64 = n, lda = shape.ld;
    i64 info = -1;
    if constexpr (is_complex<T>) slot<&KernelTable::zgetrf_leaf>(m64, n64, memory.data(), lda, pivots.data(), info);
    else slot<&KernelTable::dgetrf_leaf>(m64, n64, memory.data(), lda, pivots.data(), info);
    const bool untouched = memory.rest_untouched() && pivots.back() == -1;
    pivots.pop_back();
    Lu<T> result{Dense<T>(m, n), std::move(pivots), info, untouched};
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i) result.factors(i, j) = memory.data()[shape.at(i, j)];
    return result;
}

bool in_range(const std::vector<i64>& pivots, int m) {
    for (std::size_t j = 0; j < pivots.size(); ++j)
        if (pivots[j] <= static_cast<i64>(j) || pivots[j] > m) return false;
    return true;
}

/// The largest element of P A - L U over eps, the largest one of A and the number of terms; for a sound method a small
/// number times the growth of elements.
template <class T> double residual(Dense<T> a, const Lu<T>& lu) {
    const int m = a.rows, n = a.cols, steps = std::min(m, n);
    const double scale = a.largest() * eps * (steps + 2);
    for (int k = 0; k < steps; ++k)
        for (int j = 0; j < n; ++j)
            std::swap(a(k, j), a(static_cast<int>(lu.pivots[static_cast<std::size_t>(k)]) - 1, j));
    for (int j = 0; j < n; ++j)
        for (int k = 0; k <= std::min(j, steps - 1); ++k)
            for (int i = k; i < m; ++i) a(i, j) -= (i == k ? T(1.0) : lu.factors(i, k)) * lu.factors(k, j);
    return a.largest() / scale;
}

/// Elimination by the definition, for matrices on which every step is exact.
template <class T> Lu<T> plain_lu(Dense<T> a) {
    std::vector<i64> pivots;
    i64 info = 0;
    for (int k = 0; k < std::min(a.rows, a.cols); ++k) {
        int pivot = k;
        for (int i = k + 1; i < a.rows; ++i)
            if (abs1(a(i, k)) > abs1(a(pivot, k))) pivot = i;
        pivots.push_back(pivot + 1);
        if (a(pivot, k) == T(0.0)) {
            if (info == 0) info = k + 1;
            continue;
        }
        for (int j = 0; j < a.cols; ++j) std::swap(a(k, j), a(pivot, j));
        for (int i = k + 1; i < a.rows; ++i) {
            a(i, k) /= a(k, k);
            for (int j = k + 1; j < a.cols; ++j) a(i, j) -= a(i, k) * a(k, j);
        }
    }
    return {std::move(a), std::move(pivots), info, true};
}

/// Columns with one run of ones each: totally unimodular, so that elimination meets 0, 1 and -1 alone, many ties and
/// often dependent columns. Rows and columns are turned by units and columns scaled by powers of two: still exact.
template <class T> Dense<T> interval_matrix(int m, int n, unsigned seed) {
    Generator random(seed);
    const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    const auto unit = [&]() -> T {
        const double sign = below(2) ? 1.0 : -1.0;
        if constexpr (is_complex<T>)
            if (below(2)) return {0.0, sign};
        return sign;
    };
    Dense<T> a(m, n);
    std::vector<T> turn(static_cast<std::size_t>(m));
    for (T& v : turn) v = unit();
    for (int j = 0; j < n; ++j) {
        const T factor = unit() * std::ldexp(1.0, below(9) - 4);
        const int first = below(m), end = first + 1 + below(m - first);
        for (int i = first; i < end; ++i) a(i, j) = factor * turn[static_cast<std::size_t>(i)];
    }
    return a;
}

template <class T> class GetrfLeaf : public ::testing::Test {};
TYPED_TEST_SUITE(GetrfLeaf, Scalars);

constexpr double residual_bound = 10.0;
/// Of numbers whose |re| + |im| is no larger than the pivot's, the quotient may reach the square root of 2.
template <class T> constexpr double multiplier_bound = (is_complex<T> ? 1.4142135623730951 : 1.0) + 8.0 * eps;

struct Shape {
    int m, n;
};
std::vector<Shape> leaf_shapes() {
    std::vector<Shape> shapes = {{37, 8},   {63, 7},    {64, 8},   {65, 8},  {66, 8},  {73, 8},  {130, 5},
                                 {1000, 8}, {300, 64},  {64, 64},  {33, 33}, {8, 40},  {9, 64},  {16, 100},
                                 {40, 41},  {1000, 24}, {271, 17}, {100, 1}, {1, 100}, {520, 12}};
    for (int m = 1; m <= 20; ++m)
        for (int n = 1; n <= 20; ++n) shapes.push_back({m, n});
    return shapes;
}

TYPED_TEST(GetrfLeaf, ProductOfFactorsIsThePermutedMatrix) {
    unsigned seed = 0;
    for (const auto& [m, n] : leaf_shapes()) {
        const auto a = random_matrix<TypeParam>(m, n, ++seed);
        const Flush flush = static_cast<Flush>(seed % 3);
        const auto lu = factor(a, static_cast<int>(seed % 4), flush);
        SCOPED_TRACE(std::to_string(m) + " by " + std::to_string(n));
        ASSERT_EQ(lu.info, 0);
        ASSERT_TRUE(in_range(lu.pivots, m));
        ASSERT_LE(residual(a, lu), residual_bound);
        ASSERT_TRUE(lu.rest_untouched);
        for (int j = 0; j < std::min(m, n); ++j)
            for (int i = j + 1; i < m; ++i) ASSERT_LE(std::abs(lu.factors(i, j)), multiplier_bound<TypeParam>);
    }
}

TYPED_TEST(GetrfLeaf, FirstOfEqualPivotsWins) { // and the first zero pivot is reported, whatever follows it
    unsigned seed = 0;
    for (const auto& [m, n] : leaf_shapes())
        for (int repeat = 0; repeat < (m * n < 2000 ? 4 : 1); ++repeat) {
            const auto a = interval_matrix<TypeParam>(m, n, ++seed);
            const auto got = factor(a), expected = plain_lu(a);
            SCOPED_TRACE(std::to_string(m) + " by " + std::to_string(n) + ", seed " + std::to_string(seed));
            ASSERT_EQ(got.pivots, expected.pivots);
            ASSERT_EQ(got.info, expected.info);
            ASSERT_EQ(got.factors.data, expected.factors.data);
        }
}

TYPED_TEST(GetrfLeaf, PivotAtEveryRow) { // alone, tied with the last row, and with a NaN before it
    using T = TypeParam;
    for (const int m : {21, 150})
        for (int row = 0; row < m; ++row)
            for (const int column : {0, 1, 6}) {
                Dense<T> a(m, 8);
                for (int j = 0; j < 8; ++j) a(j, j) = T(1.0);
                if (row < column) continue;
                a(m - 1, column) = a(row, column) = T(-4.0);
                EXPECT_EQ(factor(a).pivots[static_cast<std::size_t>(column)], row + 1) << m << ' ' << column;
                if (row < column + 2) continue;
                a(column + 1, column) = std::nan("");
                EXPECT_EQ(factor(a).pivots[static_cast<std::size_t>(column)], row + 1) << m << ' ' << column;
            }
}

TYPED_TEST(GetrfLeaf, NanAndInfinityStayInside) {
    using T = TypeParam;
    for (const auto& [m, n] : {Shape{8, 8}, Shape{70, 8}, Shape{40, 40}, Shape{5, 30}})
        for (const double bad : {std::nan(""), infinity, -infinity})
            for (int column = -1; column < n; ++column) { // -1: all of them
                auto a = random_matrix<T>(m, n, 5);
                for (int j = 0; j < n; ++j)
                    for (int i = 0; i < m; ++i)
                        if (column < 0 || (j == column && (i == m / 2 || column % 2 == 0))) a(i, j) = T(bad);
                const auto lu = factor(a);
                ASSERT_TRUE(lu.rest_untouched);
                ASSERT_TRUE(in_range(lu.pivots, m));
            }
}

/// Times a power of two: every operation then gives the same digits.
template <class T> Dense<T> scaled(Dense<T> a, int exponent) {
    for (T& v : a.data) v *= std::ldexp(1.0, exponent);
    return a;
}

TYPED_TEST(GetrfLeaf, LargeAndSmallNumbersTakeTheSameSteps) {
    for (const auto& [m, n] : {Shape{50, 8}, Shape{40, 40}})
        for (const int exponent : {-900, 900}) {
            const auto a = random_matrix<TypeParam>(m, n, 11);
            const auto plain = factor(a), wide = factor(scaled(a, exponent));
            ASSERT_EQ(wide.pivots, plain.pivots);
            for (int j = 0; j < n; ++j)
                for (int i = 0; i < m; ++i)
                    ASSERT_EQ(wide.factors(i, j), plain.factors(i, j) * (i > j ? 1.0 : std::ldexp(1.0, exponent)));
        }
}

TYPED_TEST(GetrfLeaf, NothingToDo) {
    for (const auto& [m, n] : {Shape{0, 3}, Shape{3, 0}}) EXPECT_EQ(factor(Dense<TypeParam>(m, n)).info, 0);
}

// ---------------------------------------------------------------------------------------------------------- Cholesky

/// Hermitian, its eigenvalues in about n .. 3 n.
template <class T> Dense<T> positive_matrix(int n, unsigned seed) {
    auto a = random_matrix<T>(n, n, seed);
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < j; ++i) a(j, i) = conjugate(a(i, j));
        a(j, j) = T(2.0 * n + 1.0 + j % 5);
    }
    return a;
}

/// L of as many columns as have positive pivots, by the definition; the pivot that is not one of them stays.
template <class T> Dense<T> plain_cholesky(const Dense<T>& a) {
    Dense<T> l(a.rows, a.cols);
    for (int j = 0; j < a.cols; ++j) {
        for (int i = j; i < a.rows; ++i) {
            T sum = a(i, j);
            for (int p = 0; p < j; ++p) sum -= l(i, p) * conjugate(l(j, p));
            l(i, j) = i > j ? sum / l(j, j) : T(std::real(sum) > 0.0 ? std::sqrt(std::real(sum)) : std::real(sum));
        }
        if (!(std::real(l(j, j)) > 0.0)) break;
    }
    return l;
}

template <class T> struct Cholesky {
    Dense<T> lower; // what the triangle holds, the upper one's conjugate transpose
    i64 info;
    bool rest_untouched;
};

/// The kernel's factor, with NaN in the slack, in the other triangle, and in the imaginary parts on the diagonal.
template <class T> Cholesky<T> factor_triangle(const Dense<T>& a, bool upper, Flush flush = Flush::end, int slack = 2) {
    const int n = a.rows;
    const MatrixShape shape{n, n, std::max(1, n) + slack, upper ? Part::upper : Part::lower,
                            is_complex<T> ? Diagonal::real : Diagonal::general};
    const GuardedMatrix<T> memory(shape, flush, [&](int i, int j) { return a(i, j); });
    const i64 n64 = n, lda = shape.ld;
    i64 info = -1;
    if constexpr (is_complex<T>)
        upper ? slot<&KernelTable::xzpotf2_u>(n64, memory.data(), lda, info)
              : slot<&KernelTable::xzpotf2_l>(n64, memory.data(), lda, info);
    else
        upper ? slot<&KernelTable::xdpotf2_u>(n64, memory.data(), lda, info)
              : slot<&KernelTable::xdpotf2_l>(n64, memory.data(), lda, info);
    Cholesky<T> result{Dense<T>(n, n), info, memory.rest_untouched()};
    for (int j = 0; j < n; ++j)
        for (int i = j; i < n; ++i)
            result.lower(i, j) = upper ? conjugate(memory.data()[shape.at(j, i)]) : memory.data()[shape.at(i, j)];
    return result;
}

template <class T> class Potf2 : public ::testing::Test {};
TYPED_TEST_SUITE(Potf2, Scalars);

/// Columns 0 .. columns - 1 against the plain factor: both lie within a few n eps of the exact one.
template <class T> void expect_columns(const Cholesky<T>& got, const Dense<T>& expected, int columns) {
    const int n = expected.rows;
    double error = 0.0;
    for (int j = 0; j < columns; ++j) {
        for (int i = j; i < n; ++i) {
            const double difference = abs1(got.lower(i, j) - expected(i, j));
            error = difference <= error ? error : difference; // NaN counts
        }
        ASSERT_EQ(std::imag(got.lower(j, j)), 0.0);
    }
    ASSERT_LE(error, 4.0 * eps * (n + 4) * expected.largest());
}

template <class T> void check_order(int n) {
    const auto a = positive_matrix<T>(n, static_cast<unsigned>(n));
    const auto expected = plain_cholesky(a);
    for (const bool upper : {false, true}) {
        SCOPED_TRACE((upper ? "upper, n = " : "lower, n = ") + std::to_string(n));
        const auto got = factor_triangle(a, upper, static_cast<Flush>(n % 3), n % 4);
        ASSERT_EQ(got.info, 0);
        ASSERT_TRUE(got.rest_untouched);
        expect_columns(got, expected, n);
    }
}

TYPED_TEST(Potf2, EveryOrder) {
    for (int n = 0; n <= 40; ++n) check_order<TypeParam>(n);
    for (const int n : {63, 64, 65, 96, 100, 126, 127, 128, 129, 200, 301}) check_order<TypeParam>(n);
}

TYPED_TEST(Potf2, LargeAndSmallNumbersTakeTheSameSteps) {
    for (const int n : {21, 100})
        for (const int exponent : {-900, 900})
            for (const bool upper : {false, true}) {
                const auto a = positive_matrix<TypeParam>(n, 9);
                const auto wide = factor_triangle(scaled(a, exponent), upper);
                ASSERT_EQ(wide.info, 0);
                ASSERT_EQ(wide.lower.data, scaled(factor_triangle(a, upper).lower, exponent / 2).data);
            }
}

TYPED_TEST(Potf2, WithoutMemory) {
    for (const long failing : {1, 2}) { // the thread's record, its first block
        free_buffers();
        fail_allocation(failing);
        check_order<TypeParam>(100);
        fail_allocation(0);
    }
}

/// Position `bad` gets a pivot of -1, 0 (by the arithmetic of small integers) or NaN.
template <class T> void check_failure(int n, int bad, double pivot) {
    auto a = positive_matrix<T>(n, 3);
    if (pivot == 0.0) a = Dense<T>(n, n);
    for (int j = 0; pivot == 0.0 && j < n; ++j) // row `bad` is the sum of the unit rows before it
        for (int i = 0; i < n; ++i)
            a(i, j) = T(i == j ? (i == bad ? bad : 1.0) : (i == bad && j < bad) || (j == bad && i < bad) ? 1.0 : 0.0);
    if (pivot != 0.0) a(bad, bad) += T(pivot - std::pow(std::real(plain_cholesky(a)(bad, bad)), 2));
    const auto expected = plain_cholesky(a);
    for (const bool upper : {false, true}) {
        SCOPED_TRACE(std::to_string(n) + (upper ? " upper " : " lower ") + std::to_string(bad));
        const auto got = factor_triangle(a, upper);
        ASSERT_EQ(got.info, bad + 1);
        ASSERT_TRUE(got.rest_untouched);
        expect_columns(got, expected, bad);
        const double held = std::real(got.lower(bad, bad));
        if (pivot == 0.0) ASSERT_EQ(held, 0.0);
        else if (std::isnan(pivot)) ASSERT_TRUE(std::isnan(held));
        else ASSERT_NEAR(held, pivot, 4.0 * eps * n * a.largest());
        for (int j = bad; j < n; ++j)
            for (int i = j + 1; i < n; ++i) ASSERT_EQ(got.lower(i, j), a(i, j)) << "touched after the failure";
    }
}

TYPED_TEST(Potf2, FirstMinorThatIsNotPositive) {
    for (const double pivot : {-1.0, 0.0, std::nan("")}) {
        for (int bad = 0; bad < 19; ++bad) check_failure<TypeParam>(19, bad, pivot);
        for (const int bad : {0, 1, 31, 47, 64, 97, 98, 99}) check_failure<TypeParam>(100, bad, pivot);
    }
}

TYPED_TEST(Potf2, FailureInALaterBlockCountsFromTheFirstColumn) {
    auto a = positive_matrix<TypeParam>(300, 3);
    a(130, 130) = TypeParam(-1.0);
    for (const bool upper : {false, true}) EXPECT_EQ(factor_triangle(a, upper).info, 131);
}

// -------------------------------------------------------------------------------------------------------------- Band

template <class T> class Tbsv : public ::testing::Test {};
TYPED_TEST_SUITE(Tbsv, Scalars);

/// X - op(A)^-1 (op(A) X), what is not stored being NaN, with the bodies of both scalars: those for one vector, or
/// those for several, which leave the rows after n of each alone.
template <class T> double band_error(int n, int k, bool upper, char trans, bool unit, double scale, int columns) {
    const int ld = columns == 1 ? n : n + 2;
    const auto place = [&](int i, int j) {
        return static_cast<std::size_t>((upper ? k + i - j : i - j) + j * (k + 1));
    };
    std::vector<T> ab(static_cast<std::size_t>(n) * static_cast<std::size_t>(k + 1), all_nan<T>());
    const auto x = random_values<T>(ld * columns, 3);
    auto b = x;
    for (int c = 0; c < columns; ++c) std::fill_n(b.begin() + c * ld, n, T{});
    Generator generator(5);
    for (int j = 0; j < n; ++j)
        for (int i = std::max(0, upper ? j - k : j); i <= std::min(n - 1, upper ? j : j + k); ++i) {
            T value = random_value<T>(generator) / (2.0 * k + 1.0);
            if (i == j) value = unit ? T(1.0) : value + T(2.0);
            if (!unit) value *= scale;
            if (i != j || !unit) ab[place(i, j)] = value;
            if (trans == 'C') value = conjugate(value);
            for (int c = 0; c < columns; ++c)
                b[static_cast<std::size_t>((trans == 'N' ? i : j) + c * ld)] +=
                    value * x[static_cast<std::size_t>((trans == 'N' ? j : i) + c * ld)];
        }
    const char uplo = upper ? 'U' : 'L', diag = unit ? 'U' : 'N';
    const T* const a = ab.data() + (upper ? k : 0);
    if (columns == 1)
        slot_of<T, &KernelTable::dtbsv, &KernelTable::ztbsv>()(uplo, trans, diag, i64{n}, i64{k}, a, i64{k}, b.data());
    else
        slot_of<T, &KernelTable::dtbsm, &KernelTable::ztbsm>()(uplo, trans, diag, i64{n}, i64{k}, a, i64{k}, nullptr,
                                                               i64{columns}, b.data(), i64{ld});
    double worst = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i)
        if (!(abs1(b[i] - x[i]) <= worst)) worst = abs1(b[i] - x[i]);
    return worst;
}

template <class T> void check_bands(std::initializer_list<int> orders, std::initializer_list<int> widths, int columns) {
    for (const int n : orders)
        for (const int k : widths)
            for (const bool upper : {false, true})
                for (const char trans : {'N', 'T', 'C'})
                    for (const bool unit : {false, true})
                        for (const double scale : {1.0, 0x1p-600}) // pivots whose reciprocals are not at hand
                            EXPECT_LE(band_error<T>(n, k, upper, trans, unit, scale, columns), 100 * eps)
                                << n << " " << k << upper << trans << unit << scale;
}

TYPED_TEST(Tbsv, SolvesWithEveryTriangleAroundItsPanels) {
    check_bands<TypeParam>({1, 7, 8, 9, 23, 61}, {0, 1, 5, 7, 8, 9, 30, 65}, 1);
}

TYPED_TEST(Tbsv, SolvesForGroupsOfColumnsAcrossItsWindows) { check_bands<TypeParam>({1, 9, 150}, {0, 5, 12}, 19); }

} // namespace
} // namespace nxl
