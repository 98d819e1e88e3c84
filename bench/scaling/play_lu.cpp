// The task queue of LU.
#include "bench/scaling/plays.hpp"
#include "lapack/kernel/source/lu/getrf_queue.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include <algorithm>

namespace nxl::bench {
namespace {

enum Stage : int { asks, chooses, begins };

class LuPlay {
    const i64 n_, nb_;
    const LuCosts& costs_;
    const PlayedMachine& machine_;
    std::vector<i64> words_;
    GetrfQueue& queue_;
    VirtualTeam team_;
    std::vector<GetrfTask> tasks_;
    std::vector<PlayedIdleWait> idle_;

    static i64 blocks(i64 n, i64 nb) { return (n - 1) / nb + 1; }

    double seconds_of(const GetrfTask& task) const {
        const i64 first = (task.first_col - 1) * nb_, columns = std::min(task.last_col * nb_, n_) - first;
        double seconds = 0.0;
        for (i64 p = task.first_panel; p <= task.last_panel; ++p) seconds += costs_.apply(n_ - (p - 1) * nb_, columns);
        if (task.kind == TaskKind::panel) seconds += costs_.panel(n_ - first, nb_);
        return seconds;
    }

    void go_on(int core, int stage) {
        GetrfTask& task = tasks_[static_cast<std::size_t>(core)];
        PlayedIdleWait& idle = idle_[static_cast<std::size_t>(core)];
        switch (stage) {
        case asks:
            if (task.kind != TaskKind::finished) team_.ask_for_lock(core, chooses);
            return;
        case chooses: {
            const double inside = machine_.decide([&] { getrf_queue_next(core, queue_, task); });
            return team_.give_lock_back(core, inside, begins);
        }
        default:
            if (task.kind == TaskKind::finished) return;
            if (task.kind == TaskKind::none) return team_.wait(core, idle.wait(machine_.sync), asks);
            idle.found_work();
            team_.work(core, seconds_of(task), asks);
        }
    }

  public:
    LuPlay(i64 n, int cores, const LuCosts& costs, const PlayedMachine& machine)
        : n_(n),
          nb_(lu_block_of(n, cores)),
          costs_(costs),
          machine_(machine),
          words_(static_cast<std::size_t>(queue_words(blocks(n, nb_)))),
          queue_(prepare_queue(words_.data(), blocks(n, nb_), blocks(n, nb_) - 1,
                               lu_sizes<double>.strip(n, std::max(cores, 2)),
                               lu_sizes<double>.pool(n, std::max(cores, 2)))),
          team_(cores, machine.sync),
          tasks_(static_cast<std::size_t>(cores)),
          idle_(static_cast<std::size_t>(cores)) {
        queue_.nthreads = cores;
    }

    PlayedRun run() {
        for (int core = 0; core < team_.cores(); ++core) {
            getrf_queue_first(core, queue_, tasks_[static_cast<std::size_t>(core)]);
            team_.wait(core, 0.0, asks);
        }
        PlayedRun run = team_.run([this](int core, int stage) { go_on(core, stage); });
        const i64 last = n_ - queue_.npanels * nb_;
        run.add_serial(costs_.panel(n_, nb_) + costs_.panel(last, last));
        run.seconds += machine_.sync.fork_of(run.cores);
        std::vector<double> interchanges;
        for (i64 p = 1; p <= queue_.npanels; ++p)
            interchanges.push_back(costs_.interchange * static_cast<double>((n_ - p * nb_) * nb_));
        play_loop(interchanges, machine_.sync.fork_of(run.cores), run);
        return run;
    }
};

} // namespace

double PlayedIdleWait::wait(const SyncTimes& sync) {
    constexpr int longest = 64; // as in IdleWait
    const double seconds = pauses_ * sync.pause;
    if (pauses_ >= longest) return seconds + sync.yield;
    pauses_ *= 2;
    return seconds;
}

i64 lu_block_of(i64 n, int cores) { return std::min(lu_sizes<double>.block(n, std::max(cores, 2)), (n + 1) / 2); }

PlayedRun play_lu(i64 n, int cores, const LuCosts& costs, const PlayedMachine& machine) {
    return LuPlay(n, cores, costs, machine).run();
}

} // namespace nxl::bench
