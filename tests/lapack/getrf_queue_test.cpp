// The task queue of the LU factorisation, played through without threads and without a matrix: virtual threads take
// turns at random, and every task is checked against what it needs and what it may touch.
#include "lapack/kernel/source/lu/getrf_queue.hpp"
#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

using nxl::GetrfQueue;
using nxl::GetrfTask;
using nxl::i64;
using nxl::TaskKind;

struct Setting {
    i64 threads, nblk, npanels, strip, pool;
};

std::string text(const Setting& s) {
    return "threads " + std::to_string(s.threads) + " nblk " + std::to_string(s.nblk) + " npanels " +
           std::to_string(s.npanels) + " strip " + std::to_string(s.strip) + " pool " + std::to_string(s.pool);
}

/// One run. `applied` is the truth about the blocks; `holder` says which thread works on a block.
class Play {
    static constexpr i64 nobody = -1;

    const Setting s_;
    std::mt19937 random_;
    std::vector<i64> words_, applied_, holder_;
    GetrfQueue& queue_;
    i64 factored_ = 1; // panels, which come in order
    std::vector<GetrfTask> tasks_;
    std::vector<int> turns_left_; // until the task is done
    std::string fault_;

    static std::size_t at(i64 i) { return static_cast<std::size_t>(i); }
    void need(bool condition, const char* what) {
        if (!condition && fault_.empty()) fault_ = what;
    }

  public:
    Play(const Setting& s, unsigned seed)
        : s_(s),
          random_(seed),
          words_(at(nxl::queue_words(s.nblk))),
          applied_(at(s.nblk + 1), 0),
          holder_(at(s.nblk + 1), nobody),
          queue_(nxl::prepare_queue(words_.data(), s.nblk, s.npanels, s.strip, s.pool)),
          tasks_(at(s.threads)),
          turns_left_(at(s.threads), 0) {}

    /// What went wrong, or nothing.
    std::string run() {
        queue_.nthreads = s_.threads;
        for (i64 t = 0; t < s_.threads; ++t) nxl::getrf_queue_first(t, queue_, tasks_[at(t)]);
        std::vector<i64> live;
        for (i64 t = 0; t < s_.threads; ++t)
            if (tasks_[at(t)].kind != TaskKind::finished) live.push_back(t);
        int idle_turns = 0; // in a row, with no task in anyone's hands
        while (!live.empty() && fault_.empty()) {
            const std::size_t pick = random_() % live.size();
            take_turn(live[pick]);
            if (tasks_[at(live[pick])].kind == TaskKind::finished) live.erase(live.begin() + static_cast<long>(pick));
            const bool working =
                std::any_of(live.begin(), live.end(), [&](i64 t) { return tasks_[at(t)].first_col > 0; });
            idle_turns = working ? 0 : idle_turns + 1;
            need(idle_turns < 2000, "nobody works and nobody gets a task");
        }
        for (i64 j = 1; j <= s_.nblk; ++j)
            need(applied_[at(j)] == (j == 1 ? 0 : std::min(j, s_.npanels)), "a block is left unfinished");
        need(factored_ == s_.npanels, "a panel is left");
        return fault_;
    }

  private:
    void take_turn(i64 thread) {
        GetrfTask& task = tasks_[at(thread)];
        if (turns_left_[at(thread)]-- > 0) return;
        if (task.first_col > 0) finish(task);
        const i64 panel_done = queue_.panel_done;
        nxl::getrf_queue_next(thread, queue_, task);
        need(queue_.panel_done == factored_ && queue_.panel_done >= panel_done, "panel_done is not the last panel");
        if (task.kind == TaskKind::update || task.kind == TaskKind::panel) begin(thread, task);
        else need(task.first_col == 0, "an empty task names blocks");
        turns_left_[at(thread)] = task.first_col > 0 ? static_cast<int>(random_() % 6) : 0;
    }

    void begin(i64 thread, const GetrfTask& task) {
        need(task.first_panel <= task.last_panel && task.last_panel <= factored_, "a panel that is not factored");
        need(1 < task.first_col && task.first_col <= task.last_col && task.last_col <= s_.nblk, "no such blocks");
        if (!fault_.empty()) return;
        for (i64 j = task.first_col; j <= task.last_col; ++j) {
            need(holder_[at(j)] == nobody, "two tasks on one block");
            need(applied_[at(j)] + 1 == task.first_panel, "a panel left out or applied twice");
            if (j <= queue_.limit()) need((j - 1) / s_.strip % s_.threads == thread, "a block of another's strip");
            holder_[at(j)] = thread;
        }
        if (task.kind == TaskKind::panel) {
            need(task.first_col == task.last_col && task.first_col == factored_ + 1, "not the next panel");
            need(task.last_panel == factored_ && task.first_col <= s_.npanels, "a panel without all its updates");
        } else if (task.first_col <= queue_.limit()) need(task.last_panel == factored_, "an update that stops short");
        else need(task.first_col == task.last_col && task.first_panel == task.last_panel, "too much from the pool");
    }

