#include "bench/direct_rows.hpp"
#include "bench/interleaved.hpp"
#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstdio>
#include <limits>
#include <map>
#include <random>
#include <stdexcept>

namespace nxl::bench {
namespace {

constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t least_rounds = 5, most_rounds = 30;
constexpr double enough_seconds = 1.0;
constexpr int many = 100; // right-hand sides
constexpr std::array<const char*, 5> phases = {"numeric", "solve", "solve100", "memory", "together"};

using Complex = std::complex<double>;

std::vector<double> random_values(std::size_t count) {
    std::mt19937 random(1);
    std::vector<double> values(count);
    for (double& value : values) value = static_cast<double>(random()) / 0x1p31 - 1.0;
    return values;
}

/// |b - A x| / (|A| |x| + |b|) in maximum norms, of all columns.
double backward_error(const SparseProblem& problem, const std::vector<double>& b, const std::vector<double>& x) {
    const std::size_t words = problem.complex() ? 2 : 1, n = static_cast<std::size_t>(problem.n);
    const auto at = [words](const std::vector<double>& values, std::size_t k) {
        return words == 2 ? Complex{values[2 * k], values[2 * k + 1]} : Complex{values[k]};
    };
    double residual = 0.0, size_of_x = 0.0, size_of_b = 0.0, norm = 0.0;
    for (std::size_t first = 0; first < b.size() / words; first += n) {
        std::vector<Complex> r(n);
        std::vector<double> sums(n);
        for (std::size_t i = 0; i < n; ++i) {
            r[i] += at(b, first + i);
            for (int k = problem.ia[i] - 1; k < problem.ia[i + 1] - 1; ++k) {
                const auto entry = static_cast<std::size_t>(k);
                const auto j = static_cast<std::size_t>(problem.ja[entry] - 1);
                const Complex a = at(problem.a, entry);
                r[i] -= a * at(x, first + j);
                sums[i] += std::abs(a);
                if (!problem.upper() || i == j) continue;
                r[j] -= (std::abs(problem.mtype) == 4 ? std::conj(a) : a) * at(x, first + i);
                sums[j] += std::abs(a);
            }
        }
        for (std::size_t i = 0; i < n; ++i) {
            residual = std::max(residual, std::isnan(std::abs(r[i])) ? INFINITY : std::abs(r[i]));
            size_of_x = std::max(size_of_x, std::abs(at(x, first + i)));
            size_of_b = std::max(size_of_b, std::abs(at(b, first + i)));
            norm = std::max(norm, sums[i]);
        }
    }
    return residual / (norm * size_of_x + size_of_b);
}

/// All that take a problem, with a system that each has solved.
class Field {
    const SparseProblem problem_;
    std::vector<std::unique_ptr<DirectSolver>> solvers_; // null for those that are out
    std::vector<double> b_, x_;

    /// Solves the system once. Returns what is wrong with the result.
    std::string trial(DirectSolver& solver) {
        constexpr double largest_error = 1e-6; // pivots inside blocks, and no refinement
        solver.analyse();
        solver.factorise();
        solver.solve(b_, x_, many);
        const double error = backward_error(problem_, b_, x_);
        return error < largest_error ? "" : "backward error " + std::to_string(error);
    }

  public:
    Field(SparseProblem problem, const std::vector<DirectContender>& contenders, const std::string& name, bool& agreed)
        : problem_(std::move(problem)),
          b_(random_values(static_cast<std::size_t>(problem_.n) * many * (problem_.complex() ? 2 : 1))),
          x_(b_.size()) {
        for (const DirectContender& contender : contenders) {
            solvers_.push_back(contender.takes(problem_) ? contender.make(problem_) : nullptr);
            if (!solvers_.back()) continue;
            std::string trouble;
            try {
                trouble = trial(*solvers_.back());
            } catch (const std::runtime_error& error) {
                trouble = error.what();
            }
            if (trouble.empty()) continue;
            std::fprintf(stderr, "nxl-bench: %s: %s: %s\n", name.c_str(), contender.name.c_str(), trouble.c_str());
            solvers_.back().reset();
            agreed = false;
        }
    }

    const SparseProblem& problem() const { return problem_; }
    double flops() const { return solvers_.front() ? solvers_.front()->flops() : 0.0; }

    std::vector<double> peak_bytes() const {
        std::vector<double> bytes;
        for (const auto& solver : solvers_) bytes.push_back(solver ? solver->peak_bytes() : unknown);
        return bytes;
    }

