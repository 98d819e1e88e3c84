#include "solvers_ds/kernel/default/pardiso/symbolic_structure.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

constexpr i64 largest_factor = 2305843009213693949;

/// Pointers into L and U.
i32 place_columns(const StructureView& view) {
    const i64 limit = largest_factor - view.graph.n;
    i64 l = 1, u = 1;
    for (i32 s = 1; s <= view.supernodes; ++s) {
        const i32 first = view.xsup[s], end = view.xsup[s + 1], rows = view.counts[first], below = rows - (end - first);
        for (i32 j = first; j < end; ++j) {
            view.xlnz[j] = l;
            view.xunz[j] = u;
            l += rows;
            if (!view.symmetric) u += below;
            if (l > limit || u > limit) return factor_too_large;
        }
    }
    view.xlnz[view.graph.n + 1] = l;
    view.xunz[view.graph.n + 1] = std::max(u, i64{2}); // an empty U has the size 1
    return 0;
}

/// The list of one supernode as it grows. Rows that come out of order wait behind the others, unsorted.
class RowList {
    i32* const rows_;
    const i32 room_, last_column_, self_;
    const FromOne<i32> mark_;
    i32 count_ = 0, sorted_ = 0;

  public:
    RowList(i32* rows, i32 room, i32 last_column, i32 self, FromOne<i32> mark)
        : rows_(rows),
          room_(room),
          last_column_(last_column),
          self_(self),
          mark_(mark) {}

    bool complete() const { return count_ == room_; }

    /// A row that is new and below the supernode. False when there is no room for it.
    bool add(i32 row) {
        if (row <= last_column_ || mark_[row] == self_) return true;
        if (count_ == room_) return false;
        mark_[row] = self_;
        rows_[count_++] = row;
        return true;
    }
    /// Takes a first child's rows as they are when they are all that there will be.
    bool take_all(const i32* row, const i32* end) {
        while (row < end && *row <= last_column_) ++row;
        if (end - row != room_) return false;
        std::copy(row, end, rows_);
        count_ = sorted_ = room_;
        return true;
    }

    /// What was added so far ascends.
    void settle() { sorted_ = count_; }

    /// Merges what waits into the rest, from the end. `waiting` has room for it.
    void sort(i32* waiting) const {
        i32 unmerged = count_ - sorted_, ahead = sorted_, place = count_;
        std::sort(rows_ + sorted_, rows_ + count_);
        std::copy_n(rows_ + sorted_, unmerged, waiting);
        while (unmerged > 0) {
            const bool from_rows = ahead > 0 && rows_[ahead - 1] > waiting[unmerged - 1];
            rows_[--place] = from_rows ? rows_[--ahead] : waiting[--unmerged];
        }
    }
};

/// Rows of a child below its own columns.
struct RowRange {
    const i32 *row, *end;
};
RowRange rows_of_child(const StructureView& view, i32 child) {
    const i32* const list = &view.lindx[view.xlindx[child]];
    return {list + (view.xsup[child + 1] - view.xsup[child]), list + (view.xlindx[child + 1] - view.xlindx[child])};
}

bool add_child(const StructureView& view, i32 child, RowList& list) {
    for (auto [row, end] = rows_of_child(view, child); row < end; ++row)
        if (!list.add(*row)) return false;
    return true;
}

/// Rows from the children, the largest first, which are all of them as a rule, and from the columns of A.
bool collect_rows(const StructureView& view, i32 s, RowList& list) {
    bool room = true;
    i32 child = view.tree.first_child[s];
    if (child != 0) {
        const auto [row, end] = rows_of_child(view, child);
        if (list.take_all(row, end)) return true;
        room = add_child(view, child, list);
        list.settle();
        child = view.tree.sibling[child];
    }
    for (; room && !list.complete() && child != 0; child = view.tree.sibling[child])
        room = add_child(view, child, list);
    for (i32 j = view.xsup[s]; room && !list.complete() && j < view.xsup[s + 1]; ++j)
        view.graph.neighbours(j, [&](i32 row) { room = room && list.add(row); });
    return room && list.complete();
}

} // namespace

void supernode_tree(i32 supernodes, FromOne<const i32> xsup, FromOne<const i32> snode, FromOne<const i32> column_parent,
                    FromOne<const i32> counts, const SupernodeTree& tree) {
    const auto [parent, first, sibling] = tree;
    std::fill_n(first.data(), supernodes, 0);
    const auto rows = [&](i32 s) { return counts[xsup[s + 1] - 1]; };
    for (i32 s = supernodes; s >= 1; --s) {
        const i32 above = column_parent[xsup[s + 1] - 1];
        const i32 p = parent[s] = above == 0 ? 0 : snode[above];
        if (p == 0) continue;
        const i32 head = first[p];
        if (head == 0 || rows(s) > rows(head)) {
            sibling[s] = head;
            first[p] = s;
        } else { // behind the largest one
            sibling[s] = sibling[head];
            sibling[head] = s;
        }
    }
}

i32 symfct(const StructureView& view) {
    if (const i32 code = place_columns(view)) return code;
    std::fill_n(view.mark.data(), view.graph.n, 0);
    view.xlindx[1] = 1;
    for (i32 s = 1; s <= view.supernodes; ++s) {
        const i32 first = view.xsup[s], end = view.xsup[s + 1], rows = view.counts[first], width = end - first;
        i32* const own = &view.lindx[view.xlindx[s]];
        for (i32 j = first; j < end; ++j) own[j - first] = j;
        RowList list(own + width, rows - width, end - 1, s, view.mark);
        if (!collect_rows(view, s, list)) return rows_do_not_match;
        list.sort(view.waiting.data());
        view.xlindx[s + 1] = view.xlindx[s] + rows;
    }
    return 0;
}

} // namespace nxl::pardiso
