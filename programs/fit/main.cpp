// nxl-fit: reads points, fits a model to them with nxl, reports.
#include "common/run_program.hpp"
#include "options.hpp"
#include "report.hpp"

#include <algorithm>
#include <limits>

namespace fit {
namespace {

using common::kDone;
using common::kNotConverged;

constexpr const char* kProgram = "nxl-fit";

void check_names(const std::string& option, const Start& given, const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
    for (const auto& [name, value] : given)
        if (std::find(names.begin(), names.end(), name) == names.end())
            throw common::UsageError(option + ": the model has no parameter '" + name + "', but " + list);
}

/// For each name the value that was given, or else `otherwise`.
std::vector<double> in_order(const std::vector<std::string>& names, const Start& given, double otherwise) {
    std::vector<double> values;
    for (const std::string& name : names) values.push_back(given.contains(name) ? given.at(name) : otherwise);
    return values;
}

Bounds bounds_of(const Options& options, const std::vector<std::string>& names) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const Bounds bounds{in_order(names, options.lower, -infinity), in_order(names, options.upper, infinity)};
    for (std::size_t k = 0; k < names.size(); ++k)
        if (bounds.lower[k] > bounds.upper[k])
            throw common::UsageError("--lower: the bound of '" + names[k] + "' is above that of --upper");
    return bounds;
}

/// A file that cannot be written counts for more than a fit that has not converged; both are told.
int run(const Options& options) {
    const Model model = model_of(options.model);
    Expression expression(model.formula);
    if (!expression.has_x()) throw no_model(options.model, "has no x in it");
    const auto& names = expression.parameters();
    check_names("--start", options.start, names);
    check_names("--lower", options.lower, names);
    check_names("--upper", options.upper, names);
    const Bounds bounds = bounds_of(options, names);
    const Data data = read_data(common::open_lines(options.file));
    Start start = options.start;
    start.merge(model.estimate(data)); // what was given stays
    const Fit result = fit(expression, data, in_order(names, start, 1.0), bounds, options.max_iterations);

    if (!options.quiet) print(options.file, data, model.formula, names, result);
    int status = kDone;
    if (!result.converged)
        status = common::complain(
            kProgram, "not converged after " + std::to_string(result.iterations) + " iterations: " + result.reason,
            kNotConverged);
    if (!options.output.empty()) write_table(options.output, data, result);
    if (!options.plot.empty()) plot(options.plot, data, expression, result, options.file + ": " + options.model);
    return status;
}

int run(int argc, char** argv) {
    std::string file;
    return common::run_program<Refusal>(kProgram, file, [&]() -> int {
        const auto options = parse_options(argc, argv);
        if (!options) return kDone;
        file = options->file;
        return run(*options);
    });
}

} // namespace
} // namespace fit

int main(int argc, char** argv) { return fit::run(argc, argv); }
