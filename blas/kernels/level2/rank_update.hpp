// A := A + sum of P products alpha u v^T (v^H with Conjugate), P 1 or 2, on a rectangle or on one triangle of A.
// Level 2's rank updates are these, with their vectors named.
#pragma once
#include "blas/kernels/level2/rows.hpp"
#include "blas/kernels/registers.hpp"

namespace nxl::NXL_TARGET {
namespace { // each source has its own: shared functions would be weak symbols

// A goes through the registers once: A is loaded, takes all P products, and is stored. u is a vector in a register that
// all columns of a panel use; v gives one factor per column and product, 8 registers of them for a panel.
//
// A triangle, by blocks of rows of u:  D           D: the block on the diagonal, by panels, each of which has a small
//                                      R D         triangle of its own and a rectangle beside it
//                                      R R D       R: the rest of its rows, as in a full matrix
/// alpha u v^T: u runs along the rows and v along the columns; their first elements stand at u[0] and v[0].
template <class T> struct OuterProduct {
    T alpha;
    const T* u;
    i64 incu;
    const T* v;
    i64 incv;
};

/// Columns in a panel of P products, so that their factors fill half of the registers.
template <class T, int P> constexpr int kUpdatePanel = 8 / (P * kParts<T>);

/// Rows from i on of C columns of A := A + sum of u times its factor in each column.
template <class T, int P, int C, int W>
[[gnu::always_inline]] inline void update_rows(i64 i, i64 count, const T (&factors)[C][P], const T* const (&u)[P],
                                               double* a, i64 stride) {
    Factor<T, W> factor[C][P];
    for (int c = 0; c < C; ++c)
        for (int p = 0; p < P; ++p) factor[c][p].set(factors[c][p]);
    for (; i + W <= count; i += W) {
        const Operand<T, W> first(parts(u[0]) + i), last(parts(u[P - 1]) + i);
        for (int c = 0; c < C; ++c) {
            double* place = a + c * stride + i;
            Vec<W> sum = factor[c][0].added_to(load<W>(place), first);
            if constexpr (P == 2) sum = factor[c][1].added_to(sum, last);
            store<W>(place, sum);
        }
    }
    if constexpr (W > kParts<T>) update_rows<T, P, C, W / 2>(i, count, factors, u, a, stride);
}

/// What multiplies u in column j.
template <bool Conjugate, class T> [[gnu::always_inline]] inline T factor_of(const OuterProduct<T>& product, i64 j) {
    return product.alpha * conj_if<Conjugate>(product.v[j * product.incv]);
}

template <bool Conjugate, int C, int P, class T>
void update_panel(i64 m, i64 j, const OuterProduct<T> (&products)[P], const T* const (&u)[P], T* a, i64 lda) {
    T factors[C][P];
    for (int c = 0; c < C; ++c)
        for (int p = 0; p < P; ++p) factors[c][p] = factor_of<Conjugate>(products[p], j + c);
    update_rows<T, P, C, kWidest>(0, m * kParts<T>, factors, u, parts(a), lda * kParts<T>);
}

/// Columns j .. end - 1 of m rows; u holds the rows' elements side by side, a is the first row of column j.
template <bool Conjugate, int P, class T, int C = kUpdatePanel<T, P>>
[[gnu::always_inline]] inline void update_rectangle(i64 m, i64 j, i64 end, const OuterProduct<T> (&products)[P],
                                                    const T* const (&u)[P], T* a, i64 lda) {
    for (; j + C <= end; j += C, a += C * lda) update_panel<Conjugate, C>(m, j, products, u, a, lda);
    if constexpr (C > 1) update_rectangle<Conjugate, P, T, C / 2>(m, j, end, products, u, a, lda);
}

/// Calls body(i, rows, u) for blocks of rows, with the blocks of each product's u side by side.
template <int P, class T, class Body>
[[gnu::always_inline]] inline void for_row_blocks(i64 m, const OuterProduct<T> (&products)[P], const Body& body) {
    for_blocks(m, rows_at_once<T>(products[0].incu, products[P - 1].incu), true, [&](i64 i, i64 rows) {
        T copy[P][kRowBlock<T>];
        const T* u[P];
        for (int p = 0; p < P; ++p)
            u[p] = gather(products[p].u + i * products[p].incu, products[p].incu, rows, copy[p]);
        body(i, rows, u);
    });
}

/// The triangle of one panel: columns j .. j + n - 1, a the element of its first row and column. The diagonal of a
/// Hermitian matrix comes out real.
template <bool Conjugate, int P, class T>
[[gnu::always_inline]] inline void update_small(bool upper, i64 n, i64 j, const OuterProduct<T> (&products)[P],
                                                const T* const (&u)[P], i64 row, T* a, i64 lda) {
    for (i64 c = 0; c < n; ++c) {
        T factors[P];
        for (int p = 0; p < P; ++p) factors[p] = factor_of<Conjugate>(products[p], j + c);
        T* column = a + c * lda;
        for (i64 r = upper ? 0 : c; r < (upper ? c + 1 : n); ++r)
            for (int p = 0; p < P; ++p) column[r] = column[r] + u[p][row + r] * factors[p];
        column[c] = diagonal<Conjugate>(column[c]);
    }
}

/// The block on the diagonal with rows and columns i .. i + n - 1, a its first element.
template <bool Conjugate, int P, class T>
void update_diagonal_block(bool upper, i64 n, i64 i, const OuterProduct<T> (&products)[P], const T* const (&u)[P], T* a,
                           i64 lda) {
    for_panels<kUpdatePanel<T, P>>(n, true, [&](i64 j, i64 count) __attribute__((always_inline)) {
        T* corner = a + j * (lda + 1);
        update_small<Conjugate>(upper, count, i + j, products, u, j, corner, lda);
        const i64 row = upper ? 0 : j + count, rows = upper ? j : n - row;
        const T* beside[P];
        for (int p = 0; p < P; ++p) beside[p] = u[p] + row;
        update_rectangle<Conjugate>(rows, i + j, i + j + count, products, beside, a + row + j * lda, lda);
    });
}

/// The m by n matrix A.
template <bool Conjugate, int P, class T>
void update_matrix(i64 m, i64 n, const OuterProduct<T> (&products)[P], T* a, i64 lda) {
    for_row_blocks(m, products, [&](i64 i, i64 rows, const T* const(&u)[P]) {
        update_rectangle<Conjugate>(rows, 0, n, products, u, a + i, lda);
    });
}

/// One triangle of the n by n matrix A.
template <bool Conjugate, int P, class T>
void update_triangle(bool upper, i64 n, const OuterProduct<T> (&products)[P], T* a, i64 lda) {
    for_row_blocks(n, products, [&](i64 i, i64 rows, const T* const(&u)[P]) {
        update_diagonal_block<Conjugate>(upper, rows, i, products, u, a + i * (lda + 1), lda);
        const i64 first = upper ? i + rows : 0, end = upper ? n : i;
        update_rectangle<Conjugate>(rows, first, end, products, u, a + i + first * lda, lda);
    });
}

} // namespace
} // namespace nxl::NXL_TARGET
