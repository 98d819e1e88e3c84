// K of moderate order in the right half plane: one function for each region, and the choice among them.
#pragma once
#include "primitives/bessel/right_half_plane.hpp"

namespace nxl::bessel {

/// The orders nu and nu + 1, 0 <= nu < 90, Re z >= 0, z != 0. Real z gives real values.
PairResult moderate_k_pair(double nu, zcomplex z);

// Of the orders mu and mu + 1, |mu| <= 1/2 but for the last.
PairResult k_by_series(double mu, zcomplex z);             // |z| <= about 2
PairResult k_by_continued_fraction(double mu, zcomplex z); // |z| >= about 2
PairResult k_by_expansion(double mu, zcomplex z);          // |z| >= asymptotic_radius and (mu + 1)^2 / 2

} // namespace nxl::bessel
