#include "solvers_ds/kernel/default/pardiso/column_order.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

/// Columns that are partitioned into classes, each a run of positions. Arrays are indexed by column, by position, or by
/// class, and classes are numbered from the first column on.
class Partition {
    const FromOne<i32> order_, rank_; // column at each position, position of each column
    const FromOne<i32> class_of_, marked_, begin_, size_, touched_;
    i32 first_ = 0, classes_ = 0;

    void exchange(i32 p, i32 q) const {
        std::swap(order_[p], order_[q]);
        rank_[order_[p]] = p;
        rank_[order_[q]] = q;
    }

    /// Members of the set come first in their classes. Returns how many classes have some.
    i32 mark(const i32* set, i32 count) const {
        i32 touched = 0;
        for (const i32* column = set; column < set + count; ++column) {
            const i32 c = class_of_[*column];
            if (marked_[c] == 0) touched_[first_ + touched++] = c;
            exchange(rank_[*column], begin_[c] + marked_[c]++);
        }
        return touched;
    }

    /// The marked members of a class, which come first, become a class of their own, before or behind the others.
    void split(i32 c, bool behind) {
        const i32 members = marked_[c], others = size_[c] - members, made = classes_++;
        begin_[made] = behind ? begin_[c] + others : begin_[c];
        if (behind) // the fewer of both give way
            for (i32 k = 0; k < std::min(members, others); ++k) exchange(begin_[c] + k, begin_[c] + size_[c] - 1 - k);
        else begin_[c] += members;
        size_[c] = others;
        size_[made] = members;
        marked_[made] = 0;
        for (i32 p = begin_[made]; p < begin_[made] + members; ++p) class_of_[order_[p]] = made;
    }

  public:
    Partition(FromOne<i32> order, FromOne<i32> rank, FromOne<i32> class_of, FromOne<i32> marked, FromOne<i32> begin,
              FromOne<i32> size, FromOne<i32> touched)
        : order_(order),
          rank_(rank),
          class_of_(class_of),
          marked_(marked),
          begin_(begin),
          size_(size),
          touched_(touched) {}

    /// One class of the columns first .. last.
    void start(i32 first, i32 last) {
        first_ = first;
        classes_ = first + 1;
        begin_[first] = first;
        size_[first] = last - first + 1;
        marked_[first] = 0;
        for (i32 j = first; j <= last; ++j) class_of_[j] = first;
    }

    void refine(const i32* set, i32 count) {
        const i32 touched = mark(set, count);
        i32* const found = &touched_[first_];
        std::sort(found, found + touched, [this](i32 a, i32 b) { return begin_[a] < begin_[b]; });
        for (i32 k = 0; k < touched; ++k) {
            const i32 c = found[k], end = begin_[c] + size_[c];
            if (marked_[c] < size_[c]) split(c, k + 1 < touched && begin_[found[k + 1]] == end);
            marked_[c] = 0;
        }
    }
};

/// Supernodes that only the limit of their width divides are one here, which has the number of its first one. Arrays
/// by supernode are used below the current one, those by class from its first column on, so that they share memory.
class ColumnOrder {
    const ColumnOrderView& view_;
    const Supernodes& supernodes_;
    const FromOne<i32> order_, rank_, class_of_, marked_;
    const FromOne<i32> whole_; ///< the one that a supernode is a part of
    const FromOne<i32> link_;  ///< of one to come the head of its list, of an earlier one the next in the list it is in
    const FromOne<i32> next_;  ///< place of the first row that is not yet used
    const FromOne<i32> taken_; ///< how many rows the current one takes
    const FromOne<i32> sources_; ///< those that divide the current one, up to its first column
    Partition partition_;

    FromOne<i32> part(i64 number) const { return view_.work.data() + number * view_.n; }

    bool begins_range(i32 s) const {
        for (i32 range = 0; range <= view_.separators.subgraphs(); ++range)
            if (view_.separators.first(range) == s) return true;
        return false;
    }

    /// Whether the rows of s below itself are all those of the next one.
    bool goes_on(i32 s) const {
        const i32 width = supernodes_.width(s);
        return s < supernodes_.count && supernodes_.rows(s) - width == supernodes_.rows(s + 1) &&
               supernodes_.list(s)[width] == supernodes_.first(s + 1) && !begins_range(s + 1);
    }

    /// Calls body(first, last), which are supernodes, for each whole one.
    template <class Body> void for_each_whole(Body&& body) const {
        for (i32 first = 1, last = 1; first <= supernodes_.count; first = ++last) {
            while (goes_on(last)) ++last;
            body(first, last);
        }
    }

