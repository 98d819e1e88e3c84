// The line on a terminal that tells what takes so long, and for how long: the library's one call tells nothing.
#pragma once

#include <string>
#include <thread>

namespace fir {

/// Shows `what` and the seconds since, on standard error where that is a terminal; the line goes when this does. Ctrl-C
/// ends the process by the signal, as it would without.
class Elapsed {
  public:
    Elapsed(std::string what, bool wanted);

  private:
    std::jthread drawer_;
};

} // namespace fir
