// Parts of rows copied and zeroed.
#pragma once
#include "service/types.hpp"
#include <cstring>

namespace nxl {

/// src and dst may overlap. A count below 1 does nothing.
template <class T> void copy_row(const T* src, T* dst, i64 count) {
    if (count > 0) std::memmove(static_cast<void*>(dst), src, static_cast<std::size_t>(count) * sizeof(T));
}

template <class T> void zero_row(T* a, i64 count) {
    if (count > 0) std::memset(static_cast<void*>(a), 0, static_cast<std::size_t>(count) * sizeof(T));
}

} // namespace nxl