    void finish(const GetrfTask& task) {
        for (i64 j = task.first_col; j <= task.last_col; ++j) {
            holder_[at(j)] = nobody;
            applied_[at(j)] = task.last_panel;
        }
        if (task.kind == TaskKind::panel) applied_[at(task.first_col)] = factored_ = task.first_col;
    }
};

TEST(GetrfQueue, AnyOrderOfTurnsFactorsTheMatrix) {
    unsigned seed = 0;
    for (const i64 threads : {1, 2, 3, 4, 7, 16})
        for (const i64 nblk : {2, 3, 6, 17, 30})
            for (const i64 npanels : {nblk - 1, nblk / 2, i64{1}})
                for (i64 strip = 1; strip <= 4; ++strip)
                    for (const i64 pool : {0, 4, 8, 16, 1000000})
                        for (int repeat = 0; repeat < 3; ++repeat) {
                            const Setting setting{threads, nblk, npanels, strip, pool};
                            ASSERT_EQ(Play(setting, ++seed).run(), "") << text(setting) << " seed " << seed;
                        }
}

struct Given {
    TaskKind kind;
    i64 first_panel, last_panel, first_col, last_col;
};

/// Records the thread's task and compares the next.
void expect_next(i64 thread, GetrfQueue& queue, GetrfTask& task, const Given& want) {
    nxl::getrf_queue_next(thread, queue, task);
    EXPECT_EQ(task.kind, want.kind);
    EXPECT_EQ(task.first_panel, want.first_panel);
    EXPECT_EQ(task.last_panel, want.last_panel);
    EXPECT_EQ(task.first_col, want.first_col);
    EXPECT_EQ(task.last_col, want.last_col);
}

constexpr Given nothing_now{TaskKind::none, 0, 0, 0, 0};

TEST(GetrfQueue, OwnStripsTakeLongRunsAndTheNextPanelFirst) {
    std::vector<i64> words(15, -5);
    GetrfQueue& queue = nxl::prepare_queue(words.data(), 8, 7, 2, 0);
    queue.nthreads = 2;
    EXPECT_EQ(words, (std::vector<i64>{2, 8, 7, 2, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
    GetrfTask zero, one;
    expect_next(0, queue, zero, {TaskKind::panel, 1, 1, 2, 2});
    expect_next(1, queue, one, {TaskKind::update, 1, 1, 3, 4});
    EXPECT_EQ(words, (std::vector<i64>{2, 8, 7, 2, 0, 0, 1, 0, -2, -1, -1, 0, 0, 0, 0}));
    expect_next(1, queue, one, {TaskKind::update, 1, 1, 7, 8});
    expect_next(0, queue, zero, {TaskKind::update, 1, 2, 5, 6});
    expect_next(1, queue, one, {TaskKind::panel, 2, 2, 3, 3});
    expect_next(0, queue, zero, nothing_now);
    expect_next(1, queue, one, {TaskKind::panel, 2, 3, 4, 4});
    expect_next(1, queue, one, {TaskKind::update, 2, 4, 7, 8});
    expect_next(0, queue, zero, {TaskKind::panel, 3, 4, 5, 5});
}

TEST(GetrfQueue, ThePoolGivesOnePanelOnOneBlockInBlockOrder) {
    std::vector<i64> words(12);
    GetrfQueue& queue = nxl::prepare_queue(words.data(), 5, 4, 3, 1000000);
    queue.nthreads = 2;
    GetrfTask zero, one;
    expect_next(0, queue, zero, {TaskKind::panel, 1, 1, 2, 2});
    expect_next(1, queue, one, {TaskKind::update, 1, 1, 3, 3});
    EXPECT_EQ(queue.col(3), -1);
    expect_next(1, queue, one, {TaskKind::update, 1, 1, 4, 4});
    expect_next(1, queue, one, {TaskKind::update, 1, 1, 5, 5});
    expect_next(1, queue, one, nothing_now); // block 3 waits for panel 2
    expect_next(0, queue, zero, {TaskKind::panel, 2, 2, 3, 3});
    expect_next(1, queue, one, {TaskKind::update, 2, 2, 4, 4});
}

TEST(GetrfQueue, ThreadsWithoutBlocksLeaveAtOnce) {
    std::vector<i64> words(12);
    for (const i64 pool : {0, 1}) {
        GetrfQueue& queue = nxl::prepare_queue(words.data(), 5, 4, 2, pool);
        queue.nthreads = 4;
        for (i64 thread = 0; thread < 4; ++thread) {
            GetrfTask task;
            nxl::getrf_queue_first(thread, queue, task);
            const bool has_block = pool == 1 || thread < 3; // strips 1-2, 3-4, 5
            EXPECT_EQ(task.kind, has_block ? TaskKind::none : TaskKind::finished) << thread << " of pool " << pool;
        }
    }
}

} // namespace
