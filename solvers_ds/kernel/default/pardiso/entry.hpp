// What comes before the driver: queries, matrices that are diagonal, the number of threads.
#pragma once
#include "solvers_ds/kernel/default/pardiso/call.hpp"

namespace nxl::pardiso {

/// One call of PARDISO. Returns `error`.
int pardiso_entry(Call call);

} // namespace nxl::pardiso
