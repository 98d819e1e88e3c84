// The tile table of the threaded Cholesky factorisation: which tile a thread takes next and how far it may go.
#include "lapack/kernel/source/cholesky/potrf_tiles.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// Whether a tile that no task is at can take its next level.
bool can_go_on(i64 p, i64 q, const PotrfTable& table) {
    const i64 k = table.level(p, q);
    if (k <= 0) return false;
    if (p == q) return table.tile_finished(k, p);
    return (k == p || p == 1 || table.tile_finished(k, q)) && table.tile_finished(k, p);
}

} // namespace

PotrfTable::PotrfTable(i64* words, i64 nbk) : words_(words) {
    std::fill_n(words, words_needed(nbk), i64{1});
    words[tiles_along_side] = nbk;
    words[all_finished] = words[columns_done] = words[first_tile] = 0;
}

void potrf_task_first(PotrfTask& task, PotrfTable& table, i64 thread) {
    const i64 q = thread + 2;
    task = {};
    if (q > table.nbk() || !table.tile_finished(1, 1)) return;
    task = {1, q, 1};
    table.set_level(1, q, -1);
}

void potrf_task_next(PotrfTask& task, PotrfTable& table) {
    const i64 nbk = table.nbk();
    bool all_closed = true;
    task = {};
    for (i64 p = table.start() + 1; p <= nbk; ++p) {
        bool column_closed = true;
        for (i64 q = p; q <= nbk; ++q) {
            if (table.tile_finished(p, q)) continue;
            column_closed = all_closed = false;
            if (!can_go_on(p, q, table)) continue;
            task = {p, q, table.level(p, q)};
            table.set_level(p, q, -task.k);
            return;
        }
        // Columns are complete from left to right, so those before p are, whatever this scan saw there a moment ago.
        if (column_closed) table.set_start(p);
    }
    if (all_closed) table.set_finished();
}

// In each row tiles finish from left to right, since tile (i, q) passes level j < i with the finished tile (j, q). The
// levels counted here therefore follow upon k without a gap: one that was not yet finished when it was asked about is,
// as soon as a later one is.
i64 potrf_task_span(i64 p, i64 q, const PotrfTable& table) {
    const i64 k = std::max(table.level(p, q), -table.level(p, q));
    i64 count = 1;
    for (i64 i = k + 1; i < p; ++i)
        if (table.tile_finished(i, p) && (p == q || table.tile_finished(i, q))) ++count;
    return count;
}

i64 potrf_task_updates(const PotrfTask& task, const PotrfTable& table, i64 limit) {
    return task.k == task.p ? 0 : std::min(potrf_task_span(task.p, task.q, table), limit);
}

bool potrf_task_closes(const PotrfTask& task, const PotrfTable& table) {
    return task.k == task.p && (task.diagonal() || table.tile_finished(task.p, task.p));
}

void potrf_task_end(const PotrfTask& task, PotrfTable& table) {
    table.set_level(task.p, task.q, task.k > task.p ? 0 : task.k);
}

} // namespace nxl
