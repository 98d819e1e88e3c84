// Block lengths of the matrix product along m, n and k, as functions of the problem alone. Inlined always, for kernels
// of every target use them.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// A block of A is mb by kb, a panel of B kb by nb. What bounds them: the panels of A and the columns of B that a tile
/// reads, kb steps long, shall stay in the first cache; a block of A in the second; a panel of B in the third.
struct GemmBlocks {
    i64 mb, nb, kb;
};

[[gnu::always_inline]] constexpr i64 least(i64 a, i64 b) { return a < b ? a : b; }
[[gnu::always_inline]] constexpr i64 clamped(i64 value, i64 low, i64 high) {
    return value < low ? low : least(value, high);
}
[[gnu::always_inline]] constexpr i64 down_to(i64 value, i64 unit) { return value / unit * unit; }
[[gnu::always_inline]] constexpr i64 up_to(i64 value, i64 unit) { return (value + unit - 1) / unit * unit; }

/// k of classes 2 and 3: at most 256, and two like halves in place of a whole block and a short one.
[[gnu::always_inline]] constexpr i64 halved_k(i64 k) {
    if (k < 256) return clamped(up_to(k, 4), 128, 256);
    return k > 256 && k < 512 ? up_to((k + 1) / 2, 4) : 256; // a half that is not whole goes up
}

/// k of classes 0 and 1, of which a single whole block or two halves are taken up to twice the block.
[[gnu::always_inline]] constexpr i64 split_k(i64 k, i64 kb) {
    if (k <= kb || k > 2 * kb) return kb;
    const i64 half = down_to(k / 2, 4);
    return half < 4 ? 4 : half;
}

/// Rows of A that fit the second cache when its k blocks are short and C is large.
[[gnu::always_inline]] constexpr i64 rows_for_short_k(i64 kc) {
    return kc <= 16 ? 1536 : kc <= 32 ? 1024 : kc <= 64 ? 768 : 512;
}

/// Class 0. A row of complex numbers is twice as long, so that there are half as many.
[[gnu::always_inline]] constexpr GemmBlocks gemm_blocks_def(i64 m, i64 n, i64 k, i64 parts) {
    const i64 kb = split_k(k, 128);
    const i64 mb = k <= 256 && m + n >= 10000 ? rows_for_short_k(least(k, kb)) : 512;
    return {mb / parts, least(n, 4992 / parts), kb};
}

/// Class 1.
[[gnu::always_inline]] constexpr GemmBlocks gemm_blocks_p4n(i64 m, i64 n, i64 k, i64 parts) {
    GemmBlocks blocks{480, 2000, split_k(k, 112)};
    if (k <= 224 && m + n >= 10000) {
        blocks.mb = rows_for_short_k(least(k, blocks.kb));
        blocks.nb = 5000;
    } else if (m >= 4000 && n >= 4000 && k >= 4000 && m + n >= 12000) {
        blocks.mb = 512;
        blocks.nb = 5000;
    }
    return {blocks.mb / parts, least(n, blocks.nb / parts), blocks.kb};
}

/// Class 2 without SSE4.1.
[[gnu::always_inline]] constexpr GemmBlocks gemm_blocks_mc(i64 n, i64 k) {
    return {512, clamped(n, 4, 10000), halved_k(k)};
}

/// Class 2 with SSE4.1; `small_cache`: the second cache is known to hold at most 3 MiB.
[[gnu::always_inline]] constexpr GemmBlocks gemm_blocks_htn(i64 n, i64 k, bool small_cache) {
    return {small_cache ? 448 : 1000, up_to(clamped(n, 4, 10000), 4), halved_k(k)};
}

/// Class 3.
[[gnu::always_inline]] constexpr GemmBlocks gemm_blocks_mc3(i64 n, i64 k) {
    return {512, clamped(n, 8, 5000), halved_k(k)};
}

/// Complex blocks of classes 2 and 3: a block of A is held below 880 KiB.
[[gnu::always_inline]] constexpr GemmBlocks zgemm_blocks_of_kb(i64 m, i64 n, i64 k, i64 kb) {
    const i64 depth = least(kb, k) < 1 ? 1 : least(kb, k);
    return {least(m < 2 ? 2 : m, down_to(56320 / depth, 2)), clamped(n, 2, 2000), kb};
}
[[gnu::always_inline]] constexpr i64 zgemm_kb_mc(i64 k) {
    if (k % 224 == 0) return 224;
    if (k % 128 == 0) return 128;
    return k > 224 && k < 448 ? down_to(k / 2, 2) : 224;
}
[[gnu::always_inline]] constexpr GemmBlocks zgemm_blocks_mc(i64 m, i64 n, i64 k) {
    return zgemm_blocks_of_kb(m, n, k, zgemm_kb_mc(k));
}
[[gnu::always_inline]] constexpr GemmBlocks zgemm_blocks_htn(i64 m, i64 n, i64 k) {
    return zgemm_blocks_of_kb(m, n, k, halved_k(k));
}

/// Bytes that a product packs into. mb = 0: no block of A; nb = 0: no panel of B; `element`: bytes of a number. The
/// spare ones are for placing the parts on pages of their own.
struct GemmPlan {
    i64 bytes, strip_bytes, a_bytes;
    bool has_a;
};
[[gnu::always_inline]] constexpr GemmPlan gemm_plan(i64 mb, i64 nb, i64 kb, i64 element) {
    const i64 spare = mb > 0 ? (nb > 0 ? 21760 : 13056) : 13568;
    const i64 a_bytes = mb * kb * element;
    return {kb * 64 + a_bytes + nb * kb * element + spare, kb * 64, a_bytes, mb > 0};
}

} // namespace nxl
