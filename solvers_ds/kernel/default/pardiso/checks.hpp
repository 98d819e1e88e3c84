// The checks of a call's arguments, and what a call that passes them leaves in the control block.
#pragma once
#include "solvers_ds/kernel/default/pardiso/call.hpp"
#include "solvers_ds/kernel/default/pardiso/control.hpp"

namespace nxl::pardiso {

/// Returns the code of the first fault; 0, or inner::diagonal_done for a diagonal matrix, which is solved here, or the
/// negated row where that failed.
i32 check_input(const Call& call, Control control);

/// Writes what a call that has passed leaves: its arguments, panel width, options.
i32 accept(const Call& call, Control control);

/// Pattern of the matrix: row pointers that start at 1 and ascend, columns in range that ascend within each row, in the
/// upper triangle for types that store it. Walks all of it and returns the lowest code that was found, with the last
/// place of that fault in iparam(31..33); 0 for none.
i32 check_csr(const Call& call);

} // namespace nxl::pardiso
