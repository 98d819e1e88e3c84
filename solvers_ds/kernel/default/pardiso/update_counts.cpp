#include "solvers_ds/kernel/default/pardiso/update_counts.hpp"
#include <algorithm>

namespace nxl::pardiso {

i64 largest_update(const Supernodes& supernodes) {
    i64 largest = 0;
    for (i32 s = 1; s <= supernodes.count; ++s) {
        const i64 width = supernodes.width(s), below = supernodes.rows(s) - width;
        largest = std::max(largest, width * below);
        if ((below * below + below) / 2 <= largest) continue; // no part of them is larger
        supernodes.groups(s, [&](i32, i64 group, i64 rest) {
            largest = std::max(largest, rest * group - (group * group - group) / 2);
        });
    }
    return largest;
}

void count_updates(const Supernodes& supernodes, FromOne<i32> nmod) {
    std::fill_n(nmod.data(), supernodes.count, 0);
    for (i32 s = 1; s <= supernodes.count; ++s) supernodes.groups(s, [&](i32 target, i32, i32) { ++nmod[target]; });
}

void count_overlap(const Supernodes& supernodes, i32 column, FromOne<i32> overlap) {
    for (i32 s = 1; s <= supernodes.count; ++s) {
        const i32 *list = supernodes.list(s), *end = list + supernodes.rows(s);
        overlap[s] = static_cast<i32>(end - std::lower_bound(list, end, column));
    }
}

i32 tallest_supernode(const Supernodes& supernodes) {
    i32 tallest = 0;
    for (i32 s = 1; s <= supernodes.count; ++s) tallest = std::max(tallest, supernodes.rows(s));
    return tallest;
}

} // namespace nxl::pardiso
