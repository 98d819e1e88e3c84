// The steps of a solve through one supernode, or consecutive ones. Which arithmetic a supernode takes is that of the
// columns of right-hand sides (single.hpp, several.hpp).
#pragma once
#include "solvers_ds/kernel/default/pardiso/numeric/diagonal_block.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/solve.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/sweep.hpp"

namespace nxl::pardiso {

struct SupernodeRange {
    i32 first, last;
};

template <class M, class Columns, class T = typename M::T>
void forward_step(const SolveView<T>& view, i32 s, const Columns& columns) {
    const FactorBlock<T> own = block_of(view.supernodes, view.factor, s);
    columns.forward(own, forward_triangle<M>(own, view.transposed));
}
template <class M, class Columns, class T = typename M::T>
void forward_step(const SolveView<T>& view, SupernodeRange range, const Columns& columns) {
    for (i32 s = range.first; s <= range.last; ++s) forward_step<M>(view, s, columns);
}

/// Of all supernodes: D is in memory as a whole.
template <class M, class T = typename M::T> void diagonal_step(const SolveView<T>& view, i64 width, T* work) {
    if constexpr (M::has_d)
        for (i32 s = 1; s <= view.supernodes.count; ++s) {
            const FactorBlock<T> own = block_of(view.supernodes, view.factor, s);
            divide_by_d<M, DivisorSide::left>(own, width, work + (own.first - 1) * width, width);
        }
}

template <class M, class Columns, class T = typename M::T>
void backward_step(const SolveView<T>& view, i32 s, const Columns& columns) {
    const FactorBlock<T> own = block_of(view.supernodes, view.factor, s);
    columns.backward(own, backward_triangle<M>(own, view.transposed));
}
template <class M, class Columns, class T = typename M::T>
void backward_step(const SolveView<T>& view, SupernodeRange range, const Columns& columns) {
    for (i32 s = range.last; s >= range.first; --s) backward_step<M>(view, s, columns);
}

/// Before and after the backward step: L^H is applied as L^T is, to the conjugates.
template <class M, class T = typename M::T> void conjugate(i64 count, T* work) {
    if constexpr (M::hermitian)
        for (i64 i = 0; i < count; ++i) work[i] = std::conj(work[i]);
}

} // namespace nxl::pardiso
