// A lock for a few instructions: one word, and no system call unless the holder lost its processor.
#pragma once
#include <atomic>
#include <sched.h>

namespace nxl {

class SpinLock {
    std::atomic<int> word_{0};

    bool try_lock() {
        int open = 0;
        return word_.compare_exchange_strong(open, 1, std::memory_order_acquire, std::memory_order_relaxed);
    }

  public:
    void lock() {
        constexpr unsigned patience = 1000; // pauses, some tens of microseconds
        for (unsigned tries = 1; !try_lock(); ++tries) {
            if (tries % patience == 0) sched_yield(); // to the holder, should it wait for this very processor
            else __builtin_ia32_pause();
        }
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
