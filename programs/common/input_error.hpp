// What goes wrong with a file or with what is asked: one line for the user, thrown to main, which prints it.
#pragma once

#include <stdexcept>
#include <string>

namespace common {

/// A file that cannot be used; the text names the file and, where there is one, the line. Exit status 1.
class InputError : public std::runtime_error {
  public:
    InputError(const std::string& file, const std::string& what) : std::runtime_error(file + ": " + what) {}
    InputError(const std::string& file, long line, const std::string& what)
        : std::runtime_error(file + ":" + std::to_string(line) + ": " + what) {}
};

/// A command line that asks for something that does not exist or does not fit together. Exit status 2.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace common
