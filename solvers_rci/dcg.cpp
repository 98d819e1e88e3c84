// DCG, stage by stage. With z = r in the plain method, an iteration is
//     alpha = r.z / p.Ap,  x += alpha p,  r -= alpha Ap,  beta = new r.z / old r.z,  p = z + beta p
// and r.z is what the residual test looks at. Hestenes and Stiefel, J. Res. NBS 49 (1952).
#include "solvers_rci/dcg.hpp"
#include "solvers_rci/cg_run.hpp"
#include "solvers_rci/vectors.hpp"

namespace nxl::rci {
namespace {

/// What the caller has done when it comes back; the value of ipar(3).
enum class Stage : int {
    start = 1,
    plain_residual_product = 2,
    plain_test_done = 3,
    plain_product = 4,
    preconditioned_start = 5, // only a caller sets it
    residual_product = 6,
    first_preconditioning = 7,
    test_done = 8,
    product = 9,
    preconditioning = 10
};

/// Where the plain and the preconditioned method go on.
struct Method {
    Stage test_done, product;
};
constexpr Method plain{Stage::plain_test_done, Stage::plain_product};
constexpr Method with_preconditioner{Stage::test_done, Stage::product};

class DcgRun : CgRun {
    double* const x_;
    const double* const b_;
    const Columns column_;

    double& initial_quantity() const { return dpar_[2]; }
    double& target() const { return dpar_[3]; }
    double& quantity() const { return dpar_[4]; } // r.r, preconditioned r.z
    double& last_quantity() const { return dpar_[5]; }
    double& alpha() const { return dpar_[6]; }
    double& beta() const { return dpar_[7]; }

    double* p() const { return column_(1); }
    double* ap() const { return column_(2); }
    double* r() const { return column_(3); }
    double* z() const { return column_(4); }

    int ask(Request request, Stage next) const;
    int fail(CgError error, Request request) const;
    int begin(Stage next) const;
    void subtract_product() const;
    void set_target(double initial) const;
    int decide(const Method& method) const;
    int next_iteration(Stage product) const;
    bool take_step() const;
    int turn(const double* gradient, const Method& method) const;

    int plain_residual_ready() const;
    int plain_product_ready() const;
    int residual_ready() const;
    int first_preconditioned() const;
    int product_ready() const;
    int preconditioned_ready() const;

  public:
    DcgRun(double* x, const double* b, int* ipar, double* dpar, double* tmp)
        : CgRun(ipar, dpar),
          x_(x),
          b_(b),
          column_(tmp, size()) {}

    int resume() const;
};

int DcgRun::resume() const {
    switch (static_cast<Stage>(stage_or_system())) {
    case Stage::plain_residual_product: return plain_residual_ready();
    case Stage::plain_test_done: return next_iteration(Stage::plain_product);
    case Stage::plain_product: return plain_product_ready();
    case Stage::preconditioned_start: return begin(Stage::residual_product);
    case Stage::residual_product: return residual_ready();
    case Stage::first_preconditioning: return first_preconditioned();
    case Stage::test_done: return next_iteration(Stage::product);
    case Stage::product: return product_ready();
    case Stage::preconditioning: return preconditioned_ready();
    case Stage::start: break;
    }
    return begin(has_preconditioner() != 0 ? Stage::residual_product : Stage::plain_residual_product);
}

int DcgRun::ask(Request request, Stage next) const {
    stage_or_system() = static_cast<int>(next);
    return request;
}

int DcgRun::fail(CgError error, Request request) const {
    report(error);
    return request; // the stage stays: a further call comes back to it
}

int DcgRun::begin(Stage next) const { // asks for A x
    copy(size(), b_, r());
    copy(size(), x_, p());
    return ask(apply_matrix, next);
}

void DcgRun::subtract_product() const { axpy(size(), -1.0, ap(), r()); } // r = b - A x

void DcgRun::set_target(double initial) const {
    initial_quantity() = quantity() = initial;
    target() = relative_tolerance() * initial + absolute_tolerance();
}

int DcgRun::plain_residual_ready() const {
    subtract_product();
    copy(size(), r(), p());
    set_target(dot(size(), r(), r()));
    return decide(plain);
}

int DcgRun::residual_ready() const {
    subtract_product();
    return ask(apply_preconditioner, Stage::first_preconditioning);
}

int DcgRun::first_preconditioned() const {
    copy(size(), z(), p());
    set_target(dot(size(), z(), r()));
    return decide(with_preconditioner);
}

/// The stopping decision: limit, residual, the caller's own, in this order.
int DcgRun::decide(const Method& method) const {
    const bool above_target = quantity() > target();
    if (limit_test() != 0 && iterations() >= iteration_limit())
        return residual_test() != 0 && above_target ? limit_reached : finished;
    if (residual_test() != 0 && !above_target) return finished;
    if (caller_test() != 0) return ask(test_by_caller, method.test_done);
    if (residual_test() == 0) {
        if (limit_test() == 0) return fail(CgError::endless_loop, endless_loop);
        if (quantity() == 0.0) return finished; // solved: a further step would divide by 0
    }
    return next_iteration(method.product);
}

int DcgRun::next_iteration(Stage product) const {
    last_quantity() = quantity();
    count_iteration(); // before its product is there
    return ask(apply_matrix, product);
}

/// x += alpha p, r -= alpha A p; false when p.Ap is 0.
bool DcgRun::take_step() const {
    const double curvature = dot(size(), ap(), p());
    if (curvature == 0.0) return false;
    alpha() = last_quantity() / curvature;
    axpy(size(), -alpha(), ap(), r());
    axpy(size(), alpha(), p(), x_);
    return true;
}

int DcgRun::plain_product_ready() const {
    if (!take_step()) return fail(CgError::indefinite_matrix, zero_curvature);
    return turn(r(), plain);
}

int DcgRun::product_ready() const {
    if (!take_step()) return fail(CgError::indefinite_matrix, zero_curvature);
    return ask(apply_preconditioner, Stage::preconditioning);
}

int DcgRun::preconditioned_ready() const { return turn(z(), with_preconditioner); }

/// p = gradient + beta p, where the gradient is r, preconditioned z.
int DcgRun::turn(const double* gradient, const Method& method) const {
    quantity() = dot(size(), gradient, r());
    if (last_quantity() == 0.0) return fail(CgError::altered_data, division_by_zero);
    beta() = quantity() / last_quantity();
    scale_and_add(size(), beta(), p(), gradient);
    return decide(method);
}

} // namespace

int dcg_init(int n, int* ipar, double* dpar, double* tmp) {
    CgRun(ipar, dpar).set_defaults(n);
    Columns(tmp, n).zero(3); // z, the fourth, stays as it is
    return finished;
}

int dcg_check(int n, int* ipar, double* dpar) { return CgRun(ipar, dpar).check(n, 1); }

int dcg(double* x, const double* b, int* ipar, double* dpar, double* tmp) {
    return DcgRun(x, b, ipar, dpar, tmp).resume();
}

int dcg_iterations(const int* ipar) { return ipar[3]; }

} // namespace nxl::rci
