// The whole product on one thread: each class has its own rule of what is packed and how the problem is cut.
#include "blas/gemm_processor.hpp"
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level3/gemm_forms.hpp"
#include "blas/kernels/level3/packing_tile.hpp"
#include "blas/kernels/level3/wide_blocks.hpp"
#if NXL_TARGET_BITS == 512
#include "blas/kernels/level3/direct_product.hpp"
#endif

namespace nxl::NXL_TARGET {
namespace {

// What decides, by class:
//
//     0, 1    B is packed when m + n + k > 384, or when it is transposed and the registers are narrow
//     2, 3    B is packed when its panel exceeds 2 MiB, or 256 KiB on class 3; else it is read where it is
//
// A is packed always, if only two panels of it at a time, as plain_gemm does. Transposition of A decides nothing but
// how packing reads. Wide registers leave B in place as well where C is thin: see adapt_to_thin.
/// Bytes of the B panel that a whole block of k would have.
template <class T> i64 panel_bytes(i64 n, i64 k, i64 most_columns) {
    return least(k, 256) * least(n, most_columns) * i64{sizeof(T)};
}

/// Up to this many doubles a block of A stands on the stack: 32 KiB, a product of order 64.
constexpr i64 small_block = 4096;

/// A product whose A fits one small block, against B in place: nothing is allocated.
template <class T> void small_product(const GeneralProduct<T>& g) {
    alignas(64) double panels[small_block];
    alignas(64) double strip[kWidth == 2 ? StripB::step * small_block / kPanel : 1];
    if constexpr (packs_on_the_way<T>)
        if (g.a.along_r == 1 && g.n >= kPanel) return multiply_packing(g, panels);
    const i64 stride = panel_stride_a<T>(g.k);
    Result<T> to = g.to;
    if (g.b.conjugate) to.b_sign = -1.0;
    pack_a(g.a, g.m, g.k, panels, stride, &g.alpha);
    multiply_in_place<T>({panels, stride, g.m, g.k}, g.b, g.n, strip, to, 0, 0);
}

template <class T> bool is_small(const GeneralProduct<T>& g, const Plan& plan) {
    return !plan.copies_b && g.m <= plan.blocks.mb && g.k <= plan.blocks.kb &&
           up_to(g.m, kTallRows<T>) * kParts<T> * padded<T>(g.k) <= small_block;
}

/// Classes 0 and 1: B in place when it is not transposed and the problem is small. Wide registers read a transposed one
/// in place as well, with the same result.
template <class T> void classic_gemm(const GeneralProduct<T>& g, LeastSizes least_sizes, i64 unit) {
    if (below(g, least_sizes)) return plain_gemm(g);
    Plan plan = plan_for<T>(g.m, g.n, g.k);
    plan.copies_b = (kWidth == 2 && g.b.along_p != 1) || g.m + g.n + g.k > 384;
    if (is_small(g, plan)) return small_product(g);
    packed_form(g, plan, unit);
}

/// The form of classes 2 and 3: B is packed from a size on. Rows beyond a multiple of `unit`, the height of the
/// register tile, go to plain_gemm.
template <class T> void large_or_small_form(const GeneralProduct<T>& g, bool large, LeastSizes large_least,
                                            LeastSizes small_least, i64 unit) {
    if (below(g, large ? large_least : small_least)) return plain_gemm(g);
    Plan plan = plan_for<T>(g.m, g.n, g.k);
    plan.copies_b = large;
    packed_form(g, plan, unit);
}

} // namespace

/// The blocks of each class are gemm_blocks.hpp's, but for the widest registers. Those of complex products have as many
/// bytes and so half of the rows; class 2 has rules of its own for them.
template <class T> Plan plan_for(i64 m, i64 n, i64 k) {
    constexpr i64 numbers = kParts<T>;
    if constexpr (kWidest == 8) return {wide_blocks(n, k, numbers), true, false};
    if constexpr (kClass == CpuClass::def) return {gemm_blocks_def(m, n, k, numbers), true, true};
    if constexpr (kClass == CpuClass::p4n) return {gemm_blocks_p4n(m, n, k, numbers), true, true};
    if constexpr (kClass == CpuClass::mc3) {
        GemmBlocks blocks = gemm_blocks_mc3(n, k);
        blocks.mb /= numbers;
        return {blocks, true, false};
    }
    if (nxl_has_sse41()) {
        if constexpr (kParts<T> == 2) return {zgemm_blocks_htn(m, n, k), true, false};
        return {gemm_blocks_htn(n, k, second_cache_is_small(nxl_gemm_cache_sizes())), true, false};
    }
    if constexpr (kParts<T> == 2) return {zgemm_blocks_mc(m, n, k), true, false};
    return {gemm_blocks_mc(n, k), true, false};
}

/// The rule of the class: from which size on a product is packed at all, from which panel on B is, and of how many rows
/// the tile is a multiple.
template <class T> void gemm(const GeneralProduct<T>& g) {
    constexpr bool complex = kParts<T> == 2;
    constexpr LeastSizes three{3, 3, 3};
    if (only_scales(g)) return;
    if constexpr (kWidest == 8)
        if (suits_direct(g)) return direct_product(g);
    if constexpr (kClass == CpuClass::mc3) {
        constexpr LeastSizes small = complex ? three : LeastSizes{2, 8, 4};
        large_or_small_form(g, panel_bytes<T>(g.n, g.k, 5000) > 262144, small, small, complex ? 1 : 2);
    } else if constexpr (kClass == CpuClass::mc) {
        constexpr LeastSizes small = complex ? three : LeastSizes{2, 2, 2};
        constexpr LeastSizes small_htn = complex ? three : LeastSizes{4, 4, 4};
        large_or_small_form(g, panel_bytes<T>(g.n, g.k, 10000) > 2097152, three, nxl_has_sse41() ? small_htn : small,
                            complex ? 1 : 4);
    } else if constexpr (kClass == CpuClass::p4n) {
        classic_gemm(g, three, 1);
    } else if (nxl_amd_family_16()) {
        constexpr LeastSizes small = complex ? three : LeastSizes{2, 4, 4};
        large_or_small_form(g, panel_bytes<T>(g.n, g.k, 5000) > 2097152, small, small, complex ? 1 : 2);
    } else {
        classic_gemm(g, complex ? three : LeastSizes{2, 2, 2}, complex ? 1 : 2);
    }
}

template Plan plan_for<double>(i64, i64, i64);
template Plan plan_for<Complex>(i64, i64, i64);
template void gemm(const GeneralProduct<double>&);
template void gemm(const GeneralProduct<Complex>&);

void xdgemm(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k, const double& alpha,
            const double* a, const i64& lda, const double* b, const i64& ldb, const double& beta, double* c,
            const i64& ldc) {
    gemm(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc));
}

void xzgemm(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k, const zcomplex& alpha,
            const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb, const zcomplex& beta, zcomplex* c,
            const i64& ldc) {
    gemm(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc));
}

} // namespace nxl::NXL_TARGET
