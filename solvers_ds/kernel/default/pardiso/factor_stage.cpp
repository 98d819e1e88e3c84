#include "solvers_ds/kernel/default/pardiso/factor_stage.hpp"
#include "service/parallel.hpp"
#include "solvers_ds/kernel/default/pardiso/analysis.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/factorise.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/ooc_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/preprocessing.hpp"
#include <algorithm>
#include <complex>
#include <numeric>

namespace nxl::pardiso {
namespace {

bool is_scaled(const Handle& handle) {
    const Control control = handle.control();
    return control[Word::matching] != 0 && control[Word::scaling] != 0 && may_match(control.small(Word::matrix_type));
}

/// Threads that share the queues: those of this call, where the analysis has left a schedule.
i32 team(const Handle& handle) {
    const Control control = handle.control();
    const bool scheduled = control[Word::initial_threads] > 1 && !region_would_be_serial();
    return scheduled ? std::min(control.small(Word::threads), largest_team) : 1;
}

i64 queue_length(const Handle& handle) {
    const i32* const nmod = handle.array<i32>(ArrayBase::nmod_saved);
    return std::accumulate(nmod, nmod + handle.control()[Word::supernodes], i64{0});
}

/// Update buffers, and the queues of several threads.
Fault take_work(const Handle& handle, i32 threads) {
    const Control control = handle.control();
    const i64 buffers = 8 * control[Word::update_words] * threads;
    if (const Fault fault = handle.take(HandleWord::work_r0, buffers, Tag::work_r0, Account::numeric)) return fault;
    if (threads == 1) return {};
    const i64 queues = 8 * (control[Word::supernodes] + 1) + i64{sizeof(WaitingUpdate)} * queue_length(handle);
    return handle.take(HandleWord::update_lists, queues, Tag::update_lists, Account::numeric);
}

template <class M> NumericResult run(const Handle& handle, const Call& call, const FactorSlot& slot, i32 threads) {
    using T = typename M::T;
    const FactorOrder order(handle);
    if (!order.has_memory()) return {small_buffer, false, {}};
    const Control control = handle.control();
    const Places places = order.places();
    const double eps =
        pivot_perturbation(call.iparam[Iparam::perturbation], call.mtype, call.ia, static_cast<const double*>(call.a));
    i64* const queue_start = threads > 1 ? handle.block<i64>(HandleWord::update_lists) : nullptr;
    i64* const queues = threads > 1 ? queue_start + control[Word::supernodes] + 1 : nullptr;
    const NumericView<T> view{.n = call.neqns,
                              .supernodes = supernodes_of(handle),
                              .a = static_cast<const T*>(call.a),
                              .scatter_start = handle.array<i32>(ArrayBase::scatter_start),
                              .scatter_position = handle.array<i64>(ArrayBase::scatter_position),
                              .scatter_source = handle.array<i32>(ArrayBase::scatter_source),
                              .row_scale = places.row_scale,
                              .column_scale = places.column_scale,
                              .rule = {control[Word::pivoting] != 0,
                                       Perturbation::of(eps, M::form == Form::ldl ? least_ldl_pivot : least_lu_pivot)},
                              .factor = factor_in<M>(handle, slot),
                              .factor_size = control[Word::l_size],
                              .threads = threads,
                              .nmod = handle.array<i32>(ArrayBase::nmod_saved),
                              .pnlsch = handle.array<i32>(ArrayBase::pnlsch),
                              .link = handle.array<i32>(ArrayBase::link),
                              .length = handle.array<i32>(ArrayBase::length),
                              .queue_start = queue_start,
                              .queues = reinterpret_cast<WaitingUpdate*>(queues),
                              .temp = handle.block<T>(HandleWord::work_r0),
                              .temp_size = control[Word::update_words] * 8 / i64{sizeof(T)},
                              .messages = call.messages};
    return handle.ooc().out_of_core() ? factorise_out_of_core<M>(handle, call, view) : factorise<M>(view);
}

void store_counts(const Call& call, Control control, const PivotCounts& counts) {
    control[Word::perturbed_pivots] = call.iparam[Iparam::perturbed_pivots] = counts.perturbed;
    control[Word::positive_pivots] = call.iparam[Iparam::positive_pivots] = counts.positive;
    control[Word::negative_pivots] = call.iparam[Iparam::negative_pivots] = counts.negative;
}

/// For the summary: the largest sum of moduli in a row of A. Without memory for it 0, which is not printed.
template <class M> double matrix_norm(const Call& call) {
    const auto* const a = static_cast<const typename M::T*>(call.a);
    const Scratch<double> sums(call.neqns);
    if (!sums.data()) return 0.0;
    std::fill_n(sums.data(), call.neqns, 0.0);
    for (i32 i = 1; i <= call.neqns; ++i)
        for (i32 k = call.ia[i - 1]; k < call.ia[i]; ++k) {
            const i32 j = call.ja[k - 1];
            const double size = std::abs(a[k - 1]);
            sums.data()[i - 1] += size;
            if (stores_triangle(call.mtype) && i != j) sums.data()[j - 1] += size;
        }
    return *std::max_element(sums.data(), sums.data() + call.neqns);
}

template <class M>
Fault factorise_as(const Handle& handle, const Call& call, FactorSlot& slot, bool& stopped) {
    const Control control = handle.control();
    const i64 bytes = factor_layout<M>(handle).template bytes<typename M::T>();
    if (const Fault fault = handle.take_factor(slot, bytes, account_of(call))) return fault;
    if (handle.ooc().out_of_core())
        if (const Fault fault = take_window(handle, call)) return fault;
    control[Word::factor_memory] = control[Word::numeric_memory];
    if (call.messages) control[RealWord::matrix_norm] = matrix_norm<M>(call);
    const i32 threads = team(handle);
    NumericResult result;
    Fault fault = take_work(handle, threads);
    if (!fault) {
        const Stopwatch watch(control, Timer::factorization);
        result = run<M>(handle, call, slot, threads);
    }
    handle.release(HandleWord::update_lists);
    handle.release(HandleWord::work_r0);
    if (!fault && result.code != 0) fault = {Error::factorization, result.code};
    if (ooc_error(handle) != Error::none) fault = {ooc_error(handle), result.code};
    stopped = result.stopped;
    store_counts(call, control, result.counts);
    control[Word::inner_error] = fault.inner;
    if (!fault && !stopped) slot.mtype = call.mtype;
    else handle.delete_factor(call.matrix_number - 1);
    return fault;
}

} // namespace

FactorOrder::FactorOrder(const Handle& handle)
    : perm_(handle.array<i32>(ArrayBase::perm)),
      rows_(handle.control()[Word::neqns]),
      scales_(is_scaled(handle) ? 2 * handle.control()[Word::neqns] : 0),
      scaled_(is_scaled(handle)),
      n_(handle.control()[Word::neqns]) {
    if (!has_memory()) return;
    const i32* const matched = matched_rows(handle);
    for (i64 i = 0; i < n_; ++i) rows_.data()[i] = matched ? matched[perm_[i] - 1] : perm_[i];
    if (!scaled_) return;
    const double *const of_rows = handle.block<double>(HandleWord::matching), *const of_columns = of_rows + n_;
    for (i64 i = 0; i < n_; ++i) {
        scales_.data()[i] = of_rows[rows_.data()[i] - 1];
        scales_.data()[n_ + i] = of_columns[perm_[i] - 1];
    }
}

Fault factorise_matrix(const Handle& handle, const Call& call, bool& stopped) {
    FactorSlot& slot = handle.slots()[call.matrix_number - 1];
    return with_member(call.mtype,
                       [&](auto member) { return factorise_as<decltype(member)>(handle, call, slot, stopped); });
}

} // namespace nxl::pardiso
