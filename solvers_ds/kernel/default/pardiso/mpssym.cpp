#include "solvers_ds/kernel/default/pardiso/mpssym.hpp"
#include "service/assertion.hpp"
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/nested_dissection.hpp"
#include <algorithm>
#include <cmath>

namespace nxl::pardiso {
namespace {

/// Two rows whose diagonals are both above this are pivots of their own, though a cycle pairs them.
constexpr double kUsableDiagonal = 1e-8;

bool has_usable_diagonal(const Smat* A, i32 row) {
    for (i32 k = A->ia[row]; k < A->ia[row + 1]; ++k)
        if (A->ja[k] == row) return std::abs(A->a[k]) > kUsableDiagonal;
    return false;
}

/// Places cycles in a new order: singles first, then pairs, and what odd cycles have left at the end.
class CyclePlacement {
    const Smat* matrix_;
    i32* position_; // of each row
    Bitvec* single_;
    i32 bottom_ = 0, top_;

    void place_single(i32 row, i32 position) {
        position_[row] = position;
        bitvec_set(single_, static_cast<u32>(position));
    }
    void place_pair(i32 row, i32 other) {
        const bool apart = has_usable_diagonal(matrix_, row) && has_usable_diagonal(matrix_, other);
        for (const i32 r : {row, other}) {
            if (apart) bitvec_set(single_, static_cast<u32>(bottom_));
            position_[r] = bottom_++;
        }
    }

  public:
    CyclePlacement(const Smat* matrix, i32* position, Bitvec* single)
        : matrix_(matrix),
          position_(position),
          single_(single),
          top_(static_cast<i32>(matrix->m)) {}

    void place(const Cycles& cycles) {
        const auto length = [&](i32 c) { return cycles.start[c + 1] - cycles.start[c]; };
        for (i32 c = 0; c < cycles.cycles; ++c)
            if (length(c) == 1) place_single(cycles.element[cycles.start[c]], bottom_++);
        for (i32 c = 0; c < cycles.cycles; ++c) {
            if (length(c) == 1) continue;
            i32 k = cycles.start[c];
            if (length(c) % 2 == 1) place_single(cycles.element[k++], --top_);
            for (; k < cycles.start[c + 1]; k += 2) place_pair(cycles.element[k], cycles.element[k + 1]);
        }
    }
};

/// Node of each position, a pair of rows being one node. Returns the number of nodes.
i32 number_nodes(const Bitvec* single, i32* node_of) {
    i32 nodes = 0;
    for (u32 k = 0; k < single->size; ++nodes) {
        const bool alone = bitvec_get(single, k) != 0;
        node_of[k++] = nodes;
        if (!alone) node_of[k++] = nodes;
    }
    return nodes;
}

/// The graph of the nodes: their rows merged, each with its diagonal and what is right of it. Null when there is no
/// memory.
Smat* compress(const Smat* A, const i32* node_of, i32 nodes) {
    const auto count = static_cast<u32>(nodes);
    Smat* graph = smat_create_pattern(count, count, A->nnz, 1);
    if (!graph) return nullptr;
    i32 entries = 0;
    for (i32 row = 0, node = 0; node < nodes; ++node) {
        const bool pair = row + 1 < static_cast<i32>(A->m) && node_of[row + 1] == node;
        i32 k = A->ia[row], other = A->ia[row + 1];
        const i32 end = other, other_end = pair ? A->ia[row + 2] : other;
        i32 prev_col = node;
        graph->ja[entries++] = node;
        while (k < end || other < other_end) {
            const bool second = k == end || (other < other_end && A->ja[other] < A->ja[k]);
            const i32 col = node_of[A->ja[second ? other++ : k++]];
            require(col >= prev_col, "col >= prev_col");
            if (col > prev_col) graph->ja[entries++] = col;
            prev_col = col;
        }
        graph->ia[node + 1] = entries;
        row += pair ? 2 : 1;
    }
    graph->nnz = static_cast<u32>(entries);
    return graph;
}

/// All neighbours of each row, without itself. Null when there is no memory.
Smat* adjacency_of(const Smat* A) {
    OwnedSmat graph(smat_copy_pattern(A));
    if (!graph || !smat_symmetrise_pattern(graph.get())) return nullptr;
    i32 to = 0, from = 0;
    for (i32 i = 0; i < static_cast<i32>(graph->m); ++i) {
        for (const i32 end = graph->ia[i + 1]; from < end; ++from)
            if (graph->ja[from] != i) graph->ja[to++] = graph->ja[from];
        graph->ia[i + 1] = to;
    }
    graph->nnz = static_cast<u32>(to);
    return graph.release();
}

/// order(graph, invp) on the adjacency of a matrix.
template <class Order> i32 order_matrix(const Smat* A, const Perm* perm, const Order& order) {
    require(perm != nullptr, "perm != NULL");
    require(perm->n == static_cast<i32>(A->m), "perm->n == A->m");
    const OwnedSmat graph(adjacency_of(A));
    const Scratch<i32> invp(perm->n);
    if (!graph || !invp.data()) return kNoMemory;
    return order(*graph, invp.data());
}

i32 order_by(i32 method, i32 parts, const Smat* graph, Perm* order, Separators* ddist) {
    if (method == 0) {
        set_single_subgraph(*ddist, order->n);
        return smat_minimum_degree(graph, order);
    }
    return method == 1 ? smat_constrained_minimum_degree(graph, parts, order, ddist)
                       : smat_nested_dissection(graph, parts, order, ddist);
}

/// From an order of nodes to one of rows: new_of(position) for each, and the ranges of nodes as ranges of rows.
class Expansion {
    const Perm* order_;  // of the nodes, new to old
    Scratch<i32> begin_; // of each node, before and after
    Scratch<i32> new_begin_;

