// The command line as CLI11 sees it.
#include "options.hpp"

#include "common/command_line.hpp"
#include "common/gnuplot.hpp"
#include "common/input_error.hpp"
#include "generators.hpp"

namespace solve {
namespace {

std::string footer() {
    return "Problems for --generate:\n" + list_of_problems() +
           "\nExit status: 0 solved, 1 bad input or no memory, 2 bad usage, 3 not solved to the tolerance.\n"
           "Ctrl-C stops a factorisation or an iteration; the program then ends by that signal.\n"
           "Example: nxl-solve --generate heat3d:100 --precond jacobi --plot history.svg";
}

void declare_factors(CLI::App& app, Settings& s) {
    app.add_option("--ordering", s.ordering,
                   "Order of elimination of method direct: nested dissection by METIS, minimum "
                   "degree, or the latter by independent parts")
        ->check(CLI::IsMember({"nested-dissection", "minimum-degree", "constrained"}))
        ->option_text("nested-dissection|minimum-degree|constrained [nested-dissection]");
    app.add_option("--refine", s.refine, "Most steps of refinement of method direct, by residuals in doubled precision")
        ->check(CLI::Range(0, 100))
        ->option_text("N [2; 0 if definite]");
    app.add_option(
           "--out-of-core", s.out_of_core,
           "Method direct keeps its factors on files, in the folder TMPDIR or /tmp, and takes so many megabytes of "
           "memory")
        ->check(CLI::Range(1, 2000000000))
        ->expected(0, 1)
        ->default_str("2000")
        ->option_text("MB [2000]");
}

std::string fault_of_fraction(const std::string& text) {
    double value = 0.0;
    const bool good = CLI::detail::lexical_cast(text, value) && value > 0.0 && value < 1.0;
    return good ? std::string() : "'" + text + "' is not between 0 and 1";
}

void declare_iterations(CLI::App& app, Settings& s) {
    app.add_option(
           "--precond", s.preconditioner,
           "Preconditioner of cg and fgmres: none, jacobi (the diagonal), ilu0 (incomplete LU without fill), or "
           "ilut (with fill by size, fgmres only). Where the factors do not serve, fgmres permutes rows, scales them, "
           "or "
           "replaces pivots, and the report says so")
        ->check(CLI::IsMember({"none", "jacobi", "ilu0", "ilut"}))
        ->option_text("none|jacobi|ilu0|ilut [none; ilu0 where auto takes fgmres]");
    app.add_option("--tolerance", s.tolerance, "Reduce the 2-norm of the residual by this factor")
        ->check(fault_of_fraction)
        ->option_text("T [1e-08]");
    app.add_option("--max-iterations", s.max_iterations, "Limit for each right-hand side")
        ->check(CLI::Range(1, 2000000000))
        ->option_text("N [10 n, in 100 to 100000]");
    app.add_option("--restart", s.restart, "Iterations of fgmres until it begins anew")
        ->check(CLI::Range(1, 10000))
        ->option_text("M [30]");
    app.add_option("--fill", s.fill, "Entries that ilut keeps of a row, left and right of the diagonal")
        ->check(CLI::Range(0, 1000000))
        ->option_text("N [10]");
    app.add_option("--drop", s.drop, "What ilut drops, relative to the mean of its row")
        ->check(CLI::Range(0.0, 1.0))
        ->option_text("T [0.001]");
}

void declare(CLI::App& app, Options& o) {
    app.set_version_flag("--version", "nxl-solve " NXL_SOLVE_VERSION);
    app.footer(footer());
    app.add_option("FILE", o.file, "Matrix in Matrix Market form, plain or gzip")->option_text(".mtx|.mtx.gz");
    app.add_option("--generate", o.generate, "Make the matrix instead: KIND:SIZE, see below")->option_text("KIND:SIZE");
    app.add_option("--method", o.settings.method,
                   "direct, sparse factors; lu, of a dense copy; cholesky, the same if symmetric or Hermitian positive "
                   "definite; ldl, the same if symmetric or Hermitian; cg, conjugate gradients, if real symmetric "
                   "positive definite; fgmres, if real; qr, least squares or the shortest solution of a matrix of any "
                   "shape and full rank; svd, the same of any rank; auto chooses")
        ->check(CLI::IsMember({"auto", "direct", "lu", "cholesky", "ldl", "cg", "fgmres", "qr", "svd"}))
        ->option_text("auto|direct|lu|cholesky|ldl|cg|fgmres|qr|svd [auto]");
    declare_factors(app, o.settings);
    declare_iterations(app, o.settings);
    app.add_option("--rcond", o.settings.rcond,
                   "For the rank, singular values up to R times the largest count as 0 in method svd")
        ->check(fault_of_fraction)
        ->option_text("R [2.2e-16 times the larger dimension]");
    app.add_option("--rhs", o.right_hand_side,
                   "Right-hand side: known (A times ones, so that the error is known), ones, load (the generated "
                   "problem's own), or an array file")
        ->option_text("known|ones|load|FILE [known]");
    app.add_option("--nrhs", o.systems, "Number of right-hand sides")
        ->check(CLI::Range(1, 100000))
        ->option_text("K [1]");
    app.add_option("--output", o.output, "Write the solution, an array of 17 digits; the file is tried before the work")
        ->option_text("FILE");
    app.add_option("--plot", o.plot, "Draw the residual history of cg or fgmres through gnuplot")
        ->check(common::fault_of_drawing)
        ->option_text("FILE.svg|FILE.png");
    auto* verbose = app.add_flag("--verbose", o.verbose, "Print the residual of every iteration");
    app.add_flag("--quiet", o.quiet, "Print nothing but errors")->excludes(verbose);
}

/// Options about iterations ask for a method that iterates, and some of them for one in particular.
void choose_by_options(const CLI::App& app, Settings& settings) {
    settings.preconditioner_named = app.count("--precond") > 0;
    for (const std::string option : {"--fill", "--drop"}) {
        if (app.count(option) > 0 && settings.preconditioner != "ilut")
            throw common::UsageError(option + " belongs to --precond ilut");
    }
    if (settings.method == "auto" && (app.count("--restart") > 0 || settings.preconditioner == "ilut"))
        settings.method = "fgmres";
    if (app.count("--restart") > 0 && settings.method != "fgmres")
        throw common::UsageError("--restart belongs to method fgmres");
    if (settings.preconditioner == "ilut" && settings.method == "cg")
        throw common::UsageError("--precond ilut belongs to method fgmres: cg needs a symmetric preconditioner");
    for (const std::string option : {"--precond", "--tolerance", "--max-iterations", "--plot"}) {
        if (app.count(option) == 0) continue;
        if (settings.method == "lu" || settings.method == "cholesky" || settings.method == "ldl" ||
            settings.method == "direct" || settings.method == "qr" || settings.method == "svd")
            throw common::UsageError(option + " belongs to methods cg and fgmres");
        settings.iterative = true;
    }
    if (settings.rcond) {
        if (settings.iterative || (settings.method != "auto" && settings.method != "svd"))
            throw common::UsageError("--rcond belongs to method svd");
        settings.method = "svd";
    }
    for (const std::string option : {"--ordering", "--refine", "--out-of-core"}) {
        if (app.count(option) == 0) continue;
        if (settings.iterative || (settings.method != "auto" && settings.method != "direct"))
            throw common::UsageError(option + " belongs to method direct");
        settings.method = "direct";
    }
}

} // namespace

std::optional<Options> parse_options(int argc, char** argv) {
    Options options;
    CLI::App app("Solves A x = b, square or in the least squares sense, for a sparse or dense matrix from a Matrix "
                 "Market file or a generated problem.",
                 "nxl-solve");
    declare(app, options);
    if (!common::parse(app, argc, argv)) return std::nullopt;
    if (options.file.empty() == options.generate.empty())
        throw common::UsageError("one matrix is expected: a FILE or --generate KIND:SIZE");
    choose_by_options(app, options.settings);
    return options;
}

} // namespace solve
