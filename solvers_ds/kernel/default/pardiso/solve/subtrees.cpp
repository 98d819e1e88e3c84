#include "solvers_ds/kernel/default/pardiso/solve/subtrees.hpp"
#include <algorithm>

namespace nxl::pardiso {

Subtrees::Subtrees(const Supernodes& supernodes, i32 threads) : threads_(threads), owner_(supernodes.count) {
    constexpr i64 subtrees_of_a_thread = 8; // so that what is left over at the end is small
    const i32 count = supernodes.count;
    const Scratch<i64> entries(count), loads(threads);
    if (!owner_.data()) return;
    std::fill_n(owner_.data(), count, above);
    if (!entries.data() || !loads.data()) return;
    const FromOne<i64> subtree(entries.data());
    std::fill_n(subtree.data(), count, i64{0});
    std::fill_n(loads.data(), threads, i64{0});
    i64 all = 0;
    for (i32 s = 1; s <= count; ++s) {
        const i64 own = i64{supernodes.rows(s)} * supernodes.width(s);
        all += own;
        subtree[s] += own;
        if (const i32 next = supernodes.parent(s); next != 0) subtree[next] += subtree[s];
    }
    const i64 largest = all / (threads * subtrees_of_a_thread);
    for (i32 s = count; s >= 1; --s) {
        const i32 next = supernodes.parent(s);
        i32& owner = owner_.data()[s - 1];
        owner = next != 0 ? this->owner(next) : above;
        if (owner != above || subtree[s] > largest) continue;
        i64* const idlest = std::min_element(loads.data(), loads.data() + threads);
        *idlest += subtree[s];
        owner = static_cast<i32>(idlest - loads.data()) + 1;
    }
}

} // namespace nxl::pardiso
