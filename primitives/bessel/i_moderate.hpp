// I of moderate order in the right half plane: one function for each region, and the choice among them.
#pragma once
#include "primitives/bessel/right_half_plane.hpp"

namespace nxl::bessel {

/// The orders nu and nu + 1, 0 <= nu < 90, Re z >= 0. Real z gives real values.
PairResult moderate_i_pair(double nu, zcomplex z);

// Of the same orders.
PairResult i_by_series(double nu, zcomplex z);    // |z|^2 / 4 <= about nu + 1, z != 0
PairResult i_by_ratio(double nu, zcomplex z);     // |z| above 1; an error of |z| epsilon near the imaginary axis
PairResult i_by_expansion(double nu, zcomplex z); // |z| >= asymptotic_radius and (nu + 1)^2 / 2
PairResult i_by_expansion_upwards(double nu, zcomplex z); // |z| >= asymptotic_radius and nu + 1, nu^2 Re(1 / z) <= 2

} // namespace nxl::bessel
