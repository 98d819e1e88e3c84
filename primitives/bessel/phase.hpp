// Powers of -1 and of z / |z| with exact reduction, so that multiples of a quarter turn are exact.
#pragma once
#include "service/types.hpp"
#include <cmath>
#include <numbers>

namespace nxl::bessel {

/// exp(i pi x).
inline zcomplex half_turns(double x) {
    const double quarters = std::round(2.0 * x);
    const double angle = std::numbers::pi * (x - 0.5 * quarters); // the difference is exact
    const zcomplex rest(std::cos(angle), std::sin(angle));
    switch (static_cast<int>(std::fmod(quarters, 4.0)) & 3) {
    case 0: return rest;
    case 1: return {-rest.imag(), rest.real()};
    case 2: return -rest;
    default: return {rest.imag(), -rest.real()};
    }
}

/// exp(i nu arg z), Re z >= 0.
inline zcomplex phase_of_power(double nu, zcomplex z) {
    if (z.imag() == 0.0) return 1.0;
    if (z.real() == 0.0) return half_turns(std::copysign(0.5 * nu, z.imag()));
    const double angle = nu * std::arg(z);
    return {std::cos(angle), std::sin(angle)};
}

} // namespace nxl::bessel
