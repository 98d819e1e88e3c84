// The progress bar on a terminal: how far the residual has come on its way down to the tolerance.
#pragma once

#include "method.hpp"

#include <chrono>

namespace solve {

/// The share of the way, on a logarithmic scale, from residual 1 down to the tolerance: 0 to 1.
double progress_of(double residual, double tolerance);

class ProgressBar {
  public:
    /// Draws on standard error, and only where that is a terminal.
    ProgressBar(bool wanted, double tolerance, int systems);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void show(const Step& step);

  private:
    using Clock = std::chrono::steady_clock;

    const bool active_;
    const double tolerance_;
    const int systems_;
    bool drawn_ = false;
    Clock::time_point next_draw_;
};

} // namespace solve
