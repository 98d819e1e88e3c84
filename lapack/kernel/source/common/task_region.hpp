// What the task-scheduled factorisations share: the lock of their tables, and how a thread without a task waits.
#pragma once
#include "service/types.hpp"
#include <atomic>
#include <emmintrin.h>
#include <sched.h>

namespace nxl {

/// Runs body() under the one lock of the library's factorisations.
template <class Body> void with_table_locked(const Body& body) {
#pragma omp critical(nxl_factorisation)
    body();
}

/// A thread's wait for a task: a few pauses, longer from time to time, then the processor is offered to others. Short
/// enough for a task never to wait noticeably; keeps idle threads off the lock and the memory of the working ones.
class IdleWait {
    static constexpr int longest = 64; // pauses
    int pauses_ = 1;

  public:
    void wait() {
        for (int i = 0; i < pauses_; ++i) _mm_pause();
        if (pauses_ < longest) pauses_ *= 2;
        else sched_yield();
    }
    void found_work() { pauses_ = 1; }
};

/// A word that threads set and look at without the lock.
class SharedFlag {
    std::atomic<i64> value_{0};

  public:
    void raise() { value_.store(1, std::memory_order_relaxed); }
    bool raised() const { return value_.load(std::memory_order_relaxed) != 0; }
};

} // namespace nxl
