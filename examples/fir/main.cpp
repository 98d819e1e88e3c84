// nxl-fir: designs a linear-phase filter with nxl, reports, draws its response.
#include "common/run_program.hpp"
#include "options.hpp"
#include "report.hpp"

namespace fir {
namespace {

using common::kDone;
using common::kNotConverged;

constexpr const char* kProgram = "nxl-fir";

int run(const Options& options) {
    const Filter filter = design(options.taps, options.bands, options.density);
    if (!options.quiet) print(options, filter);
    if (!options.output.empty()) write_taps(options.output, filter);
    if (!options.plot.empty() && !plot(options, filter))
        common::complain(kProgram, options.plot + ": note: no plot, gnuplot is not installed", kDone);
    if (filter.converged()) return kDone;
    return common::complain(kProgram, "not converged: the largest error is above that of the extrema", kNotConverged);
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
