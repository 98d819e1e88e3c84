#include "solvers_ds/kernel/default/pardiso/augmenting_paths.hpp"
#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace nxl::pardiso {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr i32 bids_before_search = 4;                           // of a row, on average
constexpr double kTie = std::numeric_limits<double>::epsilon(); // relative, between distances

/// Columns that are not in the heap.
enum State : i32 {
    kUnreached = -1,
    kDone = -2,
    kQueued = -3,
    kDead = -4, // no column without a row can be reached from here, in this search or a later one
};

} // namespace

void AugmentingPaths::set(i32 place, i32 column) const {
    a_.heap[place] = column;
    a_.position[column] = place;
}

/// Puts a column where a gap is, or above it.
void AugmentingPaths::sift_up(i32 place, i32 column) const {
    while (place > 0) {
        const i32 above = (place - 1) / 2;
        if (a_.distance[a_.heap[above]] <= a_.distance[column]) break;
        set(place, a_.heap[above]);
        place = above;
    }
    set(place, column);
}

void AugmentingPaths::sift_down(i32 place, i32 column) const {
    for (i32 below = 2 * place + 1; below < heaped_; below = 2 * place + 1) {
        if (below + 1 < heaped_ && a_.distance[a_.heap[below + 1]] < a_.distance[a_.heap[below]]) ++below;
        if (a_.distance[column] <= a_.distance[a_.heap[below]]) break;
        set(place, a_.heap[below]);
        place = below;
    }
    set(place, column);
}

void AugmentingPaths::leave_heap(i32 column) {
    const i32 place = a_.position[column], last = a_.heap[--heaped_];
    if (last == column) return;
    sift_up(place, last);
    if (a_.heap[place] == last) sift_down(place, last);
}

i32 AugmentingPaths::pop() {
    const i32 column = a_.heap[0];
    leave_heap(column);
    return column;
}

/// A path of this length leads to the column. What is as near as `least`, the distance of what was done last, is
/// queued.
void AugmentingPaths::reach(i32 row, i32 column, double distance, double least) {
    i32& position = a_.position[column];
    a_.found_from[column] = row;
    if (a_.row_of[column] < 0) {
        nearest_free_ = distance;
        free_column_ = column;
        return;
    }
    const bool in_heap = position >= 0;
    a_.distance[column] = distance;
    if (distance <= least * (1.0 + kTie)) {
        if (in_heap) leave_heap(column);
        position = kQueued;
        a_.queue[queued_++] = column;
    } else sift_up(in_heap ? position : heaped_++, column);
}

void AugmentingPaths::scan(i32 row, double least) {
    scanned_ += a_.start[row + 1] - a_.start[row];
    for (i32 k = a_.start[row]; k < a_.start[row + 1] && nearest_free_ > least; ++k) {
        const i32 column = a_.column[k];
        if (a_.position[column] < kUnreached) continue; // done, queued or dead: no path to it is shorter
        const double distance = least + std::max(reduced_cost(row, k), 0.0);
        if (distance >= nearest_free_) continue;
        if (a_.position[column] == kUnreached || distance < a_.distance[column]) reach(row, column, distance, least);
    }
}

/// Columns on the way become cheaper by what they are nearer than the end of the path, so that its edges are tight.
void AugmentingPaths::move_duals(i32 root) const {
    a_.u[root] += nearest_free_;
    for (i32 k = 0; k < done_; ++k) {
        const i32 column = a_.heap[a_.n - 1 - k];
        const double nearer = nearest_free_ - a_.distance[column];
        a_.v[column] -= nearer;
        a_.u[a_.row_of[column]] += nearer;
    }
}

/// Ends a search. `dead`: it reached all that it can and found no end.
void AugmentingPaths::forget(bool dead) {
    for (i32 k = 0; k < done_; ++k) a_.position[a_.heap[a_.n - 1 - k]] = dead ? kDead : kUnreached;
    for (i32 k = 0; k < heaped_; ++k) a_.position[a_.heap[k]] = kUnreached;
    for (i32 k = 0; k < queued_; ++k) a_.position[a_.queue[k]] = kUnreached;
    heaped_ = done_ = queued_ = 0;
}

void AugmentingPaths::flip(i32 root) const {
    for (i32 column = free_column_, row = -1; row != root;) {
        row = a_.found_from[column];
        a_.row_of[column] = row;
        std::swap(column, a_.column_of[row]);
    }
}

bool AugmentingPaths::search(i32 root) {
    nearest_free_ = kInfinity;
    free_column_ = -1;
    double least = 0.0;
    for (i32 row = root;;) {
        scan(row, least);
        if (nearest_free_ <= least || (queued_ == 0 && heaped_ == 0)) break;
        const bool queued = queued_ > 0;
        if (!queued && a_.distance[a_.heap[0]] >= nearest_free_) break;
        const i32 column = queued ? a_.queue[--queued_] : pop();
        if (!queued) least = a_.distance[column];
        a_.position[column] = kDone;
        a_.heap[a_.n - 1 - done_++] = column;
        row = a_.row_of[column];
    }
    const bool found = free_column_ >= 0;
    if (found) {
        move_duals(root);
        flip(root);
    }
    forget(!found);
    return found;
}

/// Matches a row along a tight edge with a column without a row. `from`: where to look on.
bool AugmentingPaths::take_free(i32 row, i32& from) const {
    for (i32& k = from; k < a_.start[row + 1]; ++k) {
        const i32 column = a_.column[k];
        if (a_.row_of[column] >= 0 || reduced_cost(row, k) > 0.0) continue;
        a_.row_of[column] = row;
        a_.column_of[row] = column;
        return true;
    }
    return false;
}

