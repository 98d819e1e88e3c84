// Solution of triangular systems that cannot overflow: op(A) x = s b with a scale s, 1 wherever that will do, and 0
// when A is singular. Anderson, Robust triangular solves for use in condition estimation, LAPACK Working Note 36
// (1991).
#pragma once
#include "lapack/kernel/source/common/columns.hpp"

namespace nxl {

/// One triangle, full or of a band, for any number of right-hand sides: what is known of its columns is found once.
template <class T> class SafeTriangle {
  public:
    /// `column_sums`: n elements, which the solver keeps.
    SafeTriangle(char uplo, char diag, const Columns<const T>& triangle, double* column_sums);

    /// x := s op(A)^-1 x; the answer is s. For s = 0, x is a vector of A's null space.
    double solve(char trans, T* x) const;

  private:
    class Run;
    void fit_sums();
    double growth_bound(bool transposed, double largest) const;
    /// The columns in the order of the solution: column(step, ...).
    i64 column(i64 step, bool transposed) const { return upper_ == transposed ? step : n_ - 1 - step; }

    const char uplo_, diag_;
    const bool upper_, unit_;
    const i64 n_;
    const Columns<const T> triangle_, off_; // off_: without the diagonal
    double* const sums_;                    // of abs1 off the diagonal, times scale_
    double scale_ = 1.0;                    // below 1 when the sums themselves would not fit
    bool finite_ = true;
};

} // namespace nxl
