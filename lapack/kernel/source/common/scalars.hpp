// What algorithms for both scalars ask of one number, and the limits of double.
#pragma once
#include "service/types.hpp"
#include <cmath>
#include <complex>
#include <limits>

namespace nxl {

inline constexpr double safe_minimum = std::numeric_limits<double>::min(); // its reciprocal does not overflow
inline constexpr double unit_roundoff = std::numeric_limits<double>::epsilon() / 2;

inline double conj_if(bool, double x) { return x; }
inline zcomplex conj_if(bool conjugate, const zcomplex& x) { return conjugate ? std::conj(x) : x; }

/// |re| + |im|: the modulus to a factor of sqrt(2), without a root.
inline double abs1(double x) { return std::fabs(x); }
inline double abs1(const zcomplex& x) { return std::fabs(x.real()) + std::fabs(x.imag()); }

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
