// Nonlinear least squares without constraints, by reverse communication: the handle and the method's legs. The step
// itself is d_tr_trialstep_nlsqp_withMP's.
#pragma once

namespace nxl::tr {

/// Values of RCI_Request. A run that ends by itself leaves its stop code negated.
enum NlsqRequest : int {
    go_on = 0,
    evaluate_residual = 1,
    evaluate_jacobian = 2,
    stop_by_caller = -1, // from the caller, as is
    abort_by_caller = -2 // this one
};

/// Why a run ended. The two requests of the caller to stop are codes too.
enum StopCode : int {
    running = 0,
    iterations_used_up = 1,
    radius_small = 2,
    residual_small = 3,
    jacobian_vanishes = 4,
    step_small = 5,
    no_progress_predicted = 6,
    invalid_run = -3,
    no_trial_step = -4
};

int nlsqp_init(void** handle, int n, int m, double* x, const double* eps, int iter1, int iter2, double rs);
int nlsqp_solve(void** handle, double* fvec, const double* fjac, int& request);
int nlsqp_get(void* const* handle, int& iterations, int& stop_code, double& initial_norm, double& final_norm);
int nlsqp_delete(void** handle);

} // namespace nxl::tr
