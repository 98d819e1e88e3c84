// Conjugate gradients: DCG for one right-hand side, DCGMRHS for several. The library asks, this file answers with
// products, preconditioned residuals and stopping tests.
#include "method.hpp"
#include "preconditioner.hpp"
#include "residual.hpp"

#include "nxl.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace solve {
namespace {

/// What the solvers ask for between calls.
enum Request { kFinished = 0, kProduct = 1, kTest = 2, kPrecondition = 3 };

/// Entries of ipar, counted from 0.
enum IntegerEntry {
    kSystem = 2, // DCGMRHS: the right-hand side, from 1, that the request is about
    kIteration = 3,
    kMaxIterations = 4,
    kReportErrors = 5,
    kReportWarnings = 6,
    kTestLimit = 7,
    kTestResidual = 8,
    kTestCaller = 9,
    kPreconditioned = 10,
    kSeed = 29,           // DCGMRHS: the system being solved, from 1; beyond the last at the end
    kFirstOfSystems = 128 // DCGMRHS: here and in dpar, nrhs entries for its own use and nrhs results
};

/// Entries of dpar, counted from 0.
enum DoubleEntry {
    kRelative = 0,
    kAbsolute = 1,
    kDcgSquare = 4,
    kDcgStep = 6,
    kDcgmrhsStep = 2,
    kDcgmrhsSquare = 30,   // r'z
    kDcgmrhsCurvature = 32 // p'Ap
};

constexpr int kUnit = 1; // stride

constexpr const char* kNotDefinite = "the matrix is not positive definite";
constexpr const char* kOverflow = "the numbers left the range of doubles";

/// The arrays that hold the state of a run, and the columns of the last one that the solvers and we share.
struct Arrays {
    std::vector<int> ipar;
    std::vector<double> dpar, tmp;
    double *p, *ap, *third, *fourth; // DCG: r and z; DCGMRHS: z and the first of the residuals

    Arrays(int n, int systems, int columns)
        : ipar(static_cast<std::size_t>(kFirstOfSystems + 2 * systems)),
          dpar(ipar.size()),
          tmp(static_cast<std::size_t>(columns) * static_cast<std::size_t>(n)),
          p(tmp.data()),
          ap(p + n),
          third(ap + n),
          fourth(third + n) {}
};

/// One right-hand side on its way.
struct System {
    int number = 0;
    const double* b = nullptr;
    double* x = nullptr;
    double initial = 0.0, target = 0.0, residual = 0.0; // 2-norms; of b - A x as it was computed last
    int iterations = 0;
    bool ended = false;
    std::string trouble;

    bool reached() const { return residual <= target; }
    double reduced() const { return relative_norm(residual, initial); }
};

/// What the recurrence calls the residual, against what it is: compared now and then, which costs a product.
class Truth {
  public:
    explicit Truth(const SparseMatrix<double>& a) : a_(a), r_(static_cast<std::size_t>(a.n)) {}

    /// Whether to stop here: the recurrence has parted from b - A x, or that has not become smaller for long.
    bool stops(int iteration, double recurrence, const double* b, const double* x) {
        constexpr int kInterval = 100, kLong = 1000; // iterations
        if (iteration == 0) remember(recurrence, 0);
        if (iteration == 0 || iteration % kInterval != 0) return false;
        const double computed = evaluate_residual(a_, b, x, r_.data());
        if (computed < 0.99 * best_) remember(computed, iteration);
        return computed > 2.0 * recurrence || iteration - best_at_ > std::max(kLong, a_.n);
    }

  private:
    void remember(double residual, int iteration) {
        best_ = residual;
        best_at_ = iteration;
    }

    const SparseMatrix<double>& a_;
    std::vector<double> r_;
    double best_ = 0.0;
    int best_at_ = 0;
};

/// A round solves A D = R for the residuals R of the systems that are not solved yet, each scaled to norm 1: so
/// tolerances mean the same for all, and nothing leaves the range of doubles by being squared.
struct Round {
    std::vector<System*> systems;
    Block<double> r, d;
    std::vector<double> norms;   // of the residuals, before they were scaled
    double tolerance = 1.0;      // for the norms of the columns of R - A D
    int limit = 0;               // of iterations for each system
    std::vector<int> iterations; // made for each
    std::size_t begun = 0;       // the first so many had their turn
    std::string trouble;         // of the last of these

    int count() const { return static_cast<int>(systems.size()); }
};

class ConjugateGradients final : public Method<double> {
  public:
    explicit ConjugateGradients(const Settings& settings) : settings_(settings) {}

    void set_up(const SparseMatrix<double>& a) override;
    Outcome solve(const Block<double>& b, Block<double>& x, const Observer& observe) override;
    std::string description() const override { return "cg, " + description_of_iteration(settings_); }

