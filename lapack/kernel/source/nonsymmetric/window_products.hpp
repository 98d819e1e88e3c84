// What a window on the diagonal has been turned by, applied to all that is beside it.
#pragma once
#include "blas/calls.hpp"
#include "lapack/kernel/source/nonsymmetric/schur.hpp"
#include "service/slice.hpp"
#include "service/worthwhile_threads.hpp"
#include <algorithm>

namespace nxl {

/// Diagonals of U that are not zero, beside its own one.
struct Diagonals {
    i64 below, above;
};

/// Strips of a few rows or columns are copied to the buffer, where the first cache keeps them, and come back as
/// products.
template <class T> class WindowProducts {
    static constexpr i64 strip = 128 / (sizeof(T) / sizeof(double)); // rows or columns

    const SchurIteration<T>& s_;
    T* const buffer_;

    static i64 strips_of(i64 length) { return (length + strip - 1) / strip; }

    static void copy(const Matrix<T>& from, const Matrix<T>& to) {
        for (i64 j = 0; j < to.columns; ++j) std::copy_n(from.at(0, j), to.rows, to.at(0, j));
    }
    /// part(columns, rows) for columns of U, a few at a time, and the rows that are not zero there.
    template <class Part> static void for_each_part(i64 order, const Diagonals& diagonals, const Part& part) {
        constexpr i64 few = 24; // what a tile of the product takes, or two
        const i64 width = diagonals.below >= order ? order : few;
        for (i64 j = 0; j < order; j += width) {
            const i64 count = std::min(width, order - j), top = std::max(i64{0}, j - diagonals.above);
            part(Slice{j, count}, Slice{top, std::min(order, j + count + diagonals.below) - top});
        }
    }
    /// C := C U
    static void turn_columns(const Matrix<T>& c, const Operand<T>& u, const Diagonals& diagonals, T* buffer) {
        const Matrix<T> old{buffer, c.rows, c.columns, c.rows};
        copy(c, old);
        for_each_part(u.columns, diagonals, [&](const Slice& columns, const Slice& rows) {
            gemm('N', 'N', 1.0, old.columns_from(rows.start, rows.count),
                 u.block(rows.start, columns.start, rows.count, columns.count), 0.0,
                 c.columns_from(columns.start, columns.count));
        });
    }
    /// C := U^H C
    static void turn_rows(const Matrix<T>& c, const Operand<T>& u, const Diagonals& diagonals, T* buffer) {
        const Matrix<T> old{buffer, c.rows, c.columns, c.rows};
        copy(c, old);
        for_each_part(u.columns, diagonals, [&](const Slice& columns, const Slice& rows) {
            gemm('C', 'N', 1.0, u.block(rows.start, columns.start, rows.count, columns.count),
                 old.rows_from(rows.start, rows.count), 0.0, c.rows_from(columns.start, columns.count));
        });
    }
    /// Rows of C in its strip number i.
    static Matrix<T> strip_of_rows(const Matrix<T>& c, i64 i) {
        return c.rows_from(i * strip, std::min(strip, c.rows - i * strip));
    }

  public:
    WindowProducts(const SchurIteration<T>& s, T* buffer) : s_(s), buffer_(buffer) {}

    /// Elements of the buffer for windows of order `most`: a strip for each thread that there may be work for.
    static i64 buffer_size(const SchurIteration<T>& s, i64 most) {
        return std::max(strip, std::max(s.h.columns, s.z.rows)) * most;
    }

    /// The window begins at row `at` of the active block first .. end - 1 and is of U's order.
    void apply(i64 first, i64 end, i64 at, const Operand<T>& u, const Diagonals& diagonals) const {
        const i64 order = u.columns, next = at + order, top = s_.start_of_rows(first);
        const Matrix<T> right = s_.h.block(at, next, order, s_.end_of_columns(end) - next);
        const Matrix<T> above = s_.h.block(top, at, at - top, order), vectors = s_.z.columns_from(at, order);
        const i64 of_right = strips_of(right.columns), of_above = strips_of(above.rows);
        const i64 strips = of_right + of_above + strips_of(vectors.rows);
        const double work = product_of(right.columns + above.rows + vectors.rows, order, order);
        const i64 room = std::max(i64{1}, std::max(s_.h.columns, s_.z.rows) / strip);
        const i64 blocks = std::min({i64{worthwhile_threads(domain_blas, work, least_work<T>.gemm)}, room, strips});
        const auto take_block = [&](i64 block) {
            T* const buffer = buffer_ + block * strip * order;
            const Slice mine = balanced_slice(strips, 1, block, blocks);
            for (i64 i = mine.start; i < mine.end(); ++i)
                if (const i64 j = i * strip; i < of_right)
                    turn_rows(right.columns_from(j, std::min(strip, right.columns - j)), u, diagonals, buffer);
                else if (i < of_right + of_above)
                    turn_columns(strip_of_rows(above, i - of_right), u, diagonals, buffer);
                else turn_columns(strip_of_rows(vectors, i - of_right - of_above), u, diagonals, buffer);
        };
        if (blocks > 1) parallel_blocks(static_cast<int>(blocks), static_cast<int>(blocks), take_block);
        else if (strips > 0) take_block(0);
    }
};

} // namespace nxl
