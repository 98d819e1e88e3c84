// The plane rotation that turns a vector of two numbers onto the first axis.
#pragma once
#include "lapack/kernel/source/common/scalars.hpp"

namespace nxl {

/// [c s; -s c] [f; g] = [length; 0]
struct PlaneRotation {
    double cosine, sine, length;
};

inline PlaneRotation rotation_to_first(double f, double g) {
    if (g == 0.0) return {1.0, 0.0, f};
    const double square = f * f + g * g;
    // Where the sum of squares has lost digits, or is infinite, by the ratio to the larger number.
    const double length = square > 0x1p-960 && square < 0x1p1000 ? std::sqrt(square) : std::hypot(f, g);
    return {f / length, g / length, length};
}

} // namespace nxl
