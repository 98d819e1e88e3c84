#include "solvers_ds/kernel/default/pardiso/sfinit.hpp"
#include "solvers_ds/kernel/default/pardiso/column_counts.hpp"
#include "solvers_ds/kernel/default/pardiso/elimination_tree.hpp"
#include <algorithm>

namespace nxl::pardiso {

SfinitResult sfinit(const SfinitView& view) {
    const i32 n = view.n;
    const auto part = [&](i64 number) { return FromOne<i32>(view.work.data() + number * n); };
    const FromOne<i32> order = part(0), rest = part(3);
    const ChildLists children{part(1), part(2)};
    const OrderedGraph graph{n, view.xadj, view.adjncy, view.perm, view.invp};

    elimination_tree(graph, view.parent, rest);
    std::fill_n(view.counts.data(), n, 0);
    list_children(n, view.parent, view.counts, children);
    postorder(n, view.parent, children, order);
    SfinitResult result{};
    result.factor_entries = column_counts({graph, view.parent, order, view.counts, rest});

    // In ascending order, as children are listed now, the column before its parent is the last one to be visited.
    if (!view.keep_pairs) list_children(n, view.parent, view.counts, children);
    postorder_ranges(view.parent, children, view.separators, order);
    renumber({n, order, view.perm, view.invp, view.parent, view.counts, part(3), part(4)});
    result.sizes = find_supernodes(n, view.parent, view.counts, view.panel_width, view.snode);
    first_columns(n, view.snode, view.xsup);
    separators_by_supernode(view.snode, view.xsup, result.sizes.supernodes, view.separators);
    return result;
}

} // namespace nxl::pardiso
