// Decisions of the LU task queue. In the order of preference: the next panel when it is one's own, updates of one's own
// blocks, then the pool.
#include "lapack/kernel/source/lu/getrf_queue.hpp"
#include <algorithm>

namespace nxl {
namespace {

bool is_next_panel(const GetrfQueue& q, i64 j) { return j == q.panel_done + 1 && q.panel_done < q.npanels; }

void record(GetrfQueue& q, const GetrfTask& task) {
    if (task.kind == TaskKind::update)
        for (i64 j = task.first_col; j <= task.last_col; ++j) q.col(j) = task.last_panel;
    if (task.kind == TaskKind::panel) q.col(task.first_col) = q.panel_done = task.first_col;
}

void give_panel(GetrfQueue& q, i64 j, GetrfTask& task) {
    task = {TaskKind::panel, q.col(j) + 1, q.panel_done, j, j};
    q.col(j) = -j;
}

/// Looks through blocks `start` to `end`, all of one strip, and takes the first that lacks a panel with those behind it
/// that lack the same.
bool take_from_strip(GetrfQueue& q, i64 start, i64 end, GetrfTask& task) {
    const auto lacks_panels = [&q](i64 j) { return q.col(j) >= 0 && q.col(j) < q.panel_done; };
    if (is_next_panel(q, start) && lacks_panels(start)) return give_panel(q, start, task), true;
    i64 first = start;
    while (first <= end && !lacks_panels(first)) ++first;
    if (first > end) return false;
    const i64 applied = q.col(first);
    i64 last = first;
    while (last < end && q.col(last + 1) == applied) ++last;
    task = {TaskKind::update, applied + 1, q.panel_done, first, last};
    for (i64 j = first; j <= last; ++j) q.col(j) = -q.panel_done;
    return true;
}

enum class OwnStrips { task_given, waiting, finished };

OwnStrips take_own(i64 thread, GetrfQueue& q, GetrfTask& task) {
    bool finished = true;
    const i64 limit = q.limit(), stride = q.nthreads * q.strip;
    for (i64 strip = thread * q.strip + 1; strip <= limit; strip += stride) {
        const i64 end = std::min(strip + q.strip - 1, limit), start = std::max(strip, q.panel_done + 1);
        if (end <= q.panel_done) continue; // panels all
        if (take_from_strip(q, start, end, task)) return OwnStrips::task_given;
        for (i64 j = start; j <= end; ++j) finished = finished && q.col(j) >= q.npanels;
    }
    return finished ? OwnStrips::finished : OwnStrips::waiting;
}

struct LevelSearch {
    i64 found = 0; ///< the first block to which exactly `level` panels have been applied; 0: none
    bool busy = false;
};

LevelSearch search_level(GetrfQueue& q, i64 level) {
    LevelSearch result;
    for (i64 j = std::max(q.limit(), q.panel_done) + 1; j <= q.nblk && result.found == 0; ++j) {
        if (q.col(j) == level) result.found = j;
        if (q.col(j) == -1 - level) result.busy = true;
    }
    return result;
}

void take_from_pool(GetrfQueue& q, bool own_finished, GetrfTask& task) {
    task = {};
    for (i64 level = q.low; level < q.npanels; ++level) {
        const auto [found, busy] = search_level(q, level);
        if (found == 0) {
            // A block that is busy further down will turn up at a level that has been passed: low waits for it.
            if (!busy && level == q.low) ++q.low;
            continue;
        }
        if (q.panel_done <= level) return;
        if (is_next_panel(q, found)) return give_panel(q, found, task);
        task = {TaskKind::update, level + 1, level + 1, found, found};
        q.col(found) = -1 - level;
        return;
    }
    if (own_finished && q.low >= q.npanels) task.kind = TaskKind::finished;
}

} // namespace

GetrfQueue& prepare_queue(i64* words, i64 nblk, i64 npanels, i64 strip, i64 pool) {
    GetrfQueue& q = *reinterpret_cast<GetrfQueue*>(words);
    q = {0, nblk, npanels, std::max(strip, i64{1}), std::max(pool, i64{0}), 0, 1};
    for (i64 j = 1; j <= nblk; ++j) q.col(j) = 0;
    return q;
}

void getrf_queue_first(i64 thread, GetrfQueue& q, GetrfTask& task) {
    task = {};
    i64 first = thread * q.strip + 1;
    if (thread == 0) first = q.strip >= 2 ? 2 : q.nthreads + 1; // block 1 is the first panel
    if (first > q.limit() && q.pool < 1) task.kind = TaskKind::finished;
}

void getrf_queue_next(i64 thread, GetrfQueue& q, GetrfTask& task) {
    record(q, task);
    const OwnStrips own = take_own(thread, q, task);
    if (own != OwnStrips::task_given) take_from_pool(q, own == OwnStrips::finished, task);
}

} // namespace nxl
