// Several right-hand sides, side by side in work memory: each supernode is a few products of matrices.
#pragma once
#include "blas/calls.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/sweep.hpp"
#include <algorithm>
#include <numeric>

namespace nxl::pardiso {

/// Right-hand sides that are solved for together: products are fast by then, and work memory is small beside the
/// factor.
inline constexpr i64 widest_block = 48;

template <class T> class SeveralColumns {
    const i64 width_; ///< right-hand sides
    T* const work_;   ///< n columns of `width_`
    T* const buffer_; ///< the same for the rows of the tallest supernode
    i32 row_places_[widest_block];

    T* column(i32 position) const { return work_ + (position - 1) * width_; }

    /// y := y - factor x
    void subtract(const T& factor, const T* x, T* y) const {
        for (i64 c = 0; c < width_; ++c) y[c] -= x[c] * factor;
    }
    void divide_column(const T& pivot, T* x) const {
        for (i64 c = 0; c < width_; ++c) x[c] /= pivot;
    }

    /// Columns of a triangle for which a call would cost more than its work.
    static constexpr i32 few = 4;

    /// What couples columns k <= i, whichever way the step goes: a triangle and its transpose have it in common.
    static T entry(const Triangle<T>& t, i32 i, i32 k) {
        return t.uplo == 'L' ? t.diagonal[i + k * t.ld] : t.diagonal[k + i * t.ld];
    }
    /// X := X op(T)^-1, the transpose of what one column gets.
    void divide(const Triangle<T>& t, i32 order, T* x) const {
        trsm<T>('R', t.uplo, t.transposed ? 'N' : 'T', t.unit ? 'U' : 'N', width_, order, T(1.0), t.diagonal, t.ld, x,
                width_);
    }
    void divide_down(const Triangle<T>& t, i32 order, T* x) const {
        if (order > few) return divide(t, order, x);
        for (i32 k = 0; k < order; ++k) {
            if (!t.unit) divide_column(entry(t, k, k), x + k * width_);
            for (i32 i = k + 1; i < order; ++i) subtract(entry(t, i, k), x + k * width_, x + i * width_);
        }
    }
    void divide_up(const Triangle<T>& t, i32 order, T* x) const {
        if (order > few) return divide(t, order, x);
        for (i32 k = order - 1; k >= 0; --k) {
            for (i32 i = k + 1; i < order; ++i) subtract(entry(t, i, k), x + i * width_, x + k * width_);
            if (!t.unit) divide_column(entry(t, k, k), x + k * width_);
        }
    }

    /// What the columns of a supernode take off those of the rows below, wherever these are.
    void subtract_below(const FactorBlock<T>& block, const Triangle<T>& t, const T* x) const {
        const ScatteredProduct shape{.rows = width_,
                                     .columns = block.below(),
                                     .depth = block.width,
                                     .ld_left = width_,
                                     .ld_right = t.ld_below,
                                     .ldc = width_,
                                     .row_places = row_places_,
                                     .column_places = block.list_below(),
                                     .lower = false,
                                     .conjugate = false};
        slot_of<T, &KernelTable::dscattered_product, &KernelTable::zscattered_product>()(shape, x, t.below, column(0));
    }
    void subtract_above(const FactorBlock<T>& block, const Triangle<T>& t, T* x) const {
        const i32 below = block.below(), *const list = block.list_below();
        if (block.width == 1) {
            for (i32 i = 0; i < below; ++i) subtract(t.below[i], column(list[i]), x);
            return;
        }
        for (i32 i = 0; i < below; ++i) std::copy_n(column(list[i]), width_, buffer_ + i * width_);
        gemm<T>('N', 'N', width_, block.width, below, T(-1.0), buffer_, width_, t.below, t.ld_below, T(1.0), x, width_);
    }

    auto exchange(T* x) const {
        return [this, x](i32 k, i32 p) { std::swap_ranges(x + k * width_, x + (k + 1) * width_, x + p * width_); };
    }

  public:
    SeveralColumns(i64 width, T* work, T* buffer) : width_(width), work_(work), buffer_(buffer) {
        std::iota(row_places_, row_places_ + width, 0);
    }

    void forward(const FactorBlock<T>& block, const Triangle<T>& t) const {
        T* const x = column(block.first);
        if (t.interchanges) for_each_interchange(t.interchanges, block.width, exchange(x));
        divide_down(t, block.width, x);
        if (block.below() > 0) subtract_below(block, t, x);
    }

    void backward(const FactorBlock<T>& block, const Triangle<T>& t) const {
        T* const x = column(block.first);
        if (block.below() > 0) subtract_above(block, t, x);
        divide_up(t, block.width, x);
        if (t.interchanges) for_each_interchange_back(t.interchanges, block.width, exchange(x));
    }
};

} // namespace nxl::pardiso
