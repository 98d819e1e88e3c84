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

/// The hooks that `look_up` finds. It gives the address of the named variable, which holds a function pointer, or null:
/// i_malloc_dll, i_calloc_dll, i_realloc_dll, i_free_dll. Unless it gives all four, the C runtime's functions.
AllocatorHooks find_allocator_hooks(void* (*look_up)(const char* name));

} // namespace nxl
