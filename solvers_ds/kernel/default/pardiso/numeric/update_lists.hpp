// Which supernodes have updates for which: lists for one thread, queues for several. Both are plain code over their
// arrays; how threads wait and lock is not known here.
#pragma once
#include "solvers_ds/kernel/default/pardiso/symbolic_structure.hpp"
#include <algorithm>

namespace nxl::pardiso {

/// An update that waits: of the rows of supernode `source` from its row `offset` on. A source of 0 is none.
struct WaitingUpdate {
    i32 source, offset;
};

/// On one thread a supernode that is done waits in the list of the one that holds its next row.
class WaitingLists {
    const Supernodes supernodes_;
    FromOne<i32> link_;   ///< before a supernode is done the head of its list, then the next one in the list it is in
    FromOne<i32> length_; ///< rows that are still to be used

    void wait(i32 source) {
        const i32 row = supernodes_.list(source)[supernodes_.rows(source) - length_[source]];
        i32& head = link_[supernodes_.snode[row]];
        link_[source] = head;
        head = source;
    }

  public:
    WaitingLists(const Supernodes& supernodes, FromOne<i32> link, FromOne<i32> length)
        : supernodes_(supernodes),
          link_(link),
          length_(length) {
        std::fill_n(link.data(), supernodes.count, 0);
        std::fill_n(length.data(), supernodes.count, 0);
    }

    /// Takes an update off the list of a target, and puts its source into that of its next one. `taken` of the rows
    /// are columns of the target.
    template <class Taken> WaitingUpdate pop(i32 target, const Taken& taken) {
        const i32 source = link_[target];
        if (source == 0) return {};
        link_[target] = link_[source];
        const i32 offset = supernodes_.rows(source) - length_[source];
        length_[source] -= taken(source, offset);
        if (length_[source] > 0) wait(source);
        return {source, offset};
    }

    /// A supernode is done.
    void push(i32 source) {
        length_[source] = supernodes_.rows(source) - supernodes_.width(source);
        link_[source] = 0;
        if (length_[source] > 0) wait(source);
    }
};

/// For several threads each supernode has a queue of incoming updates, with room for all that it will get.
class UpdateQueues {
    const Supernodes supernodes_;
    FromOne<i64> start_; ///< count + 1, into the updates
    FromOne<i32> head_, tail_;
    FromOne<WaitingUpdate> updates_;

  public:
    /// nmod[t] updates will come for supernode t.
    UpdateQueues(const Supernodes& supernodes, FromOne<const i32> nmod, FromOne<i64> start, FromOne<i32> head,
                 FromOne<i32> tail, FromOne<WaitingUpdate> updates)
        : supernodes_(supernodes),
          start_(start),
          head_(head),
          tail_(tail),
          updates_(updates) {
        start[1] = 1;
        for (i32 s = 1; s <= supernodes.count; ++s) {
            start[s + 1] = start[s] + nmod[s];
            head[s] = tail[s] = 0;
        }
    }

    WaitingUpdate pop(i32 target) {
        if (head_[target] == tail_[target]) return {};
        return updates_[start_[target] + head_[target]++];
    }

    /// A supernode is done: all its updates go to their targets.
    void push(i32 source) {
        const i32 rows = supernodes_.rows(source);
        supernodes_.groups(source, [&](i32 target, i32, i32 rest) {
            updates_[start_[target] + tail_[target]++] = {source, rows - rest};
        });
    }
};

} // namespace nxl::pardiso
