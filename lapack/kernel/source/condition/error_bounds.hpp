// How far a computed solution of op(A) x = b can be from the true one: the backward error, that is the smallest
// relative change of A and b, element by element, for which x is exact, and a bound on the relative forward error.
// Arioli, Demmel and Duff, SIAM J. Matrix Anal. Appl. 10 (1989); Higham, Accuracy and Stability of Numerical
// Algorithms, section 7.
#pragma once
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/condition/norm_estimate.hpp"
#include "service/types.hpp"
#include <algorithm>

namespace nxl {

/// Of one solution. `terms`: the most terms in a row of op(A) x - b.
template <class T> struct ErrorBounds {
    i64 n, terms;

    /// The largest of |r(i)| / w(i), r being the residual and w = |op(A)| |x| + |b|. What is next to nothing in w is
    /// raised, with r, above the rounding of numbers near the underflow limit.
    double backward(const T* r, const double* w) const {
        double largest = 0.0;
        for (i64 i = 0; i < n; ++i) {
            const double raised = w[i] > least_sum() ? 0.0 : underflow();
            const double ratio = (abs1(r[i]) + raised) / (w[i] + raised);
            if (std::isnan(ratio)) return ratio;
            largest = std::max(largest, ratio);
        }
        return largest;
    }

    /// | |op(A)^-1| (|r| + terms u w) | / |x| in the largest elements, where the second term covers the rounding of r.
    /// Takes w, leaves it changed. solve(op, y) makes op(A)^-1 y, or with op C its adjoint's, of y. `v`, `r`: n
    /// elements; r is the residual and then workspace.
    template <class Solve> double forward(T* r, double* w, T* v, const T* x, const Solve& solve) const {
        const double rounding = static_cast<double>(terms) * unit_roundoff;
        for (i64 i = 0; i < n; ++i) w[i] = abs1(r[i]) + rounding * w[i] + (w[i] > least_sum() ? 0.0 : underflow());
        const auto weigh = [&] {
            for (i64 i = 0; i < n; ++i) r[i] *= w[i];
        };
        NormEstimate<T> estimate(n, v, r); // of W op(A)^-H, whose adjoint's row sums are the ones wanted
        while (const auto wanted = estimate.step()) {
            if (wanted == NormEstimate<T>::adjoint_product) weigh();
            solve(wanted == NormEstimate<T>::product ? 'C' : 'N', r);
            if (wanted == NormEstimate<T>::product) weigh();
        }
        const double size = largest_abs1(n, x);
        return size != 0.0 ? estimate.value() / size : estimate.value();
    }

  private:
    double underflow() const { return static_cast<double>(terms) * safe_minimum; }
    double least_sum() const { return underflow() / unit_roundoff; }
};

} // namespace nxl
