// What the user sees of a filter: the lines of the report, the taps, the drawing.
#pragma once

#include "options.hpp"

#include <string>

namespace fir {

void print(const Options& options, const Filter& filter);

/// One tap per line, with 17 digits. Throws InputError.
void write_taps(const std::string& path, const Filter& filter);

/// Draws the response in dB, and the ripple where the filter is to pass something. Throws InputError.
void plot(const Options& options, const Filter& filter);

} // namespace fir
