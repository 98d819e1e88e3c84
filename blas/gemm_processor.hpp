// What the matrix product asks the processor itself: SSE4.1, and how large the caches are. Kernels include this too, so
// nothing here is inline.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Whether the processor has SSE4.1 (bit 19 of ECX of CPUID leaf 1). Asked anew at each call: it divides class 2 in
/// two.
bool nxl_has_sse41();

/// Whether this is an AMD processor of family 16 (base family 15, extended family 1), which class 0 gives a form of its
/// own. Found at the first call.
bool nxl_amd_family_16();

/// The caches that hold data, in the order in which the processor lists them; sizes in bytes.
struct GemmCacheSizes {
    std::int32_t count;   ///< caches found, at most 4; 0 where the processor does not tell
    std::int32_t size[4]; ///< 0 beyond count
};

/// The caches of this processor, found at the first call.
const GemmCacheSizes& nxl_gemm_cache_sizes();

/// The second cache is known to hold at most 3 MiB, so that blocks of A have to be small.
bool second_cache_is_small(const GemmCacheSizes& caches);

} // namespace nxl
