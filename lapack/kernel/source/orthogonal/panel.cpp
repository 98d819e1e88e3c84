// The recursion, and the narrow panels in which it ends.
#include "lapack/kernel/source/orthogonal/panel.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/vector_product.hpp"
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "service/scalars.hpp"
#include <algorithm>
#include <cmath>

namespace nxl {
namespace {

/// Columns up to which a panel is worked on column by column.
template <class T> constexpr i64 narrow = is_complex_scalar<T> ? 8 : 16;

/// One column of a narrow panel, j, and what it does to the others. One product with all columns of the panel gives
/// the norm of what is to be eliminated, the inner products with the vectors before it, which T is made of, and those
/// with the columns after it, which its reflector is applied to. That product is made while the column before is dealt
/// with: tall panels pass from memory once for each column.
template <class T> class NarrowPanel {
    const Matrix<T> a_, t_;
    T* const tau_;
    T products_[narrow<T>];
    T scale_{}; // column j is still to be multiplied by this

    i64 below(i64 j) const { return a_.rows - j - 1; }
    T* tail(i64 j) const { return a_.at(j, j) + 1; }

    void multiply(i64 j) {
        std::fill_n(products_, a_.columns, T{});
        if (below(j) == 0) return;
        vector_product<T>('C', 1.0, a_.rows_from(j + 1, below(j)), tail(j), 0.0, products_);
    }

    /// Column j becomes beta and, times the scale, v; products are those with v.
    void eliminate(i64 j) {
        T& alpha = a_(j, j);
        const double norm = std::sqrt(real_part(products_[j]));
        if (!may_scale_later(alpha, norm, a_.columns, products_)) {
            tau_[j] = make_reflector(below(j), alpha, tail(j), 1);
            scale_ = 1.0;
            return multiply(j);
        }
        const ReflectorScalars<T> reflector = reflector_scalars(alpha, norm);
        tau_[j] = reflector.tau;
        scale_ = reflector.scale;
        for (i64 c = 0; c < a_.columns; ++c) products_[c] *= reflector.scale;
    }

    /// Column j of T: -tau T (V^H v) above the diagonal.
    void extend_factor(i64 j) {
        T* const column = t_.at(0, j);
        for (i64 c = 0; c < j; ++c) column[c] = -tau_[j] * (conj_if<true>(a_(j, c)) + products_[c]);
        for (i64 r = 0; r < j; ++r) {
            T sum{};
            for (i64 c = r; c < j; ++c) sum += t_(r, c) * column[c];
            column[r] = sum;
        }
        column[j] = tau_[j];
    }

    /// The scale, H^H on the columns after j, and the products with the next one.
    void update(i64 j) {
        const i64 next = j + 1, after = a_.columns - next;
        if (next == a_.rows) return;
        T factors[narrow<T>];
        for (i64 c = next; c < a_.columns; ++c) {
            factors[c - next] = conj_if<true>(tau_[j]) * (a_(j, c) + conj_if<true>(products_[c]));
            a_(j, c) -= factors[c - next];
        }
        a_(next, j) *= scale_; // this row is none of what the next column's reflector eliminates
        for (i64 c = next; c < a_.columns; ++c) a_(next, c) -= a_(next, j) * factors[c - next];
        std::fill_n(products_, a_.columns, T{});
        slot_of<T, &KernelTable::dreflect_panel, &KernelTable::zreflect_panel>()(below(next), j, after, scale_, factors,
                                                                                 a_.at(next + 1, 0), a_.ld, products_);
    }

  public:
    NarrowPanel(const Matrix<T>& a, T* tau, const Matrix<T>& t) : a_(a), t_(t), tau_(tau) {}

    void factor() {
        multiply(0);
        for (i64 j = 0; j < a_.columns; ++j) {
            eliminate(j);
            extend_factor(j);
            update(j);
        }
    }
};

/// T12 := -T11 V1^H V2 T22; both halves of the vectors begin in the rows of their own first columns.
template <class T> void join_factors(const Matrix<T>& a, const Matrix<T>& t, i64 half) {
    const i64 rest = a.columns - half, below = a.rows - a.columns;
    const Matrix<T> t12 = t.block(0, half, half, rest);
    for (i64 j = 0; j < rest; ++j)
        for (i64 i = 0; i < half; ++i) t12(i, j) = conj_if<true>(a(half + j, i));
    trmm('R', 'L', 'N', 'U', 1.0, a.block(half, half, rest, rest), t12);
    if (below > 0)
        gemm('C', 'N', 1.0, a.block(a.columns, 0, below, half), a.block(a.columns, half, below, rest), 1.0, t12);
    trmm('L', 'U', 'N', 'N', -1.0, t.block(0, 0, half, half), t12);
    trmm('R', 'U', 'N', 'N', 1.0, t.from(half, half), t12);
}

/// Of narrow panels of about the same width the first half, in units of the rows that products pack at once.
template <class T> i64 first_half(i64 columns) {
    constexpr i64 unit = narrow<T> / 2;
    const i64 panels = (columns + narrow<T> - 1) / narrow<T>;
    return round_down(columns * ((panels + 1) / 2) / panels + unit / 2, unit);
}

} // namespace

template <class T> void factor_panel(const Matrix<T>& a, T* tau, const Matrix<T>& t) {
    if (a.columns <= narrow<T>) return NarrowPanel<T>(a, tau, t).factor();
    const i64 half = first_half<T>(a.columns), rest = a.columns - half;
    const Matrix<T> left = a.columns_from(0, half), right = a.columns_from(half, rest);
    const Matrix<T> t11 = t.block(0, 0, half, half);
    factor_panel(left, tau, t11);
    apply_block('L', 'C', Reflectors<T>{left, Order::forward, Storage::columns}, t11, right,
                t.block(0, half, half, rest));
    factor_panel(right.from(half, 0), tau + half, t.from(half, half));
    join_factors(a, t, half);
}

template void factor_panel(const Matrix<double>&, double*, const Matrix<double>&);
template void factor_panel(const Matrix<zcomplex>&, zcomplex*, const Matrix<zcomplex>&);

} // namespace nxl
