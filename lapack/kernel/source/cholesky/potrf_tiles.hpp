// The tile table of the threaded Cholesky factorisation: which tile a thread takes next and how far it may go. Pure
// code without threads of its own; xpotrf_omp.cpp runs it under the lock, a test runs it step by step.
#pragma once
#include "service/types.hpp"
#include <atomic>

namespace nxl {

/// The triangle cut into nbk(nbk+1)/2 tiles; tile (p, q), 1 <= p <= q <= nbk, is in column p and row q of the lower
/// triangle, or the transposed place of the upper one. A tile passes levels: at level k < p it awaits the product of
/// the tiles (k, q) and (k, p), at level p it is factored (p = q) or solved with tile (p, p) (p < q).
///
/// The word of a tile is its next level k, or -k while a task is at it, or 0 when it is finished for good. A word
/// changes hands under the lock; the task's owner alone writes it back, without the lock. Words are read with acquire
/// and written with release: who sees a tile finished sees its elements.
class PotrfTable {
    enum Field : i64 { tiles_along_side, all_finished, columns_done, first_tile };
    i64* words_;

    std::atomic_ref<i64> field(Field which) const { return std::atomic_ref<i64>(words_[which]); }
    std::atomic_ref<i64> tile(i64 p, i64 q) const {
        return std::atomic_ref<i64>(words_[first_tile + p - 1 + q * (q - 1) / 2]);
    }

  public:
    static constexpr i64 words_needed(i64 nbk) { return nbk * (nbk + 1) / 2 + first_tile; }

    /// All tiles at level 1 but tile (1, 1), which is factored before. `words` outlives the table.
    PotrfTable(i64* words, i64 nbk);

    i64 nbk() const { return words_[tiles_along_side]; }
    bool finished() const { return field(all_finished).load(std::memory_order_relaxed) != 0; }
    void set_finished() { field(all_finished).store(1, std::memory_order_relaxed); }

    /// Columns 1 to start() are complete.
    i64 start() const { return field(columns_done).load(std::memory_order_relaxed); }
    void set_start(i64 p) { field(columns_done).store(p, std::memory_order_relaxed); }

    i64 level(i64 p, i64 q) const { return tile(p, q).load(std::memory_order_acquire); }
    void set_level(i64 p, i64 q, i64 level) { tile(p, q).store(level, std::memory_order_release); }
    bool tile_finished(i64 p, i64 q) const { return level(p, q) == 0; }
};

/// The tile that a thread is at, and its level. No tile: p = 0.
struct PotrfTask {
    i64 p = 0, q = 0, k = 0;

    bool held() const { return p != 0; }
    bool diagonal() const { return p == q; }
};

/// A thread's first task, before any scan: the tile of column 1 that is its own.
void potrf_task_first(PotrfTask& task, PotrfTable& table, i64 thread);

/// The first tile, by columns from the left, that can go on; none when all is finished or waits. Under the lock.
void potrf_task_next(PotrfTask& task, PotrfTable& table);

/// How many levels the task at tile (p, q) finds ready for one update, its own among them.
i64 potrf_task_span(i64 p, i64 q, const PotrfTable& table);

/// The levels of the task's update, at most `limit`; 0 when all updates are behind it.
i64 potrf_task_updates(const PotrfTask& task, const PotrfTable& table, i64 limit);

/// Whether the task, as far as it has come, can factor or solve its tile.
bool potrf_task_closes(const PotrfTask& task, const PotrfTable& table);

/// Gives the tile back at the level that the task has reached.
void potrf_task_end(const PotrfTask& task, PotrfTable& table);

} // namespace nxl
