// The trust-region method for nonlinear least squares: J is asked for at accepted points only, the radius follows the
// ratio of the actual to the predicted reduction. Dennis and Schnabel (1983), sections 6.4 and 10.3; More (1978).
#include "solvers_tr/kernel/d_rci_tr_nlsqp_withMP.hpp"
#include "blas/calls.hpp"
#include "service/handle_memory.hpp"
#include "service/threads.hpp"
#include "solvers_tr/kernel/d_tr_trialstep_nlsqp_withMP.hpp"
#include "solvers_tr/kernel/d_tr_trialstep_utils.hpp"
#include "solvers_tr/kernel/status.hpp"
#include <cmath>
#include <limits>
#include <utility>

namespace nxl::tr {
namespace {

constexpr double least_accepted_ratio = 1e-4;
constexpr double rejected = std::numeric_limits<double>::lowest(); // as the ratio: the trial point was not taken
constexpr double largest_radius = std::numeric_limits<double>::max();
constexpr double default_scale = 100.0; // of the first radius
constexpr int default_trial_limit = 10;
constexpr int eps_count = 6;

enum Phase : int { no_residual = 0, first_residual = 1, trial_residual = 2 };

/// What the caller's handle points to.
struct NlsqRecord {
    double accept_threshold;
    double residual_norm; // |F| at the accepted point
    double step_norm;     // |s|
    double model_norm;    // |J s|
    double ratio;         // of the last accepted step, or `rejected`
    double shift;         // on the diagonal of J^T J
    double radius;
    double* step;           // n
    double* model;          // m: J s
    double* saved_residual; // m: F - J s, then F at the accepted point while the caller's array holds the trial one
    double* work[3];        // n each: the step's; the last is the accepted point while the caller's x is the trial one
    int phase;
    int iterations; // accepted steps
    int first_pass; // 1 until the first trial step has been judged
    int n, m;
    double* h;      // n by n
    double* factor; // n by n
    double* x;      // the caller's
    int iteration_limit, trial_limit, reported_iterations, stop_code;
    double scale, initial_norm, final_norm;
    const double* eps; // the caller's; read at every use

    double* saved_x() const { return work[2]; }
    double least_radius() const { return eps[0]; }
    double residual_target() const { return eps[1]; }
    double nothing() const { return eps[2]; } // a column of J below it is zero, a change of the norm up to it is none
    double least_step() const { return eps[3]; }
};

struct Array {
    double** place;
    i64 count;
};
constexpr int array_count = 8;
struct ArrayList {
    Array arrays[array_count];
};

ArrayList arrays_of(NlsqRecord& record) {
    const i64 n = record.n, m = record.m;
    return {{{&record.step, n},
             {&record.model, m},
             {&record.saved_residual, m},
             {&record.work[0], n},
             {&record.work[1], n},
             {&record.work[2], n},
             {&record.h, n * n},
             {&record.factor, n * n}}};
}

/// In reverse order. What was not taken is null.
void give_back_all(NlsqRecord* record) {
    const ArrayList list = arrays_of(*record);
    for (int i = array_count - 1; i >= 0; --i) give_back(*list.arrays[i].place);
    give_back(record);
}

bool take_all(NlsqRecord& record) {
    for (const auto& [place, count] : arrays_of(record).arrays) {
        *place = take_for_handle<double>(count);
        if (!*place) return false;
    }
    return true;
}

bool all_positive(const double* eps) {
    for (int i = 0; i < eps_count; ++i)
        if (!(eps[i] > 0.0)) return false;
    return true;
}

double square(double value) { return value * value; }

/// One call of the solver on the caller's arrays.
class NlsqLeg {
    NlsqRecord& run_;
    double* const fvec_;
    const double* const fjac_;
    int& request_;
    const int threads_;

    double norm_of_fvec() const { return norm(run_.m, fvec_); }
    void ask(NlsqRequest request) const;
    void stop(StopCode code, double residual_norm) const;

    bool stop_at_iteration_limit() const;
    bool stop_at_small_radius() const;
    bool stop_at_small_residual() const;
    bool stop_at_zero_jacobian(const double* norms) const;
    bool stop_without_trial_step() const;
    bool stop_at_small_step() const;
    bool stop_when_nothing_is_predicted() const;

    void stopped_by_caller() const;
    void begin_round() const;
    void first_residual_ready() const;
    void need_for_jacobian() const;
    void jacobian_ready() const;
    void start_radius(const double* norms) const;
    void try_step() const;
    void trial_residual_ready() const;
    double reduction_ratio(double trial_norm, double& actual, double& direction) const;
    void update_radius(double trial_norm, double ratio, double actual, double direction) const;

  public:
    NlsqLeg(NlsqRecord& run, double* fvec, const double* fjac, int& request, int threads)
        : run_(run),
          fvec_(fvec),
          fjac_(fjac),
          request_(request),
          threads_(threads) {}