    /// Puts a supernode into the list of the one that has its next row.
    void wait(i32 source) const {
        if (next_[source] == supernodes_.rows(source)) return;
        i32& head = link_[whole_[supernodes_.snode[supernodes_.list(source)[next_[source]]]]];
        link_[source] = head;
        head = source;
    }

    const i32* next_rows(i32 source) const { return supernodes_.list(source) + next_[source]; }

    /// Counts what each supernode of a list has of the columns up to `last`. Returns how many have some, but neither
    /// all nor one: the others divide nothing.
    i32 collect(i32 list, i32 first, i32 last) const {
        i32 found = 0;
        for (i32 source = list; source != 0; source = link_[source]) {
            const i32 *const rows = next_rows(source), left = supernodes_.rows(source) - next_[source];
            const i32* const end = rows + std::min(left, last - first + 1);
            taken_[source] = static_cast<i32>(std::upper_bound(rows, end, last) - rows);
            if (taken_[source] > 1 && taken_[source] <= last - first) sources_[++found] = source;
        }
        return found;
    }

    void order_whole(i32 list, i32 first, i32 last) {
        const i32 found = collect(list, first, last);
        if (found == 0 || last - first < 2) return;
        i32* const source = sources_.data();
        std::sort(source, source + found,
                  [this](i32 a, i32 b) { return taken_[a] != taken_[b] ? taken_[a] > taken_[b] : a > b; });
        partition_.start(first, last);
        for (i32 k = 0; k < found; ++k) partition_.refine(next_rows(source[k]), taken_[source[k]]);
    }

    void move_on(i32 list) const {
        for (i32 source = list, following = 0; source != 0; source = following) {
            following = link_[source];
            next_[source] += taken_[source];
            wait(source);
        }
    }

    void renumber_columns() const {
        const FromOne<i32> moved = class_of_;
        for (i32 k = 1; k <= view_.n; ++k) moved[k] = view_.perm[order_[k]];
        std::copy_n(moved.data(), view_.n, view_.perm.data());
        for (i32 k = 1; k <= view_.n; ++k) view_.invp[view_.perm[k]] = k;
    }

    /// Rows of a whole supernode change places among each other, unless a list has all of them.
    void renumber_rows() const {
        const FromOne<i32> columns = taken_;
        for_each_whole(
            [&](i32 first, i32 last) { columns[first] = supernodes_.last(last) - supernodes_.first(first) + 1; });
        for (i32 s = 1; s <= supernodes_.count; ++s) {
            i32* const list = &view_.lindx[supernodes_.xlindx[s]];
            i32 *row = list + supernodes_.width(s), *const end = list + supernodes_.rows(s);
            while (row < end) {
                const i32 target = whole_[supernodes_.snode[*row]], width = columns[target];
                i32* const begin = row;
                row =
                    std::lower_bound(row, end - begin > width ? begin + width : end, supernodes_.first(target) + width);
                if (whole_[s] == target || row - begin == width) continue;
                for (i32* moved = begin; moved < row; ++moved) *moved = rank_[*moved];
                if (!std::is_sorted(begin, row)) std::sort(begin, row);
            }
        }
    }

  public:
    explicit ColumnOrder(const ColumnOrderView& view)
        : view_(view),
          supernodes_(view.supernodes),
          order_(part(0)),
          rank_(part(1)),
          class_of_(part(2)),
          marked_(part(3)),
          whole_(part(4)),
          link_(part(5)),
          next_(part(6)),
          taken_(part(7)),
          sources_(part(8)),
          partition_(order_, rank_, class_of_, marked_, next_, taken_, sources_) {}

    void find() {
        for (i32 j = 1; j <= view_.n; ++j) order_[j] = rank_[j] = j;
        for_each_whole([&](i32 first, i32 last) {
            for (i32 s = first; s <= last; ++s) whole_[s] = first;
        });
        std::fill_n(link_.data(), supernodes_.count, 0);
        for_each_whole([&](i32 first, i32 last) {
            const i32 list = link_[first], column = supernodes_.first(first), end = supernodes_.last(last) + 1;
            order_whole(list, column, end - 1);
            move_on(list);
            next_[first] = end - column;
            wait(first);
        });
        renumber_columns();
        renumber_rows();
    }
};

} // namespace

void order_columns(const ColumnOrderView& view) { ColumnOrder(view).find(); }

} // namespace nxl::pardiso
