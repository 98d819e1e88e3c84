// What the numeric factorisation has to know of the updates between supernodes before it starts.
#pragma once
#include "solvers_ds/kernel/default/pardiso/symbolic_structure.hpp"

namespace nxl::pardiso {

/// Entries of the largest block of updates: of what the rows of one supernode from a group on give to the columns of
/// that group, a trapezoid, and of what lies below the columns of one supernode. 0 when no supernode has rows below.
i64 largest_update(const Supernodes& supernodes);

/// nmod[t] is the number of supernodes before t that update it.
void count_updates(const Supernodes& supernodes, FromOne<i32> nmod);

/// overlap[s] is the number of rows of supernode s from `column` on.
void count_overlap(const Supernodes& supernodes, i32 column, FromOne<i32> overlap);

/// Rows of the supernode that has the most.
i32 tallest_supernode(const Supernodes& supernodes);

} // namespace nxl::pardiso
