// Ctrl-C (and SIGTERM): ends the program at once, or lets work that looks out for it stop in good order; and the
// terminal is left on a new line.
#pragma once

#include "common/interrupted.hpp"

namespace common {

/// While one of these lives, the first Ctrl-C is only noted, for the work to stop when it looks. A second one, or three
/// seconds without an end, end the program at once. So does a Ctrl-C that nobody has looked at when the last one goes.
/// A program that was started with the signal ignored goes on ignoring it.
class Interruptible {
  public:
    Interruptible();
    ~Interruptible();
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;
};

/// Whether a Ctrl-C was noted; from any thread.
bool interrupted() noexcept;

/// Throws Interrupted if so.
void stop_if_interrupted();

/// Says whether standard error shows a line without its end. A Ctrl-C that ends the program ends such a line first.
void set_line_open(bool open) noexcept;

} // namespace common
