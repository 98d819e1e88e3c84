#include "solvers_ds/kernel/default/pardiso/solve/solve.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/gather.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/several.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/single.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/subtree_steps.hpp"
#include <atomic>

namespace nxl::pardiso {
namespace {

/// Whether a solve is worth a team: its time is that of reading the factor.
template <class T> bool pays_for_subtrees(const SolveView<T>& view) {
    constexpr i64 entries_per_thread = 200000;
    return view.threads > 1 && view.factor.xlnz[view.n + 1] > entries_per_thread * view.threads &&
           !region_would_be_serial();
}

/// The steps on work memory; with all threads where the columns are alone and it pays. False without memory.
template <class M, class Columns, class T = typename M::T>
bool run_steps(const SolveView<T>& view, i64 width, T* work, bool alone) {
    if (alone && pays_for_subtrees(view)) {
        const Subtrees trees(view.supernodes, std::min(view.threads, i32{largest_team}));
        if (trees.has_memory() && SubtreeSteps<M, Columns>(view, width, work).run(trees)) return true;
    }
    const Scratch<T> buffer(view.tallest * width);
    if (!buffer.data()) return false;
    const Columns columns(width, work, buffer.data());
    const SupernodeRange all{1, view.supernodes.count};
    if (view.steps.forward) forward_step<M>(view, all, columns);
    if (view.steps.diagonal) diagonal_step<M>(view, width, work);
    if (!view.steps.backward) return true;
    conjugate<M>(view.n * width, work);
    backward_step<M>(view, all, columns);
    conjugate<M>(view.n * width, work);
    return true;
}

/// Right-hand sides that are solved for together, with all threads when they are alone.
template <class M, class T = typename M::T>
bool solve_block(const SolveView<T>& view, const T* b, T* x, i64 width, bool alone) {
    const Scratch<T> work(view.n * width);
    if (!work.data()) return false;
    psol_fwgath(view, b, width, work.data());
    const bool done = width == 1 ? run_steps<M, SingleColumn<T>>(view, width, work.data(), alone)
                                 : run_steps<M, SeveralColumns<T>>(view, width, work.data(), alone);
    if (done) psol_bwscat(view, work.data(), width, x);
    return done;
}

} // namespace

template <class M> bool solve(const SolveView<typename M::T>& view, const typename M::T* b, typename M::T* x, i64 nb) {
    const i64 share = (nb + view.threads - 1) / view.threads, width = std::clamp<i64>(share, 1, widest_block);
    const i64 blocks = (nb + width - 1) / width, n = view.n;
    std::atomic<bool> done{true};
    const auto solve_one = [&](i64 block) {
        const i64 first = block * width;
        if (!solve_block<M>(view, b + first * n, x + first * n, std::min(width, nb - first), blocks == 1))
            done.store(false, std::memory_order_relaxed);
    };
    if (view.threads == 1 || blocks <= 1)
        for (i64 block = 0; block < blocks; ++block) solve_one(block);
    else parallel_blocks(view.threads, static_cast<int>(blocks), solve_one);
    return done.load();
}

template bool solve<Member<double, Form::cholesky>>(const SolveView<double>&, const double*, double*, i64);
template bool solve<Member<zcomplex, Form::cholesky, true>>(const SolveView<zcomplex>&, const zcomplex*, zcomplex*,
                                                            i64);
template bool solve<Member<double, Form::ldl>>(const SolveView<double>&, const double*, double*, i64);
template bool solve<Member<zcomplex, Form::ldl>>(const SolveView<zcomplex>&, const zcomplex*, zcomplex*, i64);
template bool solve<Member<zcomplex, Form::ldl, true>>(const SolveView<zcomplex>&, const zcomplex*, zcomplex*, i64);
template bool solve<Member<double, Form::lu>>(const SolveView<double>&, const double*, double*, i64);
template bool solve<Member<zcomplex, Form::lu>>(const SolveView<zcomplex>&, const zcomplex*, zcomplex*, i64);
template bool solve<Member<double, Form::lu_full_pivoting>>(const SolveView<double>&, const double*, double*, i64);
template bool solve<Member<zcomplex, Form::lu_full_pivoting>>(const SolveView<zcomplex>&, const zcomplex*, zcomplex*,
                                                              i64);

} // namespace nxl::pardiso
