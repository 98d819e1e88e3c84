// The entries of A on their way into the factor.
#pragma once
#include "solvers_ds/kernel/default/pardiso/numeric/factorise.hpp"
#include <algorithm>
#include <cstdlib>

namespace nxl::pardiso {

/// Sets a supernode to the entries of A that it holds.
template <class M> class Assembler {
    using T = typename M::T;

    const NumericView<T>& view_;

    static T* place_of(const FactorBlock<T>& block, const NumericView<T>& view, i32 j, i64 position) {
        if constexpr (M::has_u)
            if (position < 0) return block.u + (-position - view.factor.xunz[block.first]);
        (void)j;
        return block.l + (std::abs(position) - view.factor.xlnz[block.first]);
    }

    /// The factors of the entry's row and column in the order of the factor.
    double scale(const FactorBlock<T>& block, i32 j, i64 position) const {
        const bool across = position < 0;
        const i64 start = M::has_u && across ? view_.factor.xunz[j] - block.width : view_.factor.xlnz[j];
        const i32 other = block.list[std::abs(position) - start];
        const i32 row = across ? j : other, column = across ? other : j;
        return view_.row_scale[row - 1] * view_.column_scale[column - 1];
    }

  public:
    explicit Assembler(const NumericView<T>& view) : view_(view) {}

    void assemble(const FactorBlock<T>& block) const {
        std::fill_n(block.l, i64{block.rows} * block.width, T{});
        if constexpr (M::has_u) std::fill_n(block.u, i64{block.below()} * block.width, T{});
        for (i32 j = block.first; j < block.first + block.width; ++j)
            for (i32 k = view_.scatter_start[j]; k < view_.scatter_start[j + 1]; ++k) {
                const i64 position = view_.scatter_position[k];
                T value = view_.a[view_.scatter_source[k] - 1];
                if (position < 0) value = conj_if<M::hermitian>(value);
                if (view_.row_scale) value *= scale(block, j, position);
                *place_of(block, view_, j, position) += value;
            }
    }
};

} // namespace nxl::pardiso
