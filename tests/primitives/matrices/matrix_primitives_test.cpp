// Matrix primitives against plain loops. Every double is a signalling NaN of its own, so that a comparison of all
// memory bit by bit finds what was moved to a wrong place, changed on its way, or written without being asked for. The
// memory ends, or begins, at a page that may not be touched.
#include "nxl.h"
#include "tests/support/guarded_vector.hpp"
#include <algorithm>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

using nxl_test::Flush;
using nxl_test::GuardedMemory;
using Words = std::vector<std::uint64_t>;
using u32 = std::uint32_t;

constexpr std::uint64_t sign_bit = std::uint64_t{1} << 63;

struct Real {
    using T = double;
    static constexpr auto copy = CopySubMatrix_d;
    static constexpr auto resize = ResizeMatrix_d;
    static constexpr auto transpose = TransposeMatrix_d;
    static constexpr auto adjoint = TransposeMatrix_d;
    static constexpr auto transpose_square = TransposeSquareMatrix_d;
    static constexpr auto adjoint_square = TransposeSquareMatrix_d;
    static constexpr auto lower = LowerTriangle_d;
    static constexpr auto upper = UpperTriangle_d;
    static constexpr auto zero_lower = ZeroLowerTriangle_d;
    static constexpr auto zero_upper = ZeroUpperTriangle_d;
    static constexpr auto exchange_rows = RowExchange_d;
    static constexpr auto exchange_columns = ColExchange_d;
};
struct Complex {
    using T = nxl_z;
    static constexpr auto copy = CopySubMatrixc_d;
    static constexpr auto resize = ResizeMatrixc_d;
    static constexpr auto transpose = TransposeMatrixc_d;
    static constexpr auto adjoint = AdjungateMatrixc_d;
    static constexpr auto transpose_square = TransposeSquareMatrixc_d;
    static constexpr auto adjoint_square = AdjungateSquareMatrixc_d;
    static constexpr auto lower = LowerTrianglec_d;
    static constexpr auto upper = UpperTrianglec_d;
    static constexpr auto zero_lower = ZeroLowerTrianglec_d;
    static constexpr auto zero_upper = ZeroUpperTrianglec_d;
    static constexpr auto exchange_rows = RowExchangec_d;
    static constexpr auto exchange_columns = ColExchangec_d;
};

/// Memory of a matrix, and what is expected in it.
template <class T> class Matrix {
    static constexpr std::size_t words = sizeof(T) / sizeof(double); // of an element

    std::size_t count_;
    GuardedMemory memory_;
    T* data_;

  public:
    Words expected;

    Matrix(std::size_t elements, Flush flush, std::uint64_t mark)
        : count_(elements * words),
          memory_(elements * sizeof(T) + sizeof(double)),
          data_(reinterpret_cast<T*>(memory_.place(elements * sizeof(T), flush))),
          expected(count_) {
        for (std::size_t i = 0; i < count_; ++i)
            expected[i] = 0x7ff4000000000000 + (mark << 32) + i + (i % 3 == 0 ? sign_bit : 0);
        if (count_ > 0) std::memcpy(static_cast<void*>(data_), expected.data(), count_ * sizeof(double));
    }

    T* data() const { return data_; }
    bool as_expected() const {
        return count_ == 0 || std::memcmp(data_, expected.data(), count_ * sizeof(double)) == 0;
    }

    /// Element `to` is expected to become what `from` was to be in src.
    void expect(std::size_t to, const Words& src, std::size_t from, bool conjugate = false) {
        for (std::size_t k = 0; k < words; ++k) {
            const bool flip = conjugate && k == 1;
            expected[to * words + k] = src[from * words + k] ^ (flip ? sign_bit : 0);
        }
    }
    void expect_zero(std::size_t at) { std::fill_n(expected.begin() + std::ptrdiff_t(at * words), words, 0); }
    void expect_move(std::size_t to, const Words& src, std::size_t from, std::size_t elements) {
        const Words moved(src.begin() + std::ptrdiff_t(from * words),
                          src.begin() + std::ptrdiff_t((from + elements) * words));
        std::ranges::copy(moved, expected.begin() + std::ptrdiff_t(to * words));
    }
};

