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

/// A pivot by which many elements are divided, each of which waits for the one before: the reciprocal is at hand before
/// it comes, where it is within the range of doubles.
template <class T> class Divisor {
    const T value_, reciprocal_;
    const bool fits_;

  public:
    explicit Divisor(const T& value)
        : value_(value),
          reciprocal_(T(1.0) / value),
          fits_(abs1(value) >= safe_minimum && abs1(value) <= 1.0 / safe_minimum) {}
    T divide(const T& x) const { return fits_ ? x * reciprocal_ : x / value_; }
};

/// Calls body(first, count) for the columns of b, so many at a time that their chains of operations overlap: the count
/// is a constant.
template <class T, class Body> void for_groups_of_columns(const Matrix<T>& b, const Body& body) {
    constexpr i64 group = 4;
    i64 k = 0;
    for (; k + group <= b.columns; k += group) body(b.at(0, k), std::integral_constant<i64, group>{});
    for (; k < b.columns; ++k) body(b.at(0, k), std::integral_constant<i64, 1>{});
}

} // namespace nxl
