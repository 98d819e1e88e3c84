// The tile table of the threaded Cholesky factorisation, run by virtual threads in random interleavings: every tile
// passes every level once and in order, from finished tiles only, in the hands of one task, and the run ends.
#include "lapack/kernel/source/cholesky/potrf_tiles.hpp"
#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace nxl {
namespace {

enum class Stage { looking, wanting_lock, scanning, measuring, closing, ending, gone };

/// A thread of the factorisation, between two of its steps. A step that reads many words without the right to hold
/// them still remembers how they were when it began.
struct VirtualThread {
    Stage stage = Stage::looking;
    PotrfTask task;
    std::vector<i64> before;
};

class Simulation {
    const i64 nbk_, limit_;
    std::mt19937 random_;
    std::vector<i64> words_;
    PotrfTable table_;
    std::vector<VirtualThread> threads_;
    bool locked_ = false;
    std::vector<i64> next_level_; // of each tile, as the work really done tells
    std::vector<bool> owned_;
    const char* fault_ = nullptr;

    static std::size_t index(i64 p, i64 q) { return static_cast<std::size_t>(p - 1 + q * (q - 1) / 2); }
    static std::size_t index(const PotrfTask& task) { return index(task.p, task.q); }

    void require(bool holds, const char* what) {
        if (!holds && !fault_) fault_ = what;
    }
    bool ready_as_source(i64 p, i64 q) const { return next_level_[index(p, q)] == p + 1 && !owned_[index(p, q)]; }
    bool all_finished() const {
        for (i64 q = 1; q <= nbk_; ++q)
            for (i64 p = 1; p <= q; ++p)
                if (!ready_as_source(p, q)) return false;
        return true;
    }

    /// The words as a thread sees them that reads by columns while others write: the left ones older than the right.
    std::vector<i64> torn(const std::vector<i64>& before) {
        std::vector<i64> seen = words_;
        const i64 cut = static_cast<i64>(random_() % static_cast<unsigned>(nbk_ + 1));
        const std::size_t header = words_.size() - next_level_.size();
        for (i64 q = 1; q <= nbk_; ++q)
            for (i64 p = 1; p <= std::min(q, cut); ++p) seen[header + index(p, q)] = before[header + index(p, q)];
        return seen;
    }
    PotrfTable table_of(std::vector<i64>& words) const {
        const std::vector<i64> kept = words;
        const PotrfTable table(words.data(), nbk_);
        words = kept;
        return table;
    }

    void take(const PotrfTask& task) {
        if (!task.held()) return;
        require(!owned_[index(task)], "a tile is given to two tasks");
        require(task.k == next_level_[index(task)], "a task starts at a level that is not the tile's next");
        owned_[index(task)] = true;
    }

    void scan(VirtualThread& t) {
        std::vector<i64> seen = torn(t.before);
        PotrfTable view = table_of(seen);
        potrf_task_next(t.task, view);
        if (view.finished()) table_.set_finished();
        table_.set_start(view.start());
        if (t.task.held()) table_.set_level(t.task.p, t.task.q, view.level(t.task.p, t.task.q));
        take(t.task);
        locked_ = false;
        t.stage = Stage::looking;
    }

    void update(VirtualThread& t) {
        std::vector<i64> seen = torn(t.before);
        const i64 levels = potrf_task_updates(t.task, table_of(seen), limit_), last = t.task.k + levels;
        require(levels <= limit_ && (levels > 0 || t.task.k == t.task.p), "a task applies too many levels or none");
        require(last <= t.task.p, "an update goes beyond the tile's own column");
        for (; t.task.k < last; ++t.task.k)
            require(ready_as_source(t.task.k, t.task.q) && ready_as_source(t.task.k, t.task.p),
                    "an update reads a tile that is not finished");
        next_level_[index(t.task)] = t.task.k;
        t.stage = Stage::closing;
    }

    void close(VirtualThread& t) {
        if (potrf_task_closes(t.task, table_)) {
            require(t.task.k == t.task.p, "a tile is closed with updates missing");
            require(t.task.diagonal() || ready_as_source(t.task.p, t.task.p), "a tile is solved with an open diagonal");
            next_level_[index(t.task)] = ++t.task.k;
        }
        t.stage = Stage::ending;
    }

    void step(VirtualThread& t) {
        switch (t.stage) {
        case Stage::looking:
            t.before = words_;
            t.stage = table_.finished() ? Stage::gone : t.task.held() ? Stage::measuring : Stage::wanting_lock;
            break;
        case Stage::wanting_lock:
            if (locked_) break;
            locked_ = true;
            t.before = words_;
            t.stage = Stage::scanning;
            break;
        case Stage::scanning: scan(t); break;
        case Stage::measuring: update(t); break;
        case Stage::closing: close(t); break;
        case Stage::ending:
            owned_[index(t.task)] = false;
            potrf_task_end(t.task, table_);
            t.stage = Stage::wanting_lock;
            break;
        case Stage::gone: break;
        }
    }

  public:
    Simulation(i64 nbk, i64 limit, std::size_t threads, unsigned seed)
        : nbk_(nbk),
          limit_(limit),
          random_(seed),
          words_(static_cast<std::size_t>(PotrfTable::words_needed(nbk))),
          table_(words_.data(), nbk),
          threads_(threads),
          next_level_(static_cast<std::size_t>(nbk * (nbk + 1) / 2), 1),
          owned_(next_level_.size()) {
        next_level_[0] = 2; // the first tile
        for (std::size_t i = 0; i < threads; ++i) {
            potrf_task_first(threads_[i].task, table_, static_cast<i64>(i));
            take(threads_[i].task);
        }
    }

    /// Null, or what went wrong.
    const char* run() {
        const auto here = [](const VirtualThread& t) { return t.stage != Stage::gone; };
        for (int steps = 0; std::any_of(threads_.begin(), threads_.end(), here); ++steps) {
            if (fault_ || steps == 1000000) return fault_ ? fault_ : "the run does not end";
            // Now and then one thread runs far ahead of the others, or they all stand still but for it.
            VirtualThread& t = threads_[random_() % threads_.size()];
            for (unsigned n = random_() % 8 == 0 ? random_() % 64 : 1; n > 0; --n) step(t);
        }
        require(all_finished(), "the run ends with tiles left");
        return fault_;
    }
};

TEST(PotrfTiles, EveryInterleavingAppliesEveryLevelOnceInOrderFromFinishedTiles) {
    for (i64 nbk = 1; nbk <= 12; ++nbk)
        for (const i64 limit : {i64{1}, i64{2}, nbk})
            for (const std::size_t threads : {1U, 2U, 3U, 7U, 16U})
                for (unsigned seed = 0; seed < 60; ++seed)
                    ASSERT_STREQ(Simulation(nbk, limit, threads, seed).run(), nullptr)
                        << nbk << " tiles, limit " << limit << ", " << threads << " threads, seed " << seed;
}

} // namespace
} // namespace nxl
