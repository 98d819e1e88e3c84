// The rows of each supernode, and where each column lies in the storage of the factors.
#pragma once
#include "solvers_ds/kernel/default/pardiso/from_one.hpp"

namespace nxl::pardiso {

/// The supernodes: supernode s has the columns xsup[s] .. xsup[s + 1] - 1, and its rows, its own columns among them,
/// are lindx[xlindx[s]] .. lindx[xlindx[s + 1] - 1], ascending.
struct Supernodes {
    i32 count;
    FromOne<const i32> xsup, snode;
    FromOne<const i64> xlindx;
    FromOne<const i32> lindx;

    i32 first(i32 s) const { return xsup[s]; }
    i32 last(i32 s) const { return xsup[s + 1] - 1; }
    i32 width(i32 s) const { return xsup[s + 1] - xsup[s]; }
    i32 rows(i32 s) const { return static_cast<i32>(xlindx[s + 1] - xlindx[s]); }
    const i32* list(i32 s) const { return &lindx[xlindx[s]]; }

    /// The supernode of its first row below itself, which comes after it; 0 for a root.
    i32 parent(i32 s) const { return rows(s) > width(s) ? snode[list(s)[width(s)]] : 0; }

    i32 widest() const {
        i32 found = 0;
        for (i32 s = 1; s <= count; ++s)
            if (width(s) > found) found = width(s);
        return found;
    }

    /// Calls body(target, group, rest) for each run of rows below supernode s that are columns of one supernode: the
    /// run has `group` rows, and `rest` rows, those among them, are from its first one to the end.
    template <class Body> void groups(i32 s, Body&& body) const {
        const i32 *row = list(s) + width(s), *const end = list(s) + rows(s);
        while (row < end) {
            const i32 target = snode[*row], limit = xsup[target + 1], rest = static_cast<i32>(end - row);
            const i32* const begin = row;
            while (row < end && *row < limit) ++row;
            body(target, static_cast<i32>(row - begin), rest);
        }
    }
};

/// parent[s] is the supernode of the first row of s below itself, 0 for a root; children as in ChildLists, with the one
/// that has the most rows first.
struct SupernodeTree {
    FromOne<i32> parent, first_child, sibling;
};
void supernode_tree(i32 supernodes, FromOne<const i32> xsup, FromOne<const i32> snode, FromOne<const i32> column_parent,
                    FromOne<const i32> counts, const SupernodeTree& tree);

/// Inner codes of symfct.
inline constexpr i32 factor_too_large = -20, rows_do_not_match = -2;

struct StructureView {
    OrderedGraph graph;
    i32 supernodes;
    FromOne<const i32> xsup, counts;
    SupernodeTree tree;
    bool symmetric;                  ///< there is no U, whose size is 1 then, as where U has no rows
    FromOne<i64> xlindx, xlnz, xunz; ///< supernodes + 1, n + 1, n + 1
    FromOne<i32> lindx;              ///< as the supernodes need it
    FromOne<i32> mark, waiting;      ///< n each, work
};

/// Column j of supernode s is at xlnz[j] of L, with all rows of s, and at xunz[j] of U, with those below its columns.
/// Returns 0 or an inner code.
i32 symfct(const StructureView& view);

} // namespace nxl::pardiso
