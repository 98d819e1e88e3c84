// Entries of thread control. Their arguments come by value.
#include "nxl.h"
#include "service/export.hpp"
#include "service/threads.hpp"
#include <omp.h>

extern "C" {

NXL_EXPORT void NXL_Set_Num_Threads(int n) noexcept { nxl::set_num_threads(n); }

NXL_EXPORT int NXL_Get_Max_Threads() noexcept { return nxl::max_threads(nxl::domain_all); }

NXL_EXPORT int NXL_Domain_Set_Num_Threads(int n, int domain) noexcept { return nxl::domain_set_num_threads(n, domain); }

NXL_EXPORT int NXL_Domain_Get_Max_Threads(int domain) noexcept { return nxl::max_threads(domain); }

NXL_EXPORT void NXL_Set_Dynamic(int flag) noexcept { nxl::set_dynamic(flag != 0); }

NXL_EXPORT int NXL_Get_Dynamic() noexcept { return nxl::dynamic_threads(); }

NXL_EXPORT void okmp_set_blocktime(int milliseconds) noexcept { kmp_set_blocktime(milliseconds); }

} // extern "C"
