// The one parallel region of plain drivers. The body sees its block number and never its thread, so that a result does
// not depend on the team that the runtime delivers.
#pragma once
#include <algorithm>

namespace nxl {

/// Beyond this a team only costs; the blocks are what decides results, and a smaller team still covers them all.
inline constexpr int largest_team = 1024;

/// Calls body(block) once for each block number from 0 to `count` - 1, on up to `threads` threads.
template <class Body> void parallel_blocks(int threads, int count, const Body& body) {
#pragma omp parallel for num_threads(std::min(threads, largest_team)) schedule(static, 1)
    for (int block = 0; block < count; ++block) body(block);
}

} // namespace nxl
