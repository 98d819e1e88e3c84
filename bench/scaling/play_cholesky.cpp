// The tile table of Cholesky, lower triangle.
#include "bench/scaling/plays.hpp"
#include "lapack/kernel/source/cholesky/potrf_tiles.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include <algorithm>

namespace nxl::bench {
namespace {

enum Stage : int { asks, chooses, begins, updated, closed };

class CholeskyPlay {
    const i64 tiles_;
    const CholeskyCosts& costs_;
    const PlayedMachine& machine_;
    std::vector<i64> words_;
    PotrfTable table_;
    VirtualTeam team_;
    std::vector<PotrfTask> tasks_;
    std::vector<PlayedIdleWait> idle_;

    void begin(int core, PotrfTask& task) {
        PlayedIdleWait& idle = idle_[static_cast<std::size_t>(core)];
        if (table_.finished()) return;
        if (!task.held()) return team_.wait(core, idle.wait(machine_.sync), asks);
        idle.found_work();
        const i64 levels = potrf_task_updates(task, table_, cholesky_sizes.level_limit('L', 0));
        if (levels == 0) return go_on(core, updated);
        const bool diagonal = task.diagonal();
        task.k += levels;
        team_.work(core, costs_.update(levels, diagonal), updated);
    }

    void go_on(int core, int stage) {
        PotrfTask& task = tasks_[static_cast<std::size_t>(core)];
        switch (stage) {
        case asks: return team_.ask_for_lock(core, chooses);
        case chooses: {
            const double inside = machine_.decide([&] { potrf_task_next(task, table_); });
            return team_.give_lock_back(core, inside, begins);
        }
        case begins: return begin(core, task);
        case updated:
            if (potrf_task_closes(task, table_))
                return team_.work(core, task.diagonal() ? costs_.factor : costs_.solve, closed);
            break;
        default: ++task.k;
        }
        potrf_task_end(task, table_);
        team_.ask_for_lock(core, chooses);
    }

  public:
    CholeskyPlay(i64 n, int cores, const CholeskyCosts& costs, const PlayedMachine& machine)
        : tiles_((n - 1) / cholesky_block_of(n, cores) + 1),
          costs_(costs),
          machine_(machine),
          words_(static_cast<std::size_t>(PotrfTable::words_needed(tiles_))),
          table_(words_.data(), tiles_),
          team_(cores, machine.sync),
          tasks_(static_cast<std::size_t>(cores)),
          idle_(static_cast<std::size_t>(cores)) {}

    PlayedRun run() {
        for (int core = 0; core < team_.cores(); ++core) {
            potrf_task_first(tasks_[static_cast<std::size_t>(core)], table_, core);
            team_.wait(core, 0.0, begins);
        }
        PlayedRun run = team_.run([this](int core, int stage) { go_on(core, stage); });
        run.add_serial(costs_.factor);
        run.seconds += machine_.sync.fork_of(run.cores);
        return run;
    }
};

} // namespace

i64 cholesky_block_of(i64 n, int cores) { return std::min(cholesky_sizes.block(n, std::max(cores, 2)), (n + 1) / 2); }

PlayedRun play_cholesky(i64 n, int cores, const CholeskyCosts& costs, const PlayedMachine& machine) {
    return CholeskyPlay(n, cores, costs, machine).run();
}

} // namespace nxl::bench
