// nxl-solve: reads or makes a linear system, square or not, solves it with nxl, reports.
#include "common/interrupt.hpp"
#include "common/output_file.hpp"
#include "common/run_program.hpp"
#include "common/stopwatch.hpp"
#include "generators.hpp"
#include "options.hpp"
#include "plot.hpp"
#include "progress.hpp"
#include "report.hpp"
#include "right_hand_side.hpp"

#include <array>
#include <cstdio>
#include <optional>
#include <utility>

namespace solve {
namespace {

using common::kDone;
using common::kNotConverged;

const std::string& source_of(const Options& options) {
    return options.generate.empty() ? options.file : options.generate;
}

struct Input {
    AnyMatrix matrix;
    std::vector<double> load;
    double seconds = 0.0;
};

Input get_matrix(const Options& options) {
    common::Stopwatch watch;
    if (!options.generate.empty()) {
        Problem problem = generate(options.generate);
        return {std::move(problem.matrix), std::move(problem.load), watch.lap()};
    }
    const Shape shape = takes_any_shape(options.settings.method) ? Shape::any : Shape::square;
    MatrixFile file = read_matrix(common::open_lines(options.file), shape);
    if (file.duplicates > 0 && !options.quiet)
        std::fprintf(stderr, "nxl-solve: %s: note: duplicate entries were summed: %ld\n", options.file.c_str(),
                     file.duplicates);
    return {std::move(file.matrix), {}, watch.lap()};
}

std::string progress_text(const Step& step) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "iteration %d, residual %.1e", step.iteration, step.residual);
    return text.data();
}

/// Solves while the history is kept and shown.
template <class T>
Outcome watched_solve(Method<T>& method, const Block<T>& b, Block<T>& x, const Options& options,
                      std::vector<Step>& history) {
    const common::Interruptible interruptible;
    common::Progress progress("solving");
    bool headed = !options.verbose;
    const Outcome outcome = method.solve(b, x, [&](const Step& step) {
        if (!std::exchange(headed, true)) std::puts("  rhs  iteration  residual");
        if (options.verbose) std::printf("%5d  %9d  %.6e\n", step.system + 1, step.iteration, step.residual);
        if (!options.plot.empty()) history.push_back(step);
        const double share = (step.system + progress_of(step.residual, options.settings.tolerance)) / b.count;
        progress.show(share, [&] { return progress_text(step); });
        common::stop_if_interrupted();
    });
    common::stop_if_interrupted();
    return outcome;
}

int judge(const Outcome& outcome) {
    if (outcome.converged) return kDone;
    if (outcome.direct()) {
        std::fprintf(stderr, "nxl-solve: not solved: %s\n", outcome.trouble.c_str());
        return kNotConverged;
    }
    const std::string reason = outcome.trouble.empty() ? "" : ": " + outcome.trouble;
    std::fprintf(stderr, "nxl-solve: not converged after %ld iterations, residual reduced to %.2e%s\n",
                 outcome.iterations, outcome.residual, reason.c_str());
    return kNotConverged;
}

template <class T> int run(const SparseMatrix<T>& a, const Input& input, const Options& options) {
    const auto method = make_method<T>(options.settings);
    if (!a.square() && !takes_any_shape(options.settings.method))
        throw Refusal("method " + options.settings.method + " needs a square matrix, this one is " + shape_of(a));
    const auto rhs = make_right_hand_side(options.right_hand_side, options.systems, a, input.load);
    Times times{.input = input.seconds};
    common::Stopwatch watch;
    method->set_up(a);
    times.setup = watch.lap();
    Block<T> x(a.columns, rhs.b.count);
    std::vector<Step> history;
    const Outcome outcome = watched_solve(*method, rhs.b, x, options, history);
    times.solve = watch.lap();

    if (!options.quiet) {
        const double condition = method->condition();
        const std::optional<Rank> rank = method->rank();
        const bool known = rhs.solution && (!rank || rank->rank == a.columns); // else it is one of many
        const double error = known ? relative_error(x, *rhs.solution) : 0.0;
        print({.source = source_of(options),
               .facts = facts(a),
               .method = method->description(),
               .right_hand_side = rhs.description,
               .systems = rhs.b.count,
               .outcome = outcome,
               .times = times,
               .residual = rank ? 0.0 : scaled_residual(a, rhs.b, x),
               .bounds = outcome.direct() && !rank ? error_bounds(a, rhs.b, x, condition) : ErrorBounds{},
               .fit = rank ? std::optional(fit_of(a, rhs.b, x, *rank, condition)) : std::nullopt,
               .error = known ? &error : nullptr,
               .generated = options.file.empty()});
    }
    if (!options.output.empty()) write_block(options.output, x);
    if (!options.plot.empty()) plot_history(options.plot, source_of(options), history);
    return judge(outcome);
}

int run(int argc, char** argv) {
    std::string source;
    return common::run_program<Refusal>("nxl-solve", source, [&]() -> int {
        const auto options = parse_options(argc, argv);
        if (!options) return kDone;
        source = source_of(*options);
        common::show_progress(!options->quiet && !options->verbose);
        for (const auto& path : {options->output, options->plot})
            if (!path.empty()) common::expect_writable(path);
        const Input input = get_matrix(*options);
        return std::visit([&](const auto& a) { return run(a, input, *options); }, input.matrix);
    });
}

} // namespace
} // namespace solve

int main(int argc, char** argv) { return solve::run(argc, argv); }
