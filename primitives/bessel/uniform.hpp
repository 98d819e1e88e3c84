// I and K of large order in the right half plane by expansions that hold uniformly in the argument.
#pragma once
#include "primitives/bessel/order_pair.hpp"

namespace nxl::bessel {

/// Orders from here on are the expansions' own: they reach double precision there.
inline constexpr double uniform_order = 86.0;

/// K, and I, of the orders nu and nu + 1, nu >= uniform_order. z != 0, Re z >= 0. Mantissas are not normalised: 1e-4 to
/// 2, apart from zeros of I on the imaginary axis. The error is a few units in the last place of the exponents, whose
/// terms are as large as nu + |z| and log_scale.
OrderPair uniform_k_pair(double nu, zcomplex z);
OrderPair uniform_i_pair(double nu, zcomplex z);

} // namespace nxl::bessel
