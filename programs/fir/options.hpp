// The command line.
#pragma once

#include "design.hpp"

#include <optional>
#include <string>
#include <vector>

namespace fir {

struct Options {
    int taps = 61;
    double rate = 1.0;     // samples per second
    bool in_hertz = false; // the edges; else they are fractions of the rate
    int density = 32;
    std::vector<Band> bands; // in cycles per sample
    std::string output;
    std::string plot;
    bool quiet = false;
};

/// The options of a command line; nothing after --help or --version, which are answered here. Throws UsageError.
std::optional<Options> parse_options(int argc, char** argv);

} // namespace fir
