// How many entries each column of the factor has.
#pragma once
#include "solvers_ds/kernel/default/pardiso/from_one.hpp"

namespace nxl::pardiso {

/// The tree, and a postorder of it, of which order[k] is the node visited as number k.
struct ColumnCountView {
    OrderedGraph graph;
    FromOne<const i32> parent, order;
    FromOne<i32> counts; ///< n, the diagonal included
    FromOne<i32> work;   ///< 4 n
};

/// Returns the sum of all counts. Time is nearly linear in the edges of the graph.
/// J. R. Gilbert, E. G. Ng and B. W. Peyton, SIAM J. Matrix Anal. Appl. 15 (1994) 1075-1091.
i64 column_counts(const ColumnCountView& view);

} // namespace nxl::pardiso
