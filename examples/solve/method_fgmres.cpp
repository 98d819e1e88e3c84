// Flexible GMRES with restarts, for any square real matrix: DFGMRES asks, this file answers with products,
// preconditioned vectors and stopping tests. Right-hand sides are solved one after the other.
#include "method.hpp"
#include "preconditioner.hpp"

#include "nxl.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace solve {
namespace {

/// What DFGMRES asks for between calls.
enum Request { kFinished = 0, kProduct = 1, kTest = 2, kPrecondition = 3, kIsZero = 4 };

/// Entries of ipar, counted from 0.
enum IntegerEntry {
    kIteration = 3,
    kMaxIterations = 4,
    kReportErrors = 5,
    kReportWarnings = 6,
    kTestLimit = 7,
    kTestCaller = 9,
    kPreconditioned = 10,
    kInner = 13, // iterations since the last restart
    kRestart = 14,
    kTriangle = 15, // of tmp, from 1: R, by columns
    kFrom = 21,     // of tmp, from 1: the vector that the request is about, and where its image goes
    kTo = 22
};

/// Entries of dpar, counted from 0.
enum DoubleEntry { kResidual = 4, kNewNorm = 6 };

/// The elements of tmp.
std::size_t work_size(int n, int restart) {
    const auto rows = static_cast<std::size_t>(n), m = static_cast<std::size_t>(restart);
    return (2 * m + 1) * rows + m * (m + 9) / 2 + 1;
}

/// The arrays that hold the state of a run.
struct Arrays {
    std::array<int, 128> ipar{};
    std::array<double, 128> dpar{};
    std::unique_ptr<double[]> tmp; // what is never written costs no memory: most of it in a short run

    Arrays(int n, int restart) : tmp(std::make_unique_for_overwrite<double[]>(work_size(n, restart))) {}
};

/// One right-hand side on its way.
struct Course {
    int system;
    const Observer& observe;
    double target = 0.0, initial = 0.0; // residual norms
    int iterations = 0, seen = -1;      // of the runs before this one; the last that was observed, in all
    double residual = 0.0, start = std::numeric_limits<double>::infinity(); // now, and where the latest run began
    std::string trouble;

    Course(int number, const Observer& observer) : system(number), observe(observer) {}
    bool reached() const { return residual <= target; }
    double reduced() const { return initial > 0.0 ? residual / initial : 0.0; }
    void look(int iteration, double norm) {
        residual = norm;
        if (!std::isfinite(norm)) {
            residual = std::numeric_limits<double>::infinity();
            trouble = "the numbers left the range of doubles";
        }
        if (iteration > seen) observe({system, seen = iteration, reduced()});
    }
    /// At the start of a run: where the one before has not even halved the residual, rounding is all that is left.
    void begin() {
        if (!reached() && !(residual < 0.5 * start)) trouble = "rounding leaves no more to gain";
        start = residual;
    }
};

class Fgmres final : public Method<double> {
  public:
    explicit Fgmres(const Settings& settings) : settings_(settings) {}

    void set_up(const SparseMatrix<double>& a) override {
        restart_ = std::min(settings_.restart, a.n);
        if (work_size(a.n, restart_) > std::numeric_limits<int>::max())
            throw Refusal("method fgmres needs a --restart below " + std::to_string(restart_) +
                          " for this matrix: 32-bit positions do not reach over its vectors");
        preconditioner_ = make_preconditioner(settings_, a);
        a_ = &a;
        limit_ = settings_.max_iterations > 0 ? settings_.max_iterations : default_limit(a.n);
    }
    Outcome solve(const Block<double>& b, Block<double>& x, const Observer& observe) override;
    std::string description() const override {
        return "fgmres, restart " + std::to_string(restart_) + ", " + description_of_iteration(settings_);
    }

  private:
    void solve_one(Arrays& run, std::vector<double> b, double* x, Course& course) const;
    bool iterate(Arrays& run, double* b, double* x, Course& course) const;
    void answer(int request, Arrays& run) const;

