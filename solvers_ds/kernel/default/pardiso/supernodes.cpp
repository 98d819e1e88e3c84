#include "solvers_ds/kernel/default/pardiso/supernodes.hpp"
#include <algorithm>

namespace nxl::pardiso {

SupernodeSizes find_supernodes(i32 n, FromOne<const i32> parent, FromOne<const i32> counts, i32 limit,
                               FromOne<i32> snode) {
    SupernodeSizes sizes;
    i32 width = 0, uncut = 0; // of the supernode so far, and what it would be without the limit
    for (i32 j = 1; j <= n; ++j) {
        const bool goes_on = j > 1 && parent[j - 1] == j && counts[j - 1] == counts[j] + 1;
        uncut = goes_on ? uncut + 1 : 1;
        sizes.largest = std::max(sizes.largest, uncut);
        if (goes_on && width < limit) ++width;
        else {
            width = 1;
            ++sizes.supernodes;
            sizes.structure_length += counts[j];
        }
        snode[j] = sizes.supernodes;
    }
    return sizes;
}

void first_columns(i32 n, FromOne<const i32> snode, FromOne<i32> xsup) {
    xsup[snode[n] + 1] = n + 1;
    for (i32 j = n; j >= 1; --j) xsup[snode[j]] = j;
}

void separators_by_supernode(FromOne<const i32> snode, FromOne<const i32> xsup, i32 supernodes,
                             const Separators& separators) {
    const i32 subgraphs = separators.subgraphs();
    i32 before = 0; // last supernode of the ranges so far
    for (i32 range = 0; range < subgraphs; ++range) {
        const i32 first = separators.first(range), last = separators.last(range);
        separators.first(range) = first > last ? before + 1 : snode[first];
        if (first <= last) before = xsup[snode[last]] == last ? snode[last] - 1 : snode[last];
        separators.last(range) = before;
    }
    separators.first(subgraphs) = before + 1;
    separators.last(subgraphs) = supernodes;
}

} // namespace nxl::pardiso
