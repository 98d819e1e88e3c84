// The driver: the life of a handle, and the order of checks and stages.
#pragma once
#include "solvers_ds/kernel/default/pardiso/call.hpp"

namespace nxl::pardiso {

/// A call whose matrix is not diagonal, with iparam(3) set.
Error pardiso_driver(Call call);

} // namespace nxl::pardiso
