// The expansions in 1/z of I and K.
#include "primitives/bessel/hankel_sums.hpp"
#include "primitives/bessel/precision.hpp"
#include "primitives/bessel/recurrences.hpp"

namespace nxl::bessel {

HankelSums hankel_sums(double nu, zcomplex z) {
    constexpr int limit = 100; // terms; 22 are taken at asymptotic_radius, fewer beyond
    const zcomplex eighth = 0.125 / z;
    const double square = 4.0 * nu * nu;
    zcomplex term = 1.0;
    HankelSums sums{1.0, 0.0, false};
    for (int k = 1; k <= limit; ++k) {
        const double odd = 2.0 * k - 1.0;
        term *= (square - odd * odd) / k * eighth;
        (k % 2 == 0 ? sums.even : sums.odd) += term;
        if (magnitude(term) < 0.25 * epsilon) {
            sums.converged = true;
            break;
        }
    }
    return sums;
}

} // namespace nxl::bessel
