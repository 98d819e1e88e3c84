// The order of elimination by degree; the graph itself is quotient_graph.cpp's, the constrained kind is
// constrained_minimum_degree.cpp's.
#include "solvers_ds/kernel/default/pardiso/minimum_degree.hpp"
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/assembly_tree.hpp"
#include "solvers_ds/kernel/default/pardiso/compressed_graph.hpp"
#include "solvers_ds/kernel/default/pardiso/quotient_graph.hpp"
#include <algorithm>
#include <limits>

namespace nxl::pardiso {
namespace {

/// Eliminates all nodes, those of least degree first.
class Elimination {
    QuotientGraph& graph_;
    DegreeLists& lists_;
    i32* touched_; // by the eliminations of a stage: in no list until it is over
    unsigned char* is_touched_;
    i32 touched_count_ = 0;

    i32 eliminate(i32 pivot) {
        const i32 columns = graph_.eliminate(pivot);
        for (const i32 *i = graph_.clique_begin(pivot), *end = graph_.clique_end(pivot); i < end; ++i) {
            if (is_touched_[*i]) continue;
            is_touched_[*i] = 1;
            touched_[touched_count_++] = *i;
        }
        return columns;
    }

    /// Back into the lists, by their degrees or bounds; the least of these and `least`. What was touched first comes
    /// first of its degree: among ties the older ones fill less.
    i32 release_touched(i32 least) {
        for (i32 k = touched_count_; k-- > 0;) {
            const i32 i = touched_[k];
            is_touched_[i] = 0;
            if (graph_.weight(i) == 0) continue; // merged, or eliminated with another
            const i32 degree = graph_.external_degree(i);
            lists_.insert(i, degree);
            least = std::min(least, degree);
        }
        touched_count_ = 0;
        return least;
    }

  public:
    Elimination(QuotientGraph& graph, DegreeLists& lists, i32* touched, unsigned char* is_touched)
        : graph_(graph),
          lists_(lists),
          touched_(touched),
          is_touched_(is_touched) {}

    /// A stage eliminates what has the least degree and is not touched by its other eliminations. Degrees are found
    /// when a bound has become the least: most are never asked for. order: the pivots. Returns their number.
    i32 run(i32 columns, i32* order) {
        i32 pivots = 0, left = columns;
        for (i32 least = 0; left > 0; least = release_touched(least)) {
            while (lists_.first(least) < 0) ++least;
            for (i32 i = lists_.first(least); i >= 0; i = lists_.first(least)) {
                lists_.remove(i);
                if (!graph_.exact(i)) graph_.find_degree(i);
                if (const i32 degree = graph_.external_degree(i); degree > least) {
                    lists_.insert(i, degree);
                    continue;
                }
                order[pivots++] = i;
                left -= eliminate(i);
            }
        }
        return pivots;
    }
};

/// The integers that the elimination needs for each node, beside those of the compressed graph.
class NodeMemory {
    enum Array : i32 { hash_first, hash_next, parent, touched, order, arrays };
    i32 nodes_, degrees_;
    Scratch<i32> integers_;
    Scratch<DegreeLink> links_;
    Scratch<unsigned char> flags_;

    i32* array(Array which) const { return integers_.data() + i64{which} * nodes_; }

  public:
    NodeMemory(i32 nodes, i32 columns)
        : nodes_(nodes),
          degrees_(columns + 1),
          integers_(i64{arrays} * nodes + degrees_),
          links_(nodes),
          flags_(2 * i64{nodes}) {}

    explicit operator bool() const { return integers_.data() && links_.data() && flags_.data(); }

