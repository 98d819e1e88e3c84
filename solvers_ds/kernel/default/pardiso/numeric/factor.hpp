// What one factorisation keeps: L and U by supernodes, the diagonal D, and the interchanges inside the supernodes.
#pragma once
#include "service/scalars.hpp"
#include "solvers_ds/kernel/default/pardiso/symbolic_structure.hpp"

namespace nxl::pardiso {

/// What the diagonal block of a supernode is factored with.
enum class Form { cholesky, ldl, lu, lu_full_pivoting };

/// A member of the family: what its matrices are, and so what its factors are made of.
template <class Scalar, Form form_, bool hermitian_ = false> struct Member {
    using T = Scalar;
    static constexpr Form form = form_;
    static constexpr bool hermitian = hermitian_ && is_complex_scalar<T>;
    static constexpr bool has_u = form == Form::lu || form == Form::lu_full_pivoting;
    static constexpr bool has_d = form == Form::ldl;
    static constexpr bool pivots = form != Form::cholesky;
    static constexpr char transposition = hermitian ? 'C' : 'T'; ///< of the second factor of an update
};

/// Calls body with the member of a matrix type. Types that pass the checks and are none of the nine are taken by what
/// they store: odd ones by LU, even ones as complex symmetric.
template <class Body> auto with_member(int mtype, const Body& body) {
    switch (mtype) {
    case 2: return body(Member<double, Form::cholesky>{});
    case 4: return body(Member<zcomplex, Form::cholesky, true>{});
    case -2: return body(Member<double, Form::ldl>{});
    case -4: return body(Member<zcomplex, Form::ldl, true>{});
    case 6:
    case -6: return body(Member<zcomplex, Form::ldl>{});
    case 11: return body(Member<double, Form::lu_full_pivoting>{});
    case 13: return body(Member<zcomplex, Form::lu_full_pivoting>{});
    case 1:
    case -1:
    case -11: return body(Member<double, Form::lu>{});
    default: return body(Member<zcomplex, Form::lu>{});
    }
}

/// The storage. Column j of L begins at l[xlnz[j] - 1], and of U, by rows, at u[xunz[j] - 1].
template <class T> struct Factor {
    FromOne<const i64> xlnz, xunz;
    T *l, *u;
    T* d; ///< two for each column: of a pivot of order 1 itself and 0, of one of order 2 its two columns
    i32 *row_interchanges, *column_interchanges; ///< for each column, counted from 1 inside its supernode
};

/// One supernode of the storage. Rows below its columns are rows `width` to `rows` - 1 of its list.
template <class T> struct FactorBlock {
    i32 first, width, rows;
    const i32* list;
    T *l, *u; ///< with leading dimensions `rows` and below()
    T* d;
    i32 *row_interchanges, *column_interchanges;

    i32 below() const { return rows - width; }
    const i32* list_below() const { return list + width; }
    T* l_below() const { return l + width; }
};

template <class T> FactorBlock<T> block_of(const Supernodes& supernodes, const Factor<T>& factor, i32 s) {
    const i32 first = supernodes.first(s), before = first - 1;
    return {.first = first,
            .width = supernodes.width(s),
            .rows = supernodes.rows(s),
            .list = supernodes.list(s),
            .l = factor.l + (factor.xlnz[first] - 1),
            .u = factor.u + (factor.xunz[first] - 1),
            .d = factor.d + 2 * i64{before},
            .row_interchanges = factor.row_interchanges + before,
            .column_interchanges = factor.column_interchanges + before};
}

/// The arrays of a factor in one block of memory.
class FactorLayout {
    i64 l_, u_, d_, pivots_;

  public:
    /// Scalars of L and U, and the order.
    template <class M> static FactorLayout of(M, i64 l, i64 u, i64 n) {
        FactorLayout layout;
        layout.l_ = l;
        layout.u_ = M::has_u ? u : 0;
        layout.d_ = M::has_d ? 2 * n : 0;
        layout.pivots_ = M::pivots ? n : 0;
        return layout;
    }
    template <class T> i64 bytes() const { return (l_ + u_ + d_) * i64{sizeof(T)} + 2 * pivots_ * i64{sizeof(i32)}; }

    template <class T> Factor<T> factor(void* memory, FromOne<const i64> xlnz, FromOne<const i64> xunz) const {
        T *const l = static_cast<T*>(memory), *const u = l + l_, *const d = u + u_;
        i32* const pivots = reinterpret_cast<i32*>(d + d_);
        return {xlnz, xunz, l, u, d, pivots, pivots + pivots_};
    }
};

} // namespace nxl::pardiso
