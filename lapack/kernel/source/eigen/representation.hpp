// Representations of symmetric tridiagonal matrices that define their small eigenvalues to high relative accuracy.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// L D L^T: D = diag(d), L has ones on its diagonal and l below it.
struct Representation {
    i64 n;
    double *d, *l, *ld, *lld; // n; n - 1 each: l, l d and l^2 d

    static constexpr i64 room(i64 order) { return 4 * order; }
    Representation(i64 order, double* space)
        : n(order),
          d(space),
          l(space + order),
          ld(space + 2 * order),
          lld(space + 3 * order) {}

    /// ld and lld of d and l.
    void complete() const;
    /// counts(many): the eigenvalues below each of the shifts.
    void count(i64 many, const double* shifts, i64* counts) const;
    /// to := L D L^T - shift I, without ld and lld. Returns the largest of weights[i] |d[i]| of it, infinite when it
    /// cannot be had.
    double shift_to(double shift, const double* weights, const Representation& to) const;
};

/// An eigenvalue is within its bounds.
struct ValueBounds {
    double low, high;
    double middle() const { return 0.5 * low + 0.5 * high; }
};

/// A vector of a representation, of which the elements in first .. last alone count.
struct RepresentedVector {
    double value, scale; // by which x is to be multiplied
    i64 first, last;
};

/// Vectors by twisted factorisations.
class TwistedVectors {
    double *lower_, *upper_, *from_top_, *from_bottom_, *top_pivots_, *bottom_pivots_, *x_;

    struct Twist {
        i64 at, below; // where; eigenvalues below the number
        double gamma;
    };
    Twist factor(const Representation& of, double value) const;
    RepresentedVector solve(const Representation& of, const Twist& twist, double negligible, double& square) const;

  public:
    static constexpr i64 room(i64 order) { return 7 * order; }
    TwistedVectors(i64 order, double* space);

    /// The vector of eigenvalue `number`, from 0, which is `gap` away from the others. False when it is not as good as
    /// it should be.
    bool find(const Representation& of, i64 number, ValueBounds bounds, double gap, RepresentedVector& found) const;
    const double* x() const { return x_; }
    /// Raises envelope[i] to the size of element i of some vector for eigenvalues close to `value`.
    void add_to_envelope(const Representation& of, double value, double* envelope) const;
};

} // namespace nxl
