// The clocks that measurements read; seconds from some start.
#pragma once
#include <chrono>
#include <ctime>

namespace nxl::bench {

using Clock = double (*)();

inline double wall_seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// What the calling thread has had of its processor: other programs do not count. Reading it takes a third of a
/// microsecond.
inline double thread_seconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

} // namespace nxl::bench
