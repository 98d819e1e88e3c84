// The command line as CLI11 sees it.
#include "options.hpp"

#include "common/command_line.hpp"
#include "common/gnuplot.hpp"

#include <algorithm>
#include <cmath>

namespace fit {
namespace {

std::string footer() {
    return "Models for --model:\n" + list_of_models() +
           "\nExit status: 0 fitted, 1 bad input, a file or plot not written, or no memory, 2 bad usage, 3 not "
           "converged.\n"
           "Example: nxl-fit decay.csv --model exponential --plot decay.svg";
}

struct Lists {
    std::string start, lower, upper;
};

void declare(CLI::App& app, Options& o, Lists& lists) {
    app.set_version_flag("--version", "nxl-fit " NXL_FIT_VERSION);
    app.footer(footer());
    app.add_option("FILE", o.file, "Columns x, y and, where known, the standard deviation of y; plain or gzip")
        ->required()
        ->option_text(".csv|.txt|.dat|.gz");
    app.add_option("--model", o.model, "What to fit, see below")->required()->option_text("NAME|FORMULA");
    app.add_option("--start", lists.start, "Values to start from [named models: estimated from the data; else 1]")
        ->option_text("A=1,B=0.5");
    app.add_option("--lower", lists.lower, "Least values of parameters")->option_text("A=0,B=0");
    app.add_option("--upper", lists.upper, "Greatest values; equal to the least one it holds a parameter")
        ->option_text("A=5,B=2");
    app.add_option("--max-iterations", o.max_iterations, "Limit of accepted steps")
        ->check(CLI::Range(1, 1000000))
        ->option_text("N [1000]");
    app.add_option("--output", o.output, "Write x, y, fit and residual")->option_text("FILE.csv");
    app.add_option("--plot", o.plot, "Draw points and curve through gnuplot")
        ->check(common::fault_of_drawing)
        ->option_text("FILE.svg|FILE.png");
    app.add_flag("--quiet", o.quiet, "Print nothing but errors");
}

/// NAME=NUMBER, with commas between several.
Start values_of(const std::string& option, const std::string& text) {
    Start values;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view entry = rest.substr(0, rest.find(','));
        rest.remove_prefix(std::min(rest.size(), entry.size() + 1));
        const auto equals = std::min(entry.find('='), entry.size() - 1);
        double value = 0.0;
        if (equals == 0 || !parse_number(entry.substr(equals + 1), value) || !std::isfinite(value))
            throw common::UsageError(option + ": '" + std::string(entry) + "' is not NAME=NUMBER");
        values[std::string(entry.substr(0, equals))] = value;
    }
    return values;
}

} // namespace

std::optional<Options> parse_options(int argc, char** argv) {
    Options options;
    Lists lists;
    CLI::App app("Fits a model to points by nonlinear least squares.", "nxl-fit");
    declare(app, options, lists);
    if (!common::parse(app, argc, argv)) return std::nullopt;
    options.start = values_of("--start", lists.start);
    options.lower = values_of("--lower", lists.lower);
    options.upper = values_of("--upper", lists.upper);
    return options;
}

} // namespace fit
