// From the order of the columns to the supernodes: tree, column counts, final order.
#pragma once
#include "solvers_ds/kernel/default/pardiso/supernodes.hpp"

namespace nxl::pardiso {

struct SfinitView {
    i32 n;
    FromOne<const i32> xadj, adjncy;
    FromOne<i32> perm, invp; ///< the order; its columns move within the ranges of the separators
    i32 panel_width;
    bool keep_pairs;                    ///< a column whose parent is the next one stays right before it
    Separators& separators;             ///< in columns, and afterwards in supernodes
    FromOne<i32> parent, counts, snode; ///< n each
    FromOne<i32> xsup;                  ///< n + 1
    FromOne<i32> work;                  ///< sfinit_work times n
};
inline constexpr i64 sfinit_work = 7;

struct SfinitResult {
    SupernodeSizes sizes;
    i64 factor_entries; ///< of the lower triangle of L, with its diagonal
};

SfinitResult sfinit(const SfinitView& view);

} // namespace nxl::pardiso
