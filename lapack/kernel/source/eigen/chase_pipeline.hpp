// The order of the steps in which bulges are chased along a band, sweep after sweep, and the threads that take part.
#pragma once
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/task_region.hpp"
#include "service/scratch.hpp"
#include "service/slice.hpp"
#include "service/threads.hpp"
#include <atomic>

namespace nxl {

/// A sweep goes down the band in steps of b rows, and sweep j + 1 may do a step when j has done the one after it. So a
/// few sweeps go down together, two steps apart, in rows that are still in the cache, and the next few, on another
/// thread, behind them. Whatever the threads, every step finds the same numbers. Haidar, Ltaief and Dongarra, SC '11
/// (2011).
class ChasePipeline {
    const i64 n_, b_;
    const int threads_;
    const i64 together_;            // sweeps of a group
    const Scratch<i64> memory_;     // of each group the steps that its last sweep has done, a line of the cache each
    static constexpr i64 apart = 8; // elements
    static constexpr i64 least_width = 16, steps_of_a_thread = 32;

    static int threads_for(i64 n, i64 b) {
        if (region_would_be_serial() || b < least_width) return 1;
        return static_cast<int>(std::clamp(n / (b * steps_of_a_thread), i64{1}, i64{max_threads(domain_all)}));
    }
    i64 groups() const { return (sweeps() + together_ - 1) / together_; }
    i64 counters() const { return std::max(groups(), i64{1}) * apart; }
    std::atomic_ref<i64> done(i64 group) const { return std::atomic_ref<i64>(memory_.data()[group * apart]); }

    void wait_for(i64 group, i64 steps) const {
        IdleWait wait;
        while (done(group).load(std::memory_order_acquire) < steps) wait.wait();
    }
    template <class Step> void run_group(i64 group, const Step& step) const {
        const i64 first = group * together_, count = std::min(together_, sweeps() - first);
        for (i64 wave = 0; wave < steps_of(first) + 2 * (count - 1); ++wave)
            for (i64 i = 0; i < count; ++i) {
                const i64 k = wave - 2 * i;
                if (k < 0 || k >= steps_of(first + i)) continue;
                if (i == 0 && group > 0) wait_for(group - 1, std::min(k + 2, steps_of(first - 1)));
                step(first + i, k, i);
                if (i + 1 == count) done(group).store(k + 1, std::memory_order_release);
            }
    }

  public:
    static constexpr i64 most_together = 8;

    /// For a band of order n.
    ChasePipeline(i64 n, i64 b)
        : n_(n),
          b_(b),
          threads_(threads_for(n, b)),
          together_(std::clamp(n / (4 * b * threads_), i64{1}, most_together)),
          memory_(counters()) {
        if (memory_.data()) std::fill_n(memory_.data(), counters(), 0);
    }
    bool is_ready() const { return memory_.data(); }
    int threads() const { return threads_; }
    i64 sweeps() const { return std::max(n_ - 1, i64{0}); }
    i64 steps_of(i64 sweep) const { return (n_ - 2 - sweep) / b_ + 1; }

    /// step(thread, sweep, k, place) for all steps of all sweeps; the sweeps on a thread at one time have places of
    /// their own, below most_together.
    template <class Step> void run(const Step& step) const {
        std::atomic<i64> next{0};
        parallel_blocks(threads_, threads_, [&](int thread) {
            for (i64 group = next++; group < groups(); group = next++)
                run_group(group, [&](i64 sweep, i64 k, i64 place) { step(thread, sweep, k, place); });
        });
    }
};

/// The reflectors that the sweeps on one thread are at, and workspace.
template <class T> class ChasedVectors {
    const i64 stride_; // a vector and its zeros
    T* const memory_;

  public:
    static i64 stride(i64 b) { return round_up(b, chase_rest + 1); }
    static i64 room(i64 b) { return stride(b) * 3 * (ChasePipeline::most_together + 1); }

    ChasedVectors(i64 b, T* memory) : stride_(stride(b)), memory_(memory) {}
    /// Two vectors of workspace, and one for what is not kept to the next step.
    T* work() const { return memory_; }
    T* other() const { return memory_ + 2 * stride_; }
    /// That of step k, or the one before it, or after it.
    T* vector(i64 place, i64 k) const { return memory_ + (3 + 3 * place + k % 2) * stride_; }
    T& tau(i64 place, i64 k) const { return memory_[(5 + 3 * place) * stride_ + k % 2]; }
    void clear_rest(i64 place, i64 k, i64 from) const {
        T* const v = vector(place, k);
        std::fill(v + from, v + stride_, T{});
    }
};

} // namespace nxl
