// Scratch memory with one owner: taken and given back in one scope, on one thread.
#pragma once
#include "service/memory.hpp"
#include <type_traits>

namespace nxl {

template <class T> class Scratch {
    static_assert(std::is_trivially_copyable_v<T>); // bytes: nothing is constructed
    T* data_;

  public:
    explicit Scratch(i64 count, int alignment = 128)
        : data_(static_cast<T*>(nxl_buffer_alloc(count * i64{sizeof(T)}, alignment))) {}
    ~Scratch() { nxl_buffer_free(data_); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    /// Null when there was no memory.
    T* data() const { return data_; }
};

} // namespace nxl
