// The forms of the matrix product on one thread: what is packed, and what goes to the product without packing.
#pragma once
#include "blas/kernels/level3/gemm.hpp"

namespace nxl::NXL_TARGET {

// Three ways to form a product, and what each keeps for reuse:
//
//     plain_gemm        two panels of A on the stack, B in place       too small or too thin for anything else
//     packed_form       a block of A, B packed or in place             general operands; without memory, plain_gemm
//     packed_product    a block of A and a panel of B, always packed   operands that only packing can read: mirrored
//                                                                      triangles; and rank updates
/// Sizes below which a form does not pack.
struct LeastSizes {
    i64 m, n, k;
};

template <class T> [[gnu::always_inline]] inline bool below(const GeneralProduct<T>& g, LeastSizes least_sizes) {
    return g.m < least_sizes.m || g.n < least_sizes.n || g.k < least_sizes.k;
}

/// True when nothing is left to do but what beta asks for, which has then been done.
template <class T> [[gnu::always_inline]] inline bool only_scales(const GeneralProduct<T>& g) {
    if (g.m < 1 || g.n < 1) return true;
    if (g.k > 0 && !is_zero(g.alpha)) return false;
    scale_result(g.m, g.n, g.to);
    return true;
}

/// Memory for the blocks of a plan, whole panels of it.
template <class T> [[gnu::always_inline]] inline GemmBuffers buffers_for(const Plan& plan) {
    const GemmBlocks& blocks = plan.blocks;
    return {up_to(blocks.mb, kTallRows<T>), plan.copies_b ? blocks.nb : 0, up_to(blocks.kb, 4), sizeof(T)};
}

/// A product whose operands are always packed. Without memory it goes by small blocks on the stack.
template <class T, class A, class B>
void packed_product(const A& a, const B& b, i64 m, i64 n, i64 k, const Result<T>& to) {
    const Plan plan = plan_for<T>(m, n, k);
    const GemmBuffers buffers = buffers_for<T>(plan);
    if (buffers.there()) return blocked_product(a, b, m, n, k, plan, {buffers.a(), buffers.strip(), buffers.b()}, to);
    constexpr GemmBlocks few{8, 8, 64};
    alignas(64) double block[2 * few.mb * few.kb * kParts<T>];
    alignas(64) double strip[kWidth == 2 ? StripB::step * few.kb : 1];
    blocked_product(a, b, m, n, k, {few, true, plan.last_stretch_first},
                    {block, strip, block + few.mb * few.kb * kParts<T>}, to);
}

/// The rows up to a multiple of `unit` by packing, the few that are left without. On wide registers all are packed.
template <class T> void packed_form(const GeneralProduct<T>& g, Plan plan, i64 unit) {
    adapt_to_thin<T>(plan, g.m, g.n, g.a.along_p == 1);
    const i64 main_rows = kWidth == 4 ? g.m : down_to(g.m, unit);
    const GemmBuffers buffers = buffers_for<T>(plan);
    if (!buffers.there()) return plain_gemm(g);
    Result<T> to = g.to;
    if (!plan.copies_b && g.b.conjugate) to.b_sign = -1.0;
    blocked_product(GeneralA<T>{g.a, g.alpha}, GeneralB<T>{g.b}, main_rows, g.n, g.k, plan,
                    {buffers.a(), buffers.strip(), plan.copies_b ? buffers.b() : nullptr}, to,
                    [&](i64 column, i64 columns, Stretch stretch, Before before) {
                        if (main_rows < g.m)
                            plain_gemm(g.piece(main_rows, column, columns, stretch.first, stretch.length, before));
                    });
}

} // namespace nxl::NXL_TARGET
