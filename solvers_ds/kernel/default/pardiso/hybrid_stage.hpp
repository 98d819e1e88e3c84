// Stages 2 and 3 where an old factor may serve as a preconditioner: iparam(4) with a digit K other than 0.
#pragma once
#include "solvers_ds/kernel/default/pardiso/handle.hpp"

namespace nxl::pardiso {

/// Iterates with the factor in the slot of the call, and factors anew where the iteration cannot succeed.
Fault iterate_or_factorise(const Handle& handle, const Call& call);

/// The steps that an iteration may take for its time to stay below that of a factorisation: 0 when a solve takes no
/// time that can be measured, 10 at least out of core.
i32 iteration_budget(i32 kind, double factor_seconds, double solve_seconds, bool out_of_core = false);

} // namespace nxl::pardiso
