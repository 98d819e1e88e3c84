// Roots of secular equations, of which divide and conquer makes eigenvalues and singular values.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// f(x) = 1 / rho + sum of weights[i] / (p[i] - x) with n poles p, which are d, or the squares of d >= 0. f has a root
/// beyond each pole, before the next one; the last is at most rho times the sum of the weights away. Poles enter by
/// their differences alone, and a root is told by its distances from all of them, each to a few units in its last
/// place: from these, vectors come out orthogonal.
struct SecularEquation {
    enum class Poles { plain, squared };

    Poles poles;
    i64 n;
    const double* d;       // ascending, all different
    const double* weights; // above 0
    double rho;            // above 0

    /// Root j is x, or the square of x where poles are squares: distances(n) become d[i] - x and, of squares alone,
    /// sums(n) d[i] + x. Returns x.
    double root(i64 j, double* distances, double* sums) const;

    /// Elements start .. end - 1 of the weights of which the roots that have been found, one for each column of
    /// `distances` and `sums`, are the exact ones. Gu and Eisenstat, SIAM J. Matrix Anal. Appl. 16 (1995), after
    /// Loewner.
    void weights_of_roots(i64 start, i64 end, const Matrix<const double>& distances, const Matrix<const double>& sums,
                          double* found) const;
};

} // namespace nxl
