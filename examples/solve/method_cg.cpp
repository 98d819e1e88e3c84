// Conjugate gradients: DCG for one right-hand side, DCGMRHS for several. The library asks, this file answers with
// products, preconditioned residuals and stopping tests.
#include "method.hpp"
#include "preconditioner.hpp"

#include "nxl.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

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
    kFirstOfSystems = 128 // DCGMRHS: here and in dpar, nrhs entries for its own use and nrhs results
};

/// Entries of dpar, counted from 0.
enum DoubleEntry { kRelative = 0, kAbsolute = 1, kDcgSquare = 4, kDcgStep = 6, kDcgmrhsStep = 2 };

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

class ConjugateGradients final : public Method<double> {
  public:
    explicit ConjugateGradients(const Settings& settings) : settings_(settings) {}

    void set_up(const SparseMatrix<double>& a) override;
    Outcome solve(const Block<double>& b, Block<double>& x, const Observer& observe) override {
        return b.count == 1 ? solve_one(b.column(0), x.column(0), observe) : solve_several(b, x, observe);
    }

    std::string description() const override { return "cg, " + description_of_iteration(settings_); }

  private:
    Outcome solve_one(const double* b, double* x, const Observer& observe) const;
    Outcome solve_several(Block<double> b, Block<double>& x, const Observer& observe) const;
    Outcome solve_alone(const Block<double>& b, Block<double>& x, int system, const Observer& observe) const;
    Outcome judge(double norm, double initial, bool definite) const;
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

/// Where a run with one right-hand side stands.
Outcome ConjugateGradients::judge(double norm, double initial, bool definite) const {
    Outcome outcome;
    outcome.residual = initial > 0.0 ? norm / initial : 0.0;
    outcome.converged = outcome.residual <= settings_.tolerance;
    if (!definite) outcome.trouble = kNotDefinite;
    if (!std::isfinite(norm)) {
        outcome.trouble = kOverflow;
        outcome.residual = std::numeric_limits<double>::infinity();
    }
    return outcome;
}

/// DCG's own residual test looks at r'z once a preconditioner is on, a norm that nobody asked for. So the test is made
/// here, on the norm of r, with and without one.
Outcome ConjugateGradients::solve_one(const double* b, double* x, const Observer& observe) const {
    const int n = a_->n, one = 1;
    Arrays run(n, 0, 4);
    int *ipar = run.ipar.data(), request = 0;
    double *dpar = run.dpar.data(), *tmp = run.tmp.data(), *r = run.third, *z = run.fourth;
    DCG_INIT(&n, x, b, &request, ipar, dpar, tmp);
    set_flags(ipar);
    ipar[kMaxIterations] = limit_;
    Outcome outcome;
    double initial = 0.0;
    do {
        DCG(&n, x, b, &request, ipar, dpar, tmp);
        if (request == kProduct) {
            multiply(*a_, run.p, run.ap);
        } else if (request == kPrecondition) {
            preconditioner_->apply(r, z);
        } else { // our test, or the end
            const double norm = preconditioned() ? dnrm2(&n, r, &one) : std::sqrt(dpar[kDcgSquare]);
            if (ipar[kIteration] == 0) initial = norm;
            outcome = judge(norm, initial, request >= 0 && dpar[kDcgStep] >= 0.0);
            observe({0, ipar[kIteration], outcome.residual});
        }
    } while (request > kFinished && !outcome.converged && outcome.trouble.empty());
    int iterations = 0;
    DCG_GET(&n, x, b, &request, ipar, dpar, tmp, &iterations);
    outcome.iterations = iterations;
    return outcome;
}

/// Scales every column that is not zero to norm 1; returns the norms. DCGMRHS compares the initial norm itself with the
/// tolerance, and later the relative norm: on unit columns the absolute tolerance means the same at both places.
std::vector<double> normalise(Block<double>& b) {
    std::vector<double> norms;
    const int one = 1;
    for (int j = 0; j < b.count; ++j) {
        const double norm = dnrm2(&b.n, b.column(j), &one);
        norms.push_back(norm);
        if (norm > 0.0) std::for_each_n(b.column(j), b.n, [norm](double& value) { value /= norm; });
    }
    return norms;
}

void scale_columns(Block<double>& x, const std::vector<double>& factors) {
    for (int j = 0; j < x.count; ++j)
        std::for_each_n(x.column(j), x.n, [factor = factors.data()[j]](double& value) { value *= factor; });
}

Outcome ConjugateGradients::solve_alone(const Block<double>& b, Block<double>& x, int system,
                                        const Observer& observe) const {
    std::fill_n(x.column(system), x.n, 0.0); // the residual is reduced from that of zero, as for the other systems
    return solve_one(b.column(system), x.column(system),
                     [&](const Step& step) { observe({system, step.iteration, step.residual}); });
}

Outcome ConjugateGradients::solve_several(Block<double> b, Block<double>& x, const Observer& observe) const {
    const int n = a_->n, count = b.count, method = 0;
    const auto norms = normalise(b);
    Arrays run(n, count, count + 3);
    int *ipar = run.ipar.data(), request = 0;
    double *dpar = run.dpar.data(), *tmp = run.tmp.data(), *z = run.third, *residuals = run.fourth;
    double* reduced = dpar + kFirstOfSystems + count; // the relative residual norm of each system
    DCGMRHS_INIT(&n, x.value.data(), &count, b.value.data(), &method, &request, ipar, dpar, tmp);
    set_flags(ipar);
    ipar[kTestResidual] = 1;
    ipar[kMaxIterations] = limit_ - 1; // DCGMRHS makes one more than this
    dpar[kRelative] = 0.0;
    dpar[kAbsolute] = settings_.tolerance;
    std::fill_n(reduced, count, std::numeric_limits<double>::infinity()); // systems that are never reached
    Outcome outcome;
    do {
        DCGMRHS(&n, x.value.data(), &count, b.value.data(), &request, ipar, dpar, tmp);
        const int system = ipar[kSystem] - 1;
        if (request == kProduct) multiply(*a_, run.p, run.ap);
        if (request == kPrecondition) preconditioner_->apply(residuals + std::ptrdiff_t{n} * system, z);
        if (request == kTest) {
            if (dpar[kDcgmrhsStep] < 0.0) outcome.trouble = kNotDefinite;
            if (!std::isfinite(reduced[system])) outcome.trouble = kOverflow;
            observe({system, ipar[kIteration], reduced[system]});
        }
    } while (request != kFinished && outcome.trouble.empty());
    std::vector<int> iterations(norms.size());
    DCGMRHS_GET(&n, x.value.data(), &count, b.value.data(), &request, ipar, dpar, tmp, iterations.data());
    outcome.iterations = std::accumulate(iterations.begin(), iterations.end(), 0L);
    // A seed that meets its solution exactly leaves no direction to go on with, and the run ends for all systems.
    for (int j = 0; j < count && outcome.trouble.empty(); ++j) {
        if (reduced[j] <= settings_.tolerance || iterations.data()[j] >= limit_) continue;
        const Outcome alone = solve_alone(b, x, j, observe);
        reduced[j] = alone.residual;
        outcome.trouble = alone.trouble;
        outcome.iterations += alone.iterations;
    }
    scale_columns(x, norms);
    outcome.converged = std::all_of(reduced, reduced + count, [&](double r) { return r <= settings_.tolerance; });
    outcome.residual = *std::max_element(reduced, reduced + count);
    return outcome;
}

} // namespace

std::unique_ptr<Method<double>> make_conjugate_gradients(const Settings& settings) {
    return std::make_unique<ConjugateGradients>(settings);
}

} // namespace solve
