// Stage 2 on a handle, and what it shares with stage 3: the views of a factor slot and of the order of its unknowns.
#pragma once
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/handle.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/factor.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/solve.hpp"
#include <bit>

namespace nxl::pardiso {

/// Whether factors and the vectors of the iterations count.
inline Account account_of(const Call& call) {
    return call.iparam[Iparam::accounting] >= 0 ? Account::numeric : Account::none;
}

/// Where the positions of the factor are in A, with the scale factors of the matching. Lives as long as a stage.
class FactorOrder {
    const i32* const perm_;
    const Scratch<i32> rows_;
    const Scratch<double> scales_;
    const bool scaled_;
    const i64 n_;

  public:
    explicit FactorOrder(const Handle& handle);

    bool has_memory() const { return (rows_.data() || n_ == 0) && (!scaled_ || scales_.data()); }
    Places places() const {
        return {rows_.data(), perm_, scaled_ ? scales_.data() : nullptr, scaled_ ? scales_.data() + n_ : nullptr};
    }
};

/// The arrays of a factor that are in memory: out of core all but L and U.
template <class M> FactorLayout factor_layout(const Handle& handle) {
    const Control control = handle.control();
    const bool files = handle.ooc().out_of_core();
    return FactorLayout::of(M{}, files ? 0 : control[Word::l_size], files ? 0 : control[Word::u_size],
                            control[Word::neqns]);
}

/// The factor in a slot, of a matrix of the member.
template <class M> Factor<typename M::T> factor_in(const Handle& handle, const FactorSlot& slot) {
    return factor_layout<M>(handle).template factor<typename M::T>(
        std::bit_cast<void*>(slot.factor), handle.array<i64>(ArrayBase::xlnz), handle.array<i64>(ArrayBase::xunz));
}

/// Factors the matrix of the call into its slot. `stopped` by the host; then, and after a fault, the slot is empty.
Fault factorise_matrix(const Handle& handle, const Call& call, bool& stopped);

} // namespace nxl::pardiso
