#include "solvers_ds/kernel/default/pardiso/elimination_tree.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

/// Visits the nodes below `root` that are not below `least`, and the root, children first. Goes down by first children
/// and up by parents, so that no stack is needed. Returns the next free place in `order`.
i32 visit_tree(i32 root, i32 least, FromOne<const i32> parent, const ChildLists& children, FromOne<i32> order,
               i32 place) {
    const auto from = [&](i32 child) { // children of earlier ranges are passed over
        while (child != 0 && child < least) child = children.sibling[child];
        return child;
    };
    i32 node = root;
    const auto descend = [&] {
        for (i32 child = from(children.first_child[node]); child != 0; child = from(children.first_child[node]))
            node = child;
    };
    descend();
    while (true) {
        order[place++] = node;
        if (node == root) return place;
        if (const i32 next = from(children.sibling[node])) {
            node = next;
            descend();
        } else node = parent[node];
    }
}

} // namespace

void elimination_tree(const OrderedGraph& graph, FromOne<i32> parent, FromOne<i32> ancestor) {
    for (i32 j = 1; j <= graph.n; ++j) {
        parent[j] = ancestor[j] = 0;
        graph.neighbours(j, [&](i32 i) { // row j's subtree: from each entry up to the root, which becomes j's child
            if (i >= j) return;
            while (ancestor[i] != 0 && ancestor[i] != j) {
                const i32 up = ancestor[i];
                ancestor[i] = j; // the next climb from here is short
                i = up;
            }
            if (ancestor[i] == 0) ancestor[i] = parent[i] = j;
        });
    }
}

void list_children(i32 n, FromOne<const i32> parent, FromOne<const i32> counts, const ChildLists& children) {
    const auto [first, sibling] = children;
    std::fill_n(first.data(), n, 0);
    for (i32 v = 1; v <= n; ++v) // first holds the heaviest child
        if (const i32 p = parent[v]; p != 0 && (first[p] == 0 || counts[v] >= counts[first[p]])) first[p] = v;
    for (i32 v = 1; v <= n; ++v) // the heaviest children know that they end a list
        sibling[v] = parent[v] != 0 && first[parent[v]] == v ? 0 : -1;
    for (i32 v = n; v >= 1; --v) {
        if (sibling[v] == 0 || parent[v] == 0) continue;
        sibling[v] = first[parent[v]];
        first[parent[v]] = v;
    }
}

void postorder(i32 n, FromOne<const i32> parent, const ChildLists& children, FromOne<i32> order) {
    i32 place = 1;
    for (i32 v = 1; v <= n; ++v)
        if (parent[v] == 0) place = visit_tree(v, 1, parent, children, order, place);
}

void postorder_ranges(FromOne<const i32> parent, const ChildLists& children, const Separators& separators,
                      FromOne<i32> order) {
    i32 place = 1;
    for (i32 range = 0; range <= separators.subgraphs(); ++range) {
        const i32 first = separators.first(range), last = separators.last(range);
        for (i32 v = first; v <= last; ++v)
            if (parent[v] == 0 || parent[v] > last) place = visit_tree(v, first, parent, children, order, place);
    }
}

void renumber(const Renumbering& renumbering) {
    const auto [n, order, perm, invp, parent, counts, rank, moved] = renumbering;
    const auto move = [&](FromOne<i32> array) {
        for (i32 k = 1; k <= n; ++k) moved[k] = array[order[k]];
        std::copy_n(moved.data(), n, array.data());
    };
    for (i32 k = 1; k <= n; ++k) rank[order[k]] = k;
    move(perm);
    move(parent);
    move(counts);
    for (i32 k = 1; k <= n; ++k) {
        invp[perm[k]] = k;
        if (parent[k] != 0) parent[k] = rank[parent[k]];
    }
}

} // namespace nxl::pardiso
