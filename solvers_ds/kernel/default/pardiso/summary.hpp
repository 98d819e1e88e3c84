// What is printed of a call whose arguments were accepted: what was done, how long it took, what came of it.
#pragma once
#include "solvers_ds/kernel/default/pardiso/handle.hpp"

namespace nxl::pardiso {

void print_summary(const Call& call, const Handle& handle);

/// Of a clean, from what Word::deleted says of it.
void print_clean_summary(Control control);

} // namespace nxl::pardiso
