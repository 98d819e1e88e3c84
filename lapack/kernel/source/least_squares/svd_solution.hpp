// Solutions of least norm from singular values.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// A X = B with `sides` of max(m, n) rows, the right-hand sides in the first m, the solutions in the first n of them
/// afterwards; where A has no fewer rows than columns and full rank, what is left of B below. s: the singular values,
/// descending; those up to cutoff(s(1)) count as 0.
template <class T> struct SvdSolution {
    Matrix<T> a, sides;
    double* s;
    double rcond;
    bool keeps_vectors; // the first rows of A are to become the right singular vectors
    i64& rank;

    /// 0; how many values have not converged; or -1 when there was no memory.
    i64 run() const;

  private:
    i64 solve() const;
};

} // namespace nxl
