// Memory that belongs to a handle. It comes from the allocator under the memory service and not from a thread's cache,
// whose blocks go back on the thread that took them: a handle may be made on one thread and deleted on another.
#pragma once
#include "service/allocator_hooks.hpp"
#include "service/types.hpp"
#include <limits>
#include <type_traits>

namespace nxl {

/// `count` objects, their bytes unset; null when there is no memory.
template <class T> T* take_for_handle(i64 count) {
    static_assert(std::is_trivially_copyable_v<T>);
    if (count < 1 || count > std::numeric_limits<i64>::max() / i64{sizeof(T)}) return nullptr;
    return static_cast<T*>(allocator.malloc(static_cast<std::size_t>(count) * sizeof(T)));
}

/// Null is accepted.
inline void give_back(void* block) {
    if (block) allocator.free(block);
}

/// The record behind the caller's handle variable; null when there is none.
template <class Record> Record* record_of(void* const* handle) {
    return handle ? static_cast<Record*>(*handle) : nullptr;
}

} // namespace nxl
