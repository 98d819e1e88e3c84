// What is printed of a call that fails.
#pragma once
#include "solvers_ds/kernel/default/pardiso/call.hpp"
#include "solvers_ds/kernel/default/pardiso/control.hpp"

namespace nxl::pardiso {

/// Heading and details of a fault, and where an argument was refused, all of them. `control` is that of the call, or
/// none where it could not be built.
void report_fault(const Fault& fault, const Call& call, Control control);

} // namespace nxl::pardiso
