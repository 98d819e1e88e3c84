// The steps of a solve on work memory, through all supernodes on one thread, or through independent subtrees of the
// elimination tree on several. Which arithmetic a supernode takes is the columns' (single.hpp, several.hpp).
#pragma once
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/diagonal_block.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/solve.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/subtrees.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/sweep.hpp"
#include <algorithm>

namespace nxl::pardiso {

/// Columns works on `width` right-hand sides: Columns(width, work, buffer).
template <class M, class Columns> class SolveSteps {
    using T = typename M::T;

    const SolveView<T>& view_;
    const i64 width_;
    T* const work_; ///< n columns of `width`

    i32 count() const { return view_.supernodes.count; }
    FactorBlock<T> block(i32 s) const { return block_of(view_.supernodes, view_.factor, s); }
    void forward(const Columns& columns, i32 s) const {
        const FactorBlock<T> own = block(s);
        columns.forward(own, forward_triangle<M>(own, view_.transposed));
    }
    void backward(const Columns& columns, i32 s) const {
        const FactorBlock<T> own = block(s);
        columns.backward(own, backward_triangle<M>(own, view_.transposed));
    }
    /// Calls body(first, length) for the elements of the columns of each supernode of one owner.
    template <class Body> void for_elements(const Subtrees& trees, i32 owner, const Body& body) const {
        for (i32 s = 1; s <= count(); ++s)
            if (trees.owner(s) == owner)
                body((view_.supernodes.first(s) - 1) * width_, view_.supernodes.width(s) * width_);
    }

    void diagonal() const {
        if constexpr (M::has_d)
            for (i32 s = 1; s <= count(); ++s) {
                const FactorBlock<T> own = block(s);
                divide_by_d<M, DivisorSide::left>(own, width_, work_ + (own.first - 1) * width_, width_);
            }
    }
    void conjugate() const { // L^H is applied as L^T is, to the conjugates
        if constexpr (M::hermitian)
            for (i64 i = 0; i < view_.n * width_; ++i) work_[i] = std::conj(work_[i]);
    }

    /// Each thread has work memory of its own, in which what its subtrees take off the rows above them adds up.
    void forward_through(const Subtrees& trees, T* own_work, T* buffers) const {
        const i64 length = view_.n * width_, buffer = view_.tallest * width_;
        parallel_blocks(trees.threads(), trees.threads(), [&](i64 thread) {
            T* const own = own_work + thread * length;
            const i32 owner = static_cast<i32>(thread) + 1;
            for_elements(trees, Subtrees::above, [&](i64 at, i64 elements) { std::fill_n(own + at, elements, T{}); });
            for_elements(trees, owner, [&](i64 at, i64 elements) { std::copy_n(work_ + at, elements, own + at); });
            const Columns columns(width_, own, buffers + thread * buffer);
            for (i32 s = 1; s <= count(); ++s)
                if (trees.owner(s) == owner) forward(columns, s);
            for_elements(trees, owner, [&](i64 at, i64 elements) { std::copy_n(own + at, elements, work_ + at); });
        });
        for (i32 thread = 0; thread < trees.threads(); ++thread) {
            const T* const own = own_work + thread * length;
            for_elements(trees, Subtrees::above, [&](i64 at, i64 elements) {
                for (i64 i = at; i < at + elements; ++i) work_[i] += own[i];
            });
        }
        const Columns columns(width_, work_, buffers);
        for (i32 s = 1; s <= count(); ++s)
            if (trees.owner(s) == Subtrees::above) forward(columns, s);
    }

    void backward_through(const Subtrees& trees, T* buffers) const {
        const Columns columns(width_, work_, buffers);
        for (i32 s = count(); s >= 1; --s)
            if (trees.owner(s) == Subtrees::above) backward(columns, s);
        parallel_blocks(trees.threads(), trees.threads(), [&](i64 thread) {
            const Columns own(width_, work_, buffers + thread * view_.tallest * width_);
            for (i32 s = count(); s >= 1; --s)
                if (trees.owner(s) == static_cast<i32>(thread) + 1) backward(own, s);
        });
    }

  public:
    SolveSteps(const SolveView<T>& view, i64 width, T* work) : view_(view), width_(width), work_(work) {}

    /// `buffer` holds `width` columns of the tallest supernode.
    void run(T* buffer) const {
        const Columns columns(width_, work_, buffer);
        if (view_.steps.forward)
            for (i32 s = 1; s <= count(); ++s) forward(columns, s);
        if (view_.steps.diagonal) diagonal();
        if (!view_.steps.backward) return;
        conjugate();
        for (i32 s = count(); s >= 1; --s) backward(columns, s);
        conjugate();
    }

    /// The same by threads; false when there was no memory, and nothing was done.
    bool run_through(const Subtrees& trees) const {
        const Scratch<T> own_work(view_.steps.forward ? trees.threads() * view_.n * width_ : 0),
            buffers(trees.threads() * view_.tallest * width_);
        if (!buffers.data() || (view_.steps.forward && !own_work.data())) return false;
        if (view_.steps.forward) forward_through(trees, own_work.data(), buffers.data());
        if (view_.steps.diagonal) diagonal();
        if (!view_.steps.backward) return true;
        conjugate();
        backward_through(trees, buffers.data());
        conjugate();
        return true;
    }
};

} // namespace nxl::pardiso