    /// Seconds of step(solver, b, x), in turn. Other programs do not count where one thread does all.
    template <class Step> std::vector<double> time(const Step& step, int threads) {
        std::vector<Batch> batches;
        for (const auto& solver : solvers_)
            if (solver)
                batches.emplace_back([&, own = solver.get()](i64 calls) {
                    for (i64 call = 0; call < calls; ++call) step(*own, b_, x_);
                });
        Interleaved interleaved(std::move(batches), 1.0, threads == 1 ? thread_seconds : wall_seconds);
        double spent = 0.0;
        for (std::size_t round = 0; round < least_rounds || (round < most_rounds && spent < enough_seconds); ++round)
            spent += interleaved.round();
        const std::vector<double> measured = interleaved.seconds();
        std::vector<double> seconds;
        auto next = measured.begin();
        for (const auto& solver : solvers_) seconds.push_back(solver ? *next++ : unknown);
        return seconds;
    }
};

std::vector<double> figures_of(const std::string& phase, Field& field, int threads) {
    const auto words = static_cast<std::size_t>(field.problem().complex() ? 2 : 1);
    const std::size_t length = words * static_cast<std::size_t>(field.problem().n);
    using Values = std::vector<double>;
    if (phase == "numeric") return field.time([](DirectSolver& s, const Values&, Values&) { s.factorise(); }, threads);
    if (phase == "solve100")
        return field.time([](DirectSolver& s, const Values& b, Values& x) { s.solve(b, x, many); }, threads);
    if (phase == "memory") return field.peak_bytes();
    const bool all = phase == "together";
    Values b = random_values(length), x(length);
    return field.time(
        [&](DirectSolver& s, const Values&, Values&) {
            if (all) s.analyse();
            if (all) s.factorise();
            s.solve(b, x, 1);
        },
        threads);
}

} // namespace

DirectComparison::DirectComparison(std::vector<DirectContender> contenders, std::size_t own, int threads)
    : contenders_(std::move(contenders)),
      own_(own),
      threads_(threads) {}

void DirectComparison::run(const SparseCase& which, const std::function<bool(const std::string&)>& passes) {
    const std::string name = "sparse/" + which.name + '/' + which.size;
    std::vector<std::string> wanted;
    for (const char* phase : phases)
        if (passes(name + '/' + phase)) wanted.emplace_back(phase);
    if (wanted.empty()) return;
    Field field(which.make(), contenders_, name, agreed_);
    for (const std::string& phase : wanted) {
        rows_.push_back({.problem = which.name,
                         .size = which.size,
                         .group = group_of(field.problem()),
                         .phase = phase,
                         .n = field.problem().n,
                         .figures = figures_of(phase, field, threads_),
                         .flops = phase == "numeric" ? field.flops() : 0.0});
        print(rows_.back());
    }
}

double DirectComparison::ratio(const DirectRow& row) const {
    const auto least = [&](std::size_t from, std::size_t to) {
        double best = unknown;
        for (std::size_t i = from; i < to; ++i) best = std::fmin(best, row.figures[i]);
        return best;
    };
    return least(own_, row.figures.size()) / least(0, own_);
}

void DirectComparison::print_heading() const {
    std::printf("\nFactorisation and solution, seconds, peak memory in MB as each tells it; / best: the least of the "
                "peers' figures as a multiple of the least of nxl's;\n%d thread%s\n\n%-20s %-5s %-8s",
                threads_, threads_ == 1 ? "" : "s", "problem", "size", "");
    for (const auto& contender : contenders_) std::printf(" %10s", contender.name.c_str());
    std::printf(" %7s %8s\n", "/ best", "GFLOP/s");
}

void DirectComparison::print(const DirectRow& row) const {
    const bool memory = row.phase == "memory";
    std::printf("%-20s %-5s %-8s", row.problem.c_str(), row.size.c_str(), row.phase.c_str());
    for (const double figure : row.figures) {
        if (std::isnan(figure)) std::printf(" %10s", "-");
        else if (memory) std::printf(" %10.1f", figure * 1e-6);
        else std::printf(" %10.3g", figure);
    }
    std::printf(" %7.2f", ratio(row));
    if (row.flops > 0.0) std::printf(" %8.2f", row.flops / row.figures.front() * 1e-9);
    std::printf("\n");
    std::fflush(stdout);
}

void DirectComparison::print_summary() const {
    struct Mean {
        double logarithms = 0.0;
        int count = 0;
        double least = INFINITY;
    };
    std::map<std::string, Mean> means;
    for (const DirectRow& row : rows_) {
        const double value = ratio(row);
        if (std::isnan(value)) continue;
        Mean& mean = means[row.group + ' ' + row.phase];
        mean.logarithms += std::log(value);
        mean.least = std::min(mean.least, value);
        ++mean.count;
    }
    std::printf("\n%-24s %8s %8s   / best\n", "geometric mean", "", "least");
    for (const auto& [what, mean] : means)
        std::printf("%-24s %8.2f %8.2f\n", what.c_str(), std::exp(mean.logarithms / mean.count), mean.least);
}

} // namespace nxl::bench
