// Stage 3 on a handle: solves, and what improves their solutions.
#pragma once
#include "solvers_ds/kernel/default/pardiso/handle.hpp"

namespace nxl::pardiso {

/// Solves with the factor of the call's matrix, and refines the solutions where that is asked for.
Fault solve_systems(const Handle& handle, const Call& call);

} // namespace nxl::pardiso
