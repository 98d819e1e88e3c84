// The stages of a call, one after the other. Here is what they read and write; what they do stands in their own files.
#pragma once
#include "solvers_ds/kernel/default/pardiso/handle.hpp"

namespace nxl::pardiso {

/// Stage 1, on a handle without a structure: matching, ordering, symbolic factorisation. After a fault there is none.
Fault analyse(const Handle& handle, const Call& call);

/// Stages 2 and 3.
Fault factorise_and_solve(const Handle& handle, const Call& call);

} // namespace nxl::pardiso
