// Products with a rectangle of a matrix, a panel of columns at a time: y := y + alpha A x and y := y + alpha A^T x.
// The vector along the rows is contiguous; see rows.hpp.
#pragma once
#include "blas/kernels/registers.hpp"

namespace nxl::NXL_TARGET {
namespace { // each source has its own: shared functions would be weak symbols

/// Columns in a panel, so that their coefficients fill half of the registers:
///
///     y    one vector, in a register       y += c0 a0 + c1 a1 + ... + c7 a7, then the next vector
///     c    8 registers, all rows long      the transposed product has 8 sums there, and x in place of y
///     A    8 columns, read side by side
///
/// Without panels, y would be loaded and stored for each column, as often as A is.
template <class T> constexpr int kProductPanel = 8 / kParts<T>;

/// Rows i .. count - 1, in doubles, of y := y + sum of C columns times their coefficients; what is left of a vector
/// goes through ever narrower ones.
template <class T, int C, int W>
[[gnu::always_inline]] inline void add_rows(i64 i, i64 count, const double* a, i64 stride, const T* coefficient,
                                            double* y) {
    Coefficient<T, W> factor[C];
    for (int c = 0; c < C; ++c) factor[c].set(coefficient[c]);
    for (; i + W <= count; i += W) {
        Combination<T, W> sum;
        sum.start(y + i);
        for (int c = 0; c < C; ++c) sum.add(factor[c], load<W>(a + c * stride + i));
        store<W>(y + i, sum.total());
    }
    if constexpr (W > kParts<T>) add_rows<T, C, W / 2>(i, count, a, stride, coefficient, y);
}

template <int C, class T>
void add_panel(i64 m, T alpha, const T* a, i64 lda, const T* x, i64 incx, T* y) {
    T coefficient[C];
    for (int c = 0; c < C; ++c) coefficient[c] = alpha * x[c * incx];
    add_rows<T, C, kWidest>(0, m * kParts<T>, parts(a), lda * kParts<T>, coefficient, parts(y));
}

/// y := y + alpha A x; A m by n.
template <class T, int C = kProductPanel<T>>
[[gnu::always_inline]] inline void add_product(i64 m, i64 n, T alpha, const T* a, i64 lda, const T* x, i64 incx, T* y) {
    i64 j = 0;
    for (; j + C <= n; j += C) add_panel<C>(m, alpha, a + j * lda, lda, x + j * incx, incx, y);
    if constexpr (C > 1) add_product<T, C / 2>(m, n - j, alpha, a + j * lda, lda, x + j * incx, incx, y);
}

/// Whole vectors of the inner products of C columns with x, in `sum`. Returns how many doubles of x are done.
template <bool Conjugate, class T, int C>
[[gnu::always_inline]] inline i64 multiply_vectors(i64 count, const double* a, i64 stride, const double* x, T* sum) {
    constexpr int W = kWidest, chains = 8 / (C * kParts<T>); // eight sums hide the latency of the add
    InnerProduct<T, W> part[chains][C];
    i64 i = 0;
    for (; i + chains * W <= count; i += chains * W)
        for (int k = 0; k < chains; ++k) {
            const Operand<T, W> operand(x + i + k * W);
            for (int c = 0; c < C; ++c) part[k][c].add(load<W>(a + c * stride + i + k * W), operand);
        }
    for (; i + W <= count; i += W) {
        const Operand<T, W> operand(x + i);
        for (int c = 0; c < C; ++c) part[0][c].add(load<W>(a + c * stride + i), operand);
    }
    for (int c = 0; c < C; ++c) {
        for (int k = 1; k < chains; ++k) part[0][c].add(part[k][c]);
        sum[c] = part[0][c].template total<Conjugate>();
    }
    return i;
}

template <bool Conjugate, int C, class T>
void multiply_panel(i64 m, T alpha, const T* a, i64 lda, const T* x, T* y, i64 incy) {
    T sum[C];
    i64 i = multiply_vectors<Conjugate, T, C>(m * kParts<T>, parts(a), lda * kParts<T>, parts(x), sum) / kParts<T>;
    for (; i < m; ++i)
        for (int c = 0; c < C; ++c) sum[c] = sum[c] + conj_if<Conjugate>(a[i + c * lda]) * x[i];
    for (int c = 0; c < C; ++c) y[c * incy] = y[c * incy] + alpha * sum[c];
}

/// y := y + alpha A^T x, or A^H with Conjugate; A m by n.
template <bool Conjugate, class T, int C = kProductPanel<T>>
[[gnu::always_inline]] inline void add_transposed_product(i64 m, i64 n, T alpha, const T* a, i64 lda, const T* x, T* y,
                                                          i64 incy) {
    i64 j = 0;
    for (; j + C <= n; j += C) multiply_panel<Conjugate, C>(m, alpha, a + j * lda, lda, x, y + j * incy, incy);
    if constexpr (C > 1)
        add_transposed_product<Conjugate, T, C / 2>(m, n - j, alpha, a + j * lda, lda, x, y + j * incy, incy);
}

} // namespace
} // namespace nxl::NXL_TARGET
