// The factor of one call with what a solve needs beside it, for as long as the call uses it.
#pragma once
#include "solvers_ds/kernel/default/pardiso/analysis.hpp"
#include "solvers_ds/kernel/default/pardiso/factor_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/codes.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/ooc_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/amuxy.hpp"
#include <algorithm>
#include <limits>

namespace nxl::pardiso {

inline FactorSlot& slot_of_call(const Handle& handle, const Call& call) {
    return handle.slots()[call.matrix_number - 1];
}

/// What is told where a solve has no memory for its work, or out of core its files failed.
inline Fault failed_solve(const Handle& handle) {
    if (ooc_error(handle) != Error::none) return {ooc_error(handle), 0};
    return {Error::factorization, small_buffer};
}

template <class M> class SolveSession {
    using T = typename M::T;

    const Handle& handle_;
    const Call& call_;
    const FactorOrder order_;

    SolveView<T> view() const {
        const Control control = handle_.control();
        return {.n = call_.neqns,
                .supernodes = supernodes_of(handle_),
                .factor = factor_in<M>(handle_, slot_of_call(handle_, call_)),
                .places = order_.places(),
                .transposed = control[Word::transposed] != 0,
                .steps = Steps::of(call_.sub_step),
                .threads = control.small(Word::threads),
                .tallest = control.small(Word::tallest_column)};
    }

  public:
    SolveSession(const Handle& handle, const Call& call) : handle_(handle), call_(call), order_(handle) {}

    bool has_memory() const { return order_.has_memory(); }
    T* b() const { return static_cast<T*>(call_.b); }
    T* x() const { return static_cast<T*>(call_.x); }
    i64 length() const { return i64{call_.neqns} * call_.nb; }

    /// x := A^-1 b; x may be b. False when there was no memory, or files failed; then the caller gets NaN.
    bool solve_into(const T* b, T* to) const {
        const Stopwatch watch(handle_.control(), Timer::solve);
        if (!handle_.ooc().out_of_core()) return solve<M>(view(), b, to, call_.nb);
        if (solve_out_of_core<M>(handle_, call_, view(), b, to)) return true;
        if (ooc_error(handle_) == Error::none) return false;
        std::fill_n(x(), length(), T(std::numeric_limits<double>::quiet_NaN()));
        hand_out();
        return false;
    }

    CallerMatrix<T> matrix() const {
        const Control control = handle_.control();
        return {.n = call_.neqns,
                .ia = call_.ia,
                .ja = call_.ja,
                .a = static_cast<const T*>(call_.a),
                .triangle = stores_triangle(call_.mtype),
                .hermitian = M::hermitian,
                .transposed = control[Word::transposed] != 0,
                .threads = control.small(Word::threads)};
    }

    /// Where the caller wants the solution in b, it goes there too.
    void hand_out() const {
        if (call_.iparam[Iparam::solution_in_b] == 1) std::copy_n(x(), length(), b());
    }
};

} // namespace nxl::pardiso
