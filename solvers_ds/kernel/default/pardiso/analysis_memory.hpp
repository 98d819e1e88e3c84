// The blocks of an analysis: how large they are, and which arrays lie in them.
#pragma once
#include "solvers_ds/kernel/default/pardiso/handle.hpp"

namespace nxl::pardiso {

/// The numbers that the sizes come from.
struct AnalysisSizes {
    i64 n, threads, partitions, partition_work, off_diagonals, adjacency;
    bool symmetric, dissection;
};

/// Partitions are the next power of 2 from the threads on, and not more than equations; both words are stored.
void store_partitions(Control control);

AnalysisSizes sizes_of(Control control);

/// STRUC_S0, WORK_I0 and STRUC_S1: the graph and its order.
Fault take_order_blocks(const Handle& handle);

/// STRUC_S2 and STRUC_FI: the symbolic arrays, once the supernodes are known.
Fault take_symbolic_blocks(const Handle& handle);

/// Bytes of the arrays of STRUC_FI, with the row lists.
i64 structure_bytes(const Handle& handle);

/// Cuts off what STRUC_FI has beyond its arrays, and out of core the row lists. They may move.
void trim_structure(const Handle& handle);

/// Gives back what only the analysis needs.
void release_work_blocks(const Handle& handle);

} // namespace nxl::pardiso
