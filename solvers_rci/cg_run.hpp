// What the two conjugate-gradient solvers share: their view of the caller's ipar, dpar and tmp, defaults, the check of
// a run's parameters, reports. All state of a run lives in the caller's arrays; nxl.h has the tables of their entries.
#pragma once
#include "service/types.hpp"
#include "solvers_rci/rci_run.hpp"
#include "solvers_rci/request.hpp"
#include <algorithm>

namespace nxl::rci {

enum class CgError : int { endless_loop = 1, indefinite_matrix = 2, altered_data = 3 };

enum class CgWarning : int {
    no_test = 1,
    relative_tolerance = 2,
    absolute_tolerance = 3,
    both_tolerances_zero = 4,
    size_differs = 5,
    size_not_positive = 6,
    already_started = 7,
    negative_limit = 8,
    iterations_not_zero = 9,
    no_iterations = 10
};

/// The entries that mean the same to both solvers.
class CgRun : public RciRun {
  public:
    using RciRun::RciRun;

    int& systems() const { return ipar_[32]; } // DCGMRHS: right-hand sides, for the check alone

    /// Looks for values that a run should not start with, warns of them and mends some. `systems`: right-hand sides.
    int check(int n, int systems) const;

    void report(CgError error) const;
    void report(CgWarning warning) const;

    void count_iteration() const { iterations() = static_cast<int>(static_cast<unsigned>(iterations()) + 1U); }

  private:
    bool mend_missing_tests() const;
    bool mend_tolerances() const;
    bool has_suspicious_counts() const;
};

/// tmp as columns of n elements; a column number counts from 1.
class Columns {
    double* const first_;
    const i64 length_;

  public:
    Columns(double* tmp, int n) : first_(tmp), length_(std::max(n, 0)) {}
    double* operator()(int number) const { return first_ + (i64{number} - 1) * length_; }

    void zero(i64 count) const {
        if (count > 0) std::fill_n(first_, count * length_, 0.0);
    }
};

} // namespace nxl::rci
