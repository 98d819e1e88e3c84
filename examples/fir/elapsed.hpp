// The line on a terminal that tells what takes so long, and for how long: the library's one call tells nothing.
#pragma once

#include <csignal>
#include <string>
#include <thread>

namespace fir {

/// Shows `what` and the seconds since, on standard error where that is a terminal; the line goes when this does. Ctrl-C
/// leaves it and ends the process by the signal, as it would without. One at a time.
class Elapsed {
  public:
    Elapsed(std::string what, bool wanted);
    ~Elapsed();
    Elapsed(const Elapsed&) = delete;
    Elapsed& operator=(const Elapsed&) = delete;

  private:
    struct sigaction before_ = {};
    std::jthread drawer_;
};

} // namespace fir
