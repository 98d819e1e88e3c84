// Bisection: the eigenvalues of a symmetric tridiagonal matrix that does not split, by counting those below a number.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Diagonal d(n) and squares of the off-diagonal e2(n), of which the last does not count; pivmin: the least pivot.
struct SturmMatrix {
    i64 n;
    const double *d, *e2;
    double pivmin;

    /// counts(many): the eigenvalues that do not exceed each of the shifts. On several threads where it pays.
    void count(i64 many, const double* shifts, i64* counts) const;
    i64 count(double shift) const;
};

/// When an interval is taken for an eigenvalue: its length is at most the larger of `absolute` and `relative` times its
/// larger end.
struct BisectionTolerance {
    double absolute, relative;
};

/// What bisection holds: eigenvalues first .. last (from 0, ascending) are in (low, high].
struct EigenvalueInterval {
    double low, high;
    i64 first, last;
};

/// Room for the intervals of `count` eigenvalues and their middles.
struct BisectionSpace {
    EigenvalueInterval* intervals;
    double* middles;
    i64* counts;
};

/// w(0 .. last - first): eigenvalues `first` .. `last` of the matrix, all of which are in (low, high]. Returns how many
/// of them are not as good as they should be.
i64 bisect(const SturmMatrix& t, const EigenvalueInterval& all, const BisectionTolerance& tolerance,
           const BisectionSpace& space, double* w);

} // namespace nxl
