// What is thrown where the user has put an end to the work.
#pragma once

#include <exception>

namespace common {

/// The work was stopped by a signal. run_program says so, and ends the program by that signal.
class Interrupted : public std::exception {
  public:
    explicit Interrupted(int signal) : signal_(signal) {}
    const char* what() const noexcept override { return "interrupted"; }
    int signal() const { return signal_; }

  private:
    int signal_;
};

} // namespace common
