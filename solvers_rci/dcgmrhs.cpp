// DCGMRHS, stage by stage. Conjugate gradients run on one system, the seed, at a time; each seed iteration also takes
// the unfinished systems behind it to their best point along the seed's direction p:
//     c = p.r_j / p.Ap,  x_j += c p,  r_j -= c Ap
// When a seed is done, the residuals behind it are computed afresh, and the next unfinished system becomes the seed.
// Smith, Peterson and Mittra, IEEE Trans. Antennas Propag. 37 (1989); Chan and Wan, SIAM J. Sci. Comput. 18 (1997).
#include "solvers_rci/dcgmrhs.hpp"
#include "solvers_rci/cg_run.hpp"
#include "solvers_rci/vectors.hpp"
#include <cmath>

namespace nxl::rci {
namespace {

/// Positions in ipar and dpar, from 0, of what is kept per system.
constexpr i64 first_list = 128;
i64 second_list(int nrhs) { return first_list + nrhs; }

/// What the caller has done when it comes back; the value of ipar(39). Any other value: nothing yet.
enum class Stage : int {
    initial_product = 1,
    first_preconditioning = 2,
    first_product = 3,
    test_done = 4,
    preconditioning = 5,
    product = 6,
    refresh_product = 7,
    refresh_test_done = 8
};

class DcgMrhsRun : CgRun {
    double* const x_;
    const double* const b_;
    const int nrhs_;
    const int answer_; // the caller's RCI_request
    const Columns column_;

    int& seed() const { return ipar_[29]; }
    int& refreshed() const { return ipar_[30]; } // the system behind a finished seed whose residual is computed afresh
    int& seed_is_done() const { return ipar_[31]; }
    int& stage() const { return ipar_[38]; }
    int& is_done(int system) const { return ipar_[first_list + system - 1]; }
    int& iterations_of(int system) const { return ipar_[second_list(nrhs_) + system - 1]; }

    double& alpha() const { return dpar_[2]; }
    double& beta() const { return dpar_[3]; }
    double& last_gamma() const { return dpar_[29]; }
    double& gamma() const { return dpar_[30]; } // r.z of the seed
    double& projection() const { return dpar_[31]; }
    double& curvature() const { return dpar_[32]; } // p.Ap
    double& initial_norm(int system) const { return dpar_[first_list + system - 1]; }
    double& final_value(int system) const { return dpar_[second_list(nrhs_) + system - 1]; }

    double* p() const { return column_(1); }
    double* ap() const { return column_(2); }
    double* z() const { return column_(3); }
    double* residual(int system) const { return column_(3 + system); }
    double* x(int system) const { return Columns(x_, size())(system); }
    const double* b(int system) const { return b_ + (i64{system} - 1) * std::max(size(), 0); }

    bool is_system(int number) const { return number >= 1 && number <= nrhs_; }
    bool has_stage() const;
    bool is_over() const;
    bool can_resume() const;
    bool caller_stops() const { return caller_test() != 0 && answer_ == stop_system; }
    double target_of(int system) const { return relative_tolerance() * initial_norm(system) + absolute_tolerance(); }

    int ask(Request request, int system, Stage next) const;
    int fail_without_test() const;
    int break_down(CgError error) const;
    int begin_system(int system) const;
    void compute_residual(int system) const;
    int select_seed(int first) const;
    bool find_alpha() const;
    int start_direction() const;
    int iterate() const;
    void project_systems_behind() const;
    void test_seed() const;
    int precondition_residual() const;
    int next_direction() const;
    int end_seed() const;
    int refresh(int system) const;

    int initial_residual_ready() const;
    int first_product_ready() const;
    int test_answered() const;
    int product_ready() const;
    int refresh_residual_ready() const;
    int refresh_test_answered() const;

  public:
    DcgMrhsRun(double* x, int nrhs, const double* b, int answer, int* ipar, double* dpar, double* tmp)
        : CgRun(ipar, dpar),
          x_(x),
          b_(b),
          nrhs_(nrhs),
          answer_(answer),
          column_(tmp, size()) {}

