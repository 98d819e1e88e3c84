#include "solvers_ds/kernel/default/pardiso/panel_schedule.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

/// A subtree with less than this share of the work of one thread is one task: small enough that threads end together,
/// large enough that there are few tasks.
constexpr double task_share = 1.0 / 16;

/// A task is a run of supernodes, named by its last one: a whole subtree, or a single supernode above those.
struct Tasks {
    i32 count;
    FromOne<double> subtree, to_root; // work of the subtree below each supernode; from the start of a task to the root
    FromOne<i32> first;               // of each task; 0 for a supernode inside another's
    FromOne<i32> waiting_for;         // tasks right below one that are not done
};

/// What a thread is doing: supernode `next` from `time` on, up to `last`; no task when `last` is 0.
struct Worker {
    double time;
    i32 next, last;
};

double work_of(const ScheduleView& view, i32 s) { return flops_of_supernode(view.supernodes, s, view.rule); }

/// Work and first supernode of each subtree, and in waiting_for the number of its supernodes.
void sum_subtrees(const ScheduleView& view, const Tasks& tasks) {
    for (i32 s = 1; s <= tasks.count; ++s) {
        tasks.subtree[s] = 0.0;
        tasks.first[s] = s;
        tasks.waiting_for[s] = 0;
    }
    for (i32 s = 1; s <= tasks.count; ++s) {
        tasks.subtree[s] += work_of(view, s);
        ++tasks.waiting_for[s];
        const i32 above = view.parent[s];
        if (above == 0) continue;
        tasks.subtree[above] += tasks.subtree[s];
        tasks.waiting_for[above] += tasks.waiting_for[s];
        tasks.first[above] = std::min(tasks.first[above], tasks.first[s]);
    }
}

/// Cuts the tree into tasks. A subtree that is no run of supernodes, as a separator may lie in between, is none.
void cut_tasks(const ScheduleView& view, const Tasks& tasks) {
    double all = 0.0;
    for (i32 s = 1; s <= tasks.count; ++s)
        if (view.parent[s] == 0) all += tasks.subtree[s];
    const double limit = all * task_share / view.threads;
    for (i32 s = tasks.count; s >= 1; --s) {
        const i32 above = view.parent[s];
        const bool run = s - tasks.first[s] + 1 == tasks.waiting_for[s] && tasks.subtree[s] <= limit;
        const bool inside = above != 0 && (tasks.first[above] == 0 || tasks.first[above] < above);
        if (inside) tasks.first[s] = 0;
        else if (!run) tasks.first[s] = s;
        tasks.waiting_for[s] = 0;
        if (inside) continue;
        tasks.to_root[s] =
            (tasks.first[s] < s ? tasks.subtree[s] : work_of(view, s)) + (above != 0 ? tasks.to_root[above] : 0.0);
        if (above != 0) ++tasks.waiting_for[above];
    }
}

/// Tasks that can begin; the longest way to the root first.
class ReadyTasks {
    i32* const heap_;
    i32 count_ = 0;
    const FromOne<double> to_root_;

    auto later() const {
        return [this](i32 a, i32 b) { return to_root_[a] != to_root_[b] ? to_root_[a] < to_root_[b] : a > b; };
    }

  public:
    ReadyTasks(i32* heap, FromOne<double> to_root) : heap_(heap), to_root_(to_root) {}
    bool empty() const { return count_ == 0; }
    void push(i32 task) {
        heap_[count_++] = task;
        std::push_heap(heap_, heap_ + count_, later());
    }
    i32 pop() {
        std::pop_heap(heap_, heap_ + count_, later());
        return heap_[--count_];
    }
};

Worker& earliest(Worker* workers, i32 threads) {
    Worker* found = workers;
    for (Worker* worker = workers + 1; worker < workers + threads; ++worker)
        if (worker->last != 0 && (found->last == 0 || worker->time < found->time)) found = worker;
    return *found;
}

void run(const ScheduleView& view, const Tasks& tasks, ReadyTasks& ready, Worker* workers) {
    double now = 0.0;
    for (i32 begun = 0; begun < tasks.count;) {
        for (Worker* worker = workers; worker < workers + view.threads && !ready.empty(); ++worker)
            if (worker->last == 0) {
                const i32 task = ready.pop();
                *worker = {now, tasks.first[task], task};
            }
        Worker& worker = earliest(workers, view.threads);
        now = worker.time;
        if (worker.next <= worker.last) {
            view.pnlsch[++begun] = worker.next;
            worker.time += work_of(view, worker.next++);
            continue;
        }
        const i32 above = view.parent[worker.last];
        worker.last = 0;
        if (above != 0 && --tasks.waiting_for[above] == 0) ready.push(above);
    }
}

} // namespace

void build_pnlsch(const ScheduleView& view) {
    const i32 count = view.supernodes.count;
    double* const subtree = view.work;
    Worker* const workers = reinterpret_cast<Worker*>(subtree + 2 * i64{count});
    i32* const integers = reinterpret_cast<i32*>(workers + view.threads);
    const Tasks tasks{count, subtree, subtree + count, integers, integers + count};
    sum_subtrees(view, tasks);
    cut_tasks(view, tasks);
    ReadyTasks ready(integers + 2 * i64{count}, tasks.to_root);
    for (i32 s = 1; s <= count; ++s)
        if (tasks.first[s] != 0 && tasks.waiting_for[s] == 0) ready.push(s);
    std::fill_n(workers, view.threads, Worker{0.0, 0, 0});
    run(view, tasks, ready, workers);
}

} // namespace nxl::pardiso
