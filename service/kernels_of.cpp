// From class and vector width to the kernel table. This file alone names every target.
#include "service/kernels_of.hpp"
#include "service/cpu_class.hpp"

namespace nxl {

// clang-format off
namespace mc3     { extern const KernelTable kernel_table; }
namespace def_fma { extern const KernelTable kernel_table; }
#ifdef NXL_EVERY_TARGET
namespace def     { extern const KernelTable kernel_table; }
namespace p4n     { extern const KernelTable kernel_table; }
namespace mc      { extern const KernelTable kernel_table; }
namespace mc3_fma { extern const KernelTable kernel_table; }
namespace mc3_512 { extern const KernelTable kernel_table; }
#else // the plain kernels of class 3, which has all that drivers of any class call, and the wide ones of class 0
namespace def     = mc3;
namespace p4n     = mc3;
namespace mc      = mc3;
namespace mc3_fma = mc3;
namespace mc3_512 = mc3;
#endif
// clang-format on

namespace {
using Tables = const KernelTable* [cpu_class_count];
constexpr Tables tables_128 = {&def::kernel_table, &p4n::kernel_table, &mc::kernel_table, &mc3::kernel_table};
constexpr Tables tables_256 = {&def_fma::kernel_table, &p4n::kernel_table, &mc::kernel_table, &mc3_fma::kernel_table};
constexpr Tables tables_512 = {&def_fma::kernel_table, &p4n::kernel_table, &mc::kernel_table, &mc3_512::kernel_table};
} // namespace

const KernelTable& kernels_of(CpuClass cpu_class) {
    const int bits = nxl_vector_bits();
    const Tables& tables = bits == 512 ? tables_512 : bits == 256 ? tables_256 : tables_128;
    return *tables[static_cast<int>(cpu_class)];
}

} // namespace nxl
