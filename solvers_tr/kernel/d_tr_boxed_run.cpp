#include "solvers_tr/kernel/d_tr_boxed_run.hpp"
#include "blas/calls.hpp"
#include "service/handle_memory.hpp"
#include <limits>

namespace nxl::tr {
namespace {

constexpr double accept_ratio = 1e-4;
constexpr double good_ratio = 0.75, poor_ratio = 0.25;
constexpr double growth = 2.0, strongest_cut = 0.1, weakest_cut = 0.5;
constexpr double default_start_scale = 100.0;
constexpr double default_precision = 1e-10;
constexpr double half_ulp = 0x1p-53;  // of the residual norm: a smaller change does not show in it
constexpr double least_cosine = 1e-8; // between step and change of gradient, below which S is not updated
constexpr double coarsest_precision = 0.1;
constexpr double largest = std::numeric_limits<double>::max();
constexpr double largest_radius = 0.25 * largest; // the width of a box remains a number

double norm(i64 n, const double* v) { return nrm2(n, v, 1); }
double dot(i64 n, const double* x, const double* y) { return nxl::dot(n, x, 1, y, 1); }

} // namespace

bool BoxedRun::init(const BoxedProblem& problem, int most_iterations, int most_passes, double start_scale) {
    *this = {};
    problem_ = problem;
    n_ = problem.n;
    m_ = problem.m;
    most_iterations_ = most_iterations;
    most_passes_ = most_passes;
    start_scale_ = start_scale == 0.0 ? default_start_scale : start_scale;
    first_pass_ = true;
    if (!take_memory()) {
        free_memory();
        return false;
    }
    std::fill_n(column(scale), n_, 0.0);
    std::fill_n(second_, n_ * n_, 0.0);
    for (i64 j = 0; j < n_; ++j) problem_.x[j] = boxed(j, problem_.x[j]);
    return true;
}

bool BoxedRun::take_memory() {
    const auto take = [](auto*& array, i64 count) {
        array = take_for_handle<std::remove_reference_t<decltype(*array)>>(count);
        return array != nullptr;
    };
    return take(columns_, column_count * n_) && take(residual_, m_) && take(hessian_, n_ * n_) &&
           take(second_, n_ * n_) && take(model_matrix_, n_ * n_) && take(factor_, n_ * n_) && take(free_, n_);
}

void BoxedRun::free_memory() {
    give_back(free_);
    give_back(factor_);
    give_back(model_matrix_);
    give_back(second_);
    give_back(hessian_);
    give_back(residual_);
    give_back(columns_);
}

/// The answer goes with the stage that asked for it; any other request, and an answer that was not asked for, begins a
/// round.
int BoxedRun::resume(double* fvec, const double* fjac, int request) {
    if (request == caller_stops || request == caller_stops_too) {
        if (stage_ == Stage::trial_residual) std::copy_n(residual_, m_, fvec);
        retract();
        return stop(request);
    }
    if (request == residual && stage_ == Stage::start_residual) return start_known(fvec);
    if (request == residual && stage_ == Stage::trial_residual) return trial_known(fvec, fjac);
    if (request == jacobian && stage_ == Stage::new_jacobian) return jacobian_known(fjac);
    retract();
    return next_round();
}

int BoxedRun::ask(Request request, Stage next) {
    stop_code_ = running;
    stage_ = next;
    return request;
}

int BoxedRun::stop(int code) {
    stop_code_ = code;
    reported_iterations_ = code == failed ? 0 : iterations_;
    final_norm_ = norm_;
    return go_on;
}

/// Back from a trial that nobody has judged.
void BoxedRun::retract() {
    if (stage_ != Stage::trial_residual) return;
    std::copy_n(column(point), n_, problem_.x);
    stage_ = Stage::idle;
}

int BoxedRun::next_round() {
    if (stage_ == Stage::start || stage_ == Stage::start_residual) return ask(residual, Stage::start_residual);
    if (most_iterations_ <= iterations_) return stop(iterations_made);
    if (!first_pass_ && radius_ < eps(1)) return stop(small_radius);
    if (norm_ <= eps(2)) return stop(small_residual);
    if (jacobian_is_old_) return ask(jacobian, Stage::new_jacobian);
    return try_step();
}

int BoxedRun::start_known(const double* fvec) {
    std::copy_n(fvec, m_, residual_);
    initial_norm_ = norm_ = norm(m_, residual_);
    if (!std::isfinite(norm_)) return stop(failed); // the residual stays asked for
    jacobian_is_old_ = true;
    stage_ = Stage::idle;
    return next_round();
}

int BoxedRun::jacobian_known(const double* fjac) {
    take_jacobian(fjac);
    if (!is_finite()) return stop(failed); // the Jacobian stays asked for
    stage_ = Stage::idle;
    if (!first_pass_) update_second();
    scale_model();
    jacobian_is_old_ = false;
    if (first_pass_) start_radius();
    return try_step();
}

void BoxedRun::take_jacobian(const double* fjac) {
    nxl_blas_dsyrk('L', 'T', n_, m_, 1.0, fjac, m_, 0.0, hessian_, n_);
    gemv('T', m_, n_, 1.0, fjac, m_, residual_, 1, 0.0, column(gradient), 1);
    for (i64 j = 0; j < n_; ++j) column(column_norm)[j] = norm(m_, fjac + j * m_);
}

/// Off the diagonal J^T J is bounded by its diagonal.
bool BoxedRun::is_finite() const {
    for (i64 j = 0; j < n_; ++j)
        if (!std::isfinite(hessian_[j + j * n_]) || !std::isfinite(column(gradient)[j])) return false;
    return true;
}

/// What the update of S needs of the point that is left.
void BoxedRun::keep_for_update(const double* fvec, const double* fjac) const {
    gemv('T', m_, n_, 1.0, fjac, m_, fvec, 1, 0.0, column(carried), 1);
    for (i64 j = 0; j < n_; ++j) {
        column(old_gradient)[j] = column(gradient)[j] * weight(j);
        column(step)[j] = problem_.x[j] - column(point)[j];
    }
}

/// S is changed least, in the norm of the update of Davidon, Fletcher and Powell, so that S s = u, after it was made
/// smaller where it is too large along s:
///     u = (J+ - J)^T F+,  y = g+ - g,  S := min(1, |s.u| / |s.Ss|) S,  v = u - Ss
///     S := S + (v y^T + y v^T) / y.s - (v.s) y y^T / (y.s)^2
/// Dennis, Gay and Welsch, ACM TOMS 7 (1981).
void BoxedRun::update_second() const {
    const double *s = column(step), *g = column(gradient);
    double *u = column(carried), *y = column(old_gradient), *product = column(curve);
    for (i64 j = 0; j < n_; ++j) {
        u[j] = g[j] - u[j];
        y[j] = g[j] - y[j];
    }
    const double ys = dot(n_, y, s);
    if (!(ys > least_cosine * norm(n_, y) * norm(n_, s))) return;
    gemv('N', n_, n_, 1.0, second_, n_, s, 1, 0.0, product, 1);
    const double along = std::fabs(dot(n_, s, product)), wanted = std::fabs(dot(n_, s, u));
    const double size = wanted < along ? wanted / along : 1.0;
    for (i64 j = 0; j < n_; ++j) u[j] = (u[j] - size * product[j]) / ys; // v / y.s
    const double vs = dot(n_, u, s) / ys;
    bool finite = true;
    for (i64 j = 0; j < n_; ++j)
        for (i64 i = 0; i < n_; ++i) {
            double& element = second_[i + j * n_];
            element = size * element + u[i] * y[j] + y[i] * u[j] - vs * y[i] * y[j];
            finite = finite && std::isfinite(element);
        }
    if (!finite) std::fill_n(second_, n_ * n_, 0.0);
}

/// Whichever model has come closer to what the trial step did to |F|^2 / 2.
void BoxedRun::choose_model(double trial_norm) {
    const double change = counted_change(trial_norm);
    if (!std::isfinite(change)) return;
    double *s = column(move), *product = column(curve);
    for (i64 j = 0; j < n_; ++j) s[j] = counted(problem_.x[j] - column(point)[j]);
    gemv('N', n_, n_, 1.0, second_, n_, s, 1, 0.0, product, 1);
    const double part = 0.5 * dot(n_, s, product);
    const double without = uses_second_ ? model_ - part : model_;
    uses_second_ = std::fabs(without + part - change) < std::fabs(without - change);
}

/// D grows with the columns of J; H and g change to the variables z.
void BoxedRun::scale_model() {
    for (i64 j = 0; j < n_; ++j) column(scale)[j] = std::max(column(scale)[j], column(column_norm)[j]);
    for (i64 j = 0; j < n_; ++j) {
        column(gradient)[j] /= weight(j);
        for (i64 i = j; i < n_; ++i) {
            double& element = hessian_[i + j * n_];
            element = element / weight(i) / weight(j);
            hessian_[j + i * n_] = element;
        }
    }
}

void BoxedRun::start_radius() {
    double widest = 0.0;
    for (i64 j = 0; j < n_; ++j) widest = std::max(widest, weight(j) * std::fabs(problem_.x[j]));
    const double scaled = start_scale_ * widest;
    radius_ = scaled > eps(1) ? std::min(scaled, largest_radius) : start_scale_;
}

/// A variable is free unless it is on a bound that the gradient holds it to.
bool BoxedRun::has_free_column() const {
    for (i64 j = 0; j < n_; ++j) {
        const double g = column(gradient)[j], x = problem_.x[j];
        const bool is_held = (x <= problem_.lower[j] && g >= 0.0) || (x >= problem_.upper[j] && g <= 0.0);
        if (!is_held && !(column(column_norm)[j] < eps(3))) return true;
    }
    return false;
}

int BoxedRun::try_step() {
    if (!has_free_column()) return stop(nothing_free);
    const int settled = find_settled_step();
    if (settled != running) return stop(settled);
    std::copy_n(problem_.x, n_, column(point));
    std::copy_n(column(trial), n_, problem_.x);
    return ask(residual, Stage::trial_residual);
}

/// The step, and whether it is too small to be tried. A model with S may be wrong about that: J alone has the say.
int BoxedRun::find_settled_step() {
    const auto verdict = [&] {
        find_step();
        if (form_trial() <= eps(4)) return small_step;
        return predicted_change() <= std::max(eps(3), half_ulp * norm_) ? small_prediction : running;
    };
    const int first = verdict();
    if (first == running || !uses_second_) return first;
    uses_second_ = false;
    return verdict();
}

void BoxedRun::find_step() {
    for (i64 j = 0; j < n_; ++j) {
        column(lower)[j] = std::max(counted(std::max(room_below(j), -radius_)), -largest_radius);
        column(upper)[j] = std::min(counted(std::min(room_above(j), radius_)), largest_radius);
        column(descent)[j] = counted(column(gradient)[j]);
    }
    for (i64 k = 0; k < n_ * n_; ++k) model_matrix_[k] = hessian_[k];
    if (uses_second_)
        for (i64 j = 0; j < n_; ++j)
            for (i64 i = 0; i < n_; ++i) model_matrix_[i + j * n_] += second_[i + j * n_] / weight(i) / weight(j);
    const BoxedModel model{n_, model_matrix_, column(descent), column(lower), column(upper)};
    const BoxedWork work{column(slope), column(direction), column(move), column(curve), factor_, free_};
    const double precision = eps(6) > 0.0 ? std::min(eps(6), coarsest_precision) : default_precision;
    model_ = boxed_step(model, column(z), most_passes_, precision, work);
    for (i64 j = 0; j < n_; ++j) column(z)[j] *= unit();
}

/// trial = x + D^-1 z. A variable that z takes to its bound gets the bound itself, free of rounding. Returns |s|, of
/// the step that x makes in the end.
double BoxedRun::form_trial() const {
    for (i64 j = 0; j < n_; ++j) {
        const double to = column(z)[j];
        double& target = column(trial)[j];
        if (to < 0.0 && to <= room_below(j)) target = problem_.lower[j];
        else if (to > 0.0 && to >= room_above(j)) target = problem_.upper[j];
        else target = boxed(j, problem_.x[j] + to / weight(j));
        column(move)[j] = target - problem_.x[j];
    }
    return norm(n_, column(move));
}

/// |F| - |F + J s| = -2 q / (|F| + |F + J s|), without cancellation.
double BoxedRun::predicted_change() const {
    const double now = counted(norm_);
    const double predicted_norm = std::sqrt(std::max(0.0, now * now + 2.0 * model_));
    return -2.0 * model_ / (now + predicted_norm) * unit();
}

/// Of |F|^2 / 2, over unit()^2.
double BoxedRun::counted_change(double trial_norm) const {
    const double now = counted(norm_), then = counted(trial_norm);
    return 0.5 * (then - now) * (then + now);
}

int BoxedRun::trial_known(double* fvec, const double* fjac) {
    const double trial_norm = norm(m_, fvec);
    const double relative = trial_norm / norm_;
    const double actual = 0.5 * (1.0 - relative) * (1.0 + relative),
                 predicted = -model_ / counted(norm_) / counted(norm_);
    const double ratio = actual / predicted; // NaN for a residual without a value: rejected
    stage_ = Stage::idle;
    resize_radius(ratio, trial_norm);
    choose_model(trial_norm);
    first_pass_ = false;
    stop_code_ = running;
    if (ratio >= accept_ratio) {
        keep_for_update(fvec, fjac);
        norm_ = trial_norm;
        std::copy_n(fvec, m_, residual_);
        jacobian_is_old_ = true;
        reported_iterations_ = ++iterations_;
    } else {
        std::copy_n(column(point), n_, problem_.x);
        std::copy_n(residual_, m_, fvec);
    }
    return go_on;
}

/// After a poor step the radius becomes the part t of the step at which the parabola through f(0), f'(0) and f(1), the
/// halved squares of the residual along s, is least:  t = -f'(0) / (2 (f(1) - f(0) - f'(0))).
void BoxedRun::resize_radius(double ratio, double trial_norm) {
    double length = 0.0, slope_along = 0.0;
    for (i64 j = 0; j < n_; ++j) {
        length = std::max(length, std::fabs(column(z)[j]));
        slope_along += column(descent)[j] * counted(column(z)[j]);
    }
    if (ratio >= good_ratio) radius_ = std::min(std::max(radius_, growth * length), largest_radius);
    if (ratio >= poor_ratio) return;
    double cut = -slope_along / (2.0 * (counted_change(trial_norm) - slope_along));
    if (!(cut > strongest_cut)) cut = strongest_cut; // NaN too
    radius_ = std::min(cut, weakest_cut) * length;
}

} // namespace nxl::tr
