// nxl-fir: designs a linear-phase filter with nxl, reports, draws its response.
#include "common/run_program.hpp"
#include "elapsed.hpp"
#include "options.hpp"
#include "report.hpp"

namespace fir {
namespace {

using common::kDone;
using common::kNotConverged;

constexpr const char* kProgram = "nxl-fir";

Filter watched_design(const Options& options) {
    const Elapsed line("designing " + std::to_string(options.taps) + " taps", !options.quiet);
    return design(options.taps, options.bands, options.density);
}

/// A file that cannot be written counts for more than a design that has not converged; both are told.
int run(const Options& options) {
    const Filter filter = watched_design(options);
    if (!options.quiet) print(options, filter);
    int status = kDone;
    if (!filter.converged())
        status =
            common::complain(kProgram, "not converged: the largest error is above that of the extrema", kNotConverged);
    if (!options.output.empty()) write_taps(options.output, filter);
    if (!options.plot.empty()) plot(options, filter);
    return status;
}

int run(int argc, char** argv) {
    std::string what;
    return common::run_program<Refusal>(kProgram, what, [&]() -> int {
        const auto options = parse_options(argc, argv);
        if (!options) return kDone;
        what = std::to_string(options->taps) + " taps";
        return run(*options);
    });
}

} // namespace
} // namespace fir

int main(int argc, char** argv) { return fir::run(argc, argv); }
