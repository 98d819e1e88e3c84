#include "solvers_ds/kernel/default/pardiso/flop_count.hpp"

namespace nxl::pardiso {

double flops_of_supernode(const Supernodes& supernodes, i32 s, const FlopRule& rule) {
    const double square = rule.lu ? 2.0 : 1.0, scale = rule.complex_words ? 4.0 : 1.0;
    const i32 rows = supernodes.rows(s);
    double flops = 0.0;
    for (i32 k = 1; k <= supernodes.width(s); ++k) {
        const double below = rows - k;
        flops += below * (square * below + 1.0);
    }
    return scale * flops;
}

double mflop_count(const Supernodes& supernodes, const FlopRule& rule) {
    double flops = 0.0;
    for (i32 s = 1; s <= supernodes.count; ++s) flops += flops_of_supernode(supernodes, s, rule);
    return flops * 1e-6;
}

} // namespace nxl::pardiso
