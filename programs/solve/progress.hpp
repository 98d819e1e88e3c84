// How far a solution is: the way of a residual down to the tolerance, and that of a factorisation over its columns.
#pragma once

#include "common/progress.hpp"

namespace solve {

/// The share of the way, on a logarithmic scale, from residual 1 down to the tolerance: 0 to 1.
double progress_of(double residual, double tolerance);

/// While it lives, the library's dense factorisations show how far they are, and stop when the user presses Ctrl-C.
/// They tell NXL_PROGRESS, which this program defines in place of the library's own. One at a time.
class FactorisationProgress {
  public:
    explicit FactorisationProgress(int columns);
    ~FactorisationProgress();
    FactorisationProgress(const FactorisationProgress&) = delete;
    FactorisationProgress& operator=(const FactorisationProgress&) = delete;

    /// `column` columns are done, says one of the threads.
    void reach(int column);

  private:
    common::Progress progress_{"factorising"};
    const int columns_;
    std::atomic<int> furthest_{0};
};

} // namespace solve
