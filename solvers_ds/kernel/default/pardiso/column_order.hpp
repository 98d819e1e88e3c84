// The order of the columns inside the supernodes: whichever it is, the factor stays within the same structure, and rows
// that are updated together are made to stand together.
#pragma once
#include "solvers_ds/kernel/default/pardiso/separators.hpp"
#include "solvers_ds/kernel/default/pardiso/symbolic_structure.hpp"

namespace nxl::pardiso {

struct ColumnOrderView {
    i32 n;
    Supernodes supernodes;
    FromOne<i32> lindx;      ///< of the supernodes: their rows get the new numbers
    FromOne<i32> perm, invp; ///< as columns move
    Separators separators;   ///< in supernodes: columns stay in their range
    FromOne<i32> work;       ///< column_order_work times n
};
inline constexpr i64 column_order_work = 9;

/// Renumbers the columns inside each supernode, as it is without a limit of its width, so that the rows which an
/// earlier one has there make few runs: a partition of the columns is refined by these sets of rows, the largest first,
/// and of a class that a set divides the part inside it goes to the side where the set goes on. Time: linear in the row
/// lists, but for sorting. M. Jacquelin, E. Ng and B. Peyton, Fast and effective reordering of columns within
/// supernodes using partition refinement, SIAM Workshop on Combinatorial Scientific Computing (2018).
void order_columns(const ColumnOrderView& view);

} // namespace nxl::pardiso
