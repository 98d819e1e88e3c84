// The trust-region subproblem on the normal equations: Newton's method on the shift, with a Cholesky factorisation
// each. More and Sorensen, Computing a trust region step, SIAM J. Sci. Stat. Comput. 4 (1983). The length is met within
// 1 %.
#include "solvers_tr/kernel/d_tr_trialstep_nlsqp_withMP.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/cholesky/potrs.hpp"
#include "lapack/kernel/source/cholesky/xpotrf_omp.hpp"
#include "lapack/kernel/source/triangular/trtrs.hpp"
#include "solvers_tr/kernel/d_tr_trialstep_utils.hpp"
#include <cmath>
#include <limits>

namespace nxl::tr {
namespace {

constexpr double length_tolerance = 0.01;
constexpr double first_shift = 1e-16; // of a matrix that is not positive definite; it grows by tens

class TrialStep {
    const TrialProblem& problem_;
    const i64 n_ = problem_.n;
    const double radius_ = problem_.radius;
    double& shift_;

    double* step() const { return problem_.step; }
    double* descent() const { return problem_.work[0]; } // -J^T F

    void form_normal_equations() const;
    bool is_finite() const;
    bool factorise() const;
    double solve() const;
    void replace_shift(double by) const;
    int definite() const;
    int not_definite() const;
    int newton_on_shift(double length) const;

  public:
    TrialStep(const TrialProblem& problem, double& shift) : problem_(problem), shift_(shift) {}

    int run(int limit, int& iterations) const;
};

int TrialStep::run(int limit, int& iterations) const {
    form_normal_equations();
    if (!is_finite()) return no_number;
    shift_ = 0.0;
    for (iterations = 0; iterations <= limit; ++iterations) {
        const int status = factorise() ? definite() : not_definite();
        if (status != undecided) return status;
    }
    return limit_reached;
}

void TrialStep::form_normal_equations() const {
    const double* jacobian = problem_.jacobian;
    const i64 m = problem_.m;
    nxl_blas_dgemm('T', 'N', n_, n_, m, 1.0, jacobian, m, jacobian, m, 0.0, problem_.h, n_);
    gemv('T', m, n_, 1.0, jacobian, m, problem_.residual, 1, 0.0, descent(), 1);
    scal(n_, -1.0, descent(), 1);
}

/// Off the diagonal J^T J is bounded by its diagonal.
bool TrialStep::is_finite() const {
    for (i64 j = 0; j < n_; ++j)
        if (!std::isfinite(problem_.h[j + j * n_]) || !std::isfinite(descent()[j])) return false;
    return true;
}

bool TrialStep::factorise() const {
    i64 info = 0;
    copy_lower(n_, problem_.h, problem_.factor, problem_.threads);
    potrf('L', n_, problem_.factor, n_, info);
    return info == 0;
}

/// The step of the present shift; returns its length.
double TrialStep::solve() const {
    i64 info = 0;
    copy(n_, descent(), 1, step(), 1);
    potrs('L', n_, 1, problem_.factor, n_, step(), n_, info);
    return norm(n_, step());
}

void TrialStep::replace_shift(double by) const {
    if (shift_ != 0.0) ADD_TO_DIAGONAL(n_, -shift_, problem_.h, problem_.threads);
    ADD_TO_DIAGONAL(n_, by, problem_.h, problem_.threads);
    shift_ = by;
}

int TrialStep::definite() const {
    const double length = solve();
    if (std::fabs(length - radius_) < radius_ * length_tolerance) {
        scal(n_, radius_ / length, step(), 1);
        return on_boundary;
    }
    if (length < radius_ && shift_ == 0.0) return inside;
    return length > radius_ ? newton_on_shift(length) : undecided;
}

int TrialStep::not_definite() const {
    double shift = first_shift;
    for (replace_shift(shift); !factorise(); replace_shift(shift)) {
        shift *= 10.0;
        if (shift > std::numeric_limits<double>::max()) return no_factor;
    }
    const double length = solve();
    if (length > radius_) return newton_on_shift(length);
    if (length < radius_)
        return step_in_hard_case(n_, radius_, problem_.factor, step(), problem_.work[1], problem_.work[2]);
    return undecided;
}

/// One step of Newton's method on 1 / |s| = 1 / radius. With L w = s / |s| the squares of |s| and of L^-1 s, which may
/// overflow where |s| does not, are not needed.
int TrialStep::newton_on_shift(double length) const {
    double* w = problem_.work[1];
    i64 info = 0;
    for (i64 j = 0; j < n_; ++j) w[j] = step()[j] / length;
    trtrs('L', 'N', 'N', n_, 1, problem_.factor, n_, w, n_, info);
    if (info < 0) return static_cast<int>(info);
    const double w_length = norm(n_, w);
    if (w_length == 0.0) return on_boundary;
    replace_shift(shift_ + (length - radius_) / w_length / radius_ / w_length);
    return undecided;
}

} // namespace

int DMINTR_LS_PD_WITHOMP(const TrialProblem& problem, int& iterations, double& shift) {
    const int limit = iterations;
    const int status = TrialStep(problem, shift).run(limit, iterations);
    return status < 0 || std::isfinite(norm(problem.n, problem.step)) ? status : no_number;
}

} // namespace nxl::tr
