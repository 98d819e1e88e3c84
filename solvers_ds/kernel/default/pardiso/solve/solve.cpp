#include "solvers_ds/kernel/default/pardiso/solve/solve.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/gather.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/several.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/single.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/steps.hpp"
#include <atomic>

namespace nxl::pardiso {
namespace {

/// The steps on work memory.
template <class M, class Columns, class T = typename M::T>
void run_steps(const SolveView<T>& view, i64 width, T* work, const Columns& columns) {
    const SupernodeRange all{1, view.supernodes.count};
    if (view.steps.forward) forward_step<M>(view, all, columns);
    if (view.steps.diagonal) diagonal_step<M>(view, width, work);
    if (!view.steps.backward) return;
    conjugate<M>(view.n * width, work);
    backward_step<M>(view, all, columns);
    conjugate<M>(view.n * width, work);
}

/// Right-hand sides that are solved for together.
template <class M, class T = typename M::T>
bool solve_block(const SolveView<T>& view, const T* b, T* x, i64 width) {
    const Scratch<T> work(view.n * width), buffer(view.tallest * width);
    if (!work.data() || !buffer.data()) return false;
    psol_fwgath(view, b, width, work.data());
    if (width == 1) run_steps<M>(view, width, work.data(), SingleColumn<T>(work.data(), buffer.data()));
    else run_steps<M>(view, width, work.data(), SeveralColumns<T>(width, work.data(), buffer.data()));
    psol_bwscat(view, work.data(), width, x);
    return true;
}

} // namespace

template <class M> bool solve(const SolveView<typename M::T>& view, const typename M::T* b, typename M::T* x, i64 nb) {
    constexpr i64 widest = 32; // columns: products are fast by then, and work memory is small beside the factor
    const i64 share = (nb + view.threads - 1) / view.threads, width = std::clamp<i64>(share, 1, widest);
    const i64 blocks = (nb + width - 1) / width, n = view.n;
    std::atomic<bool> done{true};
    const auto solve_one = [&](i64 block) {
        const i64 first = block * width;
        if (!solve_block<M>(view, b + first * n, x + first * n, std::min(width, nb - first)))
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
