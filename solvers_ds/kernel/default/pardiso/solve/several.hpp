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
    auto exchange(T* x) const {
        return [this, x](i32 k, i32 p) { std::swap_ranges(x + k * width_, x + (k + 1) * width_, x + p * width_); };
    }

  public:
    SeveralColumns(i64 width, T* work, T* buffer) : width_(width), work_(work), buffer_(buffer) {}

    void forward(const FactorBlock<T>& block, const Triangle<T>& t) const {
        T* const x = column(block.first);
        const i32 below = block.below(), *const list = block.list_below();
        if (t.interchanges) for_each_interchange(t.interchanges, block.width, exchange(x));
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
