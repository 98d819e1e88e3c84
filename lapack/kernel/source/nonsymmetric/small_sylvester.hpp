// Sylvester equations between blocks on the diagonal of a Schur form.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// X by columns, of at most 2 by 2. `scale` <= 1 keeps it within the range.
template <class T> struct SmallSolution {
    T x[4];
    double scale;
    bool perturbed; // a pivot below the least one was taken to be that
};

/// op(A) X + sign X op(B) = scale C for blocks of orders 1 and 2; `c` by columns, without gaps. Gaussian elimination
/// with complete pivoting; `least` > 0 is the least pivot.
template <class T>
SmallSolution<T> solve_small_sylvester(bool adjoint_a, bool adjoint_b, double sign, const Operand<T>& a,
                                       const Operand<T>& b, const T* c, double least);

} // namespace nxl
