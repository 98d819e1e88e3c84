// pnlsch: the order in which threads take up the supernodes.
#pragma once
#include "solvers_ds/kernel/default/pardiso/flop_count.hpp"

namespace nxl::pardiso {

struct ScheduleView {
    Supernodes supernodes;
    FromOne<const i32> parent; ///< of the tree of supernodes
    FlopRule rule;
    i32 threads;
    FromOne<i32> pnlsch;  ///< supernodes
    FromOne<double> work; ///< 4 (supernodes + threads)
};

/// Every supernode comes after its descendants, so that the first one in the list that is not done can always be done.
/// Among those that are ready, the one with the most work on its way to the root comes first: a run on so many threads,
/// with the counted operations for time. T. C. Hu, Operations Research 9 (1961) 841-848; R. L. Graham, SIAM J. Appl.
/// Math. 17 (1969) 416-429.
void build_pnlsch(const ScheduleView& view);

} // namespace nxl::pardiso
