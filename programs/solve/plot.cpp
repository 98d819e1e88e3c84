// The curves of the residual history, the data inline.
#include "plot.hpp"

#include "common/gnuplot.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace solve {
namespace {

/// A point per iteration is more than a screen shows: long histories are thinned to about this many points per curve.
constexpr int kPoints = 2000;

void write_curves(std::FILE* script, const std::vector<Step>& history) {
    const int systems = history.empty() ? 0 : history.back().system + 1;
    int longest = 0;
    for (const Step& step : history) longest = std::max(longest, step.iteration);
    const int stride = std::max(1, longest / kPoints);
    std::fputs("$history << END\n", script);
    for (std::size_t k = 0; k < history.size(); ++k) {
        const Step& step = history[k];
        const bool last = k + 1 == history.size() || history[k + 1].system != step.system;
        if (step.residual > 0.0 && std::isfinite(step.residual) && (last || step.iteration % stride == 0))
            std::fprintf(script, "%d %.6g\n", step.iteration, step.residual);
        if (last) std::fputs("\n\n", script); // gnuplot counts blocks of data by double blank lines
    }
    std::fputs("END\n", script);
    std::fprintf(script, "plot for [k=0:%d] $history index k with lines linewidth 2 title %s\n", systems - 1,
                 systems > 1 ? "sprintf('right-hand side %d', k + 1)" : "''");
}

} // namespace

void plot_history(const std::string& path, const std::string& title, const std::vector<Step>& history) {
    common::draw(path, title, [&](std::FILE* script) {
        std::fputs("set xlabel 'iteration'\nset ylabel 'relative residual'\nset logscale y\nset format y '10^{%L}'\n",
                   script);
        write_curves(script, history);
    });
}

} // namespace solve
