// The recurrences in the order for modified functions, each in its stable direction, where the modulus grows. A step
// costs one division: the scale moves only when the mantissas become large, and then by an exact power of two.
#pragma once
#include "primitives/bessel/order_pair.hpp"
#include <algorithm>
#include <cmath>
#include <numbers>

namespace nxl::bessel {

inline constexpr int rescaling_exponent = 512;     // the power of two taken out at once
inline constexpr double large_mantissa = 0x1p+496; // a step from here stays finite: 2 nu / |z| is below 2^500
inline constexpr int free_mantissa_exponent = 64;  // mantissas within 2^+-64 count as near 1

/// The largest component.
inline double magnitude(zcomplex a) { return std::max(std::abs(a.real()), std::abs(a.imag())); }

/// The same values with mantissas times 2^-exponent.
inline OrderPair shifted(const OrderPair& pair, int exponent) {
    const double factor = std::ldexp(1.0, -exponent);
    return {pair.first * factor, pair.second * factor, pair.log_scale + exponent * std::numbers::ln2};
}

/// K(nu), K(nu + 1) become K(nu + 1), K(nu + 2).
inline OrderPair advance_up(const OrderPair& pair, double nu, zcomplex z) {
    const OrderPair next{pair.second, pair.first + 2.0 * (nu + 1.0) / z * pair.second, pair.log_scale};
    return magnitude(next.second) < large_mantissa ? next : shifted(next, rescaling_exponent);
}

/// I(nu), I(nu + 1) become I(nu - 1), I(nu).
inline OrderPair advance_down(const OrderPair& pair, double nu, zcomplex z) {
    const OrderPair next{pair.second + 2.0 * nu / z * pair.first, pair.first, pair.log_scale};
    return magnitude(next.first) < large_mantissa ? next : shifted(next, rescaling_exponent);
}

/// The larger mantissa within 2^+-64. Nearer to 1 would cost digits of a large log_scale.
inline OrderPair normalised(const OrderPair& pair) {
    const double size = std::max(magnitude(pair.first), magnitude(pair.second));
    if (!(size > 0.0)) return pair;
    const int exponent = std::ilogb(size);
    return std::abs(exponent) <= free_mantissa_exponent ? pair : shifted(pair, exponent);
}

} // namespace nxl::bessel
