// What LAPACK asks of numbers and vectors of them, and the limits of double.
#pragma once
#include "service/scalars.hpp"
#include <limits>

namespace nxl {

inline constexpr double safe_minimum = std::numeric_limits<double>::min(); // its reciprocal does not overflow
inline constexpr double unit_roundoff = std::numeric_limits<double>::epsilon() / 2;

/// x / |x|, or 1 for 0.
inline double sign_of(double x) { return std::signbit(x) ? -1.0 : 1.0; }
inline zcomplex sign_of(const zcomplex& x) {
    const double size = std::abs(x);
    return size > safe_minimum ? zcomplex(x.real() / size, x.imag() / size) : zcomplex(1.0);
}

/// The largest abs1 of a vector, NaN when it has one.
template <class T> double largest_abs1(i64 n, const T* x) {
    double largest = 0.0;
    for (i64 i = 0; i < n; ++i)
        if (const double size = abs1(x[i]); !(size <= largest)) {
            largest = size;
            if (std::isnan(size)) break;
        }
    return largest;
}

} // namespace nxl
