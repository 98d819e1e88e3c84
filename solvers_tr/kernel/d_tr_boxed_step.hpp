// The subproblem of the bounded trust-region method: a quadratic in a box, to a first-order point of it.
#pragma once
#include "service/types.hpp"

namespace nxl::tr {

/// q(z) = g.z + z.Hz / 2 over lower <= z <= upper. H is symmetric, n by n, stored in full, and scaled: elements
/// of the order of 1. It need not be definite. The box is finite and holds 0.
struct BoxedModel {
    i64 n;
    const double* hessian;
    const double* gradient;
    const double* lower;
    const double* upper;
};

struct BoxedWork {
    double* slope;     // n: g + Hz
    double* direction; // n
    double* move;      // n
    double* curve;     // n: H times a move or direction
    double* factor;    // n by n
    i64* free;         // n: the numbers of the variables that may move
};

/// v in [lower, upper].
inline double inside(double v, double lower, double upper) { return v < lower ? lower : v > upper ? upper : v; }

/// Minimises q from z = 0, in at most `passes` passes or until the projected gradient has fallen by the factor
/// `precision`. Returns q(z): not above 0, and 0 only where z = 0 is a first-order point or rounding hides all descent.
double boxed_step(const BoxedModel& model, double* z, int passes, double precision, const BoxedWork& work);

} // namespace nxl::tr
