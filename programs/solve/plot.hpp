// The residual history as a drawing.
#pragma once

#include "method.hpp"

#include <string>
#include <vector>

namespace solve {

/// Draws the residual over the iterations, one curve for each right-hand side, to an SVG or PNG file, through gnuplot.
/// Throws InputError, naming the file, when there is no drawing.
void plot_history(const std::string& path, const std::string& title, const std::vector<Step>& history);

} // namespace solve
