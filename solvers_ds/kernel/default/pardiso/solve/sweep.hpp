// What a step of the solve does with one supernode: a triangle, the rows below it, and the interchanges.
#pragma once
#include "solvers_ds/kernel/default/pardiso/numeric/factor.hpp"

namespace nxl::pardiso {

/// The two triangles of a factor as the steps see them.
template <class T> struct Triangle {
    char uplo;       ///< which part of the diagonal block it is
    bool transposed; ///< and whether it stands for its transpose
    bool unit;
    const T *diagonal, *below;
    i64 ld, ld_below;
    const i32* interchanges; ///< null where there are none
};

/// x is multiplied by the inverse of this one first.
template <class M, class T = typename M::T> Triangle<T> forward_triangle(const FactorBlock<T>& block, bool transposed) {
    if constexpr (M::has_u)
        if (transposed)
            return {'U', true, false, block.l, block.u, block.rows, block.below(), block.column_interchanges};
    return {'L',
            false,
            M::pivots,
            block.l,
            block.l_below(),
            block.rows,
            block.rows,
            M::pivots ? block.row_interchanges : nullptr};
}

/// And by the inverse of this one last, whose rows right of the block are stored as those below a block are.
template <class M, class T = typename M::T>
Triangle<T> backward_triangle(const FactorBlock<T>& block, bool transposed) {
    if constexpr (M::has_u)
        if (!transposed)
            return {'U', false, false, block.l, block.u, block.rows, block.below(), block.column_interchanges};
    return {'L',
            true,
            M::pivots,
            block.l,
            block.l_below(),
            block.rows,
            block.rows,
            M::pivots ? block.row_interchanges : nullptr};
}

/// Calls exchange(k, p) for each interchange in their order, counted from 0.
template <class Exchange> void for_each_interchange(const i32* interchanges, i32 width, const Exchange& exchange) {
    for (i32 k = 0; k < width; ++k) {
        const bool pair = interchanges[k] < 0;
        const i32 from = pair ? k + 1 : k, to = std::abs(interchanges[k]) - 1;
        if (to != from) exchange(from, to);
        k += pair;
    }
}

/// The same backwards.
template <class Exchange> void for_each_interchange_back(const i32* interchanges, i32 width, const Exchange& exchange) {
    for (i32 k = width - 1; k >= 0; --k) {
        const i32 to = std::abs(interchanges[k]) - 1; // of a pair its second column was moved, which k is
        if (to != k) exchange(k, to);
        k -= interchanges[k] < 0;
    }
}

} // namespace nxl::pardiso
