// Products with the caller's matrix, and residuals with more bits than a double has.
#pragma once
#include "service/scalars.hpp"
#include "solvers_ds/kernel/default/pardiso/from_one.hpp"

namespace nxl::pardiso {

/// A as the caller has it.
template <class T> struct CallerMatrix {
    i32 n;
    const i32 *ia, *ja;
    const T* a;
    bool triangle, hermitian; ///< the upper triangle alone is stored, and stands for its conjugate transpose
    bool transposed;          ///< products are with the transpose; of a whole matrix only
    i32 threads;
};

/// y := A x for one column.
template <class T> void amuxy(const CallerMatrix<T>& matrix, const T* x, T* y);

/// r := b - (A (x + x_low)), accumulated in pairs of doubles, n each. `low` is work memory of n scalars.
template <class T>
void extended_residual(const CallerMatrix<T>& matrix, const T* b, const T* x, const T* x_low, T* r, T* low);

/// (x, x_low) := (x, x_low) + d as a pair of doubles.
template <class T> void extended_add(i64 n, const T* d, T* x, T* x_low);

/// The sum of |x_i|, of complex numbers of their parts.
template <class T> double sum_of_sizes(i64 n, const T* x) {
    double sum = 0.0;
    for (i64 i = 0; i < n; ++i) sum += abs1(x[i]);
    return sum;
}

} // namespace nxl::pardiso
