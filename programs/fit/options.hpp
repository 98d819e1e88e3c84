// The command line.
#pragma once

#include "model.hpp"

#include <optional>
#include <string>

namespace fit {

struct Options {
    std::string file;
    std::string model;
    Start start, lower, upper; // what the user gave
    int max_iterations = 1000;
    std::string output;
    std::string plot;
    bool quiet = false;
};

/// The options of a command line; nothing after --help or --version, which are answered here. Throws UsageError.
std::optional<Options> parse_options(int argc, char** argv);

} // namespace fit
