// What the user sees of a spectrum: the lines of the report, the files, the drawing.
#pragma once

#include "spectrum.hpp"

#include <string>

namespace eig {

struct Report {
    std::string source, facts;
    bool generated = false, all_values = false, vibration = false;
    double input_seconds = 0.0, seconds = 0.0;
};

void print(const Report& report, const Spectrum& spectrum);

/// Values over their numbers, or where they are complex, in their plane. Throws InputError.
void plot(const std::string& path, const std::string& title, const Spectrum& spectrum);

void write_values(const std::string& path, const Spectrum& spectrum);
void write_vectors(const std::string& path, const AnyBlock& vectors);

/// Cycles per second of a mode whose squared angular frequency is `value`.
double frequency(double value);

} // namespace eig
