// Entries of the small services: memory, progress, timer, machine constants.
#include "nxl.h"
#include "service/export.hpp"
#include "service/machine_constants.hpp"
#include "service/memory.hpp"
#include "service/progress.hpp"
#include "service/timer.hpp"

extern "C" {

NXL_EXPORT void NXL_FreeBuffers() noexcept { nxl::free_buffers(); }

/// Goes on, whatever it is told. A host that wants to know defines its own.
NXL_EXPORT int NXL_PROGRESS(const int*, const int*, const char*, int) noexcept { return 0; }

NXL_EXPORT void set_NXL_Progress_Callback(nxl_progress_callback callback) noexcept {
    nxl::set_progress_callback(callback);
}

NXL_EXPORT int test_NXL_Progress_Callback() noexcept { return nxl::test_progress_callback(); }

NXL_EXPORT double DSECND() noexcept { return nxl::counter_seconds(); }

NXL_EXPORT double D1MACH(const int* i) noexcept { return nxl::machine_constant_double(*i); }

NXL_EXPORT float R1MACH(const int* i) noexcept { return nxl::machine_constant_single(*i); }

} // extern "C"