  private:
    Round prepare(std::vector<System>& systems) const;
    void solve_one(Round& round, const Observer& observe) const;
    void solve_several(Round& round, const Observer& observe) const;
    void finish(const Round& round) const;
    void set_flags(int* ipar) const;
    bool preconditioned() const { return preconditioner_ != nullptr; }

    const Settings settings_;
    const SparseMatrix<double>* a_ = nullptr;
    std::unique_ptr<Preconditioner> preconditioner_;
    int limit_ = 0;
};

void ConjugateGradients::set_up(const SparseMatrix<double>& a) {
    if (a.symmetry != Symmetry::symmetric && !is_symmetric(a))
        throw Refusal("method cg needs a symmetric matrix, this one is not");
    const auto positive = [](double value) { return value > 0.0; };
    const auto d = diagonal(a);
    const auto bad = std::ranges::find_if_not(d, positive);
    if (bad != d.end())
        throw Refusal("method cg needs a positive definite matrix, but diagonal entry " +
                      std::to_string(bad - d.begin() + 1) + " is not positive");
    preconditioner_ = make_preconditioner(settings_, a);
    if (preconditioner_ && !std::ranges::all_of(preconditioner_->inverse_pivots(), positive))
        throw Refusal("method cg needs a positive definite preconditioner, but " + settings_.preconditioner +
                      " has a pivot that is not positive");
    a_ = &a;
    limit_ = settings_.max_iterations > 0 ? settings_.max_iterations : default_limit(a.n);
}

void ConjugateGradients::set_flags(int* ipar) const {
    ipar[kReportErrors] = ipar[kReportWarnings] = 0; // the program says in its own words what went wrong
    ipar[kTestLimit] = ipar[kTestCaller] = 1;
    ipar[kPreconditioned] = preconditioned();
}

/// Tells an iteration of the k-th system of a round; each is told once, also where a round begins with the last one.
void tell(const Round& round, std::size_t k, int iteration, double norm, const Observer& observe) {
    const System& system = *round.systems[k];
    if (iteration == 0 && system.iterations > 0) return;
    const double scale = system.initial > 0.0 ? round.norms[k] / system.initial : 0.0;
    observe({system.number, system.iterations + iteration, norm * scale});
}

Round ConjugateGradients::prepare(std::vector<System>& systems) const {
    Round round;
    for (System& system : systems)
        if (!system.ended) round.systems.push_back(&system);
    round.r = round.d = Block<double>(a_->n, round.count());
    round.iterations.resize(round.systems.size());
    round.limit = limit_;
    for (int k = 0; k < round.count(); ++k) {
        const System& system = *round.systems[static_cast<std::size_t>(k)];
        double* r = round.r.column(k);
        const double norm = evaluate_residual(*a_, system.b, system.x, r);
        std::for_each_n(r, a_->n, [norm](double& value) { value /= norm; });
        round.norms.push_back(norm);
        round.tolerance = std::min(round.tolerance, system.target / norm);
        round.limit = std::min(round.limit, limit_ - system.iterations);
    }
    return round;
}

/// DCG's own residual test looks at r'z once a preconditioner is on, a norm that nobody asked for. So the test is made
/// here, on the norm of r, with and without one.
void ConjugateGradients::solve_one(Round& round, const Observer& observe) const {
    const int n = a_->n;
    const double* b = round.r.column(0);
    double* x = round.d.column(0);
    Arrays run(n, 0, 4);
    int *ipar = run.ipar.data(), request = 0;
    double *dpar = run.dpar.data(), *tmp = run.tmp.data(), *r = run.third, *z = run.fourth;
    DCG_INIT(&n, x, b, &request, ipar, dpar, tmp);
    set_flags(ipar);
    ipar[kMaxIterations] = round.limit;
    round.begun = 1;
    Truth truth(*a_);
    bool stops = false;
    do {
        DCG(&n, x, b, &request, ipar, dpar, tmp);
        if (request == kProduct) {
            multiply(*a_, run.p, run.ap);
        } else if (request == kPrecondition) {
            preconditioner_->apply(r, z);
        } else { // our test, or the end
            const double norm = preconditioned() ? dnrm2(&n, r, &kUnit) : std::sqrt(dpar[kDcgSquare]);
            if (!(request >= 0 && dpar[kDcgStep] >= 0.0)) round.trouble = kNotDefinite;
            if (!std::isfinite(norm)) round.trouble = kOverflow;
            tell(round, 0, ipar[kIteration], norm, observe);
            stops = norm <= round.tolerance || !round.trouble.empty() || truth.stops(ipar[kIteration], norm, b, x);
        }
    } while (request > kFinished && !stops);
    DCG_GET(&n, x, b, &request, ipar, dpar, tmp, round.iterations.data());
}

void ConjugateGradients::solve_several(Round& round, const Observer& observe) const {
    const int n = a_->n, count = round.count(), method = 0;
    double *x = round.d.value.data(), *b = round.r.value.data();
    Arrays run(n, count, count + 3);
    int *ipar = run.ipar.data(), request = 0;
    double *dpar = run.dpar.data(), *tmp = run.tmp.data(), *z = run.third, *residuals = run.fourth;
    const double* reduced = dpar + kFirstOfSystems + count; // the relative residual norm of each system
    DCGMRHS_INIT(&n, x, &count, b, &method, &request, ipar, dpar, tmp);
    set_flags(ipar);
    ipar[kTestResidual] = 1;
    ipar[kMaxIterations] = round.limit - 1; // DCGMRHS makes one more than this
    dpar[kRelative] = 0.0;
    dpar[kAbsolute] = round.tolerance; // at the start of the norm itself, later of the relative one: here the same
    Truth truth(*a_);
    bool stops = false;
    do {
        DCGMRHS(&n, x, &count, b, &request, ipar, dpar, tmp);
        const int system = ipar[kSystem] - 1;
        const std::ptrdiff_t column = std::ptrdiff_t{n} * system;
        if (request == kProduct) multiply(*a_, run.p, run.ap);
        if (request == kPrecondition) preconditioner_->apply(residuals + column, z);
        if (request == kTest) {
            if (dpar[kDcgmrhsStep] < 0.0) round.trouble = kNotDefinite;
            if (!std::isfinite(reduced[system])) round.trouble = kOverflow;
            tell(round, static_cast<std::size_t>(system), ipar[kIteration], reduced[system], observe);
            stops = truth.stops(ipar[kIteration] - 1, reduced[system], b + column, x + column);
        }
    } while (request != kFinished && round.trouble.empty() && !stops);
    DCGMRHS_GET(&n, x, &count, b, &request, ipar, dpar, tmp, round.iterations.data());
    // A seed that meets its solution exactly leaves no direction to go on with, and the run ends for all systems: those
    // behind it had no turn.
    round.begun = static_cast<std::size_t>(std::min(ipar[kSeed], count));
    if (ipar[kSeed] <= count) round.iterations[round.begun - 1] = ipar[kIteration];
    const bool broken = request == kFinished && ipar[kSeed] <= count;
    if (broken && dpar[kDcgmrhsCurvature] == 0.0 && dpar[kDcgmrhsSquare] != 0.0) round.trouble = kNotDefinite;
}

/// Adds what a round has found, and judges by b - A x who goes on: the recurrence may have fallen below it by rounding.
void ConjugateGradients::finish(const Round& round) const {
    std::vector<double> r(static_cast<std::size_t>(a_->n));
    for (int k = 0; k < round.count(); ++k) {
        const auto place = static_cast<std::size_t>(k);
        System& system = *round.systems[place];
        const double* d = round.d.column(k);
        if (std::all_of(d, d + a_->n, [](double value) { return std::isfinite(value); }))
            daxpy(&a_->n, &round.norms[place], d, &kUnit, system.x, &kUnit);
        system.residual = evaluate_residual(*a_, system.b, system.x, r.data());
        system.iterations += round.iterations[place];
        system.ended = system.reached() || system.iterations >= limit_;
        if (system.ended) continue;
        if (place + 1 == round.begun) system.trouble = round.trouble;
        const bool came_to_its_end = place < round.begun && round.iterations[place] < round.limit;
        if (came_to_its_end && system.trouble.empty() && !(system.residual < 0.5 * round.norms[place]))
            system.trouble = reason_of_standstill(is_rounding(*a_, system.b, system.x, r.data()));
        system.ended = !system.trouble.empty();
    }
}

Outcome ConjugateGradients::solve(const Block<double>& b, Block<double>& x, const Observer& observe) {
    std::vector<System> systems(static_cast<std::size_t>(b.count));
    for (int j = 0; j < b.count; ++j) {
        System& system = systems[static_cast<std::size_t>(j)];
        system.number = j;
        system.b = b.column(j);
        system.x = x.column(j);
        std::fill_n(system.x, a_->n, 0.0);
        system.initial = system.residual = dnrm2(&a_->n, system.b, &kUnit);
        system.target = settings_.tolerance * system.initial;
        if (!std::isfinite(system.initial)) system.trouble = kOverflow;
        system.ended = system.initial == 0.0 || !system.trouble.empty();
    }
    for (Round round = prepare(systems); round.count() > 0; round = prepare(systems)) {
        if (round.count() == 1) solve_one(round, observe);
        else solve_several(round, observe);
        finish(round);
    }
    Outcome outcome;
    outcome.converged = true;
    for (const System& system : systems) {
        outcome.iterations += system.iterations;
        outcome.residual = std::max(outcome.residual, system.reduced());
        outcome.converged = outcome.converged && system.reached() && system.trouble.empty();
        if (outcome.trouble.empty()) outcome.trouble = system.trouble;
    }
    return outcome;
}

} // namespace

std::unique_ptr<Method<double>> make_conjugate_gradients(const Settings& settings) {
    return std::make_unique<ConjugateGradients>(settings);
}

} // namespace solve
