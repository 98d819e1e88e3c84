// An allocator that the test program, as the library's host, puts under the memory service: it counts, and fails on
// demand. Programs that link host_allocator.cpp have to export their symbols (ENABLE_EXPORTS).
#pragma once

namespace nxl_test {

/// Blocks that the library holds, and calls to the allocator that took one, so far.
long live_blocks();
long allocations();

/// Makes the k-th allocation from now on fail, counting from 1; 0 lets all succeed.
void fail_allocation(long k);

} // namespace nxl_test
