// Nodes by degree: a doubly linked list for each.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"
#include <algorithm>
#include <limits>

namespace nxl::pardiso {

class DegreeLists {
    static constexpr i32 kNone = -1, kUnlisted = std::numeric_limits<i32>::min();
    i32 *first_, *next_;
    i32* before_; // the node before, ~degree for the first one of a list, kUnlisted

  public:
    /// first: as many as there are degrees; next and before: as many as there are nodes.
    DegreeLists(i32* first, i32* next, i32* before, i32 degrees, i32 nodes)
        : first_(first),
          next_(next),
          before_(before) {
        std::fill_n(first_, degrees, i32{kNone});
        std::fill_n(before_, nodes, i32{kUnlisted});
    }

    /// -1 where there is none.
    i32 first(i32 degree) const { return first_[degree]; }

    void insert(i32 node, i32 degree) {
        const i32 second = first_[degree];
        next_[node] = second;
        before_[node] = ~degree;
        if (second != kNone) before_[second] = node;
        first_[degree] = node;
    }

    /// Does nothing for a node that is in no list.
    void remove(i32 node) {
        const i32 before = before_[node], next = next_[node];
        if (before == kUnlisted) return;
        (before < 0 ? first_[~before] : next_[before]) = next;
        if (next != kNone) before_[next] = before;
        before_[node] = kUnlisted;
    }
};

} // namespace nxl::pardiso
