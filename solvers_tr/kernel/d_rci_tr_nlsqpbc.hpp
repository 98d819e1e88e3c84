// Nonlinear least squares with bounds, by reverse communication: the four calls on a handle. They return a Status.
#pragma once
#include "solvers_tr/kernel/status.hpp"

namespace nxl::tr {

/// The caller's arrays; they are kept, not copied, and outlive the handle.
struct BoxedProblem {
    int n, m;
    double* x;           // n
    const double* lower; // n
    const double* upper; // n
    const double* eps;   // 6
};

Status boxed_init(void** handle, const BoxedProblem& problem, int most_iterations, int most_passes, double start_scale);
Status boxed_solve(void* const* handle, double* fvec, const double* fjac, int* request);
Status boxed_get(void* const* handle, int* iterations, int* stop_code, double* r1, double* r2);

/// The variable that holds the handle stays as it is.
Status boxed_delete(void** handle);

} // namespace nxl::tr
