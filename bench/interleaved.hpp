// Times several contenders in turn, so that what disturbs the machine disturbs all of them.
#pragma once
#include "bench/clocks.hpp"
#include "bench/operands.hpp"
#include <functional>
#include <vector>

namespace nxl::bench {

/// Does its work `calls` times over.
using Batch = std::function<void(i64 calls)>;

/// What happens beside the clock; each may be empty.
struct Untimed {
    std::function<void()> before_call; // each call is then timed by itself, instead of calls that follow on each other
    std::function<void()> before_batch;
    std::function<void(std::size_t contender, i64 calls)> after_batch; // of those that count
};

/// Rounds of one short batch per contender; the first to run moves on by one every round.
class Interleaved {
    std::vector<Batch> contenders_;
    Clock now_;
    Untimed untimed_;
    std::vector<i64> calls_;                   // per batch, for each contender
    std::vector<std::vector<double>> samples_; // seconds per call
    std::size_t first_ = 0;

    double time_of(const Batch& batch, i64 calls) const;
    double settled_time_of(const Batch& batch, i64 calls) const;
    i64 calls_per_batch(const Batch& batch, double least_seconds) const;

  public:
    /// Finds how many calls make a batch worth timing, unless one that takes least_seconds is enough.
    explicit Interleaved(std::vector<Batch> contenders, double least_seconds = 0.0, Clock now = wall_seconds,
                         Untimed untimed = {});

    /// Returns the seconds that the timed part took.
    double round();

    std::size_t rounds() const { return first_; }

    /// Seconds per call of each contender: the lower quartile of its batches. The minimum favours whoever was lucky
    /// once, the median includes disturbances as soon as they are frequent.
    std::vector<double> seconds() const;
};

} // namespace nxl::bench
