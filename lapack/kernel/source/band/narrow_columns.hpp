// Short columns, for which a kernel's call would cost more than its work, and columns of any length.
#pragma once
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/scalars.hpp"

namespace nxl {

/// Elements up to which a loop on the spot is faster than a kernel.
inline constexpr i64 short_column = 24;

/// y := y - alpha x
template <class T> void subtract_multiple(i64 n, const T& alpha, const T* x, T* y) {
    if (n > short_column) return axpy(n, -alpha, x, 1, y, 1);
    for (i64 i = 0; i < n; ++i) y[i] -= alpha * x[i];
}

/// The sum of op(x(i)) y(i), op conjugating or not.
template <class T> T column_dot(bool conjugate, i64 n, const T* x, const T* y) {
    if (n > short_column) return conjugate ? dotc(n, x, 1, y, 1) : dot(n, x, 1, y, 1);
    T sum{};
    for (i64 i = 0; i < n; ++i) sum += conj_if(conjugate, x[i]) * y[i];
    return sum;
}

} // namespace nxl
