#pragma once
#include "bench/report.hpp"

namespace nxl::bench {

/// Draws the ratios to each peer, a mark per routine and size, by gnuplot, as SVG or PNG. Both throw InputError when
/// there is no drawing.
void plot_ratios(const Report& report, const std::string& file);

/// Draws GFLOP/s over the size of square cases: a panel per routine with its options, a curve per library, and the
/// peak.
void plot_rates(const Report& report, const std::string& file);

} // namespace nxl::bench
