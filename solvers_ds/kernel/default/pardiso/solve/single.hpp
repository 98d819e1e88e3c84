// One right-hand side: the factor is read once in each direction, and all work is on its way from memory.
#pragma once
#include "blas/calls.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/pivots.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/sweep.hpp"
#include <algorithm>

namespace nxl::pardiso {

template <class T> class SingleColumn {
    T* const work_;   ///< n
    T* const buffer_; ///< rows of the tallest supernode

    /// Columns of a triangle, and entries below it, up to which calls would cost more than their work.
    static constexpr i32 few = 4;
    static constexpr i64 little = 48;

    static void solve_by_kernel(const Triangle<T>& t, i32 width, T* x) {
        trsv<T>(t.uplo, t.transposed ? 'T' : 'N', t.unit ? 'U' : 'N', {t.diagonal, width, width, t.ld}, x);
    }
    /// y := alpha op(rows below) x + beta y, on this thread.
    static void multiply(char trans, const Triangle<T>& t, i32 width, i32 below, const T& alpha, const T* x,
                         const T& beta, T* y) {
        slot_of<T, &KernelTable::dgemv, &KernelTable::zgemv>()(trans, below, width, alpha, t.below, t.ld_below, x, 1,
                                                               beta, y, 1);
    }

    /// x := T^-1 x by columns, from the first to the last.
    static void solve_down(const Triangle<T>& t, i32 width, T* x) {
        if (width > few) return solve_by_kernel(t, width, x);
        for (i32 k = 0; k < width; ++k) {
            const T* const column = t.diagonal + k * t.ld;
            if (t.transposed) { // the upper part
                for (i32 i = 0; i < k; ++i) x[k] -= column[i] * x[i];
                if (!t.unit) x[k] /= column[k];
                continue;
            }
            if (!t.unit) x[k] /= column[k];
            const T factor = x[k];
            for (i32 i = k + 1; i < width; ++i) x[i] -= column[i] * factor;
        }
    }

    /// From the last to the first.
    static void solve_up(const Triangle<T>& t, i32 width, T* x) {
        if (width > few) return solve_by_kernel(t, width, x);
        for (i32 k = width - 1; k >= 0; --k) {
            const T* const column = t.diagonal + k * t.ld;
            if (t.transposed) { // the lower part
                for (i32 i = k + 1; i < width; ++i) x[k] -= column[i] * x[i];
                if (!t.unit) x[k] /= column[k];
                continue;
            }
            if (!t.unit) x[k] /= column[k];
            const T factor = x[k];
            for (i32 i = 0; i < k; ++i) x[i] -= column[i] * factor;
        }
    }

    /// buffer := the rows below times x.
    void multiply_below(const Triangle<T>& t, i32 width, i32 below, const T* x) const {
        if (i64{width} * below > little) return multiply('N', t, width, below, T(1.0), x, T(0.0), buffer_);
        std::fill_n(buffer_, below, T{});
        for (i32 k = 0; k < width; ++k)
            for (i32 i = 0; i < below; ++i) buffer_[i] += t.below[i + k * t.ld_below] * x[k];
    }

    /// x := x - the rows below, transposed, times the buffer.
    void multiply_above(const Triangle<T>& t, i32 width, i32 below, T* x) const {
        if (i64{width} * below > little) return multiply('T', t, width, below, T(-1.0), buffer_, T(1.0), x);
        for (i32 k = 0; k < width; ++k)
            for (i32 i = 0; i < below; ++i) x[k] -= t.below[i + k * t.ld_below] * buffer_[i];
    }

  public:
    SingleColumn(i64, T* work, T* buffer) : work_(work), buffer_(buffer) {}

    void forward(const FactorBlock<T>& block, const Triangle<T>& t) const {
        T* const x = work_ + (block.first - 1);
        const i32 below = block.below(), *const list = block.list_below();
        if (t.interchanges)
            for_each_interchange(t.interchanges, block.width, [&](i32 k, i32 p) { std::swap(x[k], x[p]); });
        solve_down(t, block.width, x);
        if (block.width == 1) {
            for (i32 i = 0; i < below; ++i) work_[list[i] - 1] -= t.below[i] * x[0];
            return;
        }
        multiply_below(t, block.width, below, x);
        for (i32 i = 0; i < below; ++i) work_[list[i] - 1] -= buffer_[i];
    }

    void backward(const FactorBlock<T>& block, const Triangle<T>& t) const {
        T* const x = work_ + (block.first - 1);
        const i32 below = block.below(), *const list = block.list_below();
        for (i32 i = 0; i < below; ++i) buffer_[i] = work_[list[i] - 1];
        multiply_above(t, block.width, below, x);
        solve_up(t, block.width, x);
        if (t.interchanges)
            for_each_interchange_back(t.interchanges, block.width, [&](i32 k, i32 p) { std::swap(x[k], x[p]); });
    }
};

} // namespace nxl::pardiso
