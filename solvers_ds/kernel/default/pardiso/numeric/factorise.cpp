#include "solvers_ds/kernel/default/pardiso/numeric/factorise.hpp"
#include "lapack/kernel/source/common/task_region.hpp"
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/assembler.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/progress.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/update.hpp"
#include <atomic>
#include <cmath>
#include <omp.h>

namespace nxl::pardiso {
namespace {

/// The run that all threads share.
template <class M> class Factorisation {
    using T = typename M::T;

    const NumericView<T>& view_;
    FactorProgress progress_;
    std::atomic<i32> failure_{0};
    PivotCounts counts_;
    i32 threads_seen_ = 0;
    std::atomic<i32> turns_{0};  // that threads have taken
    std::atomic<i32> pushes_{0}; // finished supernodes whose updates are in the queues

    bool over() const { return failure_.load(std::memory_order_relaxed) != 0 || progress_.stopped(); }

    FactorBlock<T> block(i32 s) const { return block_of(view_.supernodes, view_.factor, s); }

    /// Everything that a supernode needs. `next` waits for an update and gives it; 0 when the run is over.
    template <class Next> bool finish(i32 target, Updater<M>& updater, PivotCounts& counts, const Next& next) {
        const FactorBlock<T> own = block(target);
        Assembler<M>(view_).assemble(own);
        updater.aim(own);
        for (i32 left = view_.nmod[target]; left > 0; --left) {
            const WaitingUpdate waiting = next(target);
            if (waiting.source == 0) return false;
            const i32 columns = updater.columns_from(view_.supernodes, waiting.source, waiting.offset);
            if (!updater.update(block(waiting.source), waiting.offset, columns)) return fail(small_buffer);
        }
        return factor_block<M>(own, view_.rule, counts) || fail(failed_pivot);
    }

    bool fail(i32 code) {
        failure_.store(code, std::memory_order_relaxed);
        return false;
    }

    void come_to(i32 thread, i32 s) { progress_.come_to(thread, view_.factor.xlnz[view_.supernodes.first(s)] - 1); }

    void add_counts(const PivotCounts& counts) {
#pragma omp critical(nxl_pardiso_counters)
        counts_ += counts;
    }

    i32 take_number() {
        i32 number = 0;
#pragma omp critical(nxl_pardiso_sequence)
        number = threads_seen_++;
        return number;
    }

  public:
    explicit Factorisation(const NumericView<T>& view) : view_(view), progress_(view.factor_size, view.messages) {}

    void run(const UpdateWork<T>& work) {
        WaitingLists lists(view_.supernodes, view_.link, view_.length);
        Updater<M> updater(work);
        for (i32 s = 1; s <= view_.supernodes.count && !over(); ++s) {
            come_to(0, s);
            const auto next = [&](i32 target) {
                return lists.pop(target, [&](i32 source, i32 offset) {
                    return updater.columns_from(view_.supernodes, source, offset);
                });
            };
            if (finish(s, updater, counts_, next)) lists.push(s);
        }
    }

    i32 take_turn() { return turns_.fetch_add(1, std::memory_order_relaxed) + 1; }

    /// Threads take supernodes in the order of the schedule, in which each comes after all that update it: a dynamic
    /// loop of our own, for the runtime's costs more per turn than most supernodes.
    template <class Work> void run_threads(const Work& work_of) {
        UpdateQueues queues(view_.supernodes, view_.nmod, view_.queue_start, view_.link, view_.length, view_.queues);
#pragma omp parallel num_threads(view_.threads)
        {
            const i32 number = take_number();
            Updater<M> updater(work_of(number));
            PivotCounts counts;
            const auto next = [&](i32 target) { return wait_for_update(queues, target); };
            for (i32 turn = take_turn(); turn <= view_.supernodes.count && !over(); turn = take_turn()) {
                const i32 s = view_.pnlsch[turn];
                come_to(number, s);
                if (!finish(s, updater, counts, next)) continue;
#pragma omp critical(nxl_pardiso_queues)
                queues.push(s);
                pushes_.fetch_add(1, std::memory_order_release);
            }
            add_counts(counts);
        }
    }

    /// Blocks until there is an update, or the run is over. After a vain look a thread stays out of the section until
    /// something was pushed: where threads are more than processors, each that looks again and again would keep the one
    /// with news waiting for a turn of the scheduler.
    WaitingUpdate wait_for_update(UpdateQueues& queues, i32 target) {
        IdleWait idle;
        for (;;) {
            const i32 seen = pushes_.load(std::memory_order_acquire);
            WaitingUpdate update{};
#pragma omp critical(nxl_pardiso_queues)
            update = queues.pop(target);
            if (update.source != 0 || over()) return update;
            while (pushes_.load(std::memory_order_acquire) == seen && !over()) idle.wait();
        }
    }

    NumericResult result() {
        const i32 code = failure_.load();
        if (code == 0 && !progress_.stopped()) progress_.finish();
        return {code, progress_.stopped(), counts_};
    }
};

} // namespace

template <class M> NumericResult factorise(const NumericView<typename M::T>& view) {
    using T = typename M::T;
    const i64 n = view.n, widest = view.supernodes.widest(), threads = view.threads;
    const i64 scaled_size = M::has_d ? widest * widest : 0;
    const Scratch<i32> maps(2 * n * threads);
    const Scratch<T> scaled(scaled_size * threads);
    if (!maps.data() || (scaled_size > 0 && !scaled.data())) return {small_buffer, false, {}};
    const auto work_of = [&](i32 thread) -> UpdateWork<T> {
        i32* const indmap = maps.data() + 2 * n * thread;
        return {indmap, indmap + n, view.temp + view.temp_size * thread, view.temp_size,
                scaled.data() + scaled_size * thread};
    };
    Factorisation<M> run(view);
    if (threads == 1) run.run(work_of(0));
    else run.run_threads(work_of);
    return run.result();
}

double pivot_perturbation(i32 exponent, int mtype, const i32* ia, const double* values) {
    if (exponent == 0) return 0.0;
    constexpr double minus_log_10 = -2.302585092994046;
    const double eps = std::exp(std::fabs(static_cast<double>(exponent)) * minus_log_10);
    if (!is_indefinite(mtype)) return eps;
    double largest = 0.0; // of the entries of row 1 beside its first one, which stand for all: a known limit
    for (i32 k = ia[0] + 1; k < ia[1]; ++k) largest = std::fmax(largest, std::fabs(values[k - 1]));
    if (largest == 0.0) return eps;
    return largest < 1.0 ? eps * std::sqrt(largest) : eps / std::sqrt(largest);
}

template NumericResult factorise<Member<double, Form::cholesky>>(const NumericView<double>&);
template NumericResult factorise<Member<zcomplex, Form::cholesky, true>>(const NumericView<zcomplex>&);
template NumericResult factorise<Member<double, Form::ldl>>(const NumericView<double>&);
template NumericResult factorise<Member<zcomplex, Form::ldl>>(const NumericView<zcomplex>&);
template NumericResult factorise<Member<zcomplex, Form::ldl, true>>(const NumericView<zcomplex>&);
template NumericResult factorise<Member<double, Form::lu>>(const NumericView<double>&);
template NumericResult factorise<Member<zcomplex, Form::lu>>(const NumericView<zcomplex>&);
template NumericResult factorise<Member<double, Form::lu_full_pivoting>>(const NumericView<double>&);
template NumericResult factorise<Member<zcomplex, Form::lu_full_pivoting>>(const NumericView<zcomplex>&);

} // namespace nxl::pardiso
