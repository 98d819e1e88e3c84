// The kernels of a processor class.
#pragma once
#include "service/kernel_table.hpp"

namespace nxl {

/// Those of a class at the vector width of this process.
const KernelTable& kernels_of(CpuClass cpu_class);

} // namespace nxl