    void resume() const;
};

void NlsqLeg::resume() const {
    if (request_ == evaluate_residual && run_.phase == trial_residual) return trial_residual_ready();
    if (request_ == evaluate_residual && run_.phase == first_residual) return first_residual_ready();
    if (request_ == evaluate_jacobian) return jacobian_ready();
    if (request_ == stop_by_caller || request_ == abort_by_caller) return stopped_by_caller();
    begin_round();
}

void NlsqLeg::ask(NlsqRequest request) const {
    run_.stop_code = running;
    request_ = request;
}

void NlsqLeg::stop(StopCode code, double residual_norm) const {
    run_.stop_code = code;
    run_.reported_iterations = run_.iterations;
    run_.final_norm = residual_norm;
    request_ = go_on;
}

void NlsqLeg::stopped_by_caller() const { // the final norm stays
    run_.stop_code = request_;
    run_.reported_iterations = run_.iterations;
    request_ = go_on;
}

bool NlsqLeg::stop_at_iteration_limit() const {
    if (run_.iteration_limit > run_.iterations) return false;
    stop(iterations_used_up, norm_of_fvec());
    return true;
}

bool NlsqLeg::stop_at_small_radius() const {
    if (!(run_.radius < run_.least_radius()) || run_.first_pass != 0) return false;
    stop(radius_small, norm_of_fvec());
    return true;
}

bool NlsqLeg::stop_at_small_residual() const {
    if (!(run_.residual_norm <= run_.residual_target())) return false;
    stop(residual_small, norm_of_fvec());
    return true;
}

bool NlsqLeg::stop_at_zero_jacobian(const double* norms) const {
    for (int j = 0; j < run_.n; ++j)
        if (!(norms[j] < run_.nothing())) return false;
    stop(jacobian_vanishes, run_.residual_norm);
    return true;
}

bool NlsqLeg::stop_at_small_step() const {
    if (!(run_.step_norm <= run_.least_step())) return false;
    stop(step_small, run_.residual_norm);
    return true;
}

/// Compares |F| with |F - J s|.
bool NlsqLeg::stop_when_nothing_is_predicted() const {
    double* e = run_.saved_residual;
    for (int i = 0; i < run_.m; ++i) e[i] = fvec_[i] - run_.model[i];
    if (!(std::fabs(run_.residual_norm - norm(run_.m, e)) <= run_.nothing())) return false;
    stop(no_progress_predicted, run_.residual_norm);
    return true;
}

void NlsqLeg::begin_round() const {
    if (run_.first_pass != 0) {
        run_.accept_threshold = least_accepted_ratio;
        run_.shift = 0.0;
        run_.radius = 1.0;
        run_.ratio = 0.0;
    }
    if (stop_at_iteration_limit() || stop_at_small_radius()) return;
    if (run_.first_pass == 0) return need_for_jacobian();
    run_.phase = first_residual;
    ask(evaluate_residual);
}

void NlsqLeg::first_residual_ready() const {
    if (run_.first_pass != 0) run_.initial_norm = run_.residual_norm = norm_of_fvec();
    need_for_jacobian();
}

/// After a rejected step the Jacobian in the caller's array is still that of the accepted point.
void NlsqLeg::need_for_jacobian() const {
    run_.stop_code = running;
    if (stop_at_small_residual()) return;
    if (run_.ratio != rejected) return ask(evaluate_jacobian);
    jacobian_ready();
}

void NlsqLeg::jacobian_ready() const {
    run_.stop_code = running;
    double* norms = run_.work[0];
    column_norms(run_.m, run_.n, fjac_, norms, threads_);
    if (run_.first_pass != 0) start_radius(norms);
    if (stop_at_zero_jacobian(norms) || stop_without_trial_step()) return;
    try_step();
}

/// Proportional to the norm of x, each component scaled by its column.
void NlsqLeg::start_radius(const double* norms) const {
    double* scaled = run_.work[1];
    for (int j = 0; j < run_.n; ++j) scaled[j] = (norms[j] > 0.0 ? norms[j] : 1.0) * run_.x[j];
    const double radius = run_.scale * norm(run_.n, scaled);
    run_.radius = radius > run_.least_radius() ? radius : run_.scale;
}

/// Solves the subproblem. After a failure the request stays as it is.
bool NlsqLeg::stop_without_trial_step() const {
    const TrialProblem problem{.m = run_.m,
                               .n = run_.n,
                               .jacobian = fjac_,
                               .residual = fvec_,
                               .radius = run_.radius,
                               .threads = threads_,
                               .step = run_.step,
                               .work = {run_.work[0], run_.work[1], run_.work[2]},
                               .h = run_.h,
                               .factor = run_.factor};
    int iterations = run_.trial_limit == 0 ? default_trial_limit : run_.trial_limit;
    if (DMINTR_LS_PD_WITHOMP(problem, iterations, run_.shift) >= 0) return false;
    run_.stop_code = no_trial_step;
    run_.reported_iterations = 0;
    return true;
}

void NlsqLeg::try_step() const {
    run_.step_norm = norm(run_.n, run_.step);
    if (run_.first_pass != 0) run_.radius = std::min(run_.radius, run_.step_norm);
    if (stop_at_small_step()) return;
    const i64 m = run_.m, n = run_.n;
    gemv('N', m, n, 1.0, fjac_, m, run_.step, 1, 0.0, run_.model, 1);
    run_.model_norm = norm(m, run_.model);
    if (stop_when_nothing_is_predicted()) return;
    copy(n, run_.x, 1, run_.saved_x(), 1);
    axpy(n, 1.0, run_.step, 1, run_.x, 1);
    copy(m, fvec_, 1, run_.saved_residual, 1);
    run_.phase = trial_residual;
    ask(evaluate_residual);
}

/// Takes the trial point, or brings the caller's x and fvec back to the accepted one, to the bit: a step that dwarfs x
/// cannot be taken off again.
void NlsqLeg::trial_residual_ready() const {
    const double trial_norm = norm_of_fvec();
    double actual = 0.0, direction = 0.0;
    const double ratio = reduction_ratio(trial_norm, actual, direction);
    update_radius(trial_norm, ratio, actual, direction);
    if (ratio >= run_.accept_threshold) {
        run_.ratio = ratio;
        run_.residual_norm = trial_norm;
        run_.reported_iterations = ++run_.iterations;
    } else {
        run_.ratio = rejected;
        copy(run_.n, run_.saved_x(), 1, run_.x, 1);
        copy(run_.m, run_.saved_residual, 1, fvec_, 1);
    }
    run_.first_pass = 0;
    request_ = go_on;
}

/// Of the actual to the predicted reduction, both relative to |F|^2. A norm that grew tenfold counts as reduction -1.
double NlsqLeg::reduction_ratio(double trial_norm, double& actual, double& direction) const {
    const double norm_now = run_.residual_norm;
    actual = 0.1 * trial_norm < norm_now ? 1.0 - square(trial_norm / norm_now) : -1.0;
    const double by_model = square(run_.model_norm / norm_now);
    const double by_shift = square(std::sqrt(run_.shift) * run_.step_norm / norm_now);
    direction = -(by_model + by_shift);
    return actual / (by_model + 2.0 * by_shift);
}

/// Every rejection makes the radius at most half of what it was, also by a ratio or a factor that is not a number: so a
/// run ends.
void NlsqLeg::update_radius(double trial_norm, double ratio, double actual, double direction) const {
    if (ratio > 0.25) {
        if (run_.shift == 0.0) run_.radius = std::min(2.0 * run_.step_norm, largest_radius);
        return;
    }
    double factor = 0.5;
    if (actual < 0.0) factor = 0.5 * direction / (direction + 0.5 * actual); // where a parabola has its minimum
    if (0.1 * trial_norm >= run_.residual_norm || !(factor >= 0.1)) factor = 0.1;
    run_.radius = factor * std::min(run_.radius, run_.step_norm / 0.1);
}

} // namespace

int nlsqp_init(void** handle, int n, int m, double* x, const double* eps, int iter1, int iter2, double rs) {
    if (!handle || n < 1 || m < 1 || iter1 < 1 || iter2 < 1 || m < n) return invalid_option;
    if (!all_positive(eps) || !(rs >= 0.0 && rs <= 100.0)) return invalid_option;
    auto* run = take_for_handle<NlsqRecord>(1);
    if (!run) return out_of_memory;
    *run = {};
    run->n = n;
    run->m = m;
    if (!take_all(*run)) {
        give_back_all(run);
        return out_of_memory;
    }
    run->first_pass = 1;
    run->x = x;
    run->eps = eps;
    run->iteration_limit = iter1;
    run->trial_limit = iter2;
    run->scale = rs == 0.0 ? default_scale : rs;
    *handle = run;
    return success;
}

int nlsqp_solve(void** handle, double* fvec, const double* fjac, int& request) {
    auto* run = record_of<NlsqRecord>(handle);
    if (!run) return invalid_option;
    NlsqLeg(*run, fvec, fjac, request, max_threads(domain_all)).resume();
    if (run->stop_code > 0) request = -run->stop_code;
    return run->stop_code == invalid_run || run->stop_code == no_trial_step ? invalid_option : success;
}

int nlsqp_get(void* const* handle, int& iterations, int& stop_code, double& initial_norm, double& final_norm) {
    const auto* run = record_of<NlsqRecord>(handle);
    if (!run) return invalid_option;
    iterations = run->reported_iterations;
    stop_code = run->stop_code;
    initial_norm = run->initial_norm;
    final_norm = run->final_norm;
    return success;
}

int nlsqp_delete(void** handle) {
    auto* run = record_of<NlsqRecord>(handle);
    if (!run) return invalid_option;
    give_back_all(run);
    return success;
}

} // namespace nxl::tr
