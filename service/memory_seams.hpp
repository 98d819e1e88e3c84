// For tests alone: what the memory service keeps, and an allocator other than the process's.
#pragma once
#include "service/allocator_hooks.hpp"
#include "service/thread_buffers.hpp"

namespace nxl {

/// What the calling thread has cached; null when it has nothing.
const ThreadBufferRecord* thread_buffers();

/// The hooks that `look_up` finds. It gives the address of the named variable, which holds a function pointer, or null:
/// i_malloc_dll, i_calloc_dll, i_realloc_dll, i_free_dll. Unless it gives all four, the C runtime's functions.
AllocatorHooks find_allocator_hooks(void* (*look_up)(const char* name));

} // namespace nxl
