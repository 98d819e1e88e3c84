// Drawings through gnuplot: the pipe, the SVG terminal, and what can go wrong with them.
#pragma once

#include <cstdio>
#include <functional>
#include <string>

namespace common {

/// A string of gnuplot's.
std::string quoted(const std::string& text);

/// Draws to an SVG file what `script` writes for gnuplot; data may stand inline. Returns false when gnuplot is not
/// installed; throws InputError, naming the file, when it could not draw.
bool draw(const std::string& path, const std::string& title, const std::function<void(std::FILE*)>& script);

} // namespace common
