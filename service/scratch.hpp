// Scratch memory with one owner: taken and given back in one scope, on one thread.
#pragma once
#include "service/memory.hpp"
#include <limits>
#include <type_traits>

namespace nxl {

template <class T> class Scratch {
    static_assert(std::is_trivially_copyable_v<T>); // bytes: nothing is constructed
    T* data_;

    /// A count whose bytes a 64-bit number cannot hold asks for more than there is.
    static constexpr i64 bytes(i64 count) {
        constexpr i64 most = std::numeric_limits<i64>::max();
        if (count < 1) return 0;
        return count > most / i64{sizeof(T)} ? most : count * i64{sizeof(T)};
    }

  public:
    explicit Scratch(i64 count, int alignment = 128)
        : data_(static_cast<T*>(nxl_buffer_alloc(bytes(count), alignment))) {}
    ~Scratch() { nxl_buffer_free(data_); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    /// Null when there was no memory.
    T* data() const { return data_; }
};

} // namespace nxl
