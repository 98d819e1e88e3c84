// One right-hand side: the factor is read once in each direction, and all work is on its way from memory.
#pragma once
#include "solvers_ds/kernel/default/pardiso/numeric/pivots.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/sweep.hpp"
#include <algorithm>

namespace nxl::pardiso {

template <class T> class SingleColumn {
    T* const work_;   ///< n
    T* const buffer_; ///< rows of the tallest supernode

    static constexpr i32 together = 4; ///< columns that a pass over the rows takes

    /// x := T^-1 x by columns, from the first to the last.
    static void solve_down(const Triangle<T>& t, i32 width, T* x) {
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
        T* const sum = buffer_;
        i32 k = 0;
        for (; k + together <= width; k += together) {
            const T *const a = t.below + k * t.ld_below, *const b = a + t.ld_below, *const c = b + t.ld_below,
                           *const d = c + t.ld_below;
            const T xa = x[k], xb = x[k + 1], xc = x[k + 2], xd = x[k + 3];
            if (k == 0)
                for (i32 i = 0; i < below; ++i) sum[i] = (a[i] * xa + b[i] * xb) + (c[i] * xc + d[i] * xd);
            else
                for (i32 i = 0; i < below; ++i) sum[i] += (a[i] * xa + b[i] * xb) + (c[i] * xc + d[i] * xd);
        }
        if (k == 0) std::fill_n(sum, below, T{});
        for (; k < width; ++k) {
            const T* const a = t.below + k * t.ld_below;
            const T xa = x[k];
            for (i32 i = 0; i < below; ++i) sum[i] += a[i] * xa;
        }
    }

    /// x := x - the rows below, transposed, times the buffer.
    void multiply_above(const Triangle<T>& t, i32 width, i32 below, T* x) const {
        constexpr i32 lanes = 2;
        const T* const y = buffer_;
        i32 k = 0;
        for (; k + together <= width; k += together) {
            const T *const a = t.below + k * t.ld_below, *const b = a + t.ld_below, *const c = b + t.ld_below,
                           *const d = c + t.ld_below;
            T sa[lanes] = {}, sb[lanes] = {}, sc[lanes] = {}, sd[lanes] = {};
            i32 i = 0;
            for (; i + lanes <= below; i += lanes)
                for (i32 lane = 0; lane < lanes; ++lane) {
                    const T value = y[i + lane];
                    sa[lane] += a[i + lane] * value;
                    sb[lane] += b[i + lane] * value;
                    sc[lane] += c[i + lane] * value;
                    sd[lane] += d[i + lane] * value;
                }
            for (; i < below; ++i) {
                sa[0] += a[i] * y[i];
                sb[0] += b[i] * y[i];
                sc[0] += c[i] * y[i];
                sd[0] += d[i] * y[i];
            }
            x[k] -= sa[0] + sa[1];
            x[k + 1] -= sb[0] + sb[1];
            x[k + 2] -= sc[0] + sc[1];
            x[k + 3] -= sd[0] + sd[1];
        }
        for (; k < width; ++k) {
            const T* const a = t.below + k * t.ld_below;
            T sum{};
            for (i32 i = 0; i < below; ++i) sum += a[i] * y[i];
            x[k] -= sum;
        }
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
