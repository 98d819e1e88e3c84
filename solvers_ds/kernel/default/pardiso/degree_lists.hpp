// Nodes by degree: a doubly linked list for each.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"
#include <algorithm>
#include <limits>

namespace nxl::pardiso {

struct DegreeLink {
    i32 next;
    i32 before; // the node before, ~degree for the first one of a list, or kUnlisted
};

class DegreeLists {
    static constexpr i32 kNone = -1, kUnlisted = std::numeric_limits<i32>::min();
    i32* first_;
    DegreeLink* link_;

  public:
    /// first: as many as there are degrees; link: as many as there are nodes.
    DegreeLists(i32* first, DegreeLink* link, i32 degrees, i32 nodes) : first_(first), link_(link) {
        std::fill_n(first_, degrees, i32{kNone});
        std::fill_n(link_, nodes, DegreeLink{.next = kNone, .before = kUnlisted});
    }

    /// -1 where there is none.
    i32 first(i32 degree) const { return first_[degree]; }

    void insert(i32 node, i32 degree) {
        const i32 second = first_[degree];
        link_[node] = {.next = second, .before = ~degree};
        if (second != kNone) link_[second].before = node;
        first_[degree] = node;
    }

    /// Does nothing for a node that is in no list.
    void remove(i32 node) {
        const auto [next, before] = link_[node];
        if (before == kUnlisted) return;
        (before < 0 ? first_[~before] : link_[before].next) = next;
        if (next != kNone) link_[next].before = before;
        link_[node].before = kUnlisted;
    }
};

} // namespace nxl::pardiso
