// The processor class and the vector width: CPUID, with an environment override for each, cached.
#include "service/cpu_class.hpp"
#include "service/cpu_class_seams.hpp"
#include "service/cpuid.hpp"
#include "service/environment.hpp"
#include <atomic>
#include <cpuid.h>
#include <cstdlib>
#include <cstring>

namespace nxl {
namespace {

constinit std::atomic<int> cached_class{-1};
constinit std::atomic<int> cached_pack_class{-1};
constinit std::atomic<int> cached_bits{0};

constexpr int no_override = -666;

int class_override() {
    const char* text = environment("NXL_DEBUG_CPU_TYPE");
    if (!text) return no_override;
    const long value = std::strtol(text, nullptr, 10);
    if (value >= 1 && value < cpu_class_count) return static_cast<int>(value);
    return std::strcmp(text, "0") == 0 ? 0 : no_override; // so that "abc" and "00" are no override
}

bool vendor_is_intel() {
    const CpuidRegisters id = read_cpuid(0);
    return id.ebx == 0x756E6547 && id.edx == 0x49656E69 && id.ecx == 0x6C65746E; // "Genu" "ineI" "ntel"
}

CpuFeatures this_processor() { return {vendor_is_intel(), read_cpuid(1).ecx}; }

/// What the operating system saves, by bits of XCR0: of the 256-bit registers their upper halves; with AVX-512 the
/// masks, the upper halves of 16 registers and 16 more as well.
constexpr unsigned saved_256 = 0x06, saved_512 = 0xE6;

bool system_saves(unsigned registers) {
    if (!(read_cpuid(1).ecx & bit_OSXSAVE)) return false;
    unsigned low = 0, high = 0;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (low & registers) == registers;
}

bool has_avx2_and_fma() {
    const unsigned needed = bit_AVX | bit_FMA;
    return (read_cpuid(1).ecx & needed) == needed && (read_cpuid(7).ebx & bit_AVX2) != 0;
}

bool has_avx512() {
    const unsigned needed = bit_AVX512F | bit_AVX512DQ | bit_AVX512BW | bit_AVX512VL;
    return (read_cpuid(7).ebx & needed) == needed;
}

} // namespace

CpuClass class_of(const CpuFeatures& features) {
    if (!features.intel) return CpuClass::def;
    if (features.ecx1 & bit_SSE4_2) return CpuClass::mc3;
    if (features.ecx1 & bit_SSSE3) return CpuClass::mc;
    if (features.ecx1 & bit_SSE3) return CpuClass::p4n;
    return CpuClass::def;
}

int pack_class_of(const CpuFeatures& features) {
    if (!features.intel) return 0;
    if (features.ecx1 & bit_SSE4_2) return 4;
    if (features.ecx1 & bit_SSE4_1) return 3;
    return features.ecx1 & bit_SSSE3 ? 2 : 1;
}

ClassChoice cpu_class_choice() {
    const int override_class = class_override();
    const CpuClass detected = class_of(this_processor());
    if (override_class == no_override) return {detected, detected, false};
    return {detected, static_cast<CpuClass>(override_class), true};
}

CpuClass nxl_cpu_class_detect() {
    const CpuClass result = cpu_class_choice().taken;
    cached_class.store(static_cast<int>(result), std::memory_order_relaxed);
    return result;
}

CpuClass nxl_cpu_class() {
    const int cached = cached_class.load(std::memory_order_relaxed);
    return cached >= 0 ? static_cast<CpuClass>(cached) : nxl_cpu_class_detect();
}

int nxl_pack_cpu_class() {
    int cached = cached_pack_class.load(std::memory_order_relaxed);
    if (cached < 0) cached_pack_class.store(cached = pack_class_of(this_processor()), std::memory_order_relaxed);
    return cached;
}

WidthChoice vector_width_choice() {
    const char* text = environment("NXL_VECTOR_BITS");
    if (text && std::strcmp(text, "128") == 0) return {128, WidthReason::environment};
    const CpuClass taken = nxl_cpu_class();
    if (taken == CpuClass::p4n || taken == CpuClass::mc) return {128, WidthReason::class_is_narrow};
    if (!has_avx2_and_fma()) return {128, WidthReason::processor_lacks_fma};
    if (!system_saves(saved_256)) return {128, WidthReason::system_does_not_save};
    if (taken != CpuClass::mc3 || !has_avx512() || !system_saves(saved_512))
        return {256, WidthReason::processor_has_fma};
    if (text && std::strcmp(text, "256") == 0) return {256, WidthReason::environment};
    return {512, WidthReason::processor_has_avx512};
}

int nxl_vector_bits() {
    int bits = cached_bits.load(std::memory_order_relaxed);
    if (bits == 0) cached_bits.store(bits = vector_width_choice().bits, std::memory_order_relaxed);
    return bits;
}

} // namespace nxl
