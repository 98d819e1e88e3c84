// nxl-eig: reads or makes a matrix, finds eigenvalues or singular values and their vectors with nxl, reports.
#include "common/input_error.hpp"
#include "common/output_file.hpp"
#include "common/progress.hpp"
#include "common/run_program.hpp"
#include "common/stopwatch.hpp"
#include "generators.hpp"
#include "options.hpp"
#include "report.hpp"
#include "vibration.hpp"

#include <charconv>
#include <cstdio>
#include <optional>

// The report's line about a matrix is nxl-solve's.
#include "../solve/report.hpp"

namespace eig {
namespace {

constexpr const char* kProgram = "nxl-eig";

struct Input {
    AnyMatrix matrix;
    std::optional<solve::Truss> truss; // of vibration:N
};

solve::Truss truss_of(const std::string& description) {
    constexpr int most_bays = 100000;
    const std::string_view size = std::string_view(description).substr(description.find(':') + 1);
    int bays = 0;
    const auto [end, status] = std::from_chars(size.data(), size.data() + size.size(), bays);
    if (status != std::errc() || end != size.data() + size.size() || bays < 1 || bays > most_bays)
        throw common::UsageError("'" + description + "': after vibration: a number of bays from 1 on is expected");
    return solve::make_truss(bays);
}

Input get_matrix(const Options& options) {
    if (options.generate.starts_with("vibration:")) {
        solve::Truss truss = truss_of(options.generate);
        auto matrix = vibration_matrix(truss);
        return {std::move(matrix), std::move(truss)};
    }
    if (!options.generate.empty()) return {solve::generate(options.generate).matrix, {}};
    const auto shape = options.wish.singular ? solve::Shape::any : solve::Shape::square;
    solve::MatrixFile file = solve::read_matrix(common::open_lines(options.file), shape);
    if (file.duplicates > 0 && !options.quiet)
        std::fprintf(stderr, "%s: %s: note: duplicate entries were summed: %ld\n", kProgram, options.file.c_str(),
                     file.duplicates);
    return {std::move(file.matrix), {}};
}

int run(const Options& options, const std::string& source) {
    for (const auto& path : {options.vectors, options.left, options.output, options.plot, options.modes})
        if (!path.empty()) common::expect_writable(path);
    common::Stopwatch watch;
    const Input input = get_matrix(options);
    Report report{.source = source,
                  .facts = std::visit([](const auto& a) { return solve::facts(a); }, input.matrix),
                  .generated = options.file.empty(),
                  .all_values = options.verbose,
                  .vibration = input.truss.has_value()};
    report.input_seconds = watch.lap();
    const Spectrum spectrum = decompose(input.matrix, options.wish);
    report.seconds = watch.lap();

    if (!options.quiet) print(report, spectrum);
    if (!options.output.empty()) write_values(options.output, spectrum);
    if (!options.vectors.empty()) write_vectors(options.vectors, spectrum.vector);
    if (!options.left.empty()) write_vectors(options.left, spectrum.singular->left);
    if (!options.plot.empty()) plot(options.plot, source, spectrum);
    if (!options.modes.empty()) draw_modes(options.modes, source, *input.truss, spectrum);
    if (spectrum.failed == 0) return common::kDone;
    return common::complain(kProgram, std::to_string(spectrum.failed) + " vectors have not converged",
                            common::kNotConverged);
}

int run(int argc, char** argv) {
    std::string source;
    return common::run_program<Refusal>(kProgram, source, [&]() -> int {
        const auto options = parse_options(argc, argv);
        if (!options) return common::kDone;
        source = options->generate.empty() ? options->file : options->generate;
        common::show_progress(!options->quiet);
        return run(*options, source);
    });
}

} // namespace
} // namespace eig

int main(int argc, char** argv) { return eig::run(argc, argv); }
