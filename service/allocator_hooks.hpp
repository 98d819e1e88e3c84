// The allocator under the memory service: the C runtime's, or the host's.
#pragma once
#include <cstddef>

namespace nxl {

/// Four functions with the meaning of their namesakes in the C runtime.
struct AllocatorHooks {
    void* (*malloc)(std::size_t size);
    void* (*calloc)(std::size_t count, std::size_t size);
    void* (*realloc)(void* block, std::size_t size);
    void (*free)(void* block);
};

/// Set when the library is loaded and the same from then on.
extern constinit AllocatorHooks allocator;

} // namespace nxl