struct Shape {
    u32 rows, cols, src_stride, dst_stride;
};
std::ostream& operator<<(std::ostream& out, const Shape& s) {
    return out << s.rows << " by " << s.cols << ", strides " << s.src_stride << " and " << s.dst_stride;
}

constexpr Flush places[] = {Flush::start, Flush::end, Flush::off_by_8};
constexpr u32 sizes[] = {0, 1, 2, 3, 5, 8, 9, 17, 63, 64, 65, 130};

std::size_t span(u32 rows, u32 cols, u32 stride) {
    return rows == 0 || cols == 0 ? 0 : std::size_t{rows - 1} * stride + cols;
}

/// body(shape, place) for ragged shapes; `turned` where rows of dst are columns of src.
template <class Body> void for_each_shape(bool turned, Body body) {
    for (const u32 rows : sizes)
        for (const u32 cols : sizes)
            for (const u32 gap : {0U, 3U})
                for (const Flush place : places)
                    body(Shape{rows, cols, cols + gap, (turned ? rows : cols) + 2 * gap}, place);
}

template <class Kind> class MatrixPrimitives : public ::testing::Test {};
using Kinds = ::testing::Types<Real, Complex>;
TYPED_TEST_SUITE(MatrixPrimitives, Kinds);

template <class T, class Routine>
void check_transpose(Routine routine, bool conjugate, const Shape& s, Flush src_place, Flush dst_place) {
    Matrix<T> src(span(s.rows, s.cols, s.src_stride), src_place, 1);
    Matrix<T> dst(span(s.cols, s.rows, s.dst_stride), dst_place, 2);
    for (std::size_t r = 0; r < s.rows; ++r)
        for (std::size_t c = 0; c < s.cols; ++c)
            dst.expect(c * s.dst_stride + r, src.expected, r * s.src_stride + c, conjugate);
    routine(src.data(), dst.data(), s.rows, s.cols, s.src_stride, s.dst_stride);
    EXPECT_TRUE(dst.as_expected() && src.as_expected()) << s << ", conjugate " << conjugate;
}

TYPED_TEST(MatrixPrimitives, TransposesOfRaggedShapes) {
    for_each_shape(true, [](const Shape& s, Flush place) {
        check_transpose<typename TypeParam::T>(TypeParam::transpose, false, s, place, place);
        check_transpose<typename TypeParam::T>(TypeParam::adjoint, true, s, place, place);
    });
}

/// Results so large that they pass the caches by: where their rows begin with cache lines, from the first or from a
/// later element on, and where they do not. Runs of 64 or 32 elements then end before, at and behind the last row.
TYPED_TEST(MatrixPrimitives, LargeTransposesInBlocks) {
    const Shape shapes[] = {{713, 771, 771, 720}, {704, 760, 763, 705}, {708, 760, 760, 709}, {709, 759, 760, 710},
                            {712, 760, 760, 713}, {713, 771, 780, 714}, {65, 8209, 8209, 65}, {63, 8700, 8700, 64}};
    for (const Shape& s : shapes)
        for (const Flush place : places) {
            check_transpose<typename TypeParam::T>(TypeParam::transpose, false, s, Flush::end, place);
            check_transpose<typename TypeParam::T>(TypeParam::adjoint, true, s, Flush::off_by_8, place);
        }
}

TYPED_TEST(MatrixPrimitives, SquareTransposesInPlace) {
    using T = typename TypeParam::T;
    const auto check = [](auto routine, bool conjugate, u32 n, u32 stride, Flush place) {
        Matrix<T> a(span(n, n, stride), place, 1);
        const Words before = a.expected;
        for (std::size_t r = 0; r < n; ++r)
            for (std::size_t c = 0; c < n; ++c) a.expect(c * stride + r, before, r * stride + c, conjugate);
        routine(a.data(), n, stride);
        EXPECT_TRUE(a.as_expected()) << n << ", stride " << stride << ", conjugate " << conjugate;
    };
    for (const u32 n : {0U, 1U, 2U, 3U, 5U, 7U, 8U, 9U, 16U, 17U, 31U, 32U, 33U, 40U, 63U, 65U, 130U})
        for (const u32 stride : {n, n + 3, 512U})
            for (const Flush place : places) {
                check(TypeParam::transpose_square, false, n, stride, place);
                check(TypeParam::adjoint_square, true, n, stride, place);
            }
}

