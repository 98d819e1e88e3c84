// An order of elimination with its assembly tree, as the minimum degree algorithm leaves them.
#pragma once
#include "solvers_ds/kernel/default/pardiso/minimum_degree.hpp"

namespace nxl::pardiso {

/// Front k eliminates the columns perm[start[k]] .. perm[start[k + 1] - 1] and hands the rest on to front parent[k],
/// which comes later, or to none. Columns of two fronts, neither of which is an ancestor of the other, are not
/// adjacent.
struct AssemblyTree {
    i32 fronts;
    i32* start;  // fronts + 1; room for n + 1
    i32* parent; // fronts; room for n; -1 for a root
    i32* border; // fronts; room for n: columns that the front hands on
};

/// Fills in perm, counted from 0, and the tree.
i32 eliminate_by_degree(const Graph& graph, i32* perm, AssemblyTree& tree);

} // namespace nxl::pardiso
