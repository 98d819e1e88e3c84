// The subproblem of the trust-region method: the step that minimises |F + J s| within the radius.
#pragma once
#include "service/types.hpp"

namespace nxl::tr {

struct TrialProblem {
    i64 m, n;
    const double* jacobian; ///< J, m by n without padding
    const double* residual; ///< F, m
    double radius;
    int threads;
    double* step;    ///< s, n: the result
    double* work[3]; ///< n each
    double* h;       ///< n by n: J^T J plus the shift
    double* factor;  ///< n by n: its Cholesky factor
};

/// Finds s with (J^T J + shift I) s = -J^T F and a length of about the radius, or shift 0 and a length below it.
/// `iterations`: in, the limit; out, how many were used. Returns a TrialStatus; negative means that there is no step.
int DMINTR_LS_PD_WITHOMP(const TrialProblem& problem, int& iterations, double& shift);

} // namespace nxl::tr
