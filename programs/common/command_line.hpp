// The command line as CLI11 reads it.
#pragma once

#include "common/input_error.hpp"

#include <CLI/CLI.hpp>
#include <iostream>

namespace common {

/// False after --help or --version, which are answered here. Throws UsageError.
inline bool parse(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return true;
    } catch (const CLI::Success& answered) {
        app.exit(answered, std::cout, std::cerr);
        return false;
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
}

} // namespace common
