// The command line.
#pragma once

#include "spectrum.hpp"

#include <optional>
#include <string>

namespace eig {

struct Options {
    std::string file;     // either this or `generate` is given
    std::string generate; // KIND:SIZE
    Wish wish;
    std::string vectors, left, output, plot, modes; // files
    bool verbose = false;
    bool quiet = false;
};

/// The options of a command line; nothing after --help or --version, which are answered here. Throws UsageError.
std::optional<Options> parse_options(int argc, char** argv);

} // namespace eig
