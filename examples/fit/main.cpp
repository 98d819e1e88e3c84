// nxl-fit: reads points, fits a model to them with nxl, reports.
#include "common/input_error.hpp"
#include "options.hpp"
#include "report.hpp"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>

namespace fit {
namespace {

enum ExitStatus { kFitted = 0, kBadInput = 1, kBadUsage = 2, kNotConverged = 3 };

int complain(const std::string& what, ExitStatus status) {
    std::fprintf(stderr, "nxl-fit: %s\n", what.c_str());
    return status;
}

/// The estimate, or 1 where there is none, for what the user left open.
std::vector<double> starting_point(const std::vector<std::string>& names, const Start& given, const Start& estimate) {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
    for (const auto& [name, value] : given)
        if (std::find(names.begin(), names.end(), name) == names.end())
            throw common::UsageError("--start: the model has no parameter '" + name + "', but " + list);
    std::vector<double> start;
    for (const std::string& name : names) {
        const Start& source = given.contains(name) ? given : estimate;
        const auto found = source.find(name);
        start.push_back(found == source.end() ? 1.0 : found->second);
    }
    return start;
}

int run(const Options& options) {
    const Model model = model_of(options.model);
    Expression expression(model.formula);
    const auto& names = expression.parameters();
    starting_point(names, options.start, {}); // a wrong name is told before the file is read
    const Data data = read_data(common::open_lines(options.file));
    const auto start = starting_point(names, options.start, model.estimate(data));
    const Fit result = fit(expression, data, start, options.max_iterations);

    if (!options.quiet) print(options.file, data, model.formula, names, result);
    if (!options.output.empty()) write_table(options.output, data, result);
    if (!options.plot.empty() && !plot(options.plot, data, expression, result, options.file + ": " + model.formula))
        complain(options.plot + ": note: no plot, gnuplot is not installed", kFitted);
    if (result.converged) return kFitted;
    return complain("not converged after " + std::to_string(result.iterations) + " iterations: " + result.reason,
                    kNotConverged);
}

int run(int argc, char** argv) {
    std::string file; // for the message of a fit that is refused
    try {
        const auto options = parse_options(argc, argv);
        if (!options) return kFitted;
        file = options->file + ": ";
        return run(*options);
    } catch (const Refusal& refusal) {
        return complain(file + refusal.what(), kBadInput);
    } catch (const common::UsageError& error) {
        return complain(error.what(), kBadUsage);
    } catch (const std::bad_alloc&) {
        return complain("not enough memory", kBadInput);
    } catch (const std::exception& error) {
        return complain(error.what(), kBadInput);
    }
}

} // namespace
} // namespace fit

int main(int argc, char** argv) { return fit::run(argc, argv); }
