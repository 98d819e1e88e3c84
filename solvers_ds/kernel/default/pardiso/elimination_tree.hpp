// The elimination tree of an ordered graph, and postorders of it.
#pragma once
#include "solvers_ds/kernel/default/pardiso/from_one.hpp"
#include "solvers_ds/kernel/default/pardiso/separators.hpp"

namespace nxl::pardiso {

/// parent[j] is the least row below the diagonal in column j of the factor; 0 where there is none. ancestor: n, work.
/// J. W. H. Liu, SIAM J. Matrix Anal. Appl. 11 (1990) 134-172.
void elimination_tree(const OrderedGraph& graph, FromOne<i32> parent, FromOne<i32> ancestor);

/// Children of each node in the order in which a walk takes them; 0 ends a list.
struct ChildLists {
    FromOne<i32> first_child, sibling;
};

/// In ascending order, but with the child of the highest count last: it may then share a supernode with its parent.
void list_children(i32 n, FromOne<const i32> parent, FromOne<const i32> counts, const ChildLists& children);

/// order[k] is the node that is visited as number k, each after its descendants. Counts may be unknown here.
void postorder(i32 n, FromOne<const i32> parent, const ChildLists& children, FromOne<i32> order);

/// The same within each of the column ranges, one range after the other: columns stay in their range. A descendant in
/// an earlier range has been visited with it.
void postorder_ranges(FromOne<const i32> parent, const ChildLists& children, const Separators& separators,
                      FromOne<i32> order);

/// Numbers the columns anew: old column order[k] becomes k. perm, invp, parent and counts follow. rank and moved: n
/// each, work.
struct Renumbering {
    i32 n;
    FromOne<const i32> order;
    FromOne<i32> perm, invp, parent, counts, rank, moved;
};
void renumber(const Renumbering& renumbering);

} // namespace nxl::pardiso
