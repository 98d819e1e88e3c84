// I and K of large order in the right half plane by expansions that hold uniformly in the argument.
#pragma once
#include "primitives/bessel/order_pair.hpp"

namespace nxl::bessel {

/// Orders from here on are the expansions' own: they reach double precision there.
inline constexpr double uniform_order = 86.0;

/// K, and I, of the orders nu and nu + 1, nu >= uniform_order. z != 0, Re z >= 0.
OrderPair uniform_k_pair(double nu, zcomplex z);
OrderPair uniform_i_pair(double nu, zcomplex z);

} // namespace nxl::bessel
