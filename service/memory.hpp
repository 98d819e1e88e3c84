// The memory service: all scratch memory of the library, cached per thread.
#pragma once
#include "service/environment.hpp"
#include "service/types.hpp"

namespace nxl {

/// `size` bytes at a multiple of `alignment` bytes, or null when there is no memory or `size` is below 1. An alignment
/// below 4 asks for none; one that is not a power of two counts as 32. Blocks above 40 MiB, and any block when the
/// calling thread holds five already or caching is off, come straight from the allocator, at its own alignment.
void* nxl_buffer_alloc(i64 size, int alignment);

/// Gives a block back, on the thread that took it. Null is accepted.
void nxl_buffer_free(void* block);

/// Returns the cached blocks of all threads to the allocator, as the end of a thread does with its own; blocks in use
/// stay. No other call into the library may run meanwhile. A thread that comes back later starts anew.
void free_buffers();

/// Whether the environment turns the cache off, whatever its variables hold, "0" too. Read once, at the first request.
inline bool cache_turned_off() { return environment("NXL_DISABLE_FAST_MM") || environment("NXL_MM_DISABLE"); }

} // namespace nxl
