// Iterative refinement in fixed precision, with error bounds, for systems of every kind. A kind tells how it multiplies
// and how it solves:
//
//     i64 order() const, terms() const;                     order; the most terms in a row of op(A) x - b
//     void residual(const T* x, const T* b, T* r) const;    r = b - op(A) x
//     void sizes(const T* x, const T* b, double* w) const;  w = |op(A)| |x| + |b|, see moduli.hpp
//     void solve(char op, T* y) const;                      y := op(A)^-1 y from the factors, or with op C its
//     adjoint's
//
// Arioli, Demmel and Duff, SIAM J. Matrix Anal. Appl. 10 (1989); Skeel, Math. Comp. 35 (1980): a step or two make the
// backward error small element by element.
#pragma once
#include "blas/calls.hpp"
#include "lapack/kernel/source/condition/error_bounds.hpp"
#include "lapack/kernel/source/condition/estimate_space.hpp"
#include "service/matrix.hpp"

namespace nxl {

/// The right-hand sides B, the solutions X, and where the bounds of each column go.
template <class T> struct Solutions {
    Matrix<const T> b;
    Matrix<T> x;
    double *ferr, *berr;
};

/// Refines one solution for as long as each step halves the backward error and it is above the roundoff, five steps at
/// most. Returns the backward error; space.x is the last residual, space.sizes its sizes.
template <class T, class System>
double refine_one(const System& system, const ErrorBounds<T>& bounds, const T* b, T* x, const EstimateSpace<T>& space) {
    constexpr int most_steps = 5;
    const i64 n = system.order();
    double last = 2.0;
    for (int step = 0;; ++step) {
        system.residual(x, b, space.x);
        system.sizes(x, b, space.sizes);
        const double error = bounds.backward(space.x, space.sizes);
        if (!(error > unit_roundoff && 2.0 * error <= last) || step == most_steps) return error;
        system.solve('N', space.x);
        axpy(n, 1.0, space.x, 1, x, 1);
        last = error;
    }
}

/// Improves each column of X and bounds its errors.
template <class T, class System>
void refine(const System& system, const Solutions<T>& of, const EstimateSpace<T>& space) {
    const ErrorBounds<T> bounds{system.order(), system.terms()};
    for (i64 k = 0; k < of.x.columns; ++k) {
        of.ferr[k] = of.berr[k] = 0.0;
        if (bounds.n == 0) continue;
        T* const x = of.x.at(0, k);
        of.berr[k] = refine_one(system, bounds, of.b.at(0, k), x, space);
        of.ferr[k] = bounds.forward(space.x, space.sizes, space.v, x, [&](char op, T* y) { system.solve(op, y); });
    }
}

} // namespace nxl
