#include "solvers_ds/kernel/default/pardiso/driver.hpp"
#include "solvers_ds/kernel/default/pardiso/checks.hpp"
#include "solvers_ds/kernel/default/pardiso/do_all.hpp"
#include "solvers_ds/kernel/default/pardiso/error_report.hpp"
#include "solvers_ds/kernel/default/pardiso/handle.hpp"
#include "solvers_ds/kernel/default/pardiso/init_parameters.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/ooc_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/summary.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

constexpr i32 ido_delete_factor = 0, ido_clean = -1;

/// 331 to 334 are steps of 33.
void split_sub_step(Call& call) {
    if (call.ido < 331 || call.ido > 334) return;
    call.sub_step = call.ido % 10;
    call.ido /= 10;
}

void start_timers(Control control) {
    for (int timer = 0; timer < timer_count; ++timer) control.touched(static_cast<Timer>(timer)) = 0;
    control.seconds(Timer::malloc) = 0.0;
    control.seconds(Timer::total) = 0.0;
}

void zero_kept_timers(Control control) {
    for (int timer = 0; timer < kept_timers; ++timer) control.seconds(static_cast<Timer>(timer)) = 0.0;
}

/// A new handle, with the settings of its out-of-core context.
Fault build_handle(const Handle& handle, const Call& call) {
    if (const Fault fault = handle.build(call.max_fac_store)) return fault;
    if (call.ido < 1) {
        handle.control()[Word::construction] = -1;
        return refused(inner::not_initialised);
    }
    handle.ooc()[OocWord::file_kinds] = ooc_file_kinds;
    return {};
}

/// Out of core there is one thread.
void limit_threads(const Handle& handle, Parameters iparam) {
    if (handle.out_of_core() || iparam[Iparam::out_of_core] != 0) iparam[Iparam::threads] = 1;
}

/// The factor of one matrix; the structure stays.
Fault delete_factor(const Handle& handle, const Call& call) {
    const Control control = handle.control();
    if (call.matrix_number < 1 || call.matrix_number > control[Word::max_fac_store])
        return refused(inner::wrong_matrix_number);
    handle.delete_factor(call.matrix_number - 1);
    control[Word::deleted] = call.matrix_number;
    if (call.messages) print_clean_summary(control);
    return {};
}

void clear_memory_figures(Parameters iparam) {
    iparam[Iparam::peak_memory] = iparam[Iparam::permanent_memory] = iparam[Iparam::numeric_memory] = 0;
}

void clean(const Handle& handle, const Call& call) {
    clear_memory_figures(call.iparam);
    const Control control = handle.control();
    remove_factor_files(handle.ooc(), call.messages);
    control[Word::deleted] = -handle.delete_contents();
    if (call.messages) print_clean_summary(control);
    handle.dismantle();
}

void restart(const Handle& handle, const Call& call) {
    clear_memory_figures(call.iparam);
    remove_factor_files(handle.ooc(), call.messages);
    handle.delete_contents();
    start_out_of_core(handle, call);
    init_parameters(call, handle.control());
}

/// Stages 1 to 3, as far as the call goes.
Fault run_stages(const Handle& handle, const Call& call) {
    if (!handle.analysed() && !call.starts_analysis()) return refused(inner::not_analysed);
    if (call.starts_analysis())
        if (const Fault fault = analyse(handle, call)) return fault;
    return call.last_stage() >= 2 ? factorise_and_solve(handle, call) : Fault{};
}

void store_memory_figures(const Call& call, Control control) {
    const auto figure = [&](Word word) { return static_cast<i32>(std::min<i64>(control[word], 2147483647)); };
    call.iparam[Iparam::peak_memory] = figure(Word::peak_memory);
    call.iparam[Iparam::permanent_memory] = figure(Word::permanent_memory);
    call.iparam[Iparam::numeric_memory] = figure(Word::numeric_memory);
}

/// A step of 1 and above, on a handle that is there.
Fault run_call(const Handle& handle, Call& call) {
    const Control control = handle.control();
    const OocContext& ooc = handle.ooc();
    limit_threads(handle, call.iparam);
    ooc[OocWord::error] = 0;
    ooc[OocWord::phase] = call.ido;
    ooc[OocWord::steps] = call.iparam[Iparam::step_limit];
    if (call.starts_analysis()) restart(handle, call);
    const i64 stored = control[Word::entries];
    call.length = call.starts_analysis() || stored == 0 ? call.told_length() : stored;
    const i32 code = check_input(call, control);
    if (code == inner::diagonal_done) return {};
    if (code < 0) return {Error::unclassified, code};
    if (code != 0) return refused(code);
    if (++handle[HandleWord::calls] == 1) zero_kept_timers(control);
    const Fault fault = run_stages(handle, call);
    store_memory_figures(call, control);
    return fault;
}

Fault timed_call(const Handle& handle, Call& call) {
    const Control control = handle.control();
    start_timers(control);
    const double start = wall_seconds();
    const Fault fault = call.ido == ido_delete_factor ? delete_factor(handle, call) : run_call(handle, call);
    control.seconds(Timer::total) = wall_seconds() - start;
    handle.ooc()[OocFigure::total_seconds] += control.seconds(Timer::total);
    control.touched(Timer::total) = 1;
    return fault;
}

/// Of a first call that failed: files too, if it came so far.
void remove_unfinished(const Handle& handle) {
    if (handle[HandleWord::ooc_context] != 0 && handle.ooc().settings) remove_factor_files(handle.ooc(), false);
}

/// Builds the handle where there is none, runs the call, and prints its fault, and a summary of what was accepted. A
/// first call that fails and leaves no structure behind leaves no handle either.
Fault run_step(const Handle& handle, Call& call) {
    const bool first = !handle.live();
    const i64 accepted = handle[HandleWord::calls];
    Fault fault = first ? build_handle(handle, call) : Fault{};
    if (!fault) fault = timed_call(handle, call);
    if (fault && call.messages) report_fault(fault, call, handle.control());
    if (call.messages && fault.error != Error::parameters && handle[HandleWord::calls] > accepted)
        print_summary(call, handle);
    if (fault && first && !handle.analysed()) {
        remove_unfinished(handle);
        handle.dismantle();
    }
    return fault;
}

/// Steps below 1 first: one that there is not, and the end of a handle.
Fault run_any_step(const Handle& handle, Call& call) {
    if (call.ido == ido_clean) {
        clean(handle, call);
        return {};
    }
    if (call.ido > ido_clean) return run_step(handle, call);
    const Fault fault = refused(inner::below_minus_one);
    if (call.messages) report_fault(fault, call, Control(nullptr));
    return fault;
}

/// Without messages a refused argument is an unclassified error.
Error told(const Fault& fault, const Call& call) {
    const bool hidden = fault.error == Error::parameters && !call.messages && call.ido >= 0;
    return hidden ? Error::unclassified : fault.error;
}

} // namespace

Error pardiso_driver(Call call) {
    const Handle handle(call.pt);
    call.iparam[Iparam::partition_exponent] = 0;
    if (call.ido == ido_clean && !handle.live()) return Error::none;
    split_sub_step(call);
    const Fault fault = run_any_step(handle, call);
    call.iparam[Iparam::exit_mark] = exit_mark_value;
    return told(fault, call);
}

} // namespace nxl::pardiso
