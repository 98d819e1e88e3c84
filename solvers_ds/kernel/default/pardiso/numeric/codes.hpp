// Inner codes of Error::factorization.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"

namespace nxl::pardiso {

inline constexpr i32 failed_pivot = -1,
                     small_buffer = -2, ///< or there was no memory for the work of one call
    iteration_failed = -3,              ///< with an old factor
    too_many_steps = -111,              ///< of refinement
    contraction_lost = -112;

} // namespace nxl::pardiso
