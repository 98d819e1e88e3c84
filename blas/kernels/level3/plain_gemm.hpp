// The product without allocation: a panel of A at a time on the stack, B in place. For what is too small, or too ragged
// at an edge, for the blocked product.
#pragma once
#include "blas/kernels/level3/blocked_product.hpp"

namespace nxl::NXL_TARGET {

/// What a routine over general operands is called with, transposition letters resolved: Source reads rows of op(A) and
/// columns of op(B) wherever they lie.
template <class T> struct GeneralProduct {
    Source<T> a, b;
    i64 m, n, k;
    T alpha;
    Result<T> to;

    /// What the rows from `row` on of `columns` columns of C get from `steps` steps of k.
    GeneralProduct piece(i64 row, i64 column, i64 columns, i64 p, i64 steps, Before before) const {
        GeneralProduct rest{a.from(row, p), b.from(column, p), m - row, columns, steps, alpha, to};
        rest.to.c = to.c + row + column * to.ldc;
        rest.to.before = before;
        return rest;
    }
    /// The same without its first rows.
    GeneralProduct below(i64 rows) const { return piece(rows, 0, n, 0, k, to.before); }
};

template <class T>
GeneralProduct<T> general_product(char transa, char transb, i64 m, i64 n, i64 k, const T& alpha, const T* a, i64 lda,
                                  const T* b, i64 ldb, const T& beta, T* c, i64 ldc) {
    return {source_of_a(transa, a, lda), source_of_b(transb, b, ldb), m, n, k, alpha, {c, ldc, beta, before_of(beta)}};
}
inline GeneralProduct<Complex> general_product(char transa, char transb, i64 m, i64 n, i64 k, const zcomplex& alpha,
                                               const zcomplex* a, i64 lda, const zcomplex* b, i64 ldb,
                                               const zcomplex& beta, zcomplex* c, i64 ldc) {
    return general_product(transa, transb, m, n, k, scalar(alpha), scalars(a), lda, scalars(b), ldb, scalar(beta),
                           scalars(c), ldc);
}

/// C := beta C, by vectors but for the last rows of a column. A Hermitian C goes element by element: its beta is real,
/// and an infinite part must not touch the other one.
template <class T> void scale_result(i64 m, i64 n, const Result<T>& to) {
    if (to.before == Before::keep) return;
    for (i64 j = 0; j < n; ++j) {
        double* column = parts(to.c + j * to.ldc);
        const double zero[2] = {0.0, 0.0};
        i64 i = 0;
        if (to.before == Before::drop) {
            for (; i + kPanelRows<T> <= m; i += kPanelRows<T>) store<4>(column + i * kParts<T>, Vec<4>{});
        } else if (!to.hermitian) {
            const Factor<T, 4> beta(to.beta);
            for (; i + kPanelRows<T> <= m; i += kPanelRows<T>)
                store<4>(column + i * kParts<T>, beta.times(load<4>(column + i * kParts<T>)));
        }
        for (; i < m; ++i) store_element<T>(column + i * kParts<T>, zero, to);
    }
}

/// Two panels of A with 256 steps of k are 16 or 32 KiB on the stack, and go by all of B before the next two are
/// packed. No block is kept in the second cache: what comes here is too small for that to pay. Each stretch of k is
/// added to C, as the blocked product does it.
template <class T> void plain_gemm(const GeneralProduct<T>& g) {
    constexpr i64 rows_at_once = 2 * kTallRows<T>, kb = 256;
    alignas(64) double panels[2 * kTallPanel * kb];
    alignas(64) double strip[kWidth == 2 ? StripB::step * kb : 1];
    const GeneralA<T> a{g.a, g.alpha};
    for (i64 p = 0; p < g.k; p += kb) {
        const i64 length = least(kb, g.k - p);
        Result<T> to = g.to;
        if (p > 0) to.before = Before::keep;
        if (g.b.conjugate) to.b_sign = -1.0;
        for (i64 i = 0; i < g.m; i += rows_at_once) {
            const i64 rows = least(rows_at_once, g.m - i), stride = panel_stride_a<T>(length);
            a.pack(i, rows, p, length, panels, stride);
            multiply_in_place<T>({panels, stride, rows, length}, g.b.from(0, p), g.n, strip, to, i, 0);
        }
    }
}

} // namespace nxl::NXL_TARGET
