// Matching, scaling and the order by pairs, for the types that ask for them.
#pragma once
#include "solvers_ds/kernel/default/pardiso/bitvec.hpp"
#include "solvers_ds/kernel/default/pardiso/handle.hpp"

namespace nxl::pardiso {

/// The row of A that stands in each row of the matrix that is factored, n of them, counted from 1; null where rows
/// stay.
const i32* matched_rows(const Handle& handle);

/// A bit for each position of the order by pairs, set for pivots of order 1; null where there is no such order.
const u32* one_by_one_pivots(const Handle& handle);

/// Fills the words scaling and matching of the handle, and of symmetric types the order that keeps pairs together.
Fault match_matrix(const Handle& handle, const Call& call);

} // namespace nxl::pardiso
