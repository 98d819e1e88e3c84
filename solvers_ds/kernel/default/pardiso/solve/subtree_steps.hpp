// The steps of a solve through independent subtrees of the elimination tree, one thread for each.
#pragma once
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/steps.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/subtrees.hpp"
#include <algorithm>

namespace nxl::pardiso {

/// Columns works on `width` right-hand sides: Columns(width, work, buffer).
template <class M, class Columns> class SubtreeSteps {
    using T = typename M::T;

    const SolveView<T>& view_;
    const i64 width_;
    T* const work_; ///< n columns of `width`

    i32 count() const { return view_.supernodes.count; }
    /// Calls body(first, length) for the elements of the columns of each supernode of one owner.
    template <class Body> void for_elements(const Subtrees& trees, i32 owner, const Body& body) const {
        for (i32 s = 1; s <= count(); ++s)
            if (trees.owner(s) == owner)
                body((view_.supernodes.first(s) - 1) * width_, view_.supernodes.width(s) * width_);
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
                if (trees.owner(s) == owner) forward_step<M>(view_, s, columns);
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
            if (trees.owner(s) == Subtrees::above) forward_step<M>(view_, s, columns);
    }

    void backward_through(const Subtrees& trees, T* buffers) const {
        const Columns columns(width_, work_, buffers);
        for (i32 s = count(); s >= 1; --s)
            if (trees.owner(s) == Subtrees::above) backward_step<M>(view_, s, columns);
        parallel_blocks(trees.threads(), trees.threads(), [&](i64 thread) {
            const Columns own(width_, work_, buffers + thread * view_.tallest * width_);
            for (i32 s = count(); s >= 1; --s)
                if (trees.owner(s) == static_cast<i32>(thread) + 1) backward_step<M>(view_, s, own);
        });
    }

  public:
    SubtreeSteps(const SolveView<T>& view, i64 width, T* work) : view_(view), width_(width), work_(work) {}

    /// False when there was no memory, and nothing was done.
    bool run(const Subtrees& trees) const {
        const Scratch<T> own_work(view_.steps.forward ? trees.threads() * view_.n * width_ : 0),
            buffers(trees.threads() * view_.tallest * width_);
        if (!buffers.data() || (view_.steps.forward && !own_work.data())) return false;
        if (view_.steps.forward) forward_through(trees, own_work.data(), buffers.data());
        if (view_.steps.diagonal) diagonal_step<M>(view_, width_, work_);
        if (!view_.steps.backward) return true;
        conjugate<M>(view_.n * width_, work_);
        backward_through(trees, buffers.data());
        conjugate<M>(view_.n * width_, work_);
        return true;
    }
};

} // namespace nxl::pardiso
