// The loops of reverse communication around dtrnlsp or dtrnlspbc and djacobi, and the covariance by dpotrf and dpotri.
#include "fit.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <new>
#include <nxl.h>

namespace fit {
namespace {

using Column = std::vector<double>;
constexpr int kSuccess = 1501, kOne = 1;

double norm(const Column& v) {
    const int n = static_cast<int>(v.size());
    return dnrm2(&n, v.data(), &kOne);
}

void check(int status) {
    if (status == 1503) throw std::bad_alloc();
    if (status != kSuccess) throw std::logic_error("the library refused a call with status " + std::to_string(status));
}

/// What the solver sees: parameters in units of their start and residuals in units of the variation of the data, so
/// that its tolerances and its one radius for all parameters mean something whatever the units of the user are.
class Problem {
  public:
    Problem(Expression& model, const Data& data, const Column& start) : model_(model), data_(data), unit_(start) {
        // Powers of two: a bound stays exactly where the user put it.
        for (double& u : unit_) u = u == 0.0 ? 1.0 : std::ldexp(1.0, std::ilogb(u));
        Column variation = data.y;
        double mean = 0.0;
        for (const double y : data.y) mean += y / data.count();
        for (std::size_t i = 0; i < variation.size(); ++i) variation[i] = (data.y[i] - mean) * weight(i);
        scale_ = norm(variation);
        if (!(scale_ > 0.0 && std::isfinite(scale_))) scale_ = 1.0;
    }

    int parameters() const { return static_cast<int>(unit_.size()); }
    int points() const { return data_.count(); }
    double x(std::size_t i) const { return data_.x[i]; }
    double scale() const { return scale_; }
    double unit(std::size_t k) const { return unit_[k]; }
    const std::string& name(std::size_t k) const { return model_.parameters()[k]; }

    Column in_units(Column p) const {
        for (std::size_t k = 0; k < p.size(); ++k) p[k] /= unit_[k];
        return p;
    }
    Column in_users_units(Column q) const {
        for (std::size_t k = 0; k < q.size(); ++k) q[k] *= unit_[k];
        return q;
    }
    Column curve(const Column& q) const {
        const Column p = in_users_units(q);
        Column y(data_.x.size());
        for (std::size_t i = 0; i < y.size(); ++i) y[i] = model_(data_.x[i], p.data());
        return y;
    }
    void residuals(const Column& q, Column& f) const {
        f = curve(q);
        for (std::size_t i = 0; i < f.size(); ++i) f[i] = (f[i] - data_.y[i]) * weight(i) / scale_;
    }

  private:
    double weight(std::size_t i) const { return data_.sigma.empty() ? 1.0 : 1.0 / data_.sigma[i]; }

