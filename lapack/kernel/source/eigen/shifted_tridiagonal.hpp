// P (T - x I) = L U of a symmetric tridiagonal matrix, with row interchanges, for inverse iteration.
#pragma once
#include "service/types.hpp"

namespace nxl {

class ShiftedTridiagonal {
    const i64 n_;
    double *const pivot_, *const above_, *const second_; // U: 1 / diagonal, and the two diagonals above it
    double* const factor_;                               // L: one element below the diagonal
    bool* const exchanged_;
    double last_ = 0.0;

  public:
    static constexpr i64 room(i64 n) { return 4 * n; } // doubles, besides n flags

    ShiftedTridiagonal(i64 n, double* space, bool* flags)
        : n_(n),
          pivot_(space),
          above_(space + n),
          second_(space + 2 * n),
          factor_(space + 3 * n),
          exchanged_(flags) {}

    /// Of scale (T - shift I). A pivot is at least `least` in size.
    void factor(const double* d, const double* e, double shift, double scale, double least);
    /// The last pivot, which is small when the shift is close to an eigenvalue.
    double last_pivot() const { return last_; }
    /// x becomes a multiple of the solution, such that nothing overflows.
    void solve(double* x) const;
};

} // namespace nxl
