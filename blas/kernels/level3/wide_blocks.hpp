// Block lengths of the matrix product on the widest registers, by the caches of this processor. The class tells those
// of narrower ones.
#pragma once
#include "blas/gemm_processor.hpp"
#include "blas/kernels/level3/gemm_blocks.hpp"

namespace nxl::NXL_TARGET {

// The tile takes 12 columns of B, kb steps long, from the first cache, where they have three quarters; panels of A pass
// by in the rest. A block of A has a quarter of the second cache, for columns of B and C go through it as well. On a
// Xeon with 48 KiB and 2 MiB blocks of 384 steps and 160 rows are 2 to 5 % faster than 256 and 512 for n = 500 and
// 1000.
[[gnu::always_inline]] inline GemmBlocks wide_blocks(i64 n, i64 k, i64 parts) {
    constexpr i64 columns_of_b = 12, doubles = sizeof(double);
    const GemmCacheSizes& caches = nxl_gemm_cache_sizes();
    const i64 first = caches.count > 1 ? caches.size[0] : 32 << 10;
    const i64 second = caches.count > 1 ? caches.size[1] : 1 << 20;
    const i64 most = clamped(down_to(first * 3 / 4 / (columns_of_b * doubles), 4), 128, 512);
    const i64 stretches = (k + most - 1) / most; // of like lengths
    const i64 kb = stretches > 1 ? up_to((k + stretches - 1) / stretches, 4) : clamped(up_to(k, 4), 128, most);
    const i64 mb = clamped(down_to(second / 4 / (most * doubles), 16), 64, 512);
    return {mb / parts, clamped(n, 8, 5000), kb};
}

} // namespace nxl::NXL_TARGET
