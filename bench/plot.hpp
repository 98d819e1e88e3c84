#pragma once
#include "bench/report.hpp"

namespace nxl::bench {

/// Draws the ratios to each peer as an SVG picture, a mark per routine and size, by gnuplot. Says so when there is
/// none.
void plot_ratios(const Report& report, const std::string& file);

} // namespace nxl::bench
