// The bounded trust-region method, stage by stage. With D the largest column norms of J so far and z = D s, a step
// minimises |F + J s|^2, or that + s.Ss, over |z(j)| <= radius and lw <= x + s <= up: both are boxes, and so is what
// they share. Conn, Gould and Toint, SIAM J. Numer. Anal. 25 (1988), and Trust-Region Methods (2000), chapter 12.
#include "solvers_tr/kernel/d_rci_tr_nlsqpbc.hpp"
#include "blas/calls.hpp"
#include "service/handle_memory.hpp"
#include "solvers_tr/kernel/d_tr_boxed_step.hpp"
#include <algorithm>
#include <cmath>
#include <limits>

namespace nxl::tr {
namespace {

constexpr double accept_ratio = 1e-4;
constexpr double good_ratio = 0.75, poor_ratio = 0.25;
constexpr double growth = 2.0, strongest_cut = 0.1, weakest_cut = 0.5;
constexpr double default_start_scale = 100.0;
constexpr double default_precision = 1e-10;
constexpr double half_ulp = 0x1p-53;   // of the residual norm: a smaller change does not show in it
constexpr double least_scale = 1e-150; // the square of a smaller column norm underflows
constexpr double least_cosine = 1e-8;  // between step and change of gradient, below which S is not updated
constexpr double coarsest_precision = 0.1;
constexpr double largest = std::numeric_limits<double>::max();
constexpr double largest_radius = 0.25 * largest; // the width of a box remains a number

enum Request : int { go_on = 0, residual = 1, jacobian = 2, caller_stops = -1, caller_stops_too = -2 };

enum StopCode : int {
    running = 0,
    iterations_made = 1,
    small_radius = 2,
    small_residual = 3,
    nothing_free = 4,
    small_step = 5,
    small_prediction = 6,
    failed = -4
};

/// What the caller has been asked for.
enum class Stage : int { start, start_residual, new_jacobian, idle, trial_residual };

double norm(i64 n, const double* v) { return nrm2(n, v, 1); }
double dot(i64 n, const double* x, const double* y) { return nxl::dot(n, x, 1, y, 1); }

/// n doubles each, in one block.
enum Column : int {
    scale,    // D without its floor
    point,    // x at the accepted point while a trial is out
    trial,    // x + s
    gradient, // D^-1 J^T F
    descent,  // the subproblem's gradient
    lower,    // the box of z
    upper,
    z,
    column_norm, // of J
    slope,       // the subproblem's
    direction,
    move,
    curve,
    step,         // from the accepted point before this one
    old_gradient, // J^T F there
    carried,      // (J there)^T F here
    column_count
};

class BoxedRun {
    BoxedProblem problem_;
    i64 n_, m_;
    int most_iterations_, most_passes_;
    double start_scale_;

    Stage stage_;
    bool jacobian_is_old_; // the accepted point has moved since
    bool uses_second_;     // the next step's model has S
    bool first_pass_;      // no trial has been judged
    int iterations_, reported_iterations_, stop_code_;
    double initial_norm_, final_norm_;

    double norm_;   // |F| at the accepted point
    double radius_; // on |z(j)|
    double model_;  // q at the trial step: half of what |F|^2 changes by, as J predicts it, over unit()^2

    double* columns_;
    double* residual_; // F at the accepted point
    double* hessian_;  // D^-1 J^T J D^-1
    double* second_;   // S, what J^T J leaves out of the second derivatives
    double* model_matrix_;
    double* factor_;
    i64* free_;

    double* column(Column c) const { return columns_ + c * n_; }
    /// What |F| and z are counted in where they are multiplied, so that no square overflows; of about |F|, and a power
    /// of two: no digit changes.
    double unit() const { return std::scalbn(1.0, std::ilogb(norm_)); }
    double counted(double value) const { return value / unit(); }
    double eps(int number) const { return problem_.eps[number - 1]; }
    double weight(i64 j) const { return column(scale)[j] > least_scale ? column(scale)[j] : 1.0; }
    double boxed(i64 j, double v) const { return inside(v, problem_.lower[j], problem_.upper[j]); }
    double room_below(i64 j) const { return std::min(0.0, (problem_.lower[j] - problem_.x[j]) * weight(j)); }
    double room_above(i64 j) const { return std::max(0.0, (problem_.upper[j] - problem_.x[j]) * weight(j)); }

