// The blocked product: loops over n, k and m around packing and the macro kernel. What the operands are, how a routine
// packs them, and which part of C it writes, comes from outside.
#pragma once
#include "blas/kernels/level3/macro_kernel.hpp"
#include "blas/kernels/level3/workspace.hpp"

namespace nxl::NXL_TARGET {

// Each loop keeps one operand in one level of the memory while the others pass by (Goto and van de Geijn, Anatomy of
// High-Performance Matrix Multiplication, ACM TOMS 34, 2008):
//
//     for nb columns of C                                   columns of B and C
//         for kb steps of k              pack B, kb by nb       third cache, or memory
//             for mb rows of C           pack A, mb by kb       second cache
//                 macro_kernel.hpp       columns of B, panels of A    first cache
//                     tile.hpp           sums                         registers
//
// B is packed once, A anew for each nb columns, so that one element is packed for m multiply-adds, or for nb. Where B
// is small it stays in place, and the tile reads it there.
/// How a product is cut.
struct Plan {
    GemmBlocks blocks;
    bool copies_b;
    bool last_stretch_first;   ///< the short block of k comes first, and it is the last stretch of k
    bool rows_outside = false; ///< all of k over one block of rows after the other; B stays in place
};

/// Wide registers: a B whose panels would be used only once or twice stays in place, and an A that is read along k for
/// a narrow C is read through in one go. That changes no result.
template <class T> [[gnu::always_inline]] inline void adapt_to_thin(Plan& plan, i64 m, i64 n, bool a_along_k) {
    constexpr i64 tile_rows = 3 * kPanelRows<T>, few_columns = 4 * kPanelRows<T>;
    if (kWidth == 2) return;
    if (m <= tile_rows || n <= few_columns) plan.copies_b = false;
    if (n <= few_columns && a_along_k) {
        plan.rows_outside = true;
        plan.blocks.mb = least(plan.blocks.mb, 2 * tile_rows);
    }
}

/// General operands: any matrix in memory.
template <class T> struct GeneralA {
    Source<T> from;
    T alpha;

    void pack(i64 row, i64 rows, i64 p, i64 k, double* to, i64 stride) const {
        pack_a(from.from(row, p), rows, k, to, stride, &alpha);
    }
};
template <class T> struct GeneralB {
    Source<T> from;

    void pack(i64 p, i64 k, i64 column, i64 columns, double* to, i64 stride) const {
        pack_b(from.from(column, p), k, columns, to, stride);
    }
    Source<T> in_place(i64 p, i64 column) const { return from.from(column, p); }
};

/// A stretch of k.
struct Stretch {
    i64 first, length;
};

/// The stretches of k one after the other; body(stretch). Classes 0 and 1 begin with the last, short one: the order of
/// their sums is fixed, and results depend on it.
template <class Body> [[gnu::always_inline]] inline void for_each_stretch(i64 k, const Plan& plan, const Body& body) {
    const i64 kb = plan.blocks.kb;
    if (!plan.last_stretch_first) {
        for (i64 p = 0; p < k; p += kb) body(Stretch{p, least(kb, k - p)});
        return;
    }
    const i64 first = k % kb ? k % kb : kb;
    body(Stretch{k - first, first});
    for (i64 p = 0; p < k - first; p += kb) body(Stretch{p, kb});
}

/// Strides of packed panels, in doubles.
template <class T> [[gnu::always_inline]] inline i64 panel_stride_a(i64 k) { return kTallPanel * padded<T>(k); }
template <class T> [[gnu::always_inline]] inline i64 panel_stride_b(i64 k) {
    return kPanelColumns<T> * kParts<T> * padded<T>(k);
}

/// What a blocked product packs into.
struct PackPlace {
    double* a;
    double* strip;
    double* b;
};

/// Packs a block of A and adds its product with B, or with a panel of it packed before, to C.
template <class T, class A, class B>
[[gnu::always_inline]] inline void add_block(const A& a, const B& b, const Place& at, Stretch stretch, const Plan& plan,
                                             const PackPlace& place, const Result<T>& to) {
    if (to.outside(at.i, at.rows, at.j, at.columns)) return;
    const i64 stride_a = panel_stride_a<T>(stretch.length);
    a.pack(at.i, at.rows, stretch.first, stretch.length, place.a, stride_a);
    const BlockA block{place.a, stride_a, at.rows, stretch.length};
    if (plan.copies_b) {
        const PanelB<T> panel{place.b, panel_stride_b<T>(stretch.length), at.columns};
        multiply_block<T>(block, panel, place.strip, to, at.i, at.j);
    } else if constexpr (requires { b.in_place(i64{}, i64{}); }) {
        multiply_in_place<T>(block, b.in_place(stretch.first, at.j), at.columns, place.strip, to, at.i, at.j);
    }
}

/// The rows of C are whole panels, or the last panel is padded: none is left over.
struct NoTail {
    [[gnu::always_inline]] void operator()(i64, i64, Stretch, Before) const {}
};

/// C += op(A) op(B) over m by n by k, with what `to` says about C. A and B know how to pack themselves. Rows past m
/// that are not packed are left to `tail`, block by block, so that they are summed in the order of the others.
template <class T, class A, class B, class Tail = NoTail>
void blocked_product(const A& a, const B& b, i64 m, i64 n, i64 k, const Plan& plan, const PackPlace& place,
                     const Result<T>& to, const Tail& tail = {}) {
    const i64 mb = plan.blocks.mb, nb = plan.blocks.nb;
    for (i64 j = 0; j < n; j += nb) {
        const i64 columns = least(nb, n - j);
        const i64 outer = plan.rows_outside ? mb : m;
        i64 top = 0;
        do { // once for the tail even when no row comes before it
            Result<T> now = to;
            for_each_stretch(k, plan, [&](Stretch stretch) {
                if (plan.copies_b)
                    b.pack(stretch.first, stretch.length, j, columns, place.b, panel_stride_b<T>(stretch.length));
                const i64 bottom = least(top + outer, m);
                for (i64 i = top; i < bottom; i += mb)
                    add_block(a, b, {i, least(mb, bottom - i), j, columns}, stretch, plan, place, now);
                if (bottom == m) tail(j, columns, stretch, now.before);
                now.before = Before::keep;
            });
            top += outer;
        } while (top < m);
    }
}

} // namespace nxl::NXL_TARGET
