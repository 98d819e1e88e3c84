#include "solvers_ds/kernel/default/pardiso/ordering.hpp"
#include "solvers_ds/kernel/default/pardiso/adjacency.hpp"
#include "solvers_ds/kernel/default/pardiso/nested_dissection.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

constexpr i32 kLargestSymmetricType = 10; // of mtype; above, the pattern is not symmetric

bool takes_user_order(const OrderingView& view) { return view.permutation_choice > 0 && view.permutation_choice != 2; }

/// invp of perm. kNoPermutation when an index is out of range or comes twice.
i32 invert(const OrderingView& view) {
    std::fill_n(view.invp, view.n, 0);
    for (i32 k = 0; k < view.n; ++k) {
        const i32 old = view.perm[k];
        if (old < 1 || old > view.n || view.invp[old - 1] != 0) return kNoPermutation;
        view.invp[old - 1] = k + 1;
    }
    return 0;
}

/// The graph in the work array, counted from 0.
DissectedGraph copied_graph(const OrderingView& view) {
    i32 *xadj = view.work, *adjncy = view.work + view.n + 1;
    const i32 length = view.xadj[view.n] - 1;
    const auto lowered = [](i32 index) { return index - 1; };
    std::transform(view.xadj, view.xadj + view.n + 1, xadj, lowered);
    std::transform(view.adjncy, view.adjncy + length, adjncy, lowered);
    return {.n = view.n, .xadj = xadj, .adjncy = adjncy};
}

/// perm, counted from 1, and the ranges, by the method that is asked for.
i32 compute_order(const OrderingView& view) {
    const DissectedGraph copy = copied_graph(view);
    const Graph graph = {.n = copy.n, .xadj = copy.xadj, .adjncy = copy.adjncy};
    i32 code = 0;
    switch (view.method) {
    case OrderingMethod::minimum_degree:
        set_single_subgraph(*view.separators, view.n);
        code = multiple_minimum_degree(graph, view.perm, view.invp);
        break;
    case OrderingMethod::constrained_minimum_degree:
        code = constrained_minimum_degree(graph, view.partitions, view.perm, view.invp, *view.separators);
        break;
    case OrderingMethod::nested_dissection:
        code = nested_dissection(copy, view.partitions, view.perm, view.invp, *view.separators);
        break;
    }
    if (code == 0)
        for (i32 k = 0; k < view.n; ++k) ++view.perm[k];
    return code;
}

} // namespace

i32 sssord_adjacency(const OrderingView& view) {
    std::fill_n(view.perm, view.n, 0);
    std::fill_n(view.invp, view.n, 0);
    const AdjacencyView adjacency = {.n = view.n,
                                     .ia = view.ia,
                                     .ja = view.ja,
                                     .row_order = view.row_order,
                                     .threads = view.threads,
                                     .xadj = view.xadj,
                                     .adjncy = view.adjncy,
                                     .room = view.adjacency_room,
                                     .work = view.work};
    if (view.mtype > kLargestSymmetricType) return adjacency_of_sum(adjacency);
    return view.mtype % 2 == 0 ? ladj_mod(adjacency) : ladj_full(adjacency);
}

i32 sssord_order(const OrderingView& view) {
    i32 code = 0;
    if (takes_user_order(view)) {
        std::copy_n(view.user_perm, view.n, view.perm);
        set_single_subgraph(*view.separators, view.n);
    } else if (view.matched_order) std::copy_n(view.matched_order, view.n, view.perm);
    else code = compute_order(view);
    if (code != 0) return code;
    if (view.permutation_choice == 2) std::copy_n(view.perm, view.n, view.user_perm);
    if (view.separators->subgraphs() > 1) code = gather_subgraphs(view.n, view.perm, *view.separators);
    return code == 0 ? invert(view) : code;
}

} // namespace nxl::pardiso
