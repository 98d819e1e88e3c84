// The queues of the sparse solver, over supernodes in the order of its schedule for as many threads.
#include "bench/scaling/plays.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/update_lists.hpp"
#include "solvers_ds/kernel/default/pardiso/panel_schedule.hpp"
#include "solvers_ds/kernel/default/pardiso/update_counts.hpp"
#include <algorithm>
#include <numeric>

namespace nxl::bench {
namespace {

using pardiso::i32;
using pardiso::Supernodes;
using pardiso::WaitingUpdate;
using Integers = std::vector<i32>;

enum Stage : int { turns, needs, looks, looked, done, pushes, pushed };

Integers parents_of(const Supernodes& supernodes) {
    Integers parents;
    for (i32 s = 1; s <= supernodes.count; ++s)
        parents.push_back(
            supernodes.rows(s) > supernodes.width(s) ? supernodes.snode[supernodes.list(s)[supernodes.width(s)]] : 0);
    return parents;
}

Integers updates_of(const Supernodes& supernodes) {
    Integers nmod(static_cast<std::size_t>(supernodes.count));
    count_updates(supernodes, nmod.data());
    return nmod;
}

Integers schedule_of(const Supernodes& supernodes, int cores) {
    const Integers parents = parents_of(supernodes);
    Integers schedule(parents.size());
    std::vector<double> work(static_cast<std::size_t>(pardiso::schedule_work(supernodes.count, cores)));
    pardiso::build_pnlsch({supernodes, parents.data(), {false, false}, cores, schedule.data(), work.data()});
    return schedule;
}

class SparsePlay {
    struct Core {
        i32 target = 0, left = 0;
        std::int64_t seen = 0; // pushes when it last looked
        WaitingUpdate update{};
        PlayedIdleWait idle;
    };

    const Supernodes& supernodes_;
    const SparseCosts& costs_;
    const PlayedMachine& machine_;
    Integers nmod_, schedule_, head_, tail_;
    std::vector<i64> start_;
    std::vector<WaitingUpdate> updates_;
    pardiso::UpdateQueues queues_;
    VirtualTeam team_;
    std::vector<Core> cores_;
    std::vector<int> waiting_; // cores, for a push
    std::size_t turns_ = 0;
    std::int64_t pushes_ = 0;

    double seconds_of_update(const Core& core) const {
        const auto [source, offset] = core.update;
        const i32 *const list = supernodes_.list(source), rows = supernodes_.rows(source);
        const i32 limit = supernodes_.last(core.target) + 1;
        const auto columns = std::lower_bound(list + offset, list + rows, limit) - (list + offset);
        return costs_.update(rows - offset, columns, supernodes_.width(source));
    }

    void look(int number, Core& core) {
        core.seen = pushes_;
        team_.ask_for_lock(number, looks);
    }

    void wake_all() {
        ++pushes_;
        std::vector<int> woken;
        woken.swap(waiting_);
        for (const int number : woken) team_.wait(number, cores_[at(number)].idle.wait(machine_.sync), needs);
    }

    static std::size_t at(int number) { return static_cast<std::size_t>(number); }

    void go_on(int number, int stage) {
        Core& core = cores_[at(number)];
        const i32 s = core.target;
        switch (stage) {
        case turns:
            if (turns_ == schedule_.size()) return;
            core.target = schedule_[turns_++];
            core.left = nmod_[at(core.target - 1)];
            return team_.work(number, costs_.assemble(supernodes_.rows(core.target), supernodes_.width(core.target)),
                              needs);
        case needs:
            if (core.left > 0) return look(number, core);
            return team_.work(number, costs_.factor(supernodes_.rows(s), supernodes_.width(s)), done);
        case looks: {
            const double inside = machine_.decide([&] { core.update = queues_.pop(s); });
            return team_.give_lock_back(number, inside, looked);
        }
        case looked:
            if (core.update.source == 0 && pushes_ == core.seen) return waiting_.push_back(number);
            if (core.update.source == 0) return look(number, core);
            core.idle.found_work();
            --core.left;
            return team_.work(number, seconds_of_update(core), needs);
        case done: return team_.ask_for_lock(number, pushes);
        case pushes: return team_.give_lock_back(number, machine_.decide([&] { queues_.push(s); }), pushed);
        default: wake_all(); return team_.wait(number, 0.0, turns);
        }
    }

  public:
    SparsePlay(const Supernodes& supernodes, int cores, const SparseCosts& costs, const PlayedMachine& machine)
        : supernodes_(supernodes),
          costs_(costs),
          machine_(machine),
          nmod_(updates_of(supernodes)),
          schedule_(schedule_of(supernodes, cores)),
          head_(nmod_.size()),
          tail_(nmod_.size()),
          start_(nmod_.size() + 1),
          updates_(std::accumulate(nmod_.begin(), nmod_.end(), std::size_t{0}) + 1),
          queues_(supernodes, nmod_.data(), start_.data(), head_.data(), tail_.data(), updates_.data()),
          team_(cores, machine.sync),
          cores_(at(cores)) {}

    PlayedRun run() {
        for (int number = 0; number < team_.cores(); ++number) team_.wait(number, 0.0, turns);
        PlayedRun run = team_.run([this](int number, int stage) { go_on(number, stage); });
        run.seconds += machine_.sync.fork_of(run.cores);
        return run;
    }
};

} // namespace

PlayedRun play_sparse(const Supernodes& supernodes, int cores, const SparseCosts& costs, const PlayedMachine& machine) {
    return SparsePlay(supernodes, cores, costs, machine).run();
}

} // namespace nxl::bench
