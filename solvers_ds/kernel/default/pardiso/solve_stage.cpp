#include "solvers_ds/kernel/default/pardiso/solve_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/refine.hpp"
#include "solvers_ds/kernel/default/pardiso/solve_session.hpp"

namespace nxl::pardiso {
namespace {

constexpr i32 two_steps_taken = -34; // iparam(20) after the refinement that perturbed pivots get by themselves

RefinementRule rule_of(const Call& call, Control control) {
    return {call.iparam[Iparam::step_limit], control[Word::residual_loop] != 0};
}

/// Refinement is for perturbed pivots, or asked for. Of a part of a solve there is none.
bool is_refined(const Call& call, Control control) {
    const RefinementRule rule = rule_of(call, control);
    if (call.sub_step != 0) return false;
    return rule.unlimited() ? control[Word::perturbed_pivots] > 0 && !rule.residual_loop : true;
}

/// Vectors of a refinement: the residual and a copy of b, with the low parts that the extended residual has.
Fault take_vectors(const Handle& handle, const Call& call, const RefinementRule& rule) {
    const Control control = handle.control();
    const i64 vectors = !rule.extended() ? 2 : stores_triangle(call.mtype) ? 5 : 3;
    const i64 words =
        i64{call.nb} * control[Word::scalar_words] * (i64{call.neqns} * vectors + 2 * control[Word::threads]);
    return handle.take(HandleWord::refinement, 8 * words, Tag::refinement, account_of(call));
}

/// The first solve and its refinement, with work memory in the handle's word for it.
template <class M> Fault solve_and_refine(const Handle& handle, const Call& call, const SolveSession<M>& session) {
    using T = typename M::T;
    const RefinementRule rule = rule_of(call, handle.control());
    const i64 length = session.length();
    T* const vectors = handle.block<T>(HandleWord::refinement);
    T *const residual = vectors, *const b = residual + length, *const x_low = b + length;
    std::copy_n(session.b(), length, b);
    if (!session.solve_into(b, session.x())) return failed_solve(handle);
    const Scratch<T> residual_low(rule.extended() ? call.neqns : 0);
    if (rule.extended() && !residual_low.data()) return failed_solve(handle);
    const RefinementResult result =
        refine(session.matrix(), b, session.x(), call.nb, rule, RefinementWork<T>{residual, residual_low.data(), x_low},
               [&](T* d) { return session.solve_into(d, d); });
    if (!result.memory) return failed_solve(handle);
    call.iparam[Iparam::steps_done] = result.steps;
    if (result.budget_spent) call.iparam[Iparam::hybrid_outcome] = two_steps_taken;
    return result.code == 0 ? Fault{} : Fault{Error::factorization, result.code};
}

template <class M> Fault solve_as(const Handle& handle, const Call& call) {
    const SolveSession<M> session(handle, call);
    if (!session.has_memory()) return failed_solve(handle);
    const Control control = handle.control();
    call.iparam[Iparam::steps_done] = 0;
    Fault fault;
    if (!is_refined(call, control)) {
        if (!session.solve_into(session.b(), session.x())) return failed_solve(handle);
    } else {
        if (const Fault memory = take_vectors(handle, call, rule_of(call, control))) return memory;
        fault = solve_and_refine<M>(handle, call, session);
        handle.release(HandleWord::refinement);
    }
    session.hand_out();
    return fault;
}

} // namespace

Fault solve_systems(const Handle& handle, const Call& call) {
    const FactorSlot& slot = slot_of_call(handle, call);
    if (slot.factor == 0 || slot.mtype != call.mtype) return refused(inner::not_analysed);
    if (call.ido == 33 && call.iparam[Iparam::perturbed_pivots] > 0)
        handle.control()[Word::perturbed_pivots] = call.iparam[Iparam::perturbed_pivots];
    return with_member(call.mtype, [&](auto member) { return solve_as<decltype(member)>(handle, call); });
}

} // namespace nxl::pardiso
