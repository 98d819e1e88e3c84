// Conjugate gradients: DCG for one right-hand side, DCGMRHS for several. The library asks, this file answers with
// products, preconditioned residuals and stopping tests.
#include "method.hpp"

#include "nxl.h"

#include <algorithm>
#include <array>
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
    kFirstOfSystems = 128 // DCGMRHS: here and in dpar, nrhs entries for its own use and nrhs results
};

/// Entries of dpar, counted from 0.
enum DoubleEntry { kRelative = 0, kAbsolute = 1, kDcgSquare = 4, kDcgStep = 6, kDcgmrhsStep = 2 };

constexpr const char* kNotDefinite = "the matrix is not positive definite";
constexpr const char* kOverflow = "the numbers left the range of doubles";

/// The limit when the user named none: ten times what exact arithmetic needs, but no run without end.
int default_limit(int n) { return static_cast<int>(std::clamp(10L * n, 100L, 100000L)); }

class ConjugateGradients final : public Method<double> {
  public:
    explicit ConjugateGradients(const Settings& settings) : settings_(settings) {}

    void set_up(const SparseMatrix<double>& a) override {
        if (a.symmetry != Symmetry::symmetric && !is_symmetric(a))
            throw Refusal("method cg needs a symmetric matrix, this one is not");
        inverse_diagonal_ = diagonal(a);
        for (int i = 0; i < a.n; ++i) {
            double& d = inverse_diagonal_.data()[i];
            if (!(d > 0.0))
                throw Refusal("method cg needs a positive definite matrix, but diagonal entry " +
                              std::to_string(i + 1) + " is not positive");
            d = 1.0 / d;
        }
        a_ = &a;
        limit_ = settings_.max_iterations > 0 ? settings_.max_iterations : default_limit(a.n);
    }

    Outcome solve(const Block<double>& b, Block<double>& x, const Observer& observe) override {
        return b.count == 1 ? solve_one(b.column(0), x.column(0), observe) : solve_several(b, x, observe);
    }

  private:
    bool preconditioned() const { return settings_.preconditioner == "jacobi"; }
    void precondition(const double* r, double* z) const {
        for (int i = 0; i < a_->n; ++i) z[i] = inverse_diagonal_.data()[i] * r[i];
    }
    void set_flags(int* ipar) const {
        ipar[kReportErrors] = ipar[kReportWarnings] = 0; // the program says in its own words what went wrong
        ipar[kTestLimit] = ipar[kTestCaller] = 1;
        ipar[kPreconditioned] = preconditioned();
    }
    Outcome solve_one(const double* b, double* x, const Observer& observe) const;
    Outcome solve_several(const Block<double>& b, Block<double>& x, const Observer& observe) const;

    const Settings settings_;
    const SparseMatrix<double>* a_ = nullptr;
    std::vector<double> inverse_diagonal_;
    int limit_ = 0;
};

/// DCG's own residual test looks at r'z once a preconditioner is on, a norm that nobody asked for. So the test is made
/// here, on the norm of r, with and without one.
Outcome ConjugateGradients::solve_one(const double* b, double* x, const Observer& observe) const {
    const int n = a_->n, one = 1;
    std::array<int, 128> ipar{};
    std::array<double, 128> dpar{};
    std::vector<double> tmp(4 * static_cast<std::size_t>(n));
    double *p = tmp.data(), *ap = p + n, *r = ap + n, *z = r + n;
    const auto residual_norm = [&] { return preconditioned() ? dnrm2(&n, r, &one) : std::sqrt(dpar[kDcgSquare]); };

    int request = 0;
    DCG_INIT(&n, x, b, &request, ipar.data(), dpar.data(), tmp.data());
    set_flags(ipar.data());
    ipar[kMaxIterations] = limit_;
    Outcome outcome;
    double initial = 0.0;
    for (;;) {
        DCG(&n, x, b, &request, ipar.data(), dpar.data(), tmp.data());
        if (request == kProduct) {
            multiply(*a_, p, ap);
            continue;
        }
        if (request == kPrecondition) {
            precondition(r, z);
            continue;
        }
        const double norm = residual_norm();
        if (ipar[kIteration] == 0) initial = norm;
        outcome.residual = initial > 0.0 ? norm / initial : norm;
        outcome.converged = outcome.residual <= settings_.tolerance;
        if (request < 0 || dpar[kDcgStep] < 0.0) outcome.trouble = kNotDefinite;
        if (!std::isfinite(norm)) {
            outcome.trouble = kOverflow;
            outcome.residual = std::numeric_limits<double>::infinity();
        }
        observe({0, ipar[kIteration], outcome.residual});
        if (request != kTest || outcome.converged || !outcome.trouble.empty()) break;
    }
    int iterations = 0;
    DCG_GET(&n, x, b, &request, ipar.data(), dpar.data(), tmp.data(), &iterations);
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

Outcome ConjugateGradients::solve_several(const Block<double>& b, Block<double>& x, const Observer& observe) const {
    const int n = a_->n, count = b.count;
    const auto systems = static_cast<std::size_t>(count);
    Block<double> unit = b;
    const auto norms = normalise(unit);
    std::vector<int> ipar(kFirstOfSystems + 2 * systems, 0);
    std::vector<double> dpar(kFirstOfSystems + 2 * systems, 0.0);
    std::vector<double> tmp((systems + 3) * static_cast<std::size_t>(n));
    double *p = tmp.data(), *ap = p + n, *z = ap + n, *residuals = z + n;
    double* result = dpar.data() + kFirstOfSystems + count;

    int request = 0, method = 0;
    DCGMRHS_INIT(&n, x.value.data(), &count, unit.value.data(), &method, &request, ipar.data(), dpar.data(),
                 tmp.data());
    set_flags(ipar.data());
    ipar[kTestResidual] = 1;
    ipar[kMaxIterations] = std::max(1, limit_ - 1); // DCGMRHS makes one more than this
    dpar[kRelative] = 0.0;
    dpar[kAbsolute] = settings_.tolerance;
    std::fill_n(result, count, std::numeric_limits<double>::infinity()); // systems that are never reached
    Outcome outcome;
    while (outcome.trouble.empty()) {
        DCGMRHS(&n, x.value.data(), &count, unit.value.data(), &request, ipar.data(), dpar.data(), tmp.data());
        const int system = ipar[kSystem] - 1;
        if (request == kFinished) break;
        if (request == kProduct) multiply(*a_, p, ap);
        if (request == kPrecondition) precondition(residuals + std::ptrdiff_t{n} * system, z);
        if (request != kTest) continue;
        if (dpar[kDcgmrhsStep] < 0.0) outcome.trouble = kNotDefinite;
        if (!std::isfinite(result[system])) outcome.trouble = kOverflow;
        observe({system, ipar[kIteration], result[system]});
    }
    std::vector<int> iterations(systems);
    DCGMRHS_GET(&n, x.value.data(), &count, unit.value.data(), &request, ipar.data(), dpar.data(), tmp.data(),
                iterations.data());
    for (int j = 0; j < count; ++j) {
        const double scale = norms.data()[j];
        std::for_each_n(x.column(j), n, [scale](double& value) { value *= scale; });
        outcome.iterations += iterations.data()[j];
        if (!(result[j] <= outcome.residual)) outcome.residual = result[j];
    }
    outcome.converged = std::all_of(result, result + count, [&](double r) { return r <= settings_.tolerance; });
    return outcome;
}

} // namespace

std::unique_ptr<Method<double>> make_conjugate_gradients(const Settings& settings) {
    return std::make_unique<ConjugateGradients>(settings);
}

} // namespace solve
