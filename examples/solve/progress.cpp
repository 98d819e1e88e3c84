// Draws the bar a few times a second, over itself, and wipes it away at the end.
#include "progress.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace solve {

double progress_of(double residual, double tolerance) {
    if (!(residual < 1.0)) return 0.0;
    return residual <= tolerance ? 1.0 : std::log(residual) / std::log(tolerance);
}

ProgressBar::ProgressBar(bool wanted, double tolerance, int systems)
    : active_(wanted && isatty(STDERR_FILENO) == 1),
      tolerance_(tolerance),
      systems_(systems),
      next_draw_(Clock::now() + std::chrono::milliseconds(200)) {}

ProgressBar::~ProgressBar() {
    if (drawn_) std::fputs("\r\033[K", stderr);
}

void ProgressBar::show(const Step& step) {
    if (!active_ || Clock::now() < next_draw_) return;
    constexpr int kWidth = 40;
    const double share = (step.system + progress_of(step.residual, tolerance_)) / systems_;
    const int filled = std::clamp(static_cast<int>(share * kWidth), 0, kWidth);
    const std::string bar = std::string(static_cast<std::size_t>(filled), '#') +
                            std::string(static_cast<std::size_t>(kWidth - filled), '.');
    std::fprintf(stderr, "\r[%s] %3d %%  iteration %d  residual %.1e\033[K", bar.c_str(),
                 static_cast<int>(100.0 * share), step.iteration, step.residual);
    drawn_ = true;
    next_draw_ = Clock::now() + std::chrono::milliseconds(100);
}

} // namespace solve
