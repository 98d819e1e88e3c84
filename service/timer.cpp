// The time-stamp counter and its rate, measured once against the monotonic clock.
#include "service/timer.hpp"
#include "service/types.hpp"
#include <atomic>
#include <ctime>
#include <x86intrin.h>

namespace nxl {
namespace {

constinit std::atomic<double> cycles_per_second{0.0};

constexpr i64 calibration_milliseconds = 100; // the two readings' uncertainty, below a microsecond, is then 1e-5 of it

i64 nanoseconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return i64{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

struct Reading {
    std::uint64_t cycles;
    i64 nanoseconds;
};

/// Both clocks at one moment: of several tries the one with the least between two looks at the counter, so that an
/// interruption in the middle does not count.
Reading read_both() {
    Reading best{};
    std::uint64_t narrowest = ~std::uint64_t{0};
    for (int attempt = 0; attempt < 8; ++attempt) {
        const std::uint64_t before = __rdtsc();
        const i64 now = nanoseconds(CLOCK_MONOTONIC);
        const std::uint64_t width = __rdtsc() - before;
        if (width >= narrowest) continue;
        narrowest = width;
        best = {.cycles = before + width / 2, .nanoseconds = now};
    }
    return best;
}

i64 coarse_milliseconds() { return nanoseconds(CLOCK_MONOTONIC_COARSE) / 1'000'000; }

double measured_rate() {
    const Reading start = read_both();
    for (const i64 begin = coarse_milliseconds(); coarse_milliseconds() - begin < calibration_milliseconds;) {
        const timespec nap{.tv_sec = 0, .tv_nsec = 1'000'000};
        nanosleep(&nap, nullptr);
    }
    const Reading end = read_both();
    return static_cast<double>(end.cycles - start.cycles) * 1e9 /
           static_cast<double>(end.nanoseconds - start.nanoseconds);
}

} // namespace

double counter_seconds() {
    double rate = cycles_per_second.load(std::memory_order_relaxed);
    if (rate == 0.0) cycles_per_second.store(rate = measured_rate(), std::memory_order_relaxed);
    return static_cast<double>(__rdtsc()) / rate;
}

} // namespace nxl
