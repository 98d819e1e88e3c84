#include "solvers_ds/kernel/default/pardiso/hybrid_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/factor_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/hybrid.hpp"
#include "solvers_ds/kernel/default/pardiso/solve_session.hpp"
#include <cstdlib>

namespace nxl::pardiso {
namespace {

constexpr i32 fresh_budget = 4, unlimited_budget = 150, largest_budget = 100, no_budget = -5;

IterationLimits limits_of(Control control, i32 budget) {
    return {budget, static_cast<i32>(static_cast<float>(budget) * 0.5F + 1.0F), control[RealWord::tolerance],
            static_cast<double>(control[Word::divergence_limit])};
}

/// One run of CG or CGS over all right-hand sides, with work memory in the word for it.
template <class M> struct Iteration {
    using T = typename M::T;
    static constexpr bool conjugate_gradients = !M::has_u && !is_complex_scalar<T>;
    static constexpr i64 vectors = conjugate_gradients ? 4 : 7;

    /// Vectors, two scalars for each right-hand side, and a real number each.
    static i64 bytes(const Call& call) { return i64{call.nb} * (i64{sizeof(T)} * (vectors * call.neqns + 2) + 8); }

    static IterationResult run(const SolveSession<M>& session, const Call& call, void* memory,
                               const IterationLimits& limits) {
        const auto solve = [&](T* x) { return session.solve_into(x, x); };
        const CallerMatrix<T> matrix = session.matrix();
        const Preconditioned<T, decltype(solve)> system(matrix, call.nb, solve);
        T *const work = static_cast<T*>(memory), *const scalars = work + vectors * session.length();
        double* const reference = reinterpret_cast<double*>(scalars + 2 * i64{call.nb});
        if constexpr (conjugate_gradients)
            return cg(system, session.b(), session.x(), work, scalars, reference, limits);
        else
            return cgs(system, session.b(), session.x(), work, reinterpret_cast<CgsState<T>*>(scalars), reference,
                       limits);
    }
};

template <class M> class HybridRun {
    const Handle& handle_;
    const Call& call_;
    const Control control_ = handle_.control();
    const i32 kind_ = control_.small(Word::hybrid_kind);

    int& outcome() const { return call_.iparam[Iparam::hybrid_outcome]; }

    bool must_factorise() const {
        const FactorSlot& slot = slot_of_call(handle_, call_);
        const bool factor = slot.factor != 0 && slot.mtype == call_.mtype;
        const i64 budget = kind_ < 0 ? unlimited_budget : control_[Word::iteration_budget];
        return !factor || budget <= fresh_budget || outcome() < 0 || control_[Word::refactor] != 0;
    }

    Fault factorise_anew(bool& stopped) const {
        const double start = wall_seconds();
        if (const Fault fault = factorise_matrix(handle_, call_, stopped)) return fault;
        control_[RealWord::factor_seconds] = wall_seconds() - start;
        control_[Word::iteration_budget] = fresh_budget;
        control_[Word::refactor] = 0;
        return {};
    }

    Fault iterate(const SolveSession<M>& session, i32 budget, IterationResult& result) const {
        if (const Fault fault =
                handle_.take(HandleWord::refinement, Iteration<M>::bytes(call_), Tag::refinement, account_of(call_)))
            return fault;
        {
            const Stopwatch watch(control_, Timer::cgs);
            result = Iteration<M>::run(session, call_, handle_.block<void>(HandleWord::refinement),
                                       limits_of(control_, budget));
        }
        handle_.release(HandleWord::refinement);
        return {};
    }

    /// A solve, timed, and an iteration as long as the time of a factorisation allows.
    Fault solve(IterationResult& result) const {
        const SolveSession<M> session(handle_, call_);
        if (!session.has_memory()) return failed_solve(handle_);
        const double start = wall_seconds();
        if (!session.solve_into(session.b(), session.x())) return failed_solve(handle_);
        const i32 budget = iteration_budget(kind_, control_[RealWord::factor_seconds], wall_seconds() - start,
                                            handle_.ooc().out_of_core());
        control_[Word::iteration_budget] = budget;
        if (budget < 1) {
            result = {IterationEnd::too_slow, 0};
            outcome() = no_budget;
            return {};
        }
        if (const Fault fault = iterate(session, budget, result)) return fault;
        const i32 code = static_cast<i32>(result.end);
        outcome() = result.end == IterationEnd::converged ? result.steps : code - 10 * result.steps;
        if (result.end == IterationEnd::converged) session.hand_out();
        return {};
    }

    i32 failure(const IterationResult& result) const {
        return result.end == IterationEnd::no_workspace ? small_buffer : iteration_failed;
    }

  public:
    HybridRun(const Handle& handle, const Call& call) : handle_(handle), call_(call) {}

    Fault run() const {
        for (bool fresh = false;;) {
            if (call_.ido < 30 && must_factorise()) {
                bool stopped = false;
                if (const Fault fault = factorise_anew(stopped)) return fault;
                if (stopped) return {};
                fresh = true;
            }
            if (call_.last_stage() == 2 || call_.nb < 1) return {};
            IterationResult result{};
            if (const Fault fault = solve(result)) return fault;
            if (result.end == IterationEnd::converged) return {};
            control_[Word::refactor] = 1;
            if (fresh || kind_ < 1 || call_.ido >= 30) return {Error::factorization, failure(result)};
        }
    }
};

} // namespace

i32 iteration_budget(i32 kind, double factor_seconds, double solve_seconds, bool out_of_core) {
    constexpr i32 least_with_files = 10;
    constexpr double least_time = 1e-10, share = 0.44999998807907104;
    const double ratio = 3.0 * std::abs(kind) * factor_seconds / solve_seconds * share + 1.0;
    const i32 budget = solve_seconds <= least_time ? 0 : static_cast<i32>(std::min(ratio, 1e9));
    if (kind < 0) return unlimited_budget;
    return std::min(out_of_core ? std::max(budget, least_with_files) : budget, largest_budget);
}

Fault iterate_or_factorise(const Handle& handle, const Call& call) {
    const FactorSlot& slot = slot_of_call(handle, call);
    if (call.ido >= 30 && (slot.factor == 0 || slot.mtype != call.mtype)) return refused(inner::not_analysed);
    return with_member(call.mtype, [&](auto member) { return HybridRun<decltype(member)>(handle, call).run(); });
}

} // namespace nxl::pardiso
