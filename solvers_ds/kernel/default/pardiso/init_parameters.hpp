// The start of stage 1: defaults of iparam, and the control block before there is a structure.
#pragma once
#include "solvers_ds/kernel/default/pardiso/call.hpp"
#include "solvers_ds/kernel/default/pardiso/control.hpp"

namespace nxl::pardiso {

/// Fills the defaults in when iparam(1) is 0, and resets the control block but for what belongs to the factor table.
void init_parameters(const Call& call, Control control);

} // namespace nxl::pardiso
