// A vector as a BLAS call sees it, laid against an unreadable page, with NaN wherever the call has no business.
#pragma once
#include "tests/support/scalars.hpp"
#include <cstddef>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace nxl_test {

/// Where data lie: behind one guard page, before the other, or 8 bytes off the start, where nothing wider than a
/// double is aligned.
enum class Flush { start, end, off_by_8 };

/// Memory that ends at (or starts right behind) a page that may not be touched.
class GuardedMemory {
    std::size_t page_ = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    std::size_t inner_;
    char* base_;

  public:
    explicit GuardedMemory(std::size_t bytes) : inner_((bytes + page_ - 1) / page_ * page_) {
        base_ = static_cast<char*>(mmap(nullptr, inner_ + 2 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        mprotect(base_ + page_, inner_, PROT_READ | PROT_WRITE);
    }
    ~GuardedMemory() { munmap(base_, inner_ + 2 * page_); }
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    char* at_start() const { return base_ + page_; }
    char* at_end(std::size_t bytes) const { return base_ + page_ + inner_ - bytes; }
    char* place(std::size_t bytes, Flush flush) const {
        if (flush == Flush::end) return at_end(bytes);
        return at_start() + (flush == Flush::off_by_8 ? sizeof(double) : 0);
    }
};

/// n elements `inc` apart, filled with random values in (-1, 1); the gaps hold NaN.
template <class T> class StridedVector {
    int n_, inc_;
    std::size_t span_;
    GuardedMemory memory_;
    T* data_;
    std::vector<T> original_;

  public:
    StridedVector(int n, int inc, unsigned seed, Flush flush = Flush::end)
        : n_(n),
          inc_(inc),
          span_(n < 1 ? 0 : 1 + static_cast<std::size_t>(n - 1) * static_cast<unsigned>(std::abs(inc))),
          memory_(span_ * sizeof(T) + sizeof(double)),
          data_(reinterpret_cast<T*>(memory_.place(span_ * sizeof(T), flush))) {
        std::memset(static_cast<void*>(data_), 0xff, span_ * sizeof(T)); // NaN
        Generator generator(seed);
        for (int k = 0; k < n; ++k) (*this)[k] = random_value<T>(generator);
        original_.assign(data_, data_ + span_);
    }

    T* data() const { return data_; }
    /// Element k of the vector, wherever the increment puts it.
    T& operator[](int k) const { return data_[place(k)]; }
    T original(int k) const { return original_[place(k)]; }

    bool gaps_untouched() const {
        const unsigned step = static_cast<unsigned>(std::abs(inc_));
        for (std::size_t i = 0; i < span_; ++i)
            if (step > 1 && i % step != 0 && std::memcmp(data_ + i, &original_[i], sizeof(T)) != 0) return false;
        return true;
    }

  private:
    std::size_t place(int k) const {
        const int from_start = inc_ < 0 ? n_ - 1 - k : k;
        return static_cast<std::size_t>(from_start) * static_cast<unsigned>(std::abs(inc_));
    }
};

} // namespace nxl_test
