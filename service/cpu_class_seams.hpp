// For tests alone: the classes of other processors, and this one's found once more.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Finds the class anew from the environment and CPUID and stores it for nxl_cpu_class.
CpuClass nxl_cpu_class_detect();

/// What detection looks at.
struct CpuFeatures {
    bool intel;    ///< the vendor string is "GenuineIntel"
    unsigned ecx1; ///< ECX of CPUID leaf 1
};
CpuClass class_of(const CpuFeatures& features);
int pack_class_of(const CpuFeatures& features);

} // namespace nxl
