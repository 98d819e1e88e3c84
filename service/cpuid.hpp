// What the processor says of itself by the instruction CPUID: for all who ask it, one reader, which tests can replace.
#pragma once

namespace nxl {

struct CpuidRegisters {
    unsigned eax, ebx, ecx, edx;
};

/// Zeros for a leaf above the processor's highest one.
CpuidRegisters read_cpuid(unsigned leaf, unsigned subleaf = 0);

/// Who answers in the processor's place.
using CpuidReader = CpuidRegisters (*)(unsigned leaf, unsigned subleaf);

} // namespace nxl
