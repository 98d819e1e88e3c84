// I and K in the right half plane, Re z >= 0, for any order: the choice of the method by order and argument.
#pragma once
#include "primitives/bessel/order_pair.hpp"

namespace nxl::bessel {

/// K of the orders nu and nu + 1, nu >= 0. z != 0, Re z >= 0. `converged` is false when an iteration did not end.
struct PairResult {
    OrderPair pair;
    bool converged;
};
PairResult k_pair(double nu, zcomplex z);

/// I of the orders nu and nu + 1, nu >= 0. Re z >= 0; z may be 0.
PairResult i_pair(double nu, zcomplex z);

} // namespace nxl::bessel
