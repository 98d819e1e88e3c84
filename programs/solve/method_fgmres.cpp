// Flexible GMRES with restarts, for any square real matrix: DFGMRES asks, this file answers with products,
// preconditioned vectors and stopping tests. Right-hand sides are solved one after the other.
#include "method.hpp"
#include "residual.hpp"
#include "treatment.hpp"

#include "nxl.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

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

constexpr const char* kOverflow = "the numbers left the range of doubles";

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
    int limit = 0, window = 0;          // of iterations in all; of those over which the residual has to fall
    int iterations = 0, seen = -1;      // of the runs before this one; the last that was observed, in all
    double residual = 0.0;              // now
    bool patient = true;                // goes on where the limit comes before the target
    bool stands_still = false, too_slow = false;
    std::string trouble;

    Course(int number, const Observer& observer) : system(number), observe(observer) {}
    bool reached() const { return residual <= target; }
    bool stopped() const { return !trouble.empty() || stands_still || too_slow; }
    double reduced() const { return relative_norm(residual, initial); }
    void look(int iteration, double norm) {
        residual = norm;
        if (!std::isfinite(norm)) {
            residual = std::numeric_limits<double>::infinity();
            trouble = kOverflow;
        }
        if (iteration > seen) observe({system, seen = iteration, reduced()});
    }
    /// At the start of a run, where the residual is the computed one: where the run before, which had come to its end
    /// by the recurrence, has not even halved it, another will not.
    void begin_run() {
        stands_still = !reached() && !(residual < 0.5 * run_start_);
        run_start_ = residual;
    }
    /// At the start of a cycle, where it is the computed one, too.
    void begin_cycle(int iteration) {
        if (std::isinf(mark_)) mark_ = residual;
        const bool grows = residual > 2.0 * mark_; // never, but by rounding under bad factors
        if (iteration - mark_iteration_ < window && !grows) return;
        stands_still = !(residual < 0.99 * mark_);
        const double per_iteration = std::log(mark_ / residual) / (iteration - mark_iteration_);
        too_slow = !patient && std::log(residual / target) > per_iteration * (limit - iteration);
        mark_ = residual;
        mark_iteration_ = iteration;
    }
    /// Under another preconditioner, from where it is.
    void begin_anew() {
        trouble.clear();
        stands_still = too_slow = false;
        run_start_ = mark_ = std::numeric_limits<double>::infinity();
        mark_iteration_ = iterations;
    }

  private:
    double run_start_ = std::numeric_limits<double>::infinity(), mark_ = run_start_; // earlier residuals
    int mark_iteration_ = 0;
};

class Fgmres final : public Method<double> {
  public:
    explicit Fgmres(const Settings& settings) : settings_(settings) {}

    void set_up(const SparseMatrix<double>& a) override {
        restart_ = std::min(settings_.restart, a.n);
        if (work_size(a.n, restart_) > std::numeric_limits<int>::max())
            throw Refusal("method fgmres needs a --restart below " + std::to_string(restart_) +
                          " for this matrix: 32-bit positions do not reach over its vectors");
        candidates_.emplace(settings_, a);
        a_ = &a;
        limit_ = settings_.max_iterations > 0 ? settings_.max_iterations : default_limit(a.n);
    }
    Outcome solve(const Block<double>& b, Block<double>& x, const Observer& observe) override;
    std::string description() const override {
        return "fgmres, restart " + std::to_string(restart_) + ", " +
               description_of_iteration(settings_, candidates_->note());
    }

  private:
    void solve_one(Arrays& run, std::vector<double> b, double* x, Course& course);
    void run_to_end(Arrays& run, double* b, double* x, Course& course) const;
    bool iterate(Arrays& run, double* b, double* x, Course& course) const;
    void answer(int request, Arrays& run) const;

    const Settings settings_;
    const SparseMatrix<double>* a_ = nullptr;
    std::optional<Candidates> candidates_;
    int restart_ = 0, limit_ = 0;
};

void Fgmres::answer(int request, Arrays& run) const {
    const double* from = run.tmp.get() + run.ipar[kFrom] - 1;
    double* to = run.tmp.get() + run.ipar[kTo] - 1;
    if (request == kProduct) multiply(*a_, from, to);
    if (request == kPrecondition) candidates_->current()->apply(from, to);
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
    ipar[kPreconditioned] = candidates_->current() != nullptr;
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
            if (at_start && ipar[kIteration] == 0) course.begin_run();
            if (at_start) course.begin_cycle(course.iterations + ipar[kIteration]);
            reached = course.reached();
        }
        if (request < kFinished) course.trouble = "the iteration broke down";
        if (request == kIsZero && ipar[kInner] > 0 && dpar[kNewNorm] == 0.0) {
            if (leaves_nothing(run)) course.trouble = "the matrix is singular";
            else course.residual = 0.0; // the solution is in the space
            break;
        }
    } while (request > kFinished && !reached && !course.stopped());
    const bool at_once = reached && ipar[kIteration] == 0;
    if (course.trouble.empty()) DFGMRES_GET(&a_->n, x, b, &request, ipar, dpar, tmp, &iterations);
    course.iterations += ipar[kIteration];
    return at_once;
}

/// Rounding lets the residual of the recurrence fall below the true one. So a run that has come to its end is followed
/// by another, which begins with b - A x: mostly that is small enough at once.
void Fgmres::run_to_end(Arrays& run, double* b, double* x, Course& course) const {
    bool verified = false, goes_on = true;
    while (!verified && goes_on) {
        verified = iterate(run, b, x, course);
        goes_on = !course.stopped() && (course.reached() || course.iterations < limit_);
    }
}

/// Under one preconditioner after the other, until one of them leads to the target. What counts in the end is b - A x.
void Fgmres::solve_one(Arrays& run, std::vector<double> b, double* x, Course& course) {
    const int one = 1;
    std::vector<double> r(b);
    course.initial = dnrm2(&a_->n, b.data(), &one);
    course.target = settings_.tolerance * course.initial;
    course.limit = limit_;
    course.window = std::clamp(10 * restart_, 100, 1000);
    std::fill_n(x, a_->n, 0.0);
    if (!std::isfinite(course.initial)) return course.look(0, course.initial);
    course.residual = course.initial;
    for (;;) {
        const std::vector<double> start(x, x + a_->n);
        const double before = course.residual;
        course.patient = !candidates_->more();
        run_to_end(run, b.data(), x, course);
        course.residual = evaluate_residual(*a_, b.data(), x, r.data());
        if (!(course.residual <= before)) { // never, but by rounding and by overflow
            std::ranges::copy(start, x);
            course.residual = evaluate_residual(*a_, b.data(), x, r.data());
        }
        if (course.reached()) return course.trouble.clear();
        const bool rounding = is_rounding(*a_, b.data(), x, r.data());
        if (course.stands_still || (course.too_slow && rounding)) course.trouble = reason_of_standstill(rounding);
        if (rounding || course.iterations >= limit_) return;
        // Too slow is better than nothing.
        if (!candidates_->advance() && !course.too_slow) return;
        course.begin_anew();
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