    Expression& model_;
    const Data& data_;
    Column unit_; // the size of each parameter
    double scale_ = 1.0;
};

/// The derivatives of the residuals, column by column. djacobi would call the formula from several threads, each of
/// which needed a parser of its own; by reverse communication the one that we have is enough.
void differentiate(const Problem& problem, Column& q, Column& jacobian) {
    constexpr double step = 6e-6; // the cube root of the rounding error, best for central differences
    const int n = problem.parameters(), m = problem.points();
    Column forward(static_cast<std::size_t>(m)), backward(forward);
    void* handle = nullptr;
    check(djacobi_init(&handle, &n, &m, q.data(), jacobian.data(), &step));
    int request = 0;
    do {
        check(djacobi_solve(&handle, forward.data(), backward.data(), &request));
        if (request == 1) problem.residuals(q, forward);
        if (request == 2) problem.residuals(q, backward);
    } while (request != 0);
    djacobi_delete(&handle);
}

/// 2-norms of the columns of the Jacobian.
Column norms(const Column& jacobian, int m) {
    Column result;
    for (std::size_t at = 0; at < jacobian.size(); at += static_cast<std::size_t>(m))
        result.push_back(dnrm2(&m, jacobian.data() + at, &kOne));
    return result;
}

/// The solver squares the derivatives; those that would overflow it are as bad as those that are no numbers. Returns
/// the position of the first such column, or the number of columns.
std::size_t first_unusable(const Column& jacobian, int m) {
    const Column sizes = norms(jacobian, m);
    const auto bad = std::find_if(sizes.begin(), sizes.end(), [](double s) { return !(s < 1e150); });
    return static_cast<std::size_t>(bad - sizes.begin());
}

const char* reason_of(int stop_code) {
    switch (stop_code) {
    case 1: return "the limit of iterations was reached";
    case 2: return "the trust region became too small to go on";
    case 3: return "the formula meets the points exactly";
    case 4: return "no parameter that is free changes the formula any more";
    case 5: return "the steps became too short to matter";
    case 6: return "no step reduces the residual any more";
    default: return "no step could be found";
    }
}

/// A run on `q` of the solver without bounds, or of the one with them; but for their beginning they are called alike.
class Run {
  public:
    Run(const Problem& problem, Column& q, const Bounds& bounds, int limit) : problem_(problem), q_(q) {
        const int n = problem.parameters(), m = problem.points(), step_limit = 100;
        const double radius = 100.0; // the library's own choice; the first step cuts it down to its length
        const auto finite = [](double bound) { return std::isfinite(bound); };
        bounded_ = std::any_of(bounds.lower.begin(), bounds.lower.end(), finite) ||
                   std::any_of(bounds.upper.begin(), bounds.upper.end(), finite);
        check(bounded_ ? dtrnlspbc_init(&handle_, &n, &m, q.data(), bounds.lower.data(), bounds.upper.data(),
                                        tolerance_.data(), &limit, &step_limit, &radius)
                       : dtrnlsp_init(&handle_, &n, &m, q.data(), tolerance_.data(), &limit, &step_limit, &radius));
    }
    ~Run() { (bounded_ ? dtrnlspbc_delete : dtrnlsp_delete)(&handle_); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    /// Moves q to the solution and tells in `fit` how that went; returns the stop code.
    int solve(Fit& fit) {
        Column f(static_cast<std::size_t>(problem_.points())), jacobian(f.size() * q_.size());
        const auto step = bounded_ ? dtrnlspbc_solve : dtrnlsp_solve;
        int request = 0, stop = 0;
        double first = 0.0, last = 0.0;
        while (request >= 0 && fit.reason.empty()) {
            if (step(&handle_, f.data(), jacobian.data(), &request) != kSuccess) break;
            if (request == 1) problem_.residuals(q_, f);
            if (request != 2) continue;
            differentiate(problem_, q_, jacobian);
            const std::size_t bad = first_unusable(jacobian, problem_.points());
            if (bad < q_.size()) fit.reason = "the derivative by '" + problem_.name(bad) + "' is not a number";
        }
        check((bounded_ ? dtrnlspbc_get : dtrnlsp_get)(&handle_, &fit.iterations, &stop, &first, &last));
        if (fit.reason.empty()) fit.reason = reason_of(stop);
        return stop;
    }

  private:
    const Problem& problem_;
    Column& q_;
    void* handle_ = nullptr;
    bool bounded_ = false;
    // Of the radius, the residual, the derivatives and the change of the residual, the step; one without effect, and of
    // the step within bounds.
    std::array<double, 6> tolerance_{1e-14, 1e-15, 1e-15, 1e-13, 1e-10, 1e-10};
};

/// Which parameters are on a bound.
std::vector<bool> on_bounds(const Column& q, const Bounds& bounds) {
    std::vector<bool> held(q.size());
    for (std::size_t k = 0; k < q.size(); ++k) held[k] = q[k] <= bounds.lower[k] || q[k] >= bounds.upper[k];
    return held;
}

/// At a minimum the residual is at right angles to every derivative, but for those that would lead out of the bounds:
/// true when all cosines are small, or when there is nothing left but rounding. A run may also stop where its trust
/// region has shrunk on a slope.
bool is_minimum(const Column& f, const Column& jacobian, const Column& q, const Bounds& bounds) {
    constexpr double cosine = 1e-4, rounding = 1e-10;
    const int m = static_cast<int>(f.size());
    const Column sizes = norms(jacobian, m);
    const double size = norm(f);
    if (size <= rounding) return true;
    for (std::size_t k = 0; k < sizes.size(); ++k) {
        const double slope = ddot(&m, f.data(), &kOne, jacobian.data() + k * f.size(), &kOne);
        const double flat = cosine * size * sizes[k];
        const bool may_fall = q[k] > bounds.lower[k], may_rise = q[k] < bounds.upper[k];
        if (std::isnan(slope) || (may_fall && slope > flat) || (may_rise && slope < -flat)) return false;
    }
    return true;
}

/// The roots of the diagonal of (J'J)^-1 over the parameters that are free, NaN for the others. Columns are brought to
/// length 1 first: what is left of the k-th when those before it are taken out is then the k-th pivot, and one lost in
/// the error of the differences means dependence.
Column standard_errors(const Problem& problem, const Column& jacobian, const std::vector<bool>& held) {
    constexpr double least_pivot = 1e-7; // the root of what rounding leaves of 1 - 1
    const int m = problem.points();
    const Column sizes = norms(jacobian, m);
    std::vector<std::size_t> free;
    Column scaled;
    for (std::size_t k = 0; k < held.size(); ++k) {
        if (held[k]) continue;
        if (sizes[k] == 0.0) throw Refusal("parameter '" + problem.name(k) + "' has no effect on the fit");
        free.push_back(k);
        const auto column = jacobian.begin() + static_cast<long>(k) * m;
        std::transform(column, column + m, std::back_inserter(scaled), [&](double d) { return d / sizes[k]; });
    }
    Column errors(held.size(), std::nan(""));
    if (free.empty()) return errors;
    const int n = static_cast<int>(free.size());
    Column normal(free.size() * free.size());
    const double one = 1.0, zero = 0.0;
    dsyrk("L", "T", &n, &m, &one, scaled.data(), &m, &zero, normal.data(), &n);
    int info = 0;
    dpotrf("L", &n, normal.data(), &n, &info, 1);
    for (std::size_t k = 0; k < free.size() && info == 0; ++k)
        if (!(normal[k * (free.size() + 1)] > least_pivot)) info = static_cast<int>(k) + 1;
    if (info != 0)
        throw Refusal("the parameters cannot be told apart: '" +
                      problem.name(free[static_cast<std::size_t>(info) - 1]) +
                      "' does nothing that those before it do not do");
    dpotri("L", &n, normal.data(), &n, &info, 1);
    for (std::size_t k = 0; k < free.size(); ++k)
        errors[free[k]] = std::sqrt(normal[k * (free.size() + 1)]) / sizes[free[k]];
    return errors;
}

void check_input(const Problem& problem, const Column& q) {
    const int n = problem.parameters(), m = problem.points();
    if (m < n)
        throw Refusal("too few points: " + std::to_string(m) + " for " + std::to_string(n) +
                      (n == 1 ? " parameter" : " parameters"));
    Column f;
    problem.residuals(q, f);
    if (std::isfinite(norm(f))) return;
    auto worst = std::find_if(f.begin(), f.end(), [](double r) { return !std::isfinite(r); });
    if (worst == f.end())
        worst = std::max_element(f.begin(), f.end(), [](double a, double b) { return std::abs(a) < std::abs(b); });
    std::array<char, 32> x{};
    std::snprintf(x.data(), x.size(), "%.10g", problem.x(static_cast<std::size_t>(worst - f.begin())));
    throw Refusal("at the start the formula has no finite value at x = " + std::string(x.data()) +
                  "; give others by --start");
}

} // namespace

Fit fit(Expression& model, const Data& data, const std::vector<double>& start, const Bounds& bounds, int limit) {
    const Problem problem(model, data, start);
    const Bounds scaled{problem.in_units(bounds.lower), problem.in_units(bounds.upper)};
    Column q = problem.in_units(start);
    for (std::size_t k = 0; k < q.size(); ++k) q[k] = std::clamp(q[k], scaled.lower[k], scaled.upper[k]);
    check_input(problem, q);
    Fit result;
    const int stop = Run(problem, q, scaled, limit).solve(result);

    Column f, jacobian(data.x.size() * q.size());
    problem.residuals(q, f);
    differentiate(problem, q, jacobian);
    const auto held = on_bounds(q, scaled);
    result.value = problem.in_users_units(q);
    result.fitted = problem.curve(q);
    result.residual = norm(f) * problem.scale();
    result.freedom = problem.points() - static_cast<int>(std::count(held.begin(), held.end(), false));
    const bool usable = first_unusable(jacobian, problem.points()) == q.size();
    result.converged = usable && stop >= 2 && is_minimum(f, jacobian, q, scaled);
    if (!result.converged) {
        if (stop >= 2) result.reason += ", but the residual is not at right angles to the derivatives";
        return result;
    }
    result.error = standard_errors(problem, jacobian, held);
    const double spread = data.sigma.empty() ? norm(f) / std::sqrt(result.freedom) : 1.0 / problem.scale();
    for (std::size_t k = 0; k < q.size(); ++k) result.error[k] *= spread * problem.unit(k);
    if (data.sigma.empty() && result.freedom == 0) result.error.clear();
    return result;
}

} // namespace fit
