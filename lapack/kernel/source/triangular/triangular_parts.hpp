// What the recursive algorithms on triangular matrices share: where a triangle is cut in two, and where they end.
#pragma once
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/matrix.hpp"
#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>

namespace nxl {

/// The order up to which the unblocked kernel takes over: the tuned block size, as far as the kernels go.
consteval i64 unblocked_order(const RoutineLetters& name) {
    constexpr i64 largest = 64; // kernels keep a panel of this order on the stack
    return std::min(block_of(name), largest);
}

/// The order of the first of two triangles: half of n, in whole tiles where there are some.
inline i64 first_part(i64 n) {
    constexpr i64 tile = 8;
    return n < 2 * tile ? n / 2 : (n / 2 + tile - 1) / tile * tile;
}

/// The first zero on the diagonal, from 1, or 0 when there is none.
template <class T> i64 first_zero_on_diagonal(const Matrix<T>& a) {
    for (i64 i = 0; i < a.rows; ++i)
        if (a(i, i) == T{}) return i + 1;
    return 0;
}

/// Whether the inverses of all diagonal elements are within the range.
template <class T> bool has_reciprocals(const Matrix<T>& a) {
    for (i64 i = 0; i < a.rows; ++i) {
        const T element = a(i, i);
        const double size = std::fabs(std::real(element)) + std::fabs(std::imag(element));
        if (!(size >= std::numeric_limits<double>::min())) return false;
    }
    return true;
}

} // namespace nxl
