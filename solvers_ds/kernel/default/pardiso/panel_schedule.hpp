// pnlsch: the order in which threads take up the supernodes.
#pragma once
#include "solvers_ds/kernel/default/pardiso/flop_count.hpp"

namespace nxl::pardiso {

struct ScheduleView {
    Supernodes supernodes;
    FromOne<const i32> parent; ///< of the tree of supernodes
    FlopRule rule;
    i32 threads;
    FromOne<i32> pnlsch; ///< supernodes
    double* work;        ///< schedule_work(supernodes, threads)
};
constexpr i64 schedule_work(i64 supernodes, i64 threads) { return 4 * (supernodes + threads); }

/// Every supernode comes after its descendants, so that the first one in the list that is not done can always be done.
/// Beyond that the order is that in which a run on so many threads begins them, with the counted operations for time:
/// a subtree of little work is one task for one thread, and of the tasks that are ready the one with the most work from
/// there to the root is taken. T. C. Hu, Operations Research 9 (1961) 841-848; subtrees: A. George, M. T. Heath, J. Liu
/// and E. Ng, SIAM J. Sci. Stat. Comput. 9 (1988) 327-340.
void build_pnlsch(const ScheduleView& view);

} // namespace nxl::pardiso
