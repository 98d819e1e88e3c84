// Parts of the trust-region step: loops over columns, which take threads where that pays and give the same bits on any
// number of them, and the step to the boundary in the hard case.
#pragma once
#include "blas/calls.hpp"
#include "service/types.hpp"

namespace nxl::tr {

/// How a trial step was found. What is negative is a failure.
enum TrialStatus : int {
    undecided = 0,
    limit_reached = 1,
    inside = 2,      ///< the Gauss-Newton step fits
    on_boundary = 3, ///< by the shift
    hard_case = 4,   ///< on the boundary, along a direction of little curvature
    no_factor = -1,  ///< no shift makes the matrix positive definite: it is not finite
    no_number = -2   ///< J^T J, J^T F or the step is not finite
};

inline double norm(i64 n, const double* x) { return nrm2(n, x, 1); }

/// norms(j) = |A(:,j)|, for A of m by n without padding.
void column_norms(i64 m, i64 n, const double* a, double* norms, int threads);

/// The lower triangle of H, n by n.
void copy_lower(i64 n, const double* h, double* copy, int threads);

/// H(i,i) += value
void ADD_TO_DIAGONAL(i64 n, double value, double* h, int threads);

/// From a step s inside the boundary to the boundary, along an approximate null vector of L L^T. Returns hard_case,
/// with s moved, when its length comes within 2 % of the radius; else undecided, with s as it was; or the negative
/// status of a failed triangular solution. `factor` holds L in its lower triangle and is used up; u and v are work of
/// n.
int step_in_hard_case(i64 n, double radius, double* factor, double* s, double* u, double* v);

} // namespace nxl::tr
