// I and K in the right half plane: the expansions for large orders, or the regions of moderate ones.
#include "primitives/bessel/right_half_plane.hpp"
#include "primitives/bessel/moderate.hpp"
#include "primitives/bessel/uniform.hpp"

namespace nxl::bessel {

PairResult k_pair(double nu, zcomplex z) {
    if (nu < uniform_order) return moderate_k_pair(nu, z);
    return {uniform_k_pair(nu, z), true};
}

PairResult i_pair(double nu, zcomplex z) {
    if (nu < uniform_order || z == 0.0) return moderate_i_pair(nu, z);
    return {uniform_i_pair(nu, z), true};
}

} // namespace nxl::bessel
