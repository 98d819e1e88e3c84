// SSE4.1 and the caches, from CPUID leaves 1 and 4.
#include "blas/gemm_processor.hpp"
#include "blas/gemm_processor_seams.hpp"
#include "service/spin_lock.hpp"
#include <algorithm>
#include <atomic>
#include <cpuid.h>
#include <limits>

namespace nxl {
namespace {

constexpr unsigned cache_leaf = 4;
constexpr unsigned most_subleaves = 32;
constexpr std::int32_t most_caches = 4;
constexpr std::int32_t small_second_cache = 3 * 1024 * 1024;

// What tests pretend; the processor's word otherwise.
constinit std::atomic<Pretended> pretended_sse41{Pretended::of_processor};
constinit std::atomic<Pretended> pretended_family_16{Pretended::of_processor};
constinit std::atomic<const GemmCacheSizes*> pretended_caches{nullptr};

// What has been found. Threads that race find the same.
constexpr int unknown = -1;
constinit std::atomic<int> family_16{unknown};

// The record of caches is larger than an atomic store: the lock lets one thread fill it, and `probed` tells when.
constinit SpinLock probe_lock;
constinit std::atomic<bool> probed{false};
constinit GemmCacheSizes caches_found{};

enum class CacheType : unsigned { none = 0, data = 1, instruction = 2, unified = 3 };

CacheType type_of(const CpuidRegisters& entry) { return static_cast<CacheType>(entry.eax & 0x1F); }

/// ways * partitions * line size * sets, each of which the processor gives less one.
std::int32_t bytes_of(const CpuidRegisters& entry) {
    const std::uint64_t ways = (entry.ebx >> 22) + 1;
    const std::uint64_t partitions = ((entry.ebx >> 12) & 0x3FF) + 1;
    const std::uint64_t line = (entry.ebx & 0xFFF) + 1;
    const std::uint64_t sets = std::uint64_t{entry.ecx} + 1;
    constexpr std::uint64_t most = std::numeric_limits<std::int32_t>::max();
    const std::uint64_t per_set = ways * partitions * line; // at most 2^32
    return static_cast<std::int32_t>(sets > most / per_set ? most : per_set * sets);
}

} // namespace

/// Leaf 1 alone, whatever the vendor.
bool nxl_has_sse41() {
    const Pretended pretended = pretended_sse41.load(std::memory_order_relaxed);
    if (pretended != Pretended::of_processor) return pretended == Pretended::present;
    return (read_cpuid(1).ecx & bit_SSE4_1) != 0;
}

bool amd_family_16_from(CpuidReader cpuid) {
    const CpuidRegisters vendor = cpuid(0, 0);
    if (vendor.ebx != signature_AMD_ebx || vendor.ecx != signature_AMD_ecx || vendor.edx != signature_AMD_edx)
        return false;
    const unsigned signature = cpuid(1, 0).eax;
    return ((signature >> 8) & 0xF) == 15 && ((signature >> 20) & 0xFF) == 1;
}

bool nxl_amd_family_16() {
    const Pretended pretended = pretended_family_16.load(std::memory_order_relaxed);
    if (pretended != Pretended::of_processor) [[unlikely]]
        return pretended == Pretended::present;
    const int known = family_16.load(std::memory_order_relaxed);
    if (known != unknown) [[likely]]
        return known != 0;
    const bool found = amd_family_16_from(read_cpuid);
    family_16.store(found, std::memory_order_relaxed);
    return found;
}

/// Entries end with a type of none, or of zeros altogether; the bound is for a processor that never ends them.
GemmCacheSizes gemm_cache_sizes_from(CpuidReader cpuid) {
    GemmCacheSizes caches{};
    for (unsigned subleaf = 0; subleaf < most_subleaves && caches.count < most_caches; ++subleaf) {
        const CpuidRegisters entry = cpuid(cache_leaf, subleaf);
        if (type_of(entry) == CacheType::none || entry.ebx == 0) break;
        if (type_of(entry) != CacheType::instruction) caches.size[caches.count++] = bytes_of(entry);
    }
    return caches;
}

bool second_cache_is_small(const GemmCacheSizes& caches) {
    return caches.count > 0 && caches.size[1] <= small_second_cache;
}

const GemmCacheSizes& nxl_gemm_cache_sizes() {
    if (const GemmCacheSizes* pretended = pretended_caches.load(std::memory_order_acquire)) return *pretended;
    if (!probed.load(std::memory_order_acquire)) [[unlikely]] {
        const SpinGuard held(probe_lock);
        if (!probed.load(std::memory_order_relaxed)) caches_found = gemm_cache_sizes_from(read_cpuid);
        probed.store(true, std::memory_order_release);
    }
    return caches_found;
}

void pretend_sse41(Pretended answer) { pretended_sse41.store(answer, std::memory_order_relaxed); }

void pretend_amd_family_16(Pretended answer) { pretended_family_16.store(answer, std::memory_order_relaxed); }

void pretend_cache_sizes(const GemmCacheSizes* caches) { pretended_caches.store(caches, std::memory_order_release); }

} // namespace nxl
