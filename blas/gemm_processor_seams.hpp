// For tests alone: other processors than this one, for what gemm_processor.hpp asks.
#pragma once
#include "blas/gemm_processor.hpp"
#include "service/cpuid.hpp"

namespace nxl {

/// What nxl_gemm_cache_sizes finds on a processor that answers as `cpuid` does: the data and unified caches of leaf 4.
GemmCacheSizes gemm_cache_sizes_from(CpuidReader cpuid);

/// What nxl_amd_family_16 finds on such a processor.
bool amd_family_16_from(CpuidReader cpuid);

/// What the three questions answer in place of the processor, in the whole process.
enum class Pretended : int { of_processor, absent, present };
void pretend_sse41(Pretended answer);
void pretend_amd_family_16(Pretended answer);
/// Null gives the processor back its word; else *caches has to live on.
void pretend_cache_sizes(const GemmCacheSizes* caches);

} // namespace nxl
