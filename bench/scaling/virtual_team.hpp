// Virtual cores with clocks of their own, by discrete events: who does something next, and who holds the one lock that
// they share. What they do is the business of a play.
#pragma once
#include <cstdint>
#include <deque>
#include <functional>
#include <queue>
#include <vector>

namespace nxl::bench {

/// What cores pay for each other, in seconds.
struct SyncTimes {
    double lock = 0.0;           ///< to take and give back a lock that nobody wants
    double contended_lock = 0.0; ///< the same where it comes from another core
    double pause = 0.0, yield = 0.0;
    double fork = 0.0; ///< of a region of two threads, start and end; a team's grows with its binary logarithm

    double fork_of(int cores) const;
};

/// How a run went: its length, and what of the cores' time was arithmetic, or passing a lock and waiting for it. The
/// rest is idle.
struct PlayedRun {
    int cores = 1;
    double seconds = 0.0, work = 0.0, locked = 0.0;

    double share(double part) const { return part / (seconds * cores); }
    double idle() const { return 1.0 - share(work) - share(locked); }
    /// A stretch in which one core works and the others wait.
    void add_serial(double length) { seconds += length, work += length; }
};

/// Carries out a decision, and tells the seconds that it took.
using DecisionClock = std::function<double(const std::function<void()>& decision)>;

class VirtualTeam {
    struct Event {
        double time;
        std::int64_t order; // of equal times the first one that was scheduled
        int core, stage;
        bool gives_lock_back;
        bool operator<(const Event& other) const {
            return time != other.time ? time > other.time : order > other.order;
        }
    };
    struct Asking {
        int core, stage;
    };

    PlayedRun run_;
    SyncTimes sync_;
    std::priority_queue<Event> events_;
    std::deque<Asking> asking_;
    std::vector<double> asked_; // when, by core
    bool held_ = false;
    std::int64_t order_ = 0;

    void schedule(int core, double delay, int stage, bool gives_lock_back);

  public:
    VirtualTeam(int cores, const SyncTimes& sync);

    int cores() const { return run_.cores; }
    double now() const { return run_.seconds; }

    /// The core goes on with a stage after a wait, or after arithmetic.
    void wait(int core, double seconds, int stage) { schedule(core, seconds, stage, false); }
    void work(int core, double seconds, int stage);

    /// The core goes on with a stage as soon as it has the lock; those who ask get it in turn.
    void ask_for_lock(int core, int stage);
    /// Called in that stage: the core keeps the lock for `inside` seconds and what passing it takes, then goes on.
    void give_lock_back(int core, double inside, int stage);

    /// play(core, stage) for each event, until nothing is to come.
    PlayedRun run(const std::function<void(int core, int stage)>& play);
};

/// Tasks that cores take one by one, without a lock worth the name, as a dynamic loop deals them.
void play_loop(const std::vector<double>& seconds, double fork, PlayedRun& run);

} // namespace nxl::bench
