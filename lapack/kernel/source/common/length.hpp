// std::hypot, and so the modulus of a complex number, quickly where it has nothing to look out for.
#pragma once
#include "service/types.hpp"
#include <cmath>

namespace nxl {

/// The root of x^2 + y^2, which does not leave the range on the way.
inline double length_of(double x, double y) {
    const double square = x * x + y * y;
    return square > 0x1p-900 && square < 0x1p1020 ? std::sqrt(square) : std::hypot(x, y);
}
inline double length_of(const zcomplex& x) { return length_of(x.real(), x.imag()); }
inline double length_of(double x) { return std::fabs(x); }

} // namespace nxl
