// Supernodes: runs of columns of the factor that have the same rows below them.
#pragma once
#include "solvers_ds/kernel/default/pardiso/from_one.hpp"
#include "solvers_ds/kernel/default/pardiso/separators.hpp"

namespace nxl::pardiso {

struct SupernodeSizes {
    i32 supernodes = 0;
    i32 largest = 0;          ///< columns of the largest one, before the limit cuts
    i64 structure_length = 0; ///< rows of all of them
};

/// Column j goes on with the supernode of j - 1 when it is its parent and has one row less, up to `limit` columns.
/// snode receives the supernode of each column.
SupernodeSizes find_supernodes(i32 n, FromOne<const i32> parent, FromOne<const i32> counts, i32 limit,
                               FromOne<i32> snode);

/// xsup[s] is the first column of supernode s, and xsup[supernodes + 1] is n + 1.
void first_columns(i32 n, FromOne<const i32> snode, FromOne<i32> xsup);

/// Turns column ranges into ranges of supernodes. A supernode that the last column of a subgraph begins goes to what
/// follows; the root separator is all behind the last subgraph.
void separators_by_supernode(FromOne<const i32> snode, FromOne<const i32> xsup, i32 supernodes,
                             const Separators& separators);

} // namespace nxl::pardiso
