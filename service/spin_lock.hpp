// A lock for a few instructions: one word, no system call.
#pragma once
#include <atomic>

namespace nxl {

class SpinLock {
    std::atomic<int> word_{0};

  public:
    void lock() {
        for (int open = 0; !word_.compare_exchange_weak(open, 1, std::memory_order_acquire); open = 0)
            __builtin_ia32_pause();
    }
    void unlock() { word_.store(0, std::memory_order_release); }
};

/// Holds the lock to the end of the scope.
class SpinGuard {
    SpinLock& lock_;

  public:
    explicit SpinGuard(SpinLock& lock) : lock_(lock) { lock_.lock(); }
    ~SpinGuard() { lock_.unlock(); }
    SpinGuard(const SpinGuard&) = delete;
    SpinGuard& operator=(const SpinGuard&) = delete;
};

} // namespace nxl
