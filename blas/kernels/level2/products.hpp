// Products with a rectangle of a matrix, a panel of columns at a time: y := y + alpha A x and y := y + alpha A^T x.
// The vector along the rows is contiguous; see rows.hpp.
#pragma once
#include "blas/kernels/level2/registers.hpp"

namespace nxl::NXL_TARGET {
namespace { // each source has its own: shared functions would be weak symbols

/// Columns in a panel, so that their coefficients fill half of the registers.
template <class T> constexpr int kPanel = 8 / kParts<T>;

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
    add_rows<T, C, kWidth>(0, m * kParts<T>, parts(a), lda * kParts<T>, coefficient, parts(y));
}

/// y := y + alpha A x; A m by n.
template <class T, int C = kPanel<T>>
[[gnu::always_inline]] inline void add_product(i64 m, i64 n, T alpha, const T* a, i64 lda, const T* x, i64 incx, T* y) {
    i64 j = 0;
    for (; j + C <= n; j += C) add_panel<C>(m, alpha, a + j * lda, lda, x + j * incx, incx, y);
    if constexpr (C > 1) add_product<T, C / 2>(m, n - j, alpha, a + j * lda, lda, x + j * incx, incx, y);
}

/// Rows from i on of the inner products of C columns with x, added to `sum`.
template <bool Conjugate, class T, int C, int W>
[[gnu::always_inline]] inline void multiply_rows(i64 i, i64 count, const double* a, i64 stride, const double* x,
                                                 T* sum) {
    InnerProduct<T, W> even[C], odd[C]; // two chains hide the latency of the add
    for (; i + 2 * W <= count; i += 2 * W) {
        const Operand<T, W> x0(x + i), x1(x + i + W);
        for (int c = 0; c < C; ++c) {
            even[c].add(load<W>(a + c * stride + i), x0);
            odd[c].add(load<W>(a + c * stride + i + W), x1);
        }
    }
    for (; i + W <= count; i += W) {
        const Operand<T, W> x0(x + i);
        for (int c = 0; c < C; ++c) even[c].add(load<W>(a + c * stride + i), x0);
    }
    for (int c = 0; c < C; ++c) {
        even[c].add(odd[c]);
        sum[c] = sum[c] + even[c].template total<Conjugate>();
    }
    if constexpr (W > kParts<T>) multiply_rows<Conjugate, T, C, W / 2>(i, count, a, stride, x, sum);
}

template <bool Conjugate, int C, class T>
void multiply_panel(i64 m, T alpha, const T* a, i64 lda, const T* x, T* y, i64 incy) {
    T sum[C];
    for (int c = 0; c < C; ++c) sum[c] = from_real<T>(0.0);
    multiply_rows<Conjugate, T, C, kWidth>(0, m * kParts<T>, parts(a), lda * kParts<T>, parts(x), sum);
    for (int c = 0; c < C; ++c) y[c * incy] = y[c * incy] + alpha * sum[c];
}

/// y := y + alpha A^T x, or A^H with Conjugate; A m by n.
template <bool Conjugate, class T, int C = 4 / kParts<T>>
[[gnu::always_inline]] inline void add_transposed_product(i64 m, i64 n, T alpha, const T* a, i64 lda, const T* x, T* y,
                                                          i64 incy) {
    i64 j = 0;
    for (; j + C <= n; j += C) multiply_panel<Conjugate, C>(m, alpha, a + j * lda, lda, x, y + j * incy, incy);
    if constexpr (C > 1)
        add_transposed_product<Conjugate, T, C / 2>(m, n - j, alpha, a + j * lda, lda, x, y + j * incy, incy);
}

} // namespace
} // namespace nxl::NXL_TARGET
