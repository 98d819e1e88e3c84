// The command line as CLI11 sees it.
#include "options.hpp"

#include "common/command_line.hpp"
#include "common/gnuplot.hpp"
#include "generators.hpp"

#include <charconv>
#include <cmath>
#include <utility>

namespace eig {
namespace {

std::string footer() {
    return "Problems for --generate:\n" + solve::list_of_problems() +
           "  vibration:N       modes of the truss bridge of N bays: squares of angular frequencies\n"
           "\nExit status: 0 done, 1 bad input, a file or plot not written, or no memory, 2 bad usage, 3 some vectors "
           "have "
           "not converged.\n"
           "Example: nxl-eig --generate vibration:40 --values 1:6 --modes modes.svg";
}

/// What stands before and behind the colon of FIRST:LAST.
template <class Number> std::pair<Number, Number> pair_of(const std::string& option, const std::string& text) {
    const auto number = [&](std::string_view part) {
        Number value{};
        if (part.starts_with('+')) part.remove_prefix(1);
        const auto [end, status] = std::from_chars(part.data(), part.data() + part.size(), value);
        if (status != std::errc() || end != part.data() + part.size() || std::isnan(static_cast<double>(value)))
            throw common::UsageError(option + ": '" + text + "' is not two numbers with a colon between them");
        return value;
    };
    const std::string_view all = text;
    const auto colon = std::min(all.find(':'), all.size());
    return {number(all.substr(0, colon)), number(all.substr(std::min(colon + 1, all.size())))};
}

void declare(CLI::App& app, Options& o, std::string& values, std::string& range) {
    app.set_version_flag("--version", "nxl-eig " NXL_EIG_VERSION);
    app.footer(footer());
    app.add_option("FILE", o.file, "Matrix in Matrix Market form, plain or gzip")->option_text(".mtx|.mtx.gz");
    app.add_option("--generate", o.generate, "Make the matrix instead: KIND:SIZE, see below")->option_text("KIND:SIZE");
    app.add_option("--method", o.wish.method,
                   "dense, or band of a symmetric or Hermitian matrix; auto takes band where it is an eighth of the "
                   "matrix at most")
        ->check(CLI::IsMember({"auto", "dense", "band"}))
        ->option_text("auto|dense|band [auto]");
    auto* singular = app.add_flag("--svd", o.wish.singular,
                                  "Singular values instead, descending, of a matrix of any shape, and its rank");
    app.add_option("--rcond", o.wish.rcond, "For the rank, singular values up to R times the largest count as 0")
        ->check(CLI::Range(0.0, 1.0))
        ->needs(singular)
        ->option_text("R [2.2e-16 times the larger dimension]");
    auto* numbers = app.add_option("--values", values,
                                   "Values by number, from 1, eigenvalues ascending by real parts; below 0 from the "
                                   "end: --values=-5:-1 are the last five")
                        ->option_text("FIRST:LAST [1:-1]");
    app.add_option("--range", range, "Values with real parts above LOW and not above HIGH, which may be -inf and inf")
        ->excludes(numbers)
        ->option_text("LOW:HIGH");
    app.add_option("--vectors", o.vectors, "Compute vectors and write them, an array of a column for each value")
        ->option_text("FILE");
    app.add_option("--left-vectors", o.left, "The same of the left vectors of --svd; --vectors are the right ones")
        ->needs(singular)
        ->option_text("FILE");
    app.add_flag("--check", o.wish.vectors, "Compute vectors for the report alone: their residual and orthogonality");
    app.add_option("--output", o.output, "Write the values, an array of 17 digits")->option_text("FILE");
    app.add_option("--plot", o.plot, "Draw the spectrum through gnuplot; complex values in their plane")
        ->check(common::fault_of_drawing)
        ->option_text("FILE.svg|FILE.png");
    app.add_option("--modes", o.modes, "Draw the first modes of vibration:N, up to six of those chosen")
        ->check(common::fault_of_drawing)
        ->option_text("FILE.svg|FILE.png");
    auto* verbose = app.add_flag("--verbose", o.verbose, "Print all values");
    app.add_flag("--quiet", o.quiet, "Print nothing but errors")->excludes(verbose);
}

} // namespace

std::optional<Options> parse_options(int argc, char** argv) {
    Options options;
    std::string values, range;
    CLI::App app("Finds eigenvalues or singular values, and their vectors, of a matrix from a Matrix Market file or a "
                 "generated problem.",
                 "nxl-eig");
    declare(app, options, values, range);
    if (!common::parse(app, argc, argv)) return std::nullopt;
    if (options.file.empty() == options.generate.empty())
        throw common::UsageError("one matrix is expected: a FILE or --generate KIND:SIZE");
    if (!options.modes.empty() && !options.generate.starts_with("vibration:"))
        throw common::UsageError("--modes belongs to --generate vibration:N");
    if (options.wish.singular && (options.wish.method == "band" || !options.modes.empty()))
        throw common::UsageError("--svd goes neither with --method band nor with --modes");
    Selection& selection = options.wish.selection;
    if (!values.empty()) {
        selection.by = Selection::By::number;
        std::tie(selection.first, selection.last) = pair_of<int>("--values", values);
    }
    if (!range.empty()) {
        selection.by = Selection::By::value;
        std::tie(selection.low, selection.high) = pair_of<double>("--range", range);
        if (!(selection.low < selection.high)) throw common::UsageError("--range: LOW is expected to be below HIGH");
    }
    options.wish.vectors =
        options.wish.vectors || !options.vectors.empty() || !options.left.empty() || !options.modes.empty();
    return options;
}

} // namespace eig
