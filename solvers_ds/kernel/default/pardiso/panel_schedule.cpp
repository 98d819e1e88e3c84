#include "solvers_ds/kernel/default/pardiso/panel_schedule.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

/// A supernode and what it is chosen by; the smallest key comes first.
struct Task {
    double key;
    i32 supernode;
};
bool later(const Task& a, const Task& b) { return a.key != b.key ? a.key > b.key : a.supernode > b.supernode; }

/// A heap of tasks, the first one at its top.
class Queue {
    Task* const tasks_;
    i32 count_ = 0;

  public:
    explicit Queue(Task* tasks) : tasks_(tasks) {}
    bool empty() const { return count_ == 0; }
    i32 size() const { return count_; }
    void push(Task task) {
        tasks_[count_++] = task;
        std::push_heap(tasks_, tasks_ + count_, later);
    }
    Task pop() {
        std::pop_heap(tasks_, tasks_ + count_, later);
        return tasks_[--count_];
    }
};

} // namespace

void build_pnlsch(const ScheduleView& view) {
    const i32 count = view.supernodes.count, threads = std::max(view.threads, 1);
    const FromOne<double> to_root = view.work; // work from here to the root
    i32* const waiting_for = reinterpret_cast<i32*>(view.work.data() + count);
    Task* const tasks = reinterpret_cast<Task*>(view.work.data() + 2 * i64{count});
    const FromOne<i32> children = waiting_for; // not done yet
    std::fill_n(children.data(), count, 0);
    for (i32 s = count; s >= 1; --s) {
        const i32 above = view.parent[s];
        to_root[s] = flops_of_supernode(view.supernodes, s, view.rule) + (above != 0 ? to_root[above] : 0.0);
        if (above != 0) ++children[above];
    }
    Queue ready(tasks), running(tasks + count);
    for (i32 s = 1; s <= count; ++s)
        if (children[s] == 0) ready.push({-to_root[s], s});
    double now = 0.0;
    for (i32 taken = 0; taken < count;) {
        while (!ready.empty() && running.size() < threads) {
            const i32 s = ready.pop().supernode, above = view.parent[s];
            view.pnlsch[++taken] = s;
            running.push({now + to_root[s] - (above != 0 ? to_root[above] : 0.0), s});
        }
        const Task done = running.pop();
        now = done.key;
        const i32 above = view.parent[done.supernode];
        if (above != 0 && --children[above] == 0) ready.push({-to_root[above], above});
    }
}

} // namespace nxl::pardiso
