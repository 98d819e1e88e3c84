#include "solvers_ds/kernel/default/pardiso/do_all.hpp"

namespace nxl::pardiso {

Fault factorise_and_solve(const Handle&, const Call& call) { return {Error::internal, call.last_stage()}; }

} // namespace nxl::pardiso
