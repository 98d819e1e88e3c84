// Measures a run and its parts.
#pragma once

#include <chrono>
#include <utility>

namespace common {

class Stopwatch {
  public:
    /// Seconds since the start or the last lap.
    double seconds() const { return std::chrono::duration<double>(Clock::now() - start_).count(); }

    /// The same; a new lap begins.
    double lap() {
        const auto now = Clock::now();
        return std::chrono::duration<double>(now - std::exchange(start_, now)).count();
    }

  private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point start_ = Clock::now();
};

} // namespace common