TYPED_TEST(MatrixPrimitives, TrianglesCopiedAndZeroed) {
    using T = typename TypeParam::T;
    for_each_shape(false, [](const Shape& s, Flush place) {
        for (const int diagonal : {0, 1, -256}) {
            const std::size_t elements = span(s.rows, s.cols, s.dst_stride);
            const Matrix<T> src(span(s.rows, s.cols, s.src_stride), place, 1);
            Matrix<T> lower(elements, place, 2), upper(elements, place, 3), below(elements, place, 4),
                above(elements, place, 5);
            for (std::size_t r = 0; r < s.rows; ++r)
                for (std::size_t c = 0; c < s.cols; ++c) {
                    const std::size_t to = r * s.dst_stride + c, from = r * s.src_stride + c;
                    if (c < r || (c == r && diagonal)) lower.expect(to, src.expected, from), below.expect_zero(to);
                    if (c > r || (c == r && diagonal)) upper.expect(to, src.expected, from), above.expect_zero(to);
                }
            const auto byte = static_cast<std::uint8_t>(diagonal ? 0x80 : 0);
            TypeParam::lower(src.data(), lower.data(), s.rows, s.cols, s.src_stride, s.dst_stride, diagonal);
            TypeParam::upper(src.data(), upper.data(), s.rows, s.cols, s.src_stride, s.dst_stride, diagonal);
            TypeParam::zero_lower(below.data(), s.rows, s.cols, s.dst_stride, byte);
            TypeParam::zero_upper(above.data(), s.rows, s.cols, s.dst_stride, byte);
            EXPECT_TRUE(src.as_expected() && lower.as_expected() && upper.as_expected()) << s << ", " << diagonal;
            EXPECT_TRUE(below.as_expected() && above.as_expected()) << s << ", " << diagonal;
        }
    });
}

struct Copy {
    const char* name;
    u32 src_row, src_col, dst_row, dst_col, rows, cols, src_stride, dst_stride;
};

/// Offsets in elements are modulo 2^32; rows are moved one after the other, within one matrix as well.
template <class Kind> void check_copy(const Copy& c, bool one_matrix, Flush place) {
    using T = typename Kind::T;
    const u32 from = c.src_stride * c.src_row + c.src_col, to = c.dst_stride * c.dst_row + c.dst_col;
    const std::size_t elements =
        std::max(from + span(c.rows, c.cols, c.src_stride), to + span(c.rows, c.cols, c.dst_stride));
    Matrix<T> src(elements, place, 1), other(elements, place, 2);
    Matrix<T>& dst = one_matrix ? src : other;
    for (u32 r = 0; r < c.rows; ++r)
        dst.expect_move(to + r * c.dst_stride, src.expected, from + r * c.src_stride, c.cols);
    if ((c.src_row | c.src_col | c.dst_row | c.dst_col) == 0)
        Kind::resize(src.data(), dst.data(), c.rows, c.cols, c.src_stride, c.dst_stride);
    else
        Kind::copy(src.data(), dst.data(), c.src_row, c.src_col, c.dst_row, c.dst_col, c.rows, c.cols, c.src_stride,
                   c.dst_stride);
    EXPECT_TRUE(src.as_expected() && other.as_expected()) << c.name << (one_matrix ? ", in place" : "");
}

