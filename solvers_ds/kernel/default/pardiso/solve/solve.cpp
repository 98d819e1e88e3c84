#include "solvers_ds/kernel/default/pardiso/solve/solve.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/diagonal_block.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/gather.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/several.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/single.hpp"
#include <atomic>

namespace nxl::pardiso {
namespace {

/// The steps on work memory.
template <class M, class Columns, class T = typename M::T>
void run_steps(const SolveView<T>& view, i64 width, T* work, const Columns& columns) {
    const auto block = [&](i32 s) { return block_of(view.supernodes, view.factor, s); };
    const i32 count = view.supernodes.count;
    const auto conjugate = [&] { // L^H is applied as L^T is, to the conjugates
        if constexpr (M::hermitian)
            for (i64 i = 0; i < view.n * width; ++i) work[i] = std::conj(work[i]);
    };
    if (view.steps.forward)
        for (i32 s = 1; s <= count; ++s) {
            const FactorBlock<T> own = block(s);
            columns.forward(own, forward_triangle<M>(own, view.transposed));
        }
    if constexpr (M::has_d)
        if (view.steps.diagonal)
            for (i32 s = 1; s <= count; ++s) {
                const FactorBlock<T> own = block(s);
                divide_by_d<M, DivisorSide::left>(own, width, work + (own.first - 1) * width, width);
            }
    if (!view.steps.backward) return;
    conjugate();
    for (i32 s = count; s >= 1; --s) {
        const FactorBlock<T> own = block(s);
        columns.backward(own, backward_triangle<M>(own, view.transposed));
    }
    conjugate();
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
