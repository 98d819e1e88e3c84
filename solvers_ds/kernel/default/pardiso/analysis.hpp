// The steps of an analysis on a handle: each cuts what one stage reads and writes out of it.
#pragma once
#include "solvers_ds/kernel/default/pardiso/handle.hpp"
#include "solvers_ds/kernel/default/pardiso/symbolic_structure.hpp"

namespace nxl::pardiso {

/// Inner codes of the symbolic factorisation.
inline constexpr i32 too_large = -182, structure_mismatch = -180;

/// An inner code of a stage as the fault of an analysis.
inline Fault fault_of(i32 code) {
    if (code == 0) return {};
    return {code == too_large ? Error::overflow : Error::reordering, code};
}

/// The sizes that the graph and the number of threads ask for, in the control block.
Fault settle_sizes(const Call& call, Control control);

/// The supernodes that an analysis has found.
Supernodes supernodes_of(const Handle& handle);

/// Step 1: the graph, its order and its supernodes.
Fault order_matrix(const Handle& handle, const Call& call);

/// Step 2: the structure of the factors, and what the updates between supernodes need.
Fault build_structure(const Handle& handle, const Call& call);

/// Step 3: where A goes in the factors, figures, and the schedule of the threads.
Fault prepare_factorization(const Handle& handle, const Call& call);

} // namespace nxl::pardiso