TYPED_TEST(MatrixPrimitives, BlocksCopied) {
    const Copy copies[] = {{"no rows", 1, 2, 3, 4, 0, 5, 9, 9},
                           {"no columns", 1, 2, 3, 4, 5, 0, 9, 9},
                           {"one element", 3, 2, 0, 1, 1, 1, 7, 5},
                           {"other strides", 2, 3, 5, 1, 17, 11, 40, 33},
                           {"long rows", 1, 7, 4, 60, 5, 130, 400, 300},
                           {"right by less than a row", 2, 3, 2, 5, 9, 17, 30, 30},
                           {"left by less than a row", 2, 5, 2, 3, 9, 17, 30, 30},
                           {"down by a row, which repeats the first", 0, 0, 1, 0, 9, 17, 30, 30},
                           {"up by a row", 1, 0, 0, 0, 9, 17, 30, 30},
                           {"resize: together", 0, 0, 0, 0, 65, 9, 30, 9},
                           {"resize: apart", 0, 0, 0, 0, 65, 9, 9, 30},
                           {"large", 1, 3, 0, 1, 2055, 2047, 2060, 2051},
                           {"offsets beyond 2^32", 0x80000000, 5, 0x40000001, 0xfffffffe, 5, 3, 4, 4},
                           {"offsets beyond 2^33", 0x60000000, 40, 0x20000003, 1, 7, 16, 24, 16}};
    for (const Copy& copy : copies)
        for (const bool one_matrix : {false, true})
            for (const Flush place : places) check_copy<TypeParam>(copy, one_matrix, place);
}

TYPED_TEST(MatrixPrimitives, RowsAndColumnsExchanged) {
    using T = typename TypeParam::T;
    for_each_shape(false, [](const Shape& s, Flush place) {
        if (s.rows == 0 || s.cols == 0) return;
        const u32 row2 = s.rows - 1, col2 = s.cols - 1;
        for (const auto& [row1, col1] : {std::pair{0U, 0U}, std::pair{row2 / 2, col2 / 2}, std::pair{row2, col2}}) {
            Matrix<T> by_rows(span(s.rows, s.cols, s.src_stride), place, 1), by_cols(by_rows.expected.size(), place, 2);
            const Words rows_before = by_rows.expected, cols_before = by_cols.expected;
            by_rows.expect_move(row1 * s.src_stride, rows_before, row2 * s.src_stride, s.cols);
            by_rows.expect_move(row2 * s.src_stride, rows_before, row1 * s.src_stride, s.cols);
            for (u32 r = 0; r < s.rows; ++r) {
                by_cols.expect(r * s.src_stride + col1, cols_before, r * s.src_stride + col2);
                by_cols.expect(r * s.src_stride + col2, cols_before, r * s.src_stride + col1);
            }
            TypeParam::exchange_rows(by_rows.data(), row1, row2, s.cols, s.src_stride);
            TypeParam::exchange_columns(by_cols.data(), col1, col2, s.rows, s.src_stride);
            EXPECT_TRUE(by_rows.as_expected()) << s << ", rows " << row1 << ", " << row2;
            EXPECT_TRUE(by_cols.as_expected()) << s << ", columns " << col1 << ", " << col2;
        }
    });
}

/// Sizes count with their low 32 bits, and the byte as a byte: callers may leave anything above them.
__attribute__((no_sanitize("function"))) void call_with_dirty_registers(const double* src, double* dst, double* a) {
    using u64 = std::uint64_t;
    using Transpose = void (*)(const double*, double*, u64, u64, u64, u64);
    using Zero = void (*)(double*, u64, u64, u64, u64);
    constexpr u64 dirt = 0xabcdef0100000000;
    reinterpret_cast<Transpose>(dlsym(RTLD_DEFAULT, "TransposeMatrix_d"))(src, dst, dirt + 2, dirt + 3, dirt + 3,
                                                                          dirt + 2);
    reinterpret_cast<Zero>(dlsym(RTLD_DEFAULT, "ZeroLowerTriangle_d"))(a, dirt + 2, dirt + 2, dirt + 2, dirt + 0x5500);
}

TEST(MatrixPrimitiveArguments, WhatLiesAboveAnArgumentDoesNotCount) {
    const double src[6] = {1, 2, 3, 4, 5, 6};
    double dst[6] = {}, a[4] = {7, 8, 9, 10};
    call_with_dirty_registers(src, dst, a);
    EXPECT_EQ(std::vector(dst, dst + 6), (std::vector<double>{1, 4, 2, 5, 3, 6}));
    EXPECT_EQ(std::vector(a, a + 4), (std::vector<double>{7, 8, 0, 10}));
}

} // namespace
