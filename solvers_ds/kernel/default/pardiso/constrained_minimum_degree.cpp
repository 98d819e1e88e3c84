// Minimum degree for several subgraphs: the assembly tree is cut into subtrees, which know nothing of each other.
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/assembly_tree.hpp"
#include <algorithm>
#include <numeric>

namespace nxl::pardiso {
namespace {

/// A subtree is cut while it has more than this part of what all subtrees have for each group: smaller ones share out
/// evenly.
constexpr double kShareOfGroup = 0.5;

/// Operations of a front, up to a factor.
double work_of(const AssemblyTree& tree, i32 front) {
    const double columns = tree.start[front + 1] - tree.start[front], rows = columns + tree.border[front];
    return columns * rows * rows;
}

/// The subtrees that remain when fronts are taken off the top.
/// A. Geist and E. Ng, Int. J. Parallel Programming 18 (1989) 291-314.
class TreeCut {
    const AssemblyTree& tree_;
    i32 groups_;
    Scratch<double> work_; // of each subtree
    Scratch<double> load_; // of each group
    Scratch<i32> first_child_, sibling_;
    Scratch<i32> heap_;  // roots of the subtrees, that of most work first
    Scratch<i32> group_; // of each front, or groups_ above the cut
    i32 roots_ = 0;

    bool less_work(i32 a, i32 b) const { return work_.data()[a] < work_.data()[b]; }
    void push(i32 front) {
        heap_.data()[roots_++] = front;
        std::push_heap(heap_.data(), heap_.data() + roots_, [this](i32 a, i32 b) { return less_work(a, b); });
    }
    i32 pop() {
        std::pop_heap(heap_.data(), heap_.data() + roots_, [this](i32 a, i32 b) { return less_work(a, b); });
        return heap_.data()[--roots_];
    }

    void link() {
        const i32 fronts = tree_.fronts;
        double* work = work_.data();
        std::fill_n(first_child_.data(), fronts, -1);
        for (i32 k = 0; k < fronts; ++k) work[k] = work_of(tree_, k);
        for (i32 k = 0; k < fronts; ++k)
            if (const i32 parent = tree_.parent[k]; parent >= 0) work[parent] += work[k];
        for (i32 k = fronts; k-- > 0;)
            if (const i32 parent = tree_.parent[k]; parent >= 0) {
                sibling_.data()[k] = first_child_.data()[parent];
                first_child_.data()[parent] = k;
            } else push(k);
    }

    /// Takes roots off until the subtrees are small enough, or one has no children.
    void take_off_top() {
        double total = 0.0;
        for (i32 k = 0; k < roots_; ++k) total += work_.data()[heap_.data()[k]];
        while (roots_ > 0) {
            const i32 root = heap_.data()[0];
            const bool small = work_.data()[root] * groups_ <= kShareOfGroup * total;
            if ((small && roots_ >= groups_) || first_child_.data()[root] < 0) return;
            pop();
            group_.data()[root] = groups_;
            total -= work_of(tree_, root);
            for (i32 child = first_child_.data()[root]; child >= 0; child = sibling_.data()[child]) push(child);
        }
    }

    /// The heaviest first, each to the group that has least.
    void share_out() {
        double* load = load_.data();
        std::fill_n(load, groups_, 0.0);
        while (roots_ > 0) {
            const i32 root = pop();
            const auto group = std::min_element(load, load + groups_) - load;
            load[group] += work_.data()[root];
            group_.data()[root] = static_cast<i32>(group);
        }
    }

  public:
    TreeCut(const AssemblyTree& tree, i32 groups)
        : tree_(tree),
          groups_(groups),
          work_(tree.fronts),
          load_(groups),
          first_child_(tree.fronts),
          sibling_(tree.fronts),
          heap_(tree.fronts),
          group_(tree.fronts) {}

    explicit operator bool() const {
        return work_.data() && load_.data() && first_child_.data() && sibling_.data() && heap_.data() && group_.data();
    }

    /// The group of each front, or the number of groups for what lies above the cut.
    const i32* cut() {
        std::fill_n(group_.data(), tree_.fronts, -1);
        link();
        take_off_top();
        share_out();
        for (i32 k = tree_.fronts; k-- > 0;)
            if (group_.data()[k] < 0) group_.data()[k] = group_.data()[tree_.parent[k]];
        return group_.data();
    }
};

/// Renumbers group by group, keeping the order within each, and fills in the ranges.
void number_by_group(const AssemblyTree& tree, const i32* group, i32 groups, const i32* old, i32* perm,
                     Separators& separators) {
    separators.n = 2 * (groups + 1);
    i32 next = 0;
    for (i32 g = 0; g <= groups; ++g) {
        separators.first(g) = next + 1;
        for (i32 k = 0; k < tree.fronts; ++k)
            if (group[k] == g)
                next = static_cast<i32>(std::copy(old + tree.start[k], old + tree.start[k + 1], perm + next) - perm);
        separators.last(g) = next;
    }
}

} // namespace

i32 constrained_minimum_degree(const Graph& graph, i32 groups, i32* perm, i32* invp, Separators& separators) {
    set_single_subgraph(separators, graph.n);
    const Scratch<i32> start(i64{graph.n} + 1), parent(graph.n), border(graph.n), old(graph.n);
    if (!start.data() || !parent.data() || !border.data() || !old.data()) return kNoMemory;
    AssemblyTree tree = {.fronts = 0, .start = start.data(), .parent = parent.data(), .border = border.data()};
    const bool grouped = groups > 1;
    if (const i32 code = eliminate_by_degree(graph, grouped ? old.data() : perm, tree); code != 0) return code;
    if (grouped) {
        TreeCut cut(tree, groups);
        if (!cut) return kNoMemory;
        number_by_group(tree, cut.cut(), groups, old.data(), perm, separators);
    }
    for (i32 k = 0; k < graph.n; ++k) invp[perm[k]] = k;
    return 0;
}

} // namespace nxl::pardiso
