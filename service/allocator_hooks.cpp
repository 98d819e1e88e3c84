// Finds the host's allocator when the library is loaded, so that no block is ever taken from one and given to another.
#include "service/allocator_hooks.hpp"
#include "service/memory_seams.hpp"
#include <cstdlib>
#include <dlfcn.h>

namespace nxl {
namespace {

constexpr AllocatorHooks c_runtime{std::malloc, std::calloc, std::realloc, std::free};

template <class Function> Function hook(void* variable) {
    return variable ? *static_cast<Function*>(variable) : nullptr;
}

void* look_up_in_process(const char* name) { return dlsym(RTLD_DEFAULT, name); }

[[gnu::constructor]] void set_allocator_hooks() {
    allocator = find_allocator_hooks(look_up_in_process);
    dlerror(); // names not found are no error that the host should read
}

} // namespace

constinit AllocatorHooks allocator = c_runtime;

AllocatorHooks find_allocator_hooks(void* (*look_up)(const char* name)) {
    const AllocatorHooks found{hook<decltype(AllocatorHooks::malloc)>(look_up("i_malloc_dll")),
                               hook<decltype(AllocatorHooks::calloc)>(look_up("i_calloc_dll")),
                               hook<decltype(AllocatorHooks::realloc)>(look_up("i_realloc_dll")),
                               hook<decltype(AllocatorHooks::free)>(look_up("i_free_dll"))};
    return found.malloc && found.calloc && found.realloc && found.free ? found : c_runtime;
}

} // namespace nxl
