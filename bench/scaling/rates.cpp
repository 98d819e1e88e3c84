#include "bench/scaling/rates.hpp"
#include "bench/clocks.hpp"
#include <algorithm>
#include <atomic>
#include <cmath>
#include <emmintrin.h>
#include <omp.h>
#include <sched.h>

namespace nxl::bench {
namespace {

/// Seconds of one call of body(), the fastest of the batches for which there is time: what disturbs makes them longer.
template <class Body> double fastest(int calls, const Body& body) {
    constexpr double enough = 0.05;
    double best = HUGE_VAL, start = wall_seconds();
    for (const double first = start; best == HUGE_VAL || start - first < enough;) {
        for (int call = 0; call < calls; ++call) body();
        const double end = wall_seconds();
        best = std::min(best, (end - start) / calls);
        start = end;
    }
    return best;
}

void pass_lock() {
#pragma omp critical(nxl_bench_scaling)
    {
    }
}

/// A word goes from core to core and back: seconds for both ways. Threads that have no core each take longer, and do
/// not count.
double round_trip() {
    constexpr int trips = 100;
    constexpr double enough = 0.2;
    double best = HUGE_VAL;
    for (const double first = wall_seconds(); wall_seconds() - first < enough;) {
        std::atomic<int> word{0};
        double seconds = HUGE_VAL;
#pragma omp parallel num_threads(2)
        if (omp_get_num_threads() == 2) {
            const int own = omp_get_thread_num();
            const double start = wall_seconds();
            for (int trip = 0; trip < trips; ++trip) {
                for (int spins = 0; word.load(std::memory_order_acquire) % 2 != own; ++spins)
                    if (spins > 10000) sched_yield();
                word.fetch_add(1, std::memory_order_release);
            }
            if (own == 0) seconds = (wall_seconds() - start) / trips;
        }
        best = std::min(best, seconds);
    }
    return best == HUGE_VAL ? 0.0 : best; // where there is one thread, a lock never comes from another
}

} // namespace

RateGrid::RateGrid(std::vector<Shape> axes, const std::function<double(const Shape&)>& work,
                   const std::function<double(const Shape&)>& measure)
    : axes_(std::move(axes)) {
    std::size_t points = 1;
    for (const Shape& axis : axes_) points *= axis.size();
    for (std::size_t point = 0; point < points; ++point) {
        Shape shape;
        std::size_t rest = point;
        for (const Shape& axis : axes_) {
            shape.push_back(axis[rest % axis.size()]);
            rest /= axis.size();
        }
        seconds_.push_back(measure(shape) / work(shape));
    }
}

double RateGrid::per_operation(const Shape& shape) const {
    struct Cell {
        std::size_t low;
        double share; // of the point above
    };
    std::vector<Cell> cells;
    for (std::size_t k = 0; k < axes_.size(); ++k) {
        const Shape& axis = axes_[k];
        const double x = std::clamp(shape[k], axis.front(), axis.back());
        std::size_t low = 0;
        while (low + 2 < axis.size() && axis[low + 1] < x) ++low;
        if (axis.size() == 1) cells.push_back({0, 0.0});
        else cells.push_back({low, std::log(x / axis[low]) / std::log(axis[low + 1] / axis[low])});
    }
    double logarithm = 0.0;
    for (std::size_t corner = 0; corner < std::size_t{1} << axes_.size(); ++corner) {
        double weight = 1.0;
        std::size_t at = 0, stride = 1;
        for (std::size_t k = 0; k < axes_.size(); ++k) {
            const bool above = (corner >> k & 1) != 0;
            weight *= above ? cells[k].share : 1.0 - cells[k].share;
            at += stride * (cells[k].low + (above && axes_[k].size() > 1 ? 1 : 0));
            stride *= axes_[k].size();
        }
        if (weight != 0.0) logarithm += weight * std::log(seconds_[at]);
    }
    return std::exp(logarithm);
}

SyncTimes measured_sync_times() {
    SyncTimes times;
    times.lock = fastest(2000, pass_lock);
    times.contended_lock = times.lock + round_trip(); // the lock comes, and what it guards
    times.pause = fastest(1000, [] { _mm_pause(); });
    times.yield = fastest(1000, [] { sched_yield(); });
    std::atomic<int> sum{0};
    times.fork = fastest(20, [&sum] {
#pragma omp parallel num_threads(2)
        sum.fetch_add(1, std::memory_order_relaxed);
    });
    return times;
}

DecisionClock measured_decisions() {
    const double empty = fastest(1000, [] { wall_seconds(); });
    return [empty](const std::function<void()>& decision) {
        constexpr double longest = 20e-6;
        const double start = wall_seconds();
        decision();
        return std::clamp(wall_seconds() - start - empty, 0.0, longest);
    };
}

} // namespace nxl::bench
