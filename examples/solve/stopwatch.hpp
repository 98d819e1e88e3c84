// Measures the parts of a run.
#pragma once

#include <chrono>

namespace solve {

class Stopwatch {
  public:
    /// Seconds since the start or the last call.
    double lap() {
        const auto now = std::chrono::steady_clock::now();
        const std::chrono::duration<double> passed = now - start_;
        start_ = now;
        return passed.count();
    }

  private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace solve
