// The factorisation with files. Supernodes go through memory in groups: a group takes the updates of all that came
// before it, which are read for it in pieces, is factored as in core, and is written.
#pragma once
#include "solvers_ds/kernel/default/pardiso/numeric/factorise.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/piece.hpp"

namespace nxl::pardiso {

/// The window: memory for groups, and for what updates them.
template <class T> struct WindowMemory {
    PieceMemory<T> group, source;
};

/// Divides a window; the shares of sources are as small as a supernode allows, since groups save reading.
template <class T> WindowMemory<T> divide_window(const PieceMemory<T>& window, bool whole, i64 supernode, i64 tallest) {
    if (whole) return {window, {}};
    const i64 scalars = std::max(supernode, window.scalar_count / 4), lists = std::max(tallest, window.list_count / 4);
    const i64 group = window.scalar_count - scalars, group_lists = window.list_count - lists;
    return {{window.scalars, group, window.lists, group_lists},
            {window.scalars + group, scalars, window.lists + group_lists, lists}};
}

/// Factors the matrix into the files. Of the view's factor and supernodes only what is in memory is used. A result with
/// a code, one that was stopped, and one whose files failed leave no factor.
template <class M>
NumericResult factorise_with_files(const NumericView<typename M::T>& view, const FactorOnFiles<typename M::T>& factor,
                                   const WindowMemory<typename M::T>& memory);

} // namespace nxl::pardiso
