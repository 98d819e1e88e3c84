// Memory of the drivers' own.
#pragma once
#include <cstddef>
#include <cstdlib>

namespace nxl::gnu {

inline constexpr int no_memory = -1000; // info

/// `count` elements of 0, given back at the end of a scope; null when there was no memory.
template <class T> class Array {
    T* const data_;

  public:
    explicit Array(std::size_t count) : data_(static_cast<T*>(std::calloc(count + 1, sizeof(T)))) {}
    ~Array() { std::free(data_); }
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    T* data() const { return data_; }
    explicit operator bool() const { return data_ != nullptr; }
};

} // namespace nxl::gnu