    const Settings settings_;
    const SparseMatrix<double>* a_ = nullptr;
    std::unique_ptr<Preconditioner> preconditioner_;
    int restart_ = 0, limit_ = 0;
};

void Fgmres::answer(int request, Arrays& run) const {
    const double* from = run.tmp.get() + run.ipar[kFrom] - 1;
    double* to = run.tmp.get() + run.ipar[kTo] - 1;
    if (request == kProduct) multiply(*a_, from, to);
    if (request == kPrecondition) preconditioner_->apply(from, to);
}

/// Whether the space is exhausted and yet leaves a system that has no solution in it: R is about to be singular.
bool leaves_nothing(const Arrays& run) {
    const int k = run.ipar[kInner];
    return run.tmp[static_cast<std::size_t>(run.ipar[kTriangle] - 1 + k * (k + 1) / 2 - 1)] == 0.0;
}

/// A run from x on, until its residual, by the recurrence, is small enough. Returns whether its very first one was.
bool Fgmres::iterate(Arrays& run, double* b, double* x, Course& course) const {
    int *ipar = run.ipar.data(), request = 0, iterations = 0;
    double *dpar = run.dpar.data(), *tmp = run.tmp.get();
    DFGMRES_INIT(&a_->n, x, b, &request, ipar, dpar, tmp);
    ipar[kReportErrors] = ipar[kReportWarnings] = 0; // the program says in its own words what went wrong
    ipar[kTestLimit] = ipar[kTestCaller] = 1;
    ipar[kPreconditioned] = preconditioner_ != nullptr;
    ipar[kMaxIterations] = limit_ - course.iterations;
    ipar[kRestart] = restart_;
    DFGMRES_CHECK(&a_->n, x, b, &request, ipar, dpar, tmp);
    bool reached = false;
    do {
        DFGMRES(&a_->n, x, b, &request, ipar, dpar, tmp);
        answer(request, run);
        const bool at_start = request == kIsZero && ipar[kInner] == 0;
        if (request == kTest || request == kFinished || at_start) {
            course.look(course.iterations + ipar[kIteration], dpar[kResidual]);
            if (at_start && ipar[kIteration] == 0) course.begin();
            reached = course.reached();
        }
        if (request < kFinished) course.trouble = "the iteration broke down";
        if (request == kIsZero && ipar[kInner] > 0 && dpar[kNewNorm] == 0.0) {
            if (leaves_nothing(run)) course.trouble = "the matrix is singular";
            else course.residual = 0.0; // the solution is in the space
            break;
        }
    } while (request > kFinished && !reached && course.trouble.empty());
    const bool at_once = reached && ipar[kIteration] == 0;
    if (course.trouble.empty()) DFGMRES_GET(&a_->n, x, b, &request, ipar, dpar, tmp, &iterations);
    course.iterations += ipar[kIteration];
    return at_once;
}

/// Rounding lets the residual of the recurrence fall below the true one. So a run that has come to its end is followed
/// by another, which begins with b - A x: mostly that is small enough at once.
void Fgmres::solve_one(Arrays& run, std::vector<double> b, double* x, Course& course) const {
    const int one = 1;
    course.initial = dnrm2(&a_->n, b.data(), &one);
    course.target = settings_.tolerance * course.initial;
    std::fill_n(x, a_->n, 0.0);
    bool verified = false, goes_on = true;
    while (!verified && goes_on) {
        verified = iterate(run, b.data(), x, course);
        goes_on = course.trouble.empty() && (course.reached() || course.iterations < limit_);
    }
}

Outcome Fgmres::solve(const Block<double>& b, Block<double>& x, const Observer& observe) {
    Arrays run(a_->n, restart_);
    Outcome outcome;
    outcome.converged = true;
    for (int j = 0; j < b.count; ++j) {
        Course course(j, observe);
        solve_one(run, {b.column(j), b.column(j) + b.n}, x.column(j), course);
        outcome.iterations += course.iterations;
        outcome.residual = std::max(outcome.residual, course.reduced());
        outcome.converged = outcome.converged && course.reached() && course.trouble.empty();
        if (outcome.trouble.empty()) outcome.trouble = course.trouble;
    }
    return outcome;
}

} // namespace

std::unique_ptr<Method<double>> make_fgmres(const Settings& settings) { return std::make_unique<Fgmres>(settings); }

} // namespace solve
