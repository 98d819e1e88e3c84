// Golub and Van Loan, Matrix Computations, 4th ed., sections 3.4 and 8.4.2.
#include "lapack/kernel/source/eigen/shifted_tridiagonal.hpp"
#include <cmath>

namespace nxl {

void ShiftedTridiagonal::factor(const double* d, const double* e, double shift, double scale, double least) {
    const auto pivot_of = [least](double u) { return std::fabs(u) >= least ? u : std::copysign(least, u); };
    const double at = scale * shift;
    double diagonal = scale * d[0] - at, above = n_ > 1 ? scale * e[0] : 0.0; // row k as it is now
    for (i64 k = 0; k + 1 < n_; ++k) {
        const double below = scale * e[k], next = scale * d[k + 1] - at, after = k + 2 < n_ ? scale * e[k + 1] : 0.0;
        exchanged_[k] = std::fabs(below) > std::fabs(diagonal);
        if (exchanged_[k]) {
            const double reciprocal = 1.0 / below, factor = diagonal * reciprocal;
            pivot_[k] = reciprocal;
            above_[k] = next;
            second_[k] = after;
            factor_[k] = factor;
            diagonal = above - factor * next;
            above = -factor * after;
        } else {
            const double reciprocal = 1.0 / pivot_of(diagonal), factor = below * reciprocal;
            pivot_[k] = reciprocal;
            above_[k] = above;
            second_[k] = 0.0;
            factor_[k] = factor;
            diagonal = next - factor * above;
            above = after;
        }
    }
    last_ = diagonal;
    pivot_[n_ - 1] = 1.0 / pivot_of(diagonal);
}

void ShiftedTridiagonal::solve(double* x) const {
    for (i64 k = 0; k + 1 < n_; ++k) {
        const double first = exchanged_[k] ? x[k + 1] : x[k], second = exchanged_[k] ? x[k] : x[k + 1];
        x[k] = first;
        x[k + 1] = second - factor_[k] * first;
    }
    constexpr double large = 0x1p480; // by the reciprocal of the least pivot it stays in the range
    double next = 0.0, after = 0.0;
    for (i64 k = n_ - 1; k >= 0; --k) {
        const double right = k + 1 < n_ ? above_[k] * next + (k + 2 < n_ ? second_[k] * after : 0.0) : 0.0;
        after = next;
        next = x[k] = (x[k] - right) * pivot_[k];
        if (std::fabs(next) <= large) continue;
        for (i64 i = 0; i < n_; ++i) x[i] /= large;
        next /= large;
        after /= large;
    }
}

} // namespace nxl
