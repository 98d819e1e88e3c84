#include "solvers_ds/kernel/default/pardiso/summary.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"
#include "solvers_ds/kernel/default/pardiso/message.hpp"

namespace nxl::pardiso {
namespace {

const char* stage_name(i32 stage) {
    constexpr Text names[] = {Text::stage_reorder, Text::stage_factorize, Text::stage_solve};
    return pardiso_text(stage >= 1 && stage <= 3 ? names[stage - 1] : Text::stage_clean);
}

void print_banner(Control control) {
    if (const i32 mtype = control.small(Word::accepted_type)) pardiso_message(mtype);
}

/// Behind the timers of factorisation and solution, what of them went to files.
void print_file_times(Timer timer, const OocContext& ooc) {
    if (timer == Timer::factorization) {
        pardiso_message(Text::ooc_write_time, ooc[OocFigure::write_seconds]);
        pardiso_message(Text::ooc_factor_read_time, ooc[OocFigure::factor_read_seconds]);
    }
    if (timer == Timer::solve) pardiso_message(Text::ooc_solve_read_time, ooc[OocFigure::solve_read_seconds]);
}

/// One line for each timer that this call has touched; the total with what it has beyond them.
void print_times(const Call& call, Control control, const OocContext& ooc) {
    pardiso_message(Text::times);
    pardiso_message(Text::times_underline);
    double sum = 0.0;
    for (int i = 0; i < timer_count; ++i) {
        const Timer timer = static_cast<Timer>(i);
        if (control.touched(timer) == 0) continue;
        const double seconds = control.seconds(timer);
        const int line = static_cast<int>(Text::first_time) + i;
        if (timer == Timer::cgs) pardiso_message(line, seconds, call.iparam[Iparam::hybrid_outcome]);
        else if (timer == Timer::total) pardiso_message(line, seconds, seconds - sum);
        else pardiso_message(line, seconds);
        if (ooc.out_of_core()) print_file_times(timer, ooc);
        sum += seconds;
    }
    print_empty_line();
}

void print_method(Control control) {
    const Text method = control[Word::hybrid_kind] != 0 ? Text::hybrid_solver
                        : control[Word::serial] == 0    ? Text::parallel_factorization
                                                        : Text::serial_factorization;
    pardiso_message(Text::processors, control.small(Word::threads));
    pardiso_message(method);
    pardiso_message(control[Word::transposed] == 0 ? Text::linear_system : method);
}

void print_system(Control control) {
    const double n = static_cast<double>(control[Word::neqns]), entries = static_cast<double>(control[Word::entries]);
    pardiso_message(Text::equations, control.small(Word::neqns));
    pardiso_message(Text::matrix_entries, control.small(Word::entries));
    pardiso_message(Text::matrix_density, 100.0 * entries / (n * n));
    pardiso_message(Text::right_hand_sides, control.small(Word::right_hand_sides));
}

void print_ordering(Control control) {
    const i64 method = control[Word::ordering];
    if (method == 0 && control[Word::symmetric_storage] != 0) {
        pardiso_message(Text::tree_height);
        pardiso_message(Text::reduction);
        pardiso_message(Text::panel_columns, control.small(Word::panel_width));
        pardiso_message(Text::subgraphs, control.small(Word::subgraphs));
    }
    if (control[Word::permutation] > 0) return pardiso_message(Text::input_permutation);
    if (method == 1) {
        pardiso_message(Text::constrained_degree);
        pardiso_message(control[Word::subgraphs] > 1 ? Text::separators_ordered : Text::separators_not_ordered);
    }
    if (method == 2) pardiso_message(Text::dissection);
}

void print_factors(Control control) {
    const long long l = control[Word::l_size], u = control[Word::u_size];
    pardiso_message(Text::factors);
    print_ordering(control);
    pardiso_message(Text::supernodes, control.small(Word::supernodes));
    pardiso_message(Text::largest_supernode, control.small(Word::largest_supernode));
    pardiso_message(Text::entries_of_l, l);
    pardiso_message(Text::entries_of_u, u);
    pardiso_message(Text::entries_of_both, l + u);
}

/// What the factorisation cost, from the operations that the analysis has counted.
void print_work(const Call& call, Control control) {
    if (call.last_stage() < 2) return;
    const double gflop = control[RealWord::mflop] * 0.001, seconds = control.seconds(Timer::factorization);
    pardiso_message(Text::factor_gflop, gflop);
    if (seconds > 0.0) pardiso_message(Text::factor_rate, gflop / seconds);
    if (control[RealWord::matrix_norm] > 0.0) pardiso_message(Text::matrix_norm, control[RealWord::matrix_norm]);
}

int share(double part, double whole) { return whole > 0.0 ? static_cast<int>(100.0 * part / whole) : 0; }

void store_shares(Control control, const OocContext& ooc) {
    const double written = ooc[OocFigure::write_seconds], read = ooc[OocFigure::factor_read_seconds],
                 solve_read = ooc[OocFigure::solve_read_seconds];
    const double factor = control.seconds(Timer::factorization), solve = control.seconds(Timer::solve);
    ooc[OocWord::write_percent] = share(written, factor);
    ooc[OocWord::read_percent] = share(read, factor);
    ooc[OocWord::solve_read_percent] = share(solve_read, solve);
    ooc[OocWord::total_write_percent] = share(written, ooc[OocFigure::total_seconds]);
    ooc[OocWord::total_read_percent] = share(read + solve_read, ooc[OocFigure::total_seconds]);
}

/// What of the time went to files, and how much was moved.
void print_out_of_core(Control control, const OocContext& ooc) {
    store_shares(control, ooc);
    const auto percent = [&](OocWord word) { return static_cast<int>(ooc[word]); };
    const int written = percent(OocWord::write_percent), read = percent(OocWord::read_percent),
              solve_read = percent(OocWord::solve_read_percent), total_read = percent(OocWord::total_read_percent);
    const double moved = ooc[OocFigure::megabytes_written] + ooc[OocFigure::factor_megabytes_read] +
                         ooc[OocFigure::solve_megabytes_read];
    pardiso_message(Text::ooc_line);
    pardiso_message(Text::ooc_shares);
    pardiso_message(Text::ooc_factor_step);
    pardiso_message(Text::ooc_share_written, written);
    pardiso_message(Text::ooc_share_read, read);
    pardiso_message(Text::ooc_factor_rest, 100 - written - read);
    pardiso_message(Text::ooc_solve_step);
    pardiso_message(Text::ooc_solve_share_read, solve_read);
    pardiso_message(Text::ooc_solve_rest, 100 - solve_read);
    pardiso_message(Text::ooc_total_step);
    pardiso_message(Text::ooc_total_share_read, total_read);
    pardiso_message(Text::ooc_total_rest, 100 - total_read - percent(OocWord::total_write_percent));
    pardiso_message(Text::ooc_megabytes);
    pardiso_message(Text::ooc_factor_transfer);
    pardiso_message(Text::ooc_megabytes_written, ooc[OocFigure::megabytes_written]);
    pardiso_message(Text::ooc_factor_megabytes_read, ooc[OocFigure::factor_megabytes_read]);
    pardiso_message(Text::ooc_solve_transfer);
    pardiso_message(Text::ooc_solve_megabytes_read, ooc[OocFigure::solve_megabytes_read]);
    pardiso_message(Text::ooc_total_transfer);
    pardiso_message(Text::ooc_total_megabytes, moved);
    pardiso_message(Text::ooc_line);
}

} // namespace

void print_summary(const Call& call, const Handle& handle) {
    const Control control = handle.control();
    const OocContext& ooc = handle.ooc();
    print_banner(control);
    pardiso_message(Text::summary, stage_name(call.first_stage()), stage_name(call.last_stage()));
    pardiso_message(Text::underline);
    print_times(call, control, ooc);
    pardiso_message(Text::statistics);
    pardiso_message(Text::statistics_underline);
    print_method(control);
    print_system(control);
    print_factors(control);
    print_work(call, control);
    if (ooc.out_of_core() && call.last_stage() == 3) print_out_of_core(control, ooc);
}

void print_clean_summary(Control control) {
    const i32 deleted = control.small(Word::deleted);
    print_banner(control);
    pardiso_message(Text::summary_of_clean, pardiso_text(Text::stage_clean));
    pardiso_message(Text::underline);
    if (deleted >= 1) pardiso_message(Text::factor_deleted, deleted);
    else pardiso_message(Text::contents_deleted, -deleted);
}

} // namespace nxl::pardiso