  public:
    explicit Expansion(const Perm* order) : order_(order), begin_(i64{order->n} + 1), new_begin_(i64{order->n} + 1) {}
    explicit operator bool() const { return begin_.data() && new_begin_.data(); }

    void expand(const i32* node_of, i32 rows, i32* new_of, Separators& ddist) const {
        i32 *begin = begin_.data(), *new_begin = new_begin_.data();
        const i32 nodes = order_->n;
        for (i32 k = rows; k-- > 0;) begin[node_of[k]] = k;
        begin[nodes] = rows;
        new_begin[0] = 0;
        for (i32 k = 0; k < nodes; ++k) {
            const i32 node = order_->p[k];
            i32 next = new_begin[k];
            for (i32 row = begin[node]; row < begin[node + 1]; ++row) new_of[row] = next++;
            new_begin[k + 1] = next;
        }
        for (i32 range = 0; range <= ddist.subgraphs(); ++range) {
            ddist.first(range) = new_begin[ddist.first(range) - 1] + 1;
            ddist.last(range) = new_begin[ddist.last(range)];
        }
    }
};

/// The order of the placed rows, through the graph of pairs: new_of each position.
i32 order_placed(const PairedOrderingView& view, const Smat* placed, i32* new_of) {
    const Scratch<i32> node_of(view.n);
    if (!node_of.data()) return kNoMemory;
    const i32 nodes = number_nodes(view.sym_perm_1x1_pivots, node_of.data());
    const OwnedSmat graph(compress(placed, node_of.data(), nodes));
    const OwnedPerm order(perm_create(nodes));
    if (!graph || !order) return kNoMemory;
    if (const i32 code = order_by(view.method, view.parts, graph.get(), order.get(), view.ddist); code != 0)
        return code;
    const Expansion expansion(order.get());
    if (!expansion) return kNoMemory;
    expansion.expand(node_of.data(), view.n, new_of, *view.ddist);
    return 0;
}

i32 order_zero_based(const PairedOrderingView& view) {
    const auto n = static_cast<u32>(view.n);
    const WrappedSmat A(smat_wrap(n, n, view.ia, view.ja, view.a, 0, 1));
    const OwnedPerm position(perm_create(view.n)), new_of(perm_create(view.n));
    if (!A || !position || !new_of) return kNoMemory;
    if (!smat_has_diagonal(A.get())) return kUnsymmetricPattern;
    const Perm matching = {.n = view.n, .p = view.perm};
    const OwnedCycles cycles(perm_cycles(&matching));
    if (!cycles) return kNoMemory;
    CyclePlacement(A.get(), position->p, view.sym_perm_1x1_pivots).place(*cycles);
    const OwnedSmat placed(smat_permute(A.get(), position.get(), false));
    if (!placed) return kNoMemory;
    if (const i32 code = order_placed(view, placed.get(), new_of->p); code != 0) return code;
    const OwnedPerm to_new(perm_compose(position.get(), new_of.get()));
    if (!to_new || !bitvec_permute_in_place(view.sym_perm_1x1_pivots, new_of.get())) return kNoMemory;
    for (i32 row = 0; row < view.n; ++row) view.perm[to_new->p[row]] = row;
    return 0;
}

} // namespace

i32 mpssym(const PairedOrderingView& view) {
    const ZeroBased shifted(view.n, view.ia, view.ja);
    for (i32 k = 0; k < view.n; ++k) --view.perm[k];
    const i32 code = order_zero_based(view);
    for (i32 k = 0; k < view.n; ++k) ++view.perm[k];
    return code;
}

i32 smat_minimum_degree(const Smat* A, Perm* perm) {
    return order_matrix(A, perm, [&](const Smat& graph, i32* invp) {
        return multiple_minimum_degree({.n = perm->n, .xadj = graph.ia, .adjncy = graph.ja}, perm->p, invp);
    });
}

i32 smat_constrained_minimum_degree(const Smat* A, i32 groups, Perm* perm, Separators* ddist) {
    return order_matrix(A, perm, [&](const Smat& graph, i32* invp) {
        const Graph g = {.n = perm->n, .xadj = graph.ia, .adjncy = graph.ja};
        return constrained_minimum_degree(g, groups, perm->p, invp, *ddist);
    });
}

i32 smat_nested_dissection(const Smat* A, i32 parts, Perm* perm, Separators* ddist) {
    require(ddist != nullptr, "ddist != NULL");
    require((ddist->n & 1) == 0, "(ddist->n & 1) == 0");
    return order_matrix(A, perm, [&](const Smat& graph, i32* invp) {
        return nested_dissection({.n = perm->n, .xadj = graph.ia, .adjncy = graph.ja}, parts, perm->p, invp, *ddist);
    });
}

} // namespace nxl::pardiso
