// The one parallel region of plain drivers. The body sees its block number and never its thread, so that a result does
// not depend on the team that the runtime delivers.
#pragma once
#include <algorithm>
#include <omp.h>

namespace nxl {

/// Beyond this a team only costs; the blocks are what decides results, and a smaller team still covers them all.
inline constexpr int largest_team = 1024;

/// Whether the runtime would run a region on the calling thread alone: inside another one, unless the host allows
/// nested regions. Work that is cut for a team all the same then pays for the cut and gets nothing.
inline bool region_would_be_serial() {
    return omp_in_parallel() != 0 && omp_get_active_level() >= omp_get_max_active_levels();
}

/// Calls body(block) once for each block number from 0 to `count` - 1, on up to `threads` threads.
template <class Body> void parallel_blocks(int threads, int count, const Body& body) {
#pragma omp parallel for num_threads(std::min(threads, largest_team)) schedule(static, 1)
    for (int block = 0; block < count; ++block) body(block);
}

} // namespace nxl
