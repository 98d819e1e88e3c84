// The residual history as a drawing.
#pragma once

#include "method.hpp"

#include <string>
#include <vector>

namespace solve {

/// Draws the residual over the iterations, one curve for each right-hand side, to an SVG file, through gnuplot. Returns
/// false when gnuplot is not installed; throws InputError, naming the file, when it could not draw.
bool plot_history(const std::string& path, const std::string& title, const std::vector<Step>& history);

} // namespace solve