    DegreeLists degree_lists() const {
        return {integers_.data() + i64{arrays} * nodes_, links_.data(), degrees_, nodes_};
    }
    QuotientArrays quotient_arrays(const CompressedGraph& graph) const {
        return {.node = graph.node(),
                .list = graph.list(),
                .room = graph.room(),
                .hash_first = array(hash_first),
                .hash_next = array(hash_next),
                .first_column = graph.first_column(),
                .last_column = graph.last_column(),
                .next_column = graph.next_column(),
                .parent = array(parent),
                .exact = flags_.data()};
    }
    i32* touched_nodes() const { return array(touched); }
    unsigned char* touched_flags() const {
        std::fill_n(flags_.data() + nodes_, nodes_, static_cast<unsigned char>(0));
        return flags_.data() + nodes_;
    }
    i32* pivots() const { return array(order); }
    i32* fronts_of_pivots() const { return array(touched); } // once nothing is touched any more
};

/// Copies the chain of columns of a node. Returns where the next one goes.
i32 put_columns(const QuotientArrays& arrays, i32 node, i32* perm, i32 at) {
    for (i32 column = arrays.first_column[node]; column >= 0; column = arrays.next_column[column]) perm[at++] = column;
    return at;
}

/// Order and tree of the eliminated nodes; those that were put off are one front more, and the root of all.
void tell(const QuotientArrays& arrays, const CompressedGraph& graph, const i32* pivots, i32* front_of, i32* perm,
          AssemblyTree& tree) {
    const bool dense = graph.dense_columns() > 0;
    const i32 eliminated = tree.fronts;
    i32 at = 0;
    for (i32 k = 0; k < eliminated; ++k) front_of[pivots[k]] = k;
    for (i32 k = 0; k < eliminated; ++k) {
        const i32 parent = arrays.parent[pivots[k]];
        tree.start[k] = at;
        tree.parent[k] = parent >= 0 ? front_of[parent] : dense ? eliminated : -1;
        tree.border[k] = arrays.node[pivots[k]].outside + graph.dense_columns();
        at = put_columns(arrays, pivots[k], perm, at);
    }
    if (dense) {
        tree.start[eliminated] = at;
        tree.parent[eliminated] = -1;
        tree.border[eliminated] = 0;
        for (i32 node = 0; node < graph.nodes(); ++node)
            if (graph.is_put_off(node)) at = put_columns(arrays, node, perm, at);
        ++tree.fronts;
    }
    tree.start[tree.fronts] = at;
}

} // namespace

i32 eliminate_by_degree(const Graph& graph, i32* perm, AssemblyTree& tree) {
    tree.fronts = 0;
    tree.start[0] = 0;
    if (graph.n == 0) return 0;
    CompressedGraph compressed(graph);
    if (const i32 code = compressed.build(graph); code != 0) return code;
    const NodeMemory memory(compressed.nodes(), graph.n);
    if (!memory) return kNoMemory;
    const QuotientArrays arrays = memory.quotient_arrays(compressed);
    DegreeLists lists = memory.degree_lists();
    QuotientGraph quotient(arrays, lists, compressed.nodes(), compressed.used());
    for (i32 i = compressed.nodes(); i-- > 0;) // so that the first are first
        if (quotient.weight(i) > 0) lists.insert(i, quotient.external_degree(i));
    Elimination elimination(quotient, lists, memory.touched_nodes(), memory.touched_flags());
    tree.fronts = elimination.run(graph.n - compressed.dense_columns(), memory.pivots());
    tell(arrays, compressed, memory.pivots(), memory.fronts_of_pivots(), perm, tree);
    return 0;
}

i32 multiple_minimum_degree(const Graph& graph, i32* perm, i32* invp) {
    const Scratch<i32> start(i64{graph.n} + 1), parent(graph.n), border(graph.n);
    if (!start.data() || (graph.n > 0 && (!parent.data() || !border.data()))) return kNoMemory;
    AssemblyTree tree = {.fronts = 0, .start = start.data(), .parent = parent.data(), .border = border.data()};
    const i32 code = eliminate_by_degree(graph, perm, tree);
    for (i32 k = 0; code == 0 && k < graph.n; ++k) invp[perm[k]] = k;
    return code;
}

} // namespace nxl::pardiso
