#include "bench/plot.hpp"
#include "common/gnuplot.hpp"
#include "common/input_error.hpp"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <sstream>

namespace nxl::bench {
namespace {

template <class Value> std::size_t place_of(std::vector<Value>& seen, const Value& value) {
    const auto found = std::ranges::find(seen, value);
    if (found != seen.end()) return static_cast<std::size_t>(found - seen.begin());
    seen.push_back(value);
    return seen.size() - 1;
}

/// The data of one panel: a block per size, a line per routine, its place on the axis spread a little by size.
std::string blocks(const Report& report, std::size_t column, std::vector<std::string>& routines,
                   std::vector<int>& sizes) {
    for (const Timing& timing : report.timings()) {
        place_of(routines, timing.which.label());
        place_of(sizes, timing.which.size.n);
    }
    std::ostringstream out;
    for (std::size_t size = 0; size < sizes.size(); ++size) {
        const double shift = 0.15 * (static_cast<double>(size) - 0.5 * static_cast<double>(sizes.size() - 1));
        for (const Timing& timing : report.timings())
            if (timing.which.size.n == sizes[size] && !std::isnan(ratio(timing, column)))
                out << static_cast<double>(place_of(routines, timing.which.label())) + shift << ' '
                    << ratio(timing, column) << '\n';
        out << "\n\n";
    }
    return out.str();
}

std::string panel(const Report& report, std::size_t column) {
    std::vector<std::string> routines;
    std::vector<int> sizes;
    const std::string data = blocks(report, column, routines, sizes);
    std::ostringstream out;
    out << "$data << EOD\n" << data << "EOD\nset xtics rotate by -45 (";
    for (std::size_t i = 0; i < routines.size(); ++i) out << (i > 0 ? ", " : "") << '"' << routines[i] << "\" " << i;
    out << ")\nset title \"Speed of " << report.columns()[0].label << " relative to " << report.columns()[column].label
        << "\"\nset xrange [-0.5:" << routines.size() << "-0.5]\nplot 1 notitle lc rgb \"#888888\"";
    for (std::size_t i = 0; i < sizes.size(); ++i)
        out << ", $data index " << i << " title \"n = " << sizes[i] << "\" with points pt 7 ps 0.6 lc " << i + 1;
    out << '\n';
    return out.str();
}

std::string ratio_script(const Report& report) {
    const std::size_t panels = report.columns().size() - 1;
    std::ostringstream out;
    out << "set logscale y 2\nset grid noxtics y\nset key outside\nset multiplot layout " << panels << ",1\n";
    for (std::size_t column = 1; column <= panels; ++column) out << panel(report, column);
    return out.str() + "unset multiplot\n";
}

/// A line per square case that the library of this column has been timed with; empty when there is none.
std::string rate_curve(const Report& report, const std::string& label, std::size_t column) {
    std::ostringstream out;
    for (const Timing& timing : report.timings())
        if (timing.which.label() == label && timing.which.size.square() && !std::isnan(timing.seconds[column]))
            out << timing.which.size.n << ' ' << rate(timing, column) << '\n';
    return out.str();
}

/// Curves only of libraries that have the routine: gnuplot takes an empty one for an error.
std::string rate_panel(const Report& report, const std::string& label) {
    std::ostringstream data, plot;
    plot << "set title \"" << label << "\"\nplot " << report.peak_flops() * 1e-9
         << " title \"measured peak\" lc rgb \"#888888\" dt 2";
    for (std::size_t column = 0; column < report.columns().size(); ++column) {
        const std::string curve = rate_curve(report, label, column);
        if (curve.empty()) continue;
        data << "$curve" << column << " << EOD\n" << curve << "EOD\n";
        plot << ", $curve" << column << " title \"" << report.columns()[column].label
             << "\" with linespoints pt 7 ps 0.5 lw 1.5 lc " << column + 1;
    }
    return data.str() + plot.str() + '\n';
}

/// The routines with their options that have square cases, a panel for each.
std::vector<std::string> square_cases(const Report& report) {
    std::vector<std::string> labels;
    for (const Timing& timing : report.timings())
        if (timing.which.size.square()) place_of(labels, timing.which.label());
    return labels;
}

int across(const std::vector<std::string>& labels) { return std::min(static_cast<int>(labels.size()), 3); }
int down(const std::vector<std::string>& labels) {
    return (static_cast<int>(labels.size()) + across(labels) - 1) / across(labels);
}

std::string rate_script(const Report& report, const std::vector<std::string>& labels) {
    int smallest = std::numeric_limits<int>::max(), largest = 1;
    for (const Timing& timing : report.timings())
        if (timing.which.size.square()) {
            smallest = std::min(smallest, timing.which.size.n);
            largest = std::max(largest, timing.which.size.n);
        }
    std::ostringstream out;
    out << "set logscale x 2\nset xrange [" << 0.8 * smallest << ':' << 1.25 * largest
        << "]\nset xlabel \"order n of square matrices\"\nset yrange [0:" << 1.1e-9 * report.peak_flops()
        << "]\nset ylabel \"GFLOP/s\"\nset grid\nset key bottom right\nset multiplot layout " << down(labels) << ','
        << across(labels) << " title \"" << report.family() << ", " << threads_text(report.columns()[0].threads)
        << "\"\n";
    for (const std::string& label : labels) out << rate_panel(report, label);
    return out.str() + "unset multiplot\n";
}

void draw(const std::string& file, const std::string& script, common::Extent extent) {
    common::draw(file, "", [&](std::FILE* gnuplot) { std::fputs(script.c_str(), gnuplot); }, extent);
}

} // namespace

void plot_ratios(const Report& report, const std::string& file) {
    const int panels = static_cast<int>(report.columns().size()) - 1;
    if (panels == 0) throw common::InputError(file, "no plot: there is no peer to compare with");
    draw(file, ratio_script(report), {.width = 1000, .height = 360 * panels});
}

void plot_rates(const Report& report, const std::string& file) {
    const auto labels = square_cases(report);
    if (labels.empty()) throw common::InputError(file, "no plot: no case with square matrices has a figure");
    draw(file, rate_script(report, labels), {.width = 420 * across(labels), .height = 300 * down(labels) + 40});
}

} // namespace nxl::bench
