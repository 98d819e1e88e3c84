// Ordering by nested dissection, through METIS.
#pragma once
#include "solvers_ds/kernel/default/pardiso/minimum_degree.hpp"

namespace nxl::pardiso {

/// A graph that METIS may change while it works on it.
struct DissectedGraph {
    i32 n;
    i32 *xadj, *adjncy; // as of Graph; copies
};

/// Below this no partition is made: the order is the natural one.
inline constexpr i32 kLeastToDissect = 9;

/// perm and invp as multiple_minimum_degree gives them. With `parts` of 2, 4, 8, ... the separators are the ranges of
/// as many subgraphs and of the root separator; columns of the separators between subgraphs lie in no range, see
/// gather_subgraphs. With `parts` of 1, for a graph of less than kLeastToDissect nodes, and for one with rows so dense
/// that METIS is told to order them last, there is one subgraph.
i32 nested_dissection(const DissectedGraph& graph, i32 parts, i32* perm, i32* invp, Separators& separators);

} // namespace nxl::pardiso
