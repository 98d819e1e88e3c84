// The entries of row u of the factor are the columns of a subtree with root u. A leaf of that subtree adds one to the
// count of each of its ancestors up to u; where the paths of two leaves meet, one is taken off again, and so it is at
// the parent of u. So each column gets a weight, and its count is the sum of the weights of its descendants.
#include "solvers_ds/kernel/default/pardiso/column_counts.hpp"

namespace nxl::pardiso {
namespace {

/// What is known of row u while its subtree is visited.
struct RowSubtree {
    i32 last_neighbour; // rank of the last column found in the row
    i32 last_leaf;
};

/// Disjoint sets of nodes whose subtrees have been visited; the representative is the root of each.
class VisitedTrees {
    FromOne<i32> up_;

  public:
    VisitedTrees(FromOne<i32> up, i32 n) : up_(up) {
        for (i32 v = 1; v <= n; ++v) up_[v] = v;
    }
    void join(i32 node, i32 parent) { up_[node] = parent; }
    i32 root(i32 node) const {
        i32 found = node;
        while (up_[found] != found) found = up_[found];
        while (up_[node] != found) { // the way is short next time
            const i32 next = up_[node];
            up_[node] = found;
            node = next;
        }
        return found;
    }
};

} // namespace

i64 column_counts(const ColumnCountView& view) {
    const auto& [graph, parent, order, counts, work] = view;
    const i32 n = graph.n;
    const auto part = [&](i64 number) { return FromOne<i32>(work.data() + number * n); };
    const FromOne<i32> first = part(0); // rank of the first descendant
    const FromOne<RowSubtree> row = reinterpret_cast<RowSubtree*>(part(1).data());
    const FromOne<i32> weight = counts;
    VisitedTrees visited(part(3), n);

    for (i32 v = 1; v <= n; ++v) {
        first[v] = 0;
        row[v] = {0, 0};
    }
    for (i32 k = 1; k <= n; ++k) {
        const i32 v = order[k];
        weight[v] = first[v] == 0 ? 1 : 0; // a node that nobody has reached is a leaf of the tree
        for (i32 u = v; u != 0 && first[u] == 0; u = parent[u]) first[u] = k;
    }
    for (i32 k = 1; k <= n; ++k) {
        const i32 v = order[k];
        if (parent[v] != 0) --weight[parent[v]];
        graph.neighbours(v, [&](i32 u) {
            if (u <= v) return;
            if (first[v] > row[u].last_neighbour) { // no column of row u below v: v is a leaf of its subtree
                ++weight[v];
                if (row[u].last_leaf != 0) --weight[visited.root(row[u].last_leaf)];
                row[u].last_leaf = v;
            }
            row[u].last_neighbour = k;
        });
        if (parent[v] != 0) visited.join(v, parent[v]);
    }
    i64 total = 0;
    for (i32 k = 1; k <= n; ++k) {
        const i32 v = order[k];
        if (parent[v] != 0) counts[parent[v]] += counts[v];
        total += counts[v];
    }
    return total;
}

} // namespace nxl::pardiso
