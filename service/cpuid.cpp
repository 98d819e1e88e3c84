// The one place with the instruction.
#include "service/cpuid.hpp"
#include <cpuid.h>

namespace nxl {

CpuidRegisters read_cpuid(unsigned leaf, unsigned subleaf) {
    CpuidRegisters r{};
    __get_cpuid_count(leaf, subleaf, &r.eax, &r.ebx, &r.ecx, &r.edx);
    return r;
}

} // namespace nxl
