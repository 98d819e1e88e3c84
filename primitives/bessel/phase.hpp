// Phases that are multiples of a right angle, however large the multiple: reduced before a sine is taken.
#pragma once
#include "service/types.hpp"
#include <cmath>
#include <numbers>

namespace nxl::bessel {

/// exp(i pi/2 quarter_turns). The whole turns leave without rounding; whole quarters give exactly 1, i, -1 or -i.
inline zcomplex unit_phase(double quarter_turns) {
    const double within = std::fmod(quarter_turns, 4.0);
    const double nearest = std::rint(within);
    const double angle = (within - nearest) * (std::numbers::pi / 2.0);
    const double cosine = std::cos(angle), sine = std::sin(angle);
    switch (static_cast<int>(nearest) & 3) {
    case 0: return {cosine, sine};
    case 1: return {-sine, cosine};
    case 2: return {-cosine, -sine};
    default: return {sine, -cosine};
    }
}

/// exp(i nu arg z), Re z >= 0.
inline zcomplex phase_of_power(double nu, zcomplex z) {
    if (z.imag() == 0.0) return 1.0;
    if (z.real() == 0.0) return unit_phase(std::copysign(nu, z.imag()));
    const double angle = nu * std::arg(z);
    return {std::cos(angle), std::sin(angle)};
}

} // namespace nxl::bessel
