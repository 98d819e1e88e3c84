#include "solvers_ds/kernel/default/pardiso/error_report.hpp"
#include "solvers_ds/kernel/default/pardiso/message.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/codes.hpp"

namespace nxl::pardiso {
namespace {

constexpr i32 first_matrix_code = 21, last_matrix_code = 30, last_argument_code = 15;

bool is_matrix_code(i32 code) { return code >= first_matrix_code && code <= last_matrix_code; }

i32 stored(Control control, Word word) { return control ? control.small(word) : 0; }

/// The place that the check of the matrix has left in iparam(31..33).
void print_matrix_fault(Text text, Parameters iparam) {
    pardiso_message(text, iparam[Iparam::fault_place], iparam[Iparam::fault_first], iparam[Iparam::fault_second]);
}

void print_argument_detail(i32 code, const Call& call, Control control) {
    switch (code) {
    case inner::ido_out_of_bounds: return pardiso_message(Text::ido_out_of_bounds, call.ido);
    case inner::more_factors_than_stored:
        return pardiso_message(Text::more_factors_than_stored, call.max_fac_store,
                               stored(control, Word::max_fac_store));
    case inner::matrix_number_above_store:
        return pardiso_message(Text::matrix_number_above_store, call.max_fac_store, call.matrix_number);
    case inner::matrix_number_below_one:
        return pardiso_message(Text::matrix_number_below_one, call.matrix_number, call.ido);
    case inner::type_incompatible:
        return pardiso_message(Text::type_incompatible, call.mtype, stored(control, Word::accepted_type));
    case inner::type_out_of_bounds: return pardiso_message(Text::type_out_of_bounds, call.mtype);
    case inner::neqns_incompatible:
        return pardiso_message(Text::neqns_incompatible, call.neqns, stored(control, Word::neqns));
    case inner::neqns_below_one: return pardiso_message(Text::neqns_below_one, call.neqns);
    case inner::too_few_entries:
        return pardiso_message(Text::too_few_entries, call.ia[call.neqns], stored(control, Word::entries) + 1);
    case inner::no_right_hand_side: return pardiso_message(Text::no_right_hand_side, call.nb, call.ido);
    case inner::solution_flag: return pardiso_message(Text::solution_flag, call.iparam[Iparam::solution_in_b]);
    case inner::ordering_unknown: return pardiso_message(Text::ordering_unknown, call.iparam[Iparam::ordering]);
    case inner::counted_threads: return pardiso_message(Text::counted_threads, call.iparam[Iparam::threads]);
    case inner::thread_counts_differ:
        return pardiso_message(Text::thread_counts_differ, call.iparam[Iparam::threads],
                               stored(control, Word::threads));
    case inner::row_pointers: return print_matrix_fault(Text::row_pointers, call.iparam);
    case inner::column_range: return print_matrix_fault(Text::column_range, call.iparam);
    case inner::below_diagonal: return print_matrix_fault(Text::below_diagonal, call.iparam);
    case inner::column_order: return print_matrix_fault(Text::column_order, call.iparam);
    default: return pardiso_message(code);
    }
}

/// All arguments that the checks look at. ia is read only as far as it is known to reach.
void dump_arguments(const Call& call) {
    const Parameters iparam = call.iparam;
    const int line = static_cast<int>(Text::first_dump_line);
    const i32 first = call.neqns < 0 ? 0 : call.ia[0], last = call.neqns < 0 ? 0 : call.ia[call.neqns];
    pardiso_message(line, call.max_fac_store, call.matrix_number, call.mtype, call.ido);
    pardiso_message(line + 1, call.neqns, first, last, call.nb);
    pardiso_message(line + 2, iparam[Iparam::caller_values], iparam[Iparam::ordering], iparam[Iparam::threads],
                    iparam[Iparam::hybrid]);
    pardiso_message(line + 3, iparam[Iparam::permutation], iparam[Iparam::solution_in_b], iparam[Iparam::check_matrix],
                    static_cast<int>(call.messages));
}

void print_sequence_detail(i32 code, const Call& call) {
    switch (code) {
    case inner::not_analysed: return pardiso_message(Text::clean_impossible);
    case inner::below_minus_one: return pardiso_message(Text::ido_below_minus_one);
    case inner::not_initialised:
        pardiso_message(Text::not_initialised);
        return pardiso_message(Text::contradiction, call.ido);
    case inner::wrong_matrix_number: return pardiso_message(Text::wrong_matrix_number, call.matrix_number);
    case inner::only_symbolic: return pardiso_message(Text::only_symbolic, call.ido);
    case inner::unknown_step: return pardiso_message(Text::unknown_step, call.ido);
    default: return pardiso_message(code);
    }
}

void print_parameter_detail(i32 code, const Call& call, Control control) {
    const bool of_argument = (code >= 1 && code <= last_argument_code) || is_matrix_code(code);
    if (!of_argument) return print_sequence_detail(code, call);
    print_argument_detail(code, call, control);
    dump_arguments(call);
}

const char* block_name(i32 tag) {
    constexpr const char* names[] = {"BASIC   ", "FACT_ADR", "LOC_INT1", "STRUC_S0", "WORK_I0 ", "STRUC_S1", "STRUC_S2",
                                     "STRUC_FI", "LOC_INT2", "UP_UPLEN", "FACT_L&U", "WORK_R0 ", "CGS_ARR "};
    return names[-tag / 100 - 1];
}

void print_memory_detail(const Fault& fault, Control control) {
    using wide = long long;
    const wide wanted = (fault.bytes >> 10) + 1;
    const auto kilobytes = [&](Word word) { return control ? wide{control[word]} : 0; };
    const wide peak = kilobytes(Word::peak_memory), permanent = kilobytes(Word::permanent_memory),
               numeric = kilobytes(Word::numeric_memory);
    pardiso_message(Text::allocation, block_name(fault.inner), wide{fault.bytes});
    pardiso_message(Text::memory_wanted, peak + permanent + numeric + wanted);
    pardiso_message(Text::memory_symbolic, peak, permanent);
    pardiso_message(Text::memory_real, numeric);
}

/// Of a factorisation, of the refinement behind it, or of an iteration with an old factor, which has left its outcome.
void print_numeric_detail(i32 code, const Call& call) {
    const i32 outcome = call.iparam[Iparam::hybrid_outcome];
    if (code == contraction_lost || code == too_many_steps) {
        pardiso_message(Text::refinement);
        if (code == contraction_lost) return pardiso_message(Text::contraction);
        return pardiso_message(Text::iteration_limit, call.iparam[Iparam::steps_done]);
    }
    if (outcome < 0) return pardiso_message(Text::hybrid_failed, outcome);
    if (code == small_buffer) return pardiso_message(Text::small_buffer);
    const bool definite = call.mtype == 2 || call.mtype == 4;
    pardiso_message(definite ? Text::not_definite : Text::zero_pivot);
}

void print_detail(const Fault& fault, const Call& call, Control control) {
    switch (fault.error) {
    case Error::parameters: return print_parameter_detail(fault.inner, call, control);
    case Error::memory: return print_memory_detail(fault, control);
    case Error::reordering:
    case Error::overflow: return pardiso_message(Text::reordering);
    case Error::internal:
    case Error::ooc_open: return pardiso_message(Text::unclassified);
    case Error::preordering:
        pardiso_message(Text::preordering, -fault.inner, call.neqns);
        return pardiso_message(Text::structure_singular);
    case Error::unclassified:
        if (fault.inner < 0) pardiso_message(Text::diagonal_row, -fault.inner);
        return;
    case Error::factorization: return print_numeric_detail(fault.inner, call);
    default: return;
    }
}

} // namespace

void report_fault(const Fault& fault, const Call& call, Control control) {
    if (call.ido < 0) return pardiso_message(Text::internal_error);
    const bool matrix = fault.error == Error::parameters && is_matrix_code(fault.inner);
    pardiso_message(matrix ? Text::matrix_heading : heading_of(fault.error), fault.inner);
    print_detail(fault, call, control);
}

} // namespace nxl::pardiso
