// The road through a triangular matrix that products and solutions share: blocks of columns, in them panels, each a
// small triangle on the diagonal and a rectangle beside it. What is done with the triangle is trmv.cpp's and
// trsv.cpp's.
#pragma once
#include "blas/kernels/level2/products.hpp"
#include "blas/kernels/level2/rows.hpp"

namespace nxl::NXL_TARGET {
namespace { // each source has its own: shared functions would be weak symbols

// An upper triangle, not transposed, by panels of 8 real columns; T is a panel's triangle, R the rectangle above it:
//
//     T R R R        product     1  x_rows += R x_panel for the panel's rectangle, 2  x_panel := T x_panel;
//       T R R                    first panel first, so that x_panel is still what it was
//         T R        solution    1  x_panel := T^-1 x_panel, 2  x_rows -= R x_panel;
//           T                    last panel first
//
// Transposed forms take what R gives to x_panel in place of giving; Form knows both orders. Blocks of columns, 16384
// doubles of x, do the same once more around the panels, so that x stays in the second cache.
enum class Task { product, solution };

/// Which triangle is stored and what is done with it.
struct Form {
    Task task;
    bool upper, transposed, conjugated;

    /// Whether the first block of columns comes first: so that each step finds in x what it must not yet, or must
    /// already, have changed.
    constexpr bool forward() const { return task == Task::solution ? upper == transposed : upper != transposed; }
    /// Whether a block's rectangle comes before its triangle.
    constexpr bool rectangle_first() const { return (task == Task::solution) == transposed; }
    /// The form of whose rectangles the code is: the same for both triangles.
    constexpr Form of_rectangles() const { return {task, false, transposed, conjugated}; }
};

/// A triangle on the diagonal: columns and rows start .. start + count - 1. Its column c has off-diagonal rows
/// first_row(c) .. end_row(c) - 1.
template <Form F, class T> struct StoredTriangle {
    const T* a;
    i64 lda;
    bool unit;

    [[gnu::always_inline]] StoredTriangle at(i64 start) const { return {a + start * (lda + 1), lda, unit}; }
    [[gnu::always_inline]] T element(i64 row, i64 column) const { return conj_if<F.conjugated>(a[row + column * lda]); }
    [[gnu::always_inline]] static i64 first_row(i64 column) { return F.upper ? 0 : column + 1; }
    [[gnu::always_inline]] static i64 end_row(i64 column, i64 count) { return F.upper ? column : count; }
};

/// The rectangle that columns j .. j + width - 1 have beside the diagonal: x_rows := x_rows +- A x_j or, transposed,
/// x_j := x_j +- A^T x_rows. x along the rows is contiguous. Called from four places for each operation: inline, it
/// would be most of the code.
template <Form F, class T>
[[gnu::noinline]] void apply_rectangle(i64 rows, i64 width, const T* a, i64 lda, T* x_rows, T* x_columns) {
    const T sign = from_real<T>(F.task == Task::solution ? -1.0 : 1.0);
    if constexpr (F.transposed)
        add_transposed_product<F.conjugated>(rows, width, sign, a, lda, static_cast<const T*>(x_rows), x_columns, 1);
    else add_product(rows, width, sign, a, lda, static_cast<const T*>(x_columns), 1, x_rows);
}

/// Runs the two steps of a block in the order that F asks for.
template <Form F, class Rectangle, class OnDiagonal>
[[gnu::always_inline]] inline void in_order(const Rectangle& rectangle, const OnDiagonal& on_diagonal) {
    if constexpr (F.rectangle_first()) rectangle();
    on_diagonal();
    if constexpr (!F.rectangle_first()) rectangle();
}

/// A triangle of n columns against a contiguous x. Small: void(count, triangle, x) for one panel's triangle.
template <Form F, class T, class Small>
[[gnu::always_inline]] inline void apply_panels(i64 n, const StoredTriangle<F, T>& triangle, T* x, const Small& small) {
    constexpr i64 width = 8 / kParts<T>;
    for_blocks(n, width, F.forward(), [&](i64 j, i64 count) {
        const i64 row = F.upper ? 0 : j + count, rows = F.upper ? j : n - row;
        in_order<F>(
            [&] {
                apply_rectangle<F.of_rectangles()>(rows, count, triangle.a + row + j * triangle.lda, triangle.lda,
                                                   x + row, x + j);
            },
            [&] {
                if (count == width) small(width, triangle.at(j), x + j); // unrolled
                else small(count, triangle.at(j), x + j);
            });
    });
}

/// The rectangle beside a block of columns, a block of rows at a time.
template <Form F, class T>
[[gnu::always_inline]] inline void apply_row_blocks(i64 rows, i64 width, const T* a, i64 lda, T* x, i64 incx,
                                                    T* x_columns) {
    for_blocks(rows, rows_at_once<T>(incx), true, [&](i64 i, i64 count) {
        T copy[kRowBlock<T>];
        T* block = gather(x + i * incx, incx, count, copy);
        apply_rectangle<F.of_rectangles()>(count, width, a + i, lda, block, x_columns);
        if constexpr (!F.transposed) scatter(block, x + i * incx, incx, count);
    });
}

/// x := op(A) x or op(A)^-1 x, x n elements, the first at x[0].
template <Form F, class T, class Small>
void apply_triangle(i64 n, const StoredTriangle<F, T>& triangle, T* x, i64 incx, const Small& small) {
    for_blocks(n, rows_at_once<T>(incx), F.forward(), [&](i64 j, i64 count) {
        T copy[kRowBlock<T>];
        T* block = gather(x + j * incx, incx, count, copy);
        const i64 row = F.upper ? 0 : j + count, rows = F.upper ? j : n - row;
        in_order<F>(
            [&] {
                apply_row_blocks<F>(rows, count, triangle.a + row + j * triangle.lda, triangle.lda, x + row * incx,
                                    incx, block);
            },
            [&] { apply_panels(count, triangle.at(j), block, small); });
        scatter(block, x + j * incx, incx, count);
    });
}

/// Options from letters to a form known to the compiler. Apply: void(form as a constant).
template <class T, Task task, bool upper, class Apply>
[[gnu::always_inline]] inline void with_operation(char trans, const Apply& apply) {
    constexpr bool conjugated = kParts<T> == 2; // a real number is its own conjugate
    if (trans == 'N') apply.template operator()<Form{task, upper, false, false}>();
    else if (trans == 'C') apply.template operator()<Form{task, upper, true, conjugated}>();
    else apply.template operator()<Form{task, upper, true, false}>();
}
template <class T, Task task, class Apply>
[[gnu::always_inline]] inline void with_form(char uplo, char trans, const Apply& apply) {
    if (uplo == 'U') with_operation<T, task, true>(trans, apply);
    else with_operation<T, task, false>(trans, apply);
}

} // namespace
} // namespace nxl::NXL_TARGET
