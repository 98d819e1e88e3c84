// The task queue of the LU factorisation over column blocks: which panels have been applied to which block, and what a
// thread is to do next. Plain data and decisions; locking and arithmetic are left to xgetrf_omp.cpp.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Blocks and panels are numbered from 1; panel p is block p, factored. Blocks up to the limit, nblk - pool, belong to
/// threads in strips of `strip` blocks, dealt in turn, and nobody but the owner works on them: he applies all panels
/// there are to neighbouring blocks in one task. The blocks behind are the pool, from which any thread takes one panel
/// on one block at a time, so that there is work for all where the matrix runs out.
///
/// Lies at the start of queue_words(nblk) words of 64 bits; the blocks' states follow it.
struct GetrfQueue {
    i64 nthreads;
    i64 nblk;
    i64 npanels;    ///< panels to factor inside the queue; blocks beyond get updates only
    i64 strip;      ///< at least 1
    i64 pool;       ///< may be more than there are blocks
    i64 low;        ///< every block of the pool has been given, or is being given, the panels up to here
    i64 panel_done; ///< the last panel factored

    /// State of block j: k >= 0, panels up to k have been applied; below 0, a task is working on it. In the pool, -1 -
    /// k says that the task found it at k.
    i64& col(i64 j) { return reinterpret_cast<i64*>(this + 1)[j - 1]; }

    i64 limit() const { return nblk > pool ? nblk - pool : 0; }
};
static_assert(sizeof(GetrfQueue) == 7 * sizeof(i64));

constexpr i64 queue_words(i64 nblk) { return nblk + 7; }

/// The state before the fork, with panel 1 factored and the team's size not known yet.
GetrfQueue& prepare_queue(i64* words, i64 nblk, i64 npanels, i64 strip, i64 pool);

enum class TaskKind : i64 { finished = -1, none = 0, update = 1, panel = 2 };

/// Apply panels first_panel to last_panel, in order, to blocks first_col to last_col; a panel task then factors its one
/// block.
struct GetrfTask {
    TaskKind kind = TaskKind::none;
    i64 first_panel = 0, last_panel = 0;
    i64 first_col = 0, last_col = 0;
};

/// Sets the task with which a thread goes to getrf_queue_next: `none`, or `finished` when there will never be work for
/// it. Reads what does not change during the run.
void getrf_queue_first(i64 thread, GetrfQueue& queue, GetrfTask& task);

/// Records the task as done and replaces it by the next one. To be called by one thread at a time.
void getrf_queue_next(i64 thread, GetrfQueue& queue, GetrfTask& task);

} // namespace nxl
