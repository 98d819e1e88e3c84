// Scratch memory that starts on a page: what is packed into it keeps its place in the cache sets, wherever the block
// lies. Kernels have such buffers too, so all is inlined: nothing compiled for wide registers is left for a linker.
#pragma once
#include "service/memory.hpp"
#include <cstdint>

namespace nxl {

inline constexpr i64 page_bytes = 4096;

/// `p` moved up to a multiple of `unit` bytes, which is whole elements away.
template <class T> [[gnu::always_inline]] inline T* moved_up(T* p, i64 unit) {
    const auto address = static_cast<i64>(reinterpret_cast<std::uintptr_t>(p));
    return p + (unit - address % unit) % unit / i64{sizeof(T)};
}

template <class T> class PageBuffer {
    T* const raw_;

  public:
    /// `count` elements, of which up to a page goes to the placing.
    [[gnu::always_inline]] explicit PageBuffer(i64 count)
        : raw_(static_cast<T*>(nxl_buffer_alloc(count * i64{sizeof(T)}, 128))) {}
    [[gnu::always_inline]] ~PageBuffer() { nxl_buffer_free(raw_); }
    PageBuffer(const PageBuffer&) = delete;
    PageBuffer& operator=(const PageBuffer&) = delete;

    /// The first page; null when there was no memory.
    [[gnu::always_inline]] T* data() const { return moved_up(raw_, page_bytes); }

    /// Where the block itself begins.
    [[gnu::always_inline]] T* raw() const { return raw_; }
};

} // namespace nxl
