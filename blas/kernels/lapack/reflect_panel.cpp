// dreflect_panel, zreflect_panel: one reflector of a narrow panel, with the inner products that the next one is made
// of.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/products.hpp"
#include "blas/kernels/level2/rows.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// Rows at a time: v and the next column stay in the first cache while the other columns pass, and a panel of 16
/// columns in the second.
constexpr i64 kRowsAtOnce = 256;

/// C columns: A := A - v f^T and then product := product + A^H x, in one pass. `own`: x is the first of them.
template <int C, bool own, class T>
void update_columns(i64 m, const T* v, const T* factor, T* a, i64 lda, const T* x, T* product) {
    constexpr int W = kWidest;
    Factor<T, W> negative[C];
    InnerProduct<T, W> sum[C];
    repeat<C>([&](auto c) { negative[c].set(-factor[c]); });
    const i64 count = m * kParts<T>, stride = lda * kParts<T>;
    i64 i = 0;
    for (; i + W <= count; i += W) {
        const Operand<T, W> reflected(parts(v) + i);
        Operand<T, W> other;
        if constexpr (!own) other = Operand<T, W>(parts(x) + i);
        repeat<C>([&](auto c) {
            double* const place = parts(a) + c * stride + i;
            const Vec<W> updated = negative[c].added_to(load<W>(place), reflected);
            store<W>(place, updated);
            if constexpr (own && c == 0) other = Operand<T, W>(updated);
            sum[c].add(updated, other);
        });
    }
    T total[C];
    repeat<C>([&](auto c) { total[c] = sum[c].template total<true>(); });
    for (i64 row = i / kParts<T>; row < m; ++row) {
        const T reflected = v[row];
        T other;
        if constexpr (!own) other = x[row];
        repeat<C>([&](auto c) {
            const T updated = a[row + c * lda] - reflected * factor[c];
            a[row + c * lda] = updated;
            if constexpr (own && c == 0) other = updated;
            total[c] = total[c] + conj_if<true>(updated) * other;
        });
    }
    repeat<C>([&](auto c) { product[c] = product[c] + total[c]; });
}

/// All columns after v, the first of which is x.
template <bool own, class T, int C = kProductPanel<T>>
[[gnu::always_inline]] inline void update_others(i64 m, i64 n, const T* v, const T* factor, T* a, i64 lda, const T* x,
                                                 T* product) {
    i64 j = 0;
    for (; j + C <= n; j += C) {
        if (own && j == 0) update_columns<C, own>(m, v, factor, a, lda, x, product);
        else update_columns<C, false>(m, v, factor + j, a + j * lda, lda, x, product + j);
    }
    if constexpr (C > 1) {
        if (own && j == 0) update_others<own, T, C / 2>(m, n, v, factor, a, lda, x, product);
        else update_others<false, T, C / 2>(m, n - j, v, factor + j, a + j * lda, lda, x, product + j);
    }
}

template <class T>
void reflect(i64 m, i64 before, i64 after, T scale, const T* factor, T* a, i64 lda, T* product) {
    const auto reflect_rows = [&](i64 i, i64 rows) {
        T *const block = a + i, *const v = block + before * lda, *const x = v + lda;
        for (i64 row = 0; row < rows; ++row) v[row] = v[row] * scale;
        if (after == 0) return;
        update_others<true>(rows, after, v, factor, x, lda, x, product + before + 1);
        add_transposed_product<true>(rows, before + 1, from_real<T>(1.0), block, lda, x, product, 1);
    };
    // A panel that begins with a line of the cache has `before` + 2 rows above these. With the rest of that line apart,
    // no vector lies in two lines.
    constexpr i64 line = 64 / sizeof(T);
    const i64 first = smaller(m, line - 1 - (before + 1) % line);
    if (first > 0) reflect_rows(0, first);
    for_blocks(m - first, kRowsAtOnce, true, [&](i64 i, i64 rows) { reflect_rows(first + i, rows); });
}

} // namespace

void dreflect_panel(const i64& m, const i64& before, const i64& after, const double& scale, const double* factor,
                    double* a, const i64& lda, double* product) {
    reflect(m, before, after, scale, factor, a, lda, product);
}

void zreflect_panel(const i64& m, const i64& before, const i64& after, const zcomplex& scale, const zcomplex* factor,
                    zcomplex* a, const i64& lda, zcomplex* product) {
    reflect(m, before, after, scalar(scale), scalars(factor), scalars(a), lda, scalars(product));
}

} // namespace nxl::NXL_TARGET
