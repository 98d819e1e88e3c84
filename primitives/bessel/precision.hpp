// What the expansions take from the format of double: tolerances, the radius where large arguments begin, and a
// size to hold against both.
#pragma once
#include "service/types.hpp"
#include <cmath>
#include <limits>
#include <numbers>

namespace nxl::bessel {

/// Relative spacing of double; sums end at terms below a fraction of it.
inline constexpr double epsilon = std::numeric_limits<double>::epsilon();

/// Decimal digits of double, 15.65.
inline constexpr double decimal_digits =
    (std::numeric_limits<double>::digits - 1) * std::numbers::ln2 / std::numbers::ln10;

/// |z| from here on is large: the smallest term of an expansion in 1/z is near exp(-2 |z|), which drops below epsilon
/// at |z| = 1.15 decimal_digits; 3 more keep the terms short of the smallest from counting. 21.8.
inline constexpr double asymptotic_radius = 1.2 * decimal_digits + 3.0;

/// exp(-negligible_exponent) does not change a double: 4 above -log(epsilon). 40.04.
inline constexpr double negligible_exponent = decimal_digits * std::numbers::ln10 + 4.0;

/// Between the modulus and 1.42 times that, without a root: for tests of size.
inline double abs1(zcomplex a) { return std::fabs(a.real()) + std::fabs(a.imag()); }

} // namespace nxl::bessel
