#include "solvers_ds/kernel/default/pardiso/solve_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/analysis.hpp"
#include "solvers_ds/kernel/default/pardiso/factor_stage.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

constexpr i32 no_memory_to_solve = -2;

template <class M> Fault solve_as(const Handle& handle, const Call& call, const FactorSlot& slot) {
    using T = typename M::T;
    const Control control = handle.control();
    const FactorOrder order(handle);
    if (!order.has_memory()) return {Error::factorization, no_memory_to_solve};
    const SolveView<T> view = {.n = call.neqns,
                               .supernodes = supernodes_of(handle),
                               .factor = factor_in<M>(handle, slot),
                               .places = order.places(),
                               .transposed = control[Word::transposed] != 0,
                               .steps = Steps::of(call.sub_step),
                               .threads = control.small(Word::threads),
                               .tallest = control.small(Word::tallest_column)};
    T *const b = static_cast<T*>(call.b), *const x = static_cast<T*>(call.x);
    const Stopwatch watch(control, Timer::solve);
    if (!solve<M>(view, b, x, call.nb)) return {Error::factorization, no_memory_to_solve};
    if (call.iparam[Iparam::solution_in_b] == 1) std::copy_n(x, i64{call.neqns} * call.nb, b);
    return {};
}

} // namespace

Fault solve_systems(const Handle& handle, const Call& call) {
    const FactorSlot& slot = handle.slots()[call.matrix_number - 1];
    if (slot.factor == 0 || slot.mtype != call.mtype) return refused(inner::not_analysed);
    return with_member(call.mtype, [&](auto member) { return solve_as<decltype(member)>(handle, call, slot); });
}

} // namespace nxl::pardiso