    int resume() const;
};

/// False before the first request.
bool DcgMrhsRun::has_stage() const {
    return stage() >= static_cast<int>(Stage::initial_product) && stage() <= static_cast<int>(Stage::refresh_test_done);
}

/// The search for the next seed has come to the end, where it would come again.
bool DcgMrhsRun::is_over() const { return has_stage() && seed() == i64{nrhs_} + 1; }

/// False also where stray values name systems that do not exist.
bool DcgMrhsRun::can_resume() const {
    return has_stage() && is_system(seed()) &&
           (stage() < static_cast<int>(Stage::refresh_product) || is_system(refreshed()));
}

int DcgMrhsRun::resume() const {
    if (is_over()) return finished;
    if (!can_resume()) return begin_system(1);
    switch (static_cast<Stage>(stage())) {
    case Stage::initial_product: return initial_residual_ready();
    case Stage::first_preconditioning: return start_direction();
    case Stage::first_product: return first_product_ready();
    case Stage::test_done: return test_answered();
    case Stage::preconditioning: return next_direction();
    case Stage::product: return product_ready();
    case Stage::refresh_product: return refresh_residual_ready();
    case Stage::refresh_test_done: break;
    }
    return refresh_test_answered();
}

int DcgMrhsRun::ask(Request request, int system, Stage next) const {
    stage_or_system() = system;
    stage() = static_cast<int>(next);
    return request;
}

int DcgMrhsRun::fail_without_test() const {
    report(CgError::endless_loop);
    return finished;
}

int DcgMrhsRun::break_down(CgError error) const { // ends the whole run
    report(error);
    final_value(seed()) = initial_norm(seed());
    return finished;
}

int DcgMrhsRun::begin_system(int system) const { // asks for A x, system by system
    if (system > nrhs_) return select_seed(1);
    seed() = system;
    copy(size(), x(system), p());
    return ask(apply_matrix, system, Stage::initial_product);
}

void DcgMrhsRun::compute_residual(int system) const { // r = b - A x
    copy(size(), b(system), residual(system));
    axpy(size(), -1.0, ap(), residual(system));
}

int DcgMrhsRun::initial_residual_ready() const {
    const int system = seed();
    compute_residual(system);
    const double initial = initial_norm(system) = norm(size(), residual(system));
    if (residual_test() != 0 && (initial <= relative_tolerance() || initial <= absolute_tolerance())) {
        is_done(system) = 1;
        final_value(system) = initial;
    }
    return begin_system(system + 1);
}

int DcgMrhsRun::select_seed(int first) const {
    for (seed() = first; seed() <= nrhs_ && is_done(seed()) != 0;) ++seed();
    if (seed() > nrhs_) return finished;
    if (has_preconditioner() != 0) return ask(apply_preconditioner, seed(), Stage::first_preconditioning);
    copy(size(), residual(seed()), z());
    return start_direction();
}

int DcgMrhsRun::start_direction() const {
    gamma() = dot(size(), residual(seed()), z());
    if (!(gamma() >= 0.0)) return break_down(CgError::altered_data);
    copy(size(), z(), p());
    return ask(apply_matrix, seed(), Stage::first_product);
}

/// alpha = gamma / p.Ap; false when p.Ap is 0 or NaN.
bool DcgMrhsRun::find_alpha() const {
    curvature() = dot(size(), p(), ap());
    if (!(std::abs(curvature()) > 0.0)) return false;
    alpha() = gamma() / curvature();
    return true;
}

int DcgMrhsRun::first_product_ready() const {
    if (!find_alpha()) return break_down(CgError::indefinite_matrix);
    seed_is_done() = 0;
    iterations() = 0;
    return iterate();
}

int DcgMrhsRun::product_ready() const {
    if (!find_alpha()) return break_down(CgError::indefinite_matrix);
    return seed_is_done() == 0 ? iterate() : end_seed();
}

int DcgMrhsRun::iterate() const {
    if (limit_test() != 0 && iterations() > iteration_limit()) return end_seed();
    count_iteration();
    project_systems_behind();
    axpy(size(), alpha(), p(), x(seed()));
    axpy(size(), -alpha(), ap(), residual(seed()));
    if (residual_test() == 0 && caller_test() == 0) return fail_without_test();
    if (residual_test() != 0) test_seed();
    if (caller_test() != 0) return ask(test_by_caller, seed(), Stage::test_done);
    return precondition_residual();
}

void DcgMrhsRun::project_systems_behind() const {
    for (int j = seed() + 1; j <= nrhs_; ++j) {
        if (is_done(j) != 0) continue;
        projection() = dot(size(), p(), residual(j)) / curvature();
        axpy(size(), projection(), p(), x(j));
        axpy(size(), -projection(), ap(), residual(j));
    }
}

void DcgMrhsRun::test_seed() const {
    const int i = seed();
    final_value(i) = norm(size(), residual(i)) / initial_norm(i);
    if (!(final_value(i) <= target_of(i))) return; // a relative value against an absolute target, as published
    is_done(i) = 1;
    seed_is_done() = 1;
    iterations_of(i) = iterations();
}

int DcgMrhsRun::test_answered() const {
    if (caller_stops()) {
        is_done(seed()) = 1;
        seed_is_done() = 1;
        final_value(seed()) = -1.0;
        iterations_of(seed()) = iterations();
    }
    return precondition_residual();
}

int DcgMrhsRun::precondition_residual() const {
    if (has_preconditioner() != 0) return ask(apply_preconditioner, seed(), Stage::preconditioning);
    copy(size(), residual(seed()), z());
    return next_direction();
}

int DcgMrhsRun::next_direction() const { // p = z + beta p
    last_gamma() = gamma();
    if (!(gamma() >= 0.0)) return break_down(CgError::altered_data);
    gamma() = dot(size(), residual(seed()), z());
    beta() = gamma() / last_gamma();
    scale_and_add(size(), beta(), p(), z());
    return ask(apply_matrix, seed(), Stage::product);
}

/// A seed that ran into the limit may stay marked as not done; it is not taken up again, as the search goes on behind
/// it.
int DcgMrhsRun::end_seed() const {
    if (iterations() == iteration_limit()) is_done(seed()) = 1;
    iterations_of(seed()) = iterations();
    return refresh(seed() + 1);
}

int DcgMrhsRun::refresh(int system) const {
    refreshed() = system;
    if (system > nrhs_) return select_seed(seed() + 1);
    copy(size(), x(system), p());
    return ask(apply_matrix, system, Stage::refresh_product);
}

int DcgMrhsRun::refresh_residual_ready() const {
    const int j = refreshed();
    compute_residual(j);
    if (!(std::abs(initial_norm(j)) > relative_tolerance())) {
        is_done(j) = 1;
        return refresh(j + 1);
    }
    if (residual_test() == 0 && caller_test() == 0) return fail_without_test();
    if (residual_test() != 0) {
        final_value(j) = norm(size(), residual(j)) / initial_norm(j);
        if (final_value(j) <= target_of(seed())) is_done(j) = 1; // by the seed's initial norm
    }
    // The caller's own test is noted, as the stage shows after the last system, but not offered for a refreshed system.
    if (caller_test() != 0) ask(test_by_caller, j, Stage::refresh_test_done);
    return refresh(j + 1);
}

int DcgMrhsRun::refresh_test_answered() const {
    const int j = refreshed();
    if (caller_stops()) {
        is_done(j) = 1;
        final_value(j) = -1.0;
    }
    return refresh(j + 1);
}

} // namespace

int dcgmrhs_init(int n, int nrhs, int* ipar, double* dpar, double* tmp) {
    const CgRun run(ipar, dpar);
    run.set_defaults(n);
    run.systems() = nrhs;
    Columns(tmp, n).zero(i64{nrhs} + 3);
    return finished;
}

int dcgmrhs_check(int n, int* ipar, double* dpar) {
    const CgRun run(ipar, dpar);
    return run.check(n, run.systems());
}

int dcgmrhs(double* x, int nrhs, const double* b, int answer, int* ipar, double* dpar, double* tmp) {
    return DcgMrhsRun(x, nrhs, b, answer, ipar, dpar, tmp).resume();
}

void dcgmrhs_iterations(int nrhs, const int* ipar, int* itercount) {
    if (nrhs > 0) std::copy_n(ipar + second_list(nrhs), nrhs, itercount);
}

} // namespace nxl::rci
