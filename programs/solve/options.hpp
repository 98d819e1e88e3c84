// The command line.
#pragma once

#include "method.hpp"

#include <optional>
#include <string>

namespace solve {

struct Options {
    std::string file;     // either this or `generate` is given
    std::string generate; // KIND:SIZE
    Settings settings;
    std::string right_hand_side = "known";
    int systems = 0; // 0: as many as the right-hand side has
    std::string output;
    std::string plot;
    bool verbose = false;
    bool quiet = false;
};

/// The options of a command line; nothing after --help or --version, which are answered here. Throws UsageError.
std::optional<Options> parse_options(int argc, char** argv);

} // namespace solve
