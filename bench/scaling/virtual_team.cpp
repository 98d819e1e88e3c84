#include "bench/scaling/virtual_team.hpp"
#include <algorithm>
#include <bit>

namespace nxl::bench {

double SyncTimes::fork_of(int cores) const { return fork * std::bit_width(static_cast<unsigned>(cores - 1)); }

VirtualTeam::VirtualTeam(int cores, const SyncTimes& sync) : sync_(sync), asked_(static_cast<std::size_t>(cores)) {
    run_.cores = cores;
}

void VirtualTeam::schedule(int core, double delay, int stage, bool gives_lock_back) {
    events_.push({now() + delay, order_++, core, stage, gives_lock_back});
}

void VirtualTeam::work(int core, double seconds, int stage) {
    run_.work += seconds;
    wait(core, seconds, stage);
}

void VirtualTeam::ask_for_lock(int core, int stage) {
    asked_[static_cast<std::size_t>(core)] = now();
    if (held_) return asking_.push_back({core, stage});
    held_ = true;
    wait(core, 0.0, stage);
}

void VirtualTeam::give_lock_back(int core, double inside, int stage) {
    schedule(core, inside + (asking_.empty() ? sync_.lock : sync_.contended_lock), stage, true);
}

PlayedRun VirtualTeam::run(const std::function<void(int core, int stage)>& play) {
    while (!events_.empty()) {
        const Event event = events_.top();
        events_.pop();
        run_.seconds = event.time;
        if (event.gives_lock_back) {
            run_.locked += now() - asked_[static_cast<std::size_t>(event.core)];
            held_ = !asking_.empty();
            if (held_) {
                wait(asking_.front().core, 0.0, asking_.front().stage);
                asking_.pop_front();
            }
        }
        play(event.core, event.stage);
    }
    return run_;
}

void play_loop(const std::vector<double>& seconds, double fork, PlayedRun& run) {
    std::priority_queue<double, std::vector<double>, std::greater<>> free;
    for (int core = 0; core < run.cores; ++core) free.push(0.0);
    double end = 0.0;
    for (const double task : seconds) {
        const double start = free.top();
        free.pop();
        free.push(start + task);
        end = std::max(end, start + task);
        run.work += task;
    }
    run.seconds += end + fork;
}

} // namespace nxl::bench
