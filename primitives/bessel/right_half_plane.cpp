// I and K in the right half plane: the expansions for large orders, or the regions of moderate ones. Arguments far
// above the square of the order belong to the expansion in 1/z whatever the order: its phases carry no error that grows
// with z.
#include "primitives/bessel/right_half_plane.hpp"
#include "primitives/bessel/i_moderate.hpp"
#include "primitives/bessel/k_moderate.hpp"
#include "primitives/bessel/uniform.hpp"

namespace nxl::bessel {
namespace {

bool far_above(double nu, zcomplex z) { return 2.0 * std::abs(z) >= (nu + 1.0) * (nu + 1.0); }

} // namespace

PairResult k_pair(double nu, zcomplex z) {
    if (nu < uniform_order) return moderate_k_pair(nu, z);
    if (far_above(nu, z)) return k_by_expansion(nu, z);
    return {uniform_k_pair(nu, z), true};
}

PairResult i_pair(double nu, zcomplex z) {
    if (nu < uniform_order || z == 0.0) return moderate_i_pair(nu, z);
    if (far_above(nu, z)) return i_by_expansion(nu, z);
    return {uniform_i_pair(nu, z), true};
}

} // namespace nxl::bessel
