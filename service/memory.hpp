// The memory service: all scratch memory of the library, cached per thread.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// `size` bytes at a multiple of `alignment` bytes, or null when there is no memory or `size` is below 1. An alignment
/// below 4 asks for none; one that is not a power of two counts as 32. Blocks above 40 MiB, and any block when the calling
/// thread holds five already or caching is off, come straight from the allocator and keep only its own alignment (16).
void* nxl_buffer_alloc(i64 size, int alignment);

/// Gives a block back, on the thread that took it. Null is accepted.
void nxl_buffer_free(void* block);

} // namespace nxl
