// How far a solution is: the way of a residual down to the tolerance, and that of a factorisation over its columns.
#pragma once

#include "common/progress.hpp"

#include <string_view>

namespace solve {

/// The share of the way, on a logarithmic scale, from residual 1 down to the tolerance: 0 to 1.
double progress_of(double residual, double tolerance);

/// While it lives, the library's factorisations show how far they are, and stop when the user presses Ctrl-C. They tell
/// NXL_PROGRESS, which this program defines in place of the library's own. One at a time.
class FactorisationProgress {
  public:
    /// Of a dense matrix, by columns.
    explicit FactorisationProgress(int columns);
    /// Of a sparse one, by percents; what its dense blocks tell is passed over.
    FactorisationProgress();
    ~FactorisationProgress();
    FactorisationProgress(const FactorisationProgress&) = delete;
    FactorisationProgress& operator=(const FactorisationProgress&) = delete;

    /// So many columns, or percents, are done, says one of the threads in a routine or phase of that name.
    void reach(int step, std::string_view stage);

  private:
    common::Progress progress_{"factorising"};
    const int columns_; // 0: percents
    std::atomic<int> furthest_{0};
};

} // namespace solve
