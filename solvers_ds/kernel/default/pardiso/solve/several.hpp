// Several right-hand sides, side by side in work memory: each supernode is a few products of matrices.
#pragma once
#include "blas/calls.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/sweep.hpp"
#include <algorithm>

namespace nxl::pardiso {

template <class T> class SeveralColumns {
    const i64 width_; ///< right-hand sides
    T* const work_;   ///< n columns of `width_`
    T* const buffer_; ///< the same for the rows of the tallest supernode

    T* column(i32 position) const { return work_ + (position - 1) * width_; }

    /// X := X op(T)^-1, the transpose of what one column gets.
    void divide(const Triangle<T>& t, i32 order, bool transposed, T* x) const {
        trsm<T>('R', t.uplo, transposed ? 'T' : 'N', t.unit ? 'U' : 'N', width_, order, T(1.0), t.diagonal, t.ld, x,
                width_);
    }
    /// y := y - factor x
    void subtract(const T& factor, const T* x, T* y) const {
        for (i64 c = 0; c < width_; ++c) y[c] -= x[c] * factor;
    }
    void divide_column(const T& pivot, T* x) const {
        for (i64 c = 0; c < width_; ++c) x[c] /= pivot;
    }

    /// Columns of a supernode for which calls would cost more than their work.
    static constexpr i32 few = 4;

    /// What couples columns k <= i, whichever way the step goes: a triangle and its transpose have it in common.
    static T entry(const Triangle<T>& t, i32 i, i32 k) {
        return t.uplo == 'L' ? t.diagonal[i + k * t.ld] : t.diagonal[k + i * t.ld];
    }
    void forward_few(const FactorBlock<T>& block, const Triangle<T>& t, T* x) const {
        for (i32 k = 0; k < block.width; ++k) {
            if (!t.unit) divide_column(entry(t, k, k), x + k * width_);
            for (i32 i = k + 1; i < block.width; ++i) subtract(entry(t, i, k), x + k * width_, x + i * width_);
        }
        for (i32 i = 0; i < block.below(); ++i)
            for (i32 k = 0; k < block.width; ++k)
                subtract(t.below[i + k * t.ld_below], x + k * width_, column(block.list_below()[i]));
    }
    void backward_few(const FactorBlock<T>& block, const Triangle<T>& t, T* x) const {
        for (i32 i = 0; i < block.below(); ++i)
            for (i32 k = 0; k < block.width; ++k)
                subtract(t.below[i + k * t.ld_below], column(block.list_below()[i]), x + k * width_);
        for (i32 k = block.width - 1; k >= 0; --k) {
            for (i32 i = k + 1; i < block.width; ++i) subtract(entry(t, i, k), x + i * width_, x + k * width_);
            if (!t.unit) divide_column(entry(t, k, k), x + k * width_);
        }
    }

    auto exchange(T* x) const {
        return [this, x](i32 k, i32 p) { std::swap_ranges(x + k * width_, x + (k + 1) * width_, x + p * width_); };
    }

  public:
    SeveralColumns(i64 width, T* work, T* buffer) : width_(width), work_(work), buffer_(buffer) {}

    void forward(const FactorBlock<T>& block, const Triangle<T>& t) const {
        T* const x = column(block.first);
        const i32 below = block.below(), *const list = block.list_below();
        if (t.interchanges) for_each_interchange(t.interchanges, block.width, exchange(x));
        if (block.width <= few) return forward_few(block, t, x);
        divide(t, block.width, !t.transposed, x);
        if (below == 0) return;
        gemm<T>('N', 'T', width_, below, block.width, T(1.0), x, width_, t.below, t.ld_below, T(0.0), buffer_, width_);
        for (i32 i = 0; i < below; ++i) {
            T* const to = column(list[i]);
            const T* const from = buffer_ + i * width_;
            for (i64 k = 0; k < width_; ++k) to[k] -= from[k];
        }
    }

    void backward(const FactorBlock<T>& block, const Triangle<T>& t) const {
        T* const x = column(block.first);
        const i32 below = block.below(), *const list = block.list_below();
        if (block.width <= few) {
            backward_few(block, t, x);
            if (t.interchanges) for_each_interchange_back(t.interchanges, block.width, exchange(x));
            return;
        }
        if (below > 0) {
            for (i32 i = 0; i < below; ++i) std::copy_n(column(list[i]), width_, buffer_ + i * width_);
            gemm<T>('N', 'N', width_, block.width, below, T(-1.0), buffer_, width_, t.below, t.ld_below, T(1.0), x,
                    width_);
        }
        divide(t, block.width, !t.transposed, x);
        if (t.interchanges) for_each_interchange_back(t.interchanges, block.width, exchange(x));
    }
};

} // namespace nxl::pardiso
