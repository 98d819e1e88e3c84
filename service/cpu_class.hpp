// Which processor this is: its class, which decides semantics and blocking, and the vector width, which decides speed.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The processor class, found at the first call and fixed from then on. NXL_DEBUG_CPU_TYPE (0 to 3) overrides it.
CpuClass nxl_cpu_class();

/// The class as CPUID gives it, and the one that nxl_cpu_class takes.
struct ClassChoice {
    CpuClass detected, taken;
    bool overridden; ///< NXL_DEBUG_CPU_TYPE holds a class
};
ClassChoice cpu_class_choice();

/// The class of the pack and unpack family, 0 to 4, found at the first call. NXL_DEBUG_CPU_TYPE does not touch it.
int nxl_pack_cpu_class();

/// Bits of a vector register that kernels are bound for: 512 on class 3 where the processor has AVX-512 (F, DQ, BW,
/// VL), 256 where it has AVX2 and FMA, and each where the system saves the registers; else 128. NXL_VECTOR_BITS, 128 or
/// 256, asks for narrower ones; classes 1 and 2, whose processors have no others, get 128 even where the class was
/// forced. Fixed at the first call.
int nxl_vector_bits();

enum class WidthReason {
    environment,
    class_is_narrow,
    processor_has_fma,
    processor_has_avx512,
    processor_lacks_fma,
    system_does_not_save
};

/// The same, found anew, and what decided it.
struct WidthChoice {
    int bits;
    WidthReason reason;
};
WidthChoice vector_width_choice();

} // namespace nxl
