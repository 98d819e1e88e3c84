// The blocked product: loops over n, k and m around packing and the macro kernel. What the operands are, how a routine
// packs them, and which part of C it writes, comes from outside.
#pragma once
#include "blas/kernels/level3/macro_kernel.hpp"
#include "blas/kernels/level3/workspace.hpp"

namespace nxl::NXL_TARGET {

/// How a product is cut.
struct Plan {
    GemmBlocks blocks;
    bool copies_b;
    bool last_stretch_first; ///< the short block of k comes first, and it is the last stretch of k
};

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

/// The stretches of k one after the other; body(stretch).
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
template <class T> [[gnu::always_inline]] inline i64 panel_stride_a(i64 k) { return kPanel * padded<T>(k); }
template <class T> [[gnu::always_inline]] inline i64 panel_stride_b(i64 k) {
    return kPanelColumns<T> * kParts<T> * padded<T>(k);
}

/// What a blocked product packs into.
struct PackPlace {
    double* a;
    double* strip;
    double* b;
};

/// C += op(A) op(B) over m by n by k, with what `to` says about C. A and B know how to pack themselves.
template <class T, class A, class B>
void blocked_product(const A& a, const B& b, i64 m, i64 n, i64 k, const Plan& plan, const PackPlace& place,
                     Result<T> to) {
    const Result<T> entered = to;
    for (i64 j = 0; j < n; j += plan.blocks.nb) {
        const i64 columns = least(plan.blocks.nb, n - j);
        to.before = entered.before;
        for_each_stretch(k, plan, [&](Stretch stretch) {
            const i64 stride_a = panel_stride_a<T>(stretch.length), stride_b = panel_stride_b<T>(stretch.length);
            if (plan.copies_b) b.pack(stretch.first, stretch.length, j, columns, place.b, stride_b);
            for (i64 i = 0; i < m; i += plan.blocks.mb) {
                const i64 rows = least(plan.blocks.mb, m - i);
                if (to.outside(i, rows, j, columns)) continue;
                a.pack(i, rows, stretch.first, stretch.length, place.a, stride_a);
                const BlockA block{place.a, stride_a, rows, stretch.length};
                if (plan.copies_b) {
                    multiply_block<T>(block, PanelB<T>{place.b, stride_b, columns}, place.strip, to, i, j);
                } else if constexpr (requires { b.in_place(i64{}, i64{}); }) {
                    multiply_in_place<T>(block, b.in_place(stretch.first, j), columns, place.strip, to, i, j);
                }
            }
            to.before = Before::keep;
        });
    }
}

} // namespace nxl::NXL_TARGET
