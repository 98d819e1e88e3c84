// Feeds gnuplot a script with the data inline, through a pipe.
#include "plot.hpp"

#include "input_error.hpp"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <sys/wait.h>

namespace solve {
namespace {

/// A string of gnuplot's: within single quotes only a single quote is special.
std::string quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? "''" : std::string(1, c);
    return quoted + "'";
}

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

bool plot_history(const std::string& path, const std::string& title, const std::vector<Step>& history) {
    if (path.find('\n') != std::string::npos) throw InputError(path, "no plot: the name holds a newline");
    std::signal(SIGPIPE, SIG_IGN); // without gnuplot nobody reads the pipe; its status says so
    std::FILE* script = popen("exec gnuplot >/dev/null 2>&1", "w");
    if (script == nullptr) throw InputError(path, "no plot: gnuplot could not be started");
    std::fprintf(script,
                 "set terminal svg size 800,500 background 'white'\nset output %s\nset title %s noenhanced\n"
                 "set xlabel 'iteration'\nset ylabel 'relative residual'\nset logscale y\nset format y '10^{%%L}'\n"
                 "set grid\n",
                 quoted(path).c_str(), quoted(title).c_str());
    write_curves(script, history);
    const int status = pclose(script);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 127) return false; // the shell found no program of that name
    if (status != 0) throw InputError(path, "no plot: gnuplot could not draw it");
    return true;
}

} // namespace solve
