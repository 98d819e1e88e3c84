// What the plays' steps take on this machine: the library's own kernels, locks and regions, measured on one core, or on
// two where it takes two.
#pragma once
#include "bench/scaling/plays.hpp"
#include <vector>

namespace nxl::bench {

/// Seconds per operation, measured on a grid of shapes; between its points by powers, beyond them as at the next one.
class RateGrid {
    using Shape = std::vector<double>;
    std::vector<Shape> axes_;
    std::vector<double> seconds_; // per operation

  public:
    /// measure(shape) gives the seconds of work(shape) operations at a point.
    RateGrid(std::vector<Shape> axes, const std::function<double(const Shape&)>& work,
             const std::function<double(const Shape&)>& measure);

    double per_operation(const Shape& shape) const;
};

SyncTimes measured_sync_times();

/// A decision's time on this thread; one that is interrupted does not count for more than the longest.
DecisionClock measured_decisions();

LuCosts measured_lu_costs(i64 n, i64 nb);
CholeskyCosts measured_cholesky_costs(i64 n, i64 nb);
SparseCosts measured_sparse_costs();

} // namespace nxl::bench
