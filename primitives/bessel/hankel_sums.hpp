// The expansions in 1/z of I and K, split by parity.
#pragma once
#include "service/types.hpp"

namespace nxl::bessel {

/// The sums of a_k(nu) / z^k over even and over odd k (DLMF 10.17.1): even + odd belongs to K and exp(-z), even - odd
/// to exp(z). Needs |z| >= asymptotic_radius and |z| >= nu^2 / 2.
struct HankelSums {
    zcomplex even, odd;
    bool converged;
};
HankelSums hankel_sums(double nu, zcomplex z);

} // namespace nxl::bessel
