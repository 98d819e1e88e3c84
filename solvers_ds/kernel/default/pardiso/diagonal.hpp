// Systems whose matrix is diagonal: solved without a handle.
#pragma once
#include "solvers_ds/kernel/default/pardiso/call.hpp"

namespace nxl::pardiso {

/// Counts the pivots into iparam(22..23): of real types the positive ones apart, of complex ones none is positive and
/// all are counted in iparam(23). With `solve`, x = b / a for all right-hand sides, and in b too with iparam(6) = 1.
/// Returns 0, the row i that has not one entry, or -i for one whose entry is 0.
i32 solve_diagonal(const Call& call, bool solve);

} // namespace nxl::pardiso
