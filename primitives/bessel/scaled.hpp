// Complex numbers with a logarithmic scale of their own: what would leave the range of doubles on its way.
#pragma once
#include "service/types.hpp"
#include <algorithm>
#include <cmath>

namespace nxl::bessel {

/// value exp(log_scale).
struct Scaled {
    zcomplex value;
    double log_scale;
};

/// Zero parts with a plus sign: the side of a cut that counts as its own.
inline zcomplex without_signed_zeros(zcomplex a) { return {a.real() + 0.0, a.imag() + 0.0}; }

/// exp(w).
inline Scaled scaled_exp(zcomplex w) { return {{std::cos(w.imag()), std::sin(w.imag())}, w.real()}; }

inline Scaled operator*(zcomplex a, const Scaled& b) { return {a * b.value, b.log_scale}; }
inline Scaled operator*(const Scaled& a, const Scaled& b) { return {a.value * b.value, a.log_scale + b.log_scale}; }

/// The larger scale remains.
inline Scaled operator+(const Scaled& a, const Scaled& b) {
    const double scale = std::max(a.log_scale, b.log_scale);
    return {a.value * std::exp(a.log_scale - scale) + b.value * std::exp(b.log_scale - scale), scale};
}

} // namespace nxl::bessel