/// Each row takes its cheapest column where that is free, or else frees one by letting its row have another.
void AugmentingPaths::start_cheaply() {
    i32* next = a_.queue; // where a row looks on
    for (i32 row = 0; row < a_.n; ++row) {
        a_.u[row] = 0.0;
        next[row] = a_.start[row];
        if (a_.start[row] < a_.start[row + 1])
            a_.u[row] = *std::min_element(a_.cost + a_.start[row], a_.cost + a_.start[row + 1]);
    }
    for (i32 row = 0; row < a_.n; ++row) take_free(row, next[row]);
    for (i32 row = 0; row < a_.n; ++row)
        for (i32 k = a_.start[row]; k < a_.start[row + 1] && a_.column_of[row] < 0; ++k) {
            const i32 column = a_.column[k], other = a_.row_of[column];
            if (other < 0 || reduced_cost(row, k) > 0.0 || !take_free(other, next[other])) continue;
            a_.row_of[column] = row;
            a_.column_of[row] = column;
        }
}

/// A row takes its cheapest column from whoever has it, and lowers the column's dual until it is dearer by `margin`
/// than the row's second choice: with 0 the edge is tight and all others stay feasible. Returns the row that has lost
/// its column, or -1. `again`: that one may look on at once, for what it lost has become dearer.
i32 AugmentingPaths::outbid(i32 row, double margin, bool& again) const {
    double first = kInfinity, second = kInfinity;
    i32 column = -1, other = -1;
    for (i32 k = a_.start[row]; k < a_.start[row + 1]; ++k) {
        const double price = a_.cost[k] - a_.v[a_.column[k]];
        if (price < first) {
            second = std::exchange(first, price);
            other = std::exchange(column, a_.column[k]);
        } else if (price < second) {
            second = price;
            other = a_.column[k];
        }
    }
    const double raise = second - first + margin;
    again = raise > 0.0;
    if (again) a_.v[column] -= raise;
    else if (a_.row_of[column] >= 0) column = other;
    a_.u[row] = second + margin;
    a_.column_of[row] = column;
    const i32 loser = std::exchange(a_.row_of[column], row);
    if (loser >= 0) a_.column_of[loser] = -1;
    return loser;
}

/// Rows without a column bid for one, up to `bids` times in all. A row with a single entry has no second choice, and
/// leaves its turn to the search. Returns the bids that are left, 0 or less when there were not enough.
i64 AugmentingPaths::bid(double margin, i64 bids) const {
    for (i32 root = 0; root < a_.n; ++root) {
        bool again = a_.column_of[root] < 0;
        for (i32 row = root; row >= 0 && again && a_.start[row + 1] - a_.start[row] > 1 && bids > 0; --bids)
            row = outbid(row, margin, again);
    }
    return bids;
}

/// Duals of columns that are near the best: an auction with ever smaller margins, each from the duals of the one
/// before. D. P. Bertsekas, Annals of Operations Research 14 (1988) 105-123. Where the costs do not allow for a
/// matching, bids run out.
void AugmentingPaths::scale_duals() const {
    constexpr double first_margin = 1.0 / 8, last_margin = 1.0 / 8192, shrink = 1.0 / 5; // of the mean cost
    constexpr i64 bids_per_row = 25;                                                     // twice what most need
    const double mean = std::accumulate(a_.cost, a_.cost + a_.start[a_.n], 0.0) / a_.start[a_.n];
    for (double margin = first_margin; margin > last_margin; margin *= shrink) {
        unmatch();
        if (bid(mean * margin, bids_per_row * a_.n) <= 0) break;
    }
}

/// Each row takes its cheapest column where that is free.
void AugmentingPaths::start_from_duals() const {
    unmatch();
    for (i32 row = 0; row < a_.n; ++row) {
        double least = kInfinity;
        i32 nearest = -1;
        for (i32 k = a_.start[row]; k < a_.start[row + 1]; ++k)
            if (const double price = a_.cost[k] - a_.v[a_.column[k]]; price < least) {
                least = price;
                nearest = a_.column[k];
            }
        if (nearest < 0) continue;
        a_.u[row] = least;
        if (a_.row_of[nearest] >= 0) continue;
        a_.row_of[nearest] = row;
        a_.column_of[row] = nearest;
    }
}

void AugmentingPaths::unmatch() const {
    std::fill_n(a_.row_of, a_.n, -1);
    std::fill_n(a_.column_of, a_.n, -1);
}

/// Searches from all rows without a column. Returns false when they have looked at more than `patience` entries; what
/// is matched then stays.
bool AugmentingPaths::search_all(double patience, i32& matched) {
    std::fill_n(a_.position, a_.n, i32{kUnreached});
    bid(0.0, i64{bids_before_search} * a_.n);
    scanned_ = 0.0;
    matched = 0;
    for (i32 row = 0; row < a_.n; ++row) {
        if (a_.column_of[row] >= 0 || search(row)) ++matched;
        if (scanned_ > patience) return false;
    }
    return true;
}

i32 AugmentingPaths::match() {
    constexpr double patient_rounds = 10.0; // of looks at all entries; an auction takes some fifty
    i32 matched = 0;
    unmatch();
    std::fill_n(a_.v, a_.n, 0.0);
    start_cheaply();
    if (search_all(patient_rounds * a_.start[a_.n], matched)) return matched;
    scale_duals();
    start_from_duals();
    search_all(kInfinity, matched);
    return matched;
}

} // namespace nxl::pardiso