    bool take_memory();
    int ask(Request request, Stage next);
    int stop(int code);
    void retract();

    int start_known(const double* fvec);
    int jacobian_known(const double* fjac);
    int trial_known(double* fvec, const double* fjac);
    int next_round();
    int try_step();

    void take_jacobian(const double* fjac);
    bool is_finite() const;
    void keep_for_update(const double* fvec, const double* fjac) const;
    void update_second() const;
    void choose_model(double trial_norm);
    void scale_model();
    void start_radius();
    bool has_free_column() const;
    void find_step();
    int find_settled_step();
    double form_trial() const;
    double predicted_change() const;
    double counted_change(double trial_norm) const;
    void resize_radius(double ratio, double trial_norm);

  public:
    bool init(const BoxedProblem& problem, int most_iterations, int most_passes, double start_scale);
    void free_memory();

    int resume(double* fvec, const double* fjac, int request);
    bool has_failed() const { return stop_code_ == failed; }
    int stop_code() const { return stop_code_; }
    int iterations() const { return reported_iterations_; }
    double initial_norm() const { return initial_norm_; }
    double final_norm() const { return final_norm_; }
};

/// False without memory; what was taken is given back.
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

/// The box has a point that can be computed with, and the start can be moved into it.
bool is_box(const BoxedProblem& problem) {
    for (int j = 0; j < problem.n; ++j) {
        const double lower = problem.lower[j], upper = problem.upper[j];
        if (!(lower <= upper) || lower > largest || upper < -largest) return false;
        if (!std::isfinite(inside(problem.x[j], lower, upper))) return false;
    }
    return true;
}

bool is_valid(const BoxedProblem& problem, int most_iterations, int most_passes, double start_scale) {
    if (!problem.x || !problem.lower || !problem.upper || !problem.eps) return false;
    if (problem.n < 1 || problem.m < problem.n || most_iterations < 1 || most_passes < 1) return false;
    if (!(start_scale >= 0.0 && start_scale <= 100.0)) return false;
    for (int i = 0; i < 6; ++i)
        if (!(problem.eps[i] > 0.0)) return false;
    return is_box(problem);
}

} // namespace

Status boxed_init(void** handle, const BoxedProblem& problem, int most_iterations, int most_passes,
                  double start_scale) {
    if (!handle || !is_valid(problem, most_iterations, most_passes, start_scale)) return invalid_option;
    auto* run = take_for_handle<BoxedRun>(1);
    if (!run) return out_of_memory;
    if (!run->init(problem, most_iterations, most_passes, start_scale)) {
        give_back(run);
        return out_of_memory;
    }
    *handle = run;
    return success;
}

Status boxed_solve(void* const* handle, double* fvec, const double* fjac, int* request) {
    auto* run = record_of<BoxedRun>(handle);
    if (!run || !fvec || !fjac || !request) return invalid_option;
    const int answer = run->resume(fvec, fjac, *request);
    if (run->has_failed()) return invalid_option;
    *request = run->stop_code() > 0 ? -run->stop_code() : answer;
    return success;
}

Status boxed_get(void* const* handle, int* iterations, int* stop_code, double* r1, double* r2) {
    const auto* run = record_of<BoxedRun>(handle);
    if (!run) return invalid_option;
    *iterations = run->iterations();
    *stop_code = run->stop_code();
    *r1 = run->initial_norm();
    *r2 = run->final_norm();
    return success;
}

Status boxed_delete(void** handle) {
    auto* run = record_of<BoxedRun>(handle);
    if (!run) return invalid_option;
    run->free_memory();
    give_back(run);
    return success;
}

} // namespace nxl::tr
