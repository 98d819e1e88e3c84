// What PARDISO prints: internal message codes and the catalogue rows behind them.
#pragma once
#include "service/messages.hpp"
#include "solvers_ds/kernel/default/pardiso/names.hpp"

namespace nxl::pardiso {

/// Message codes. Beside them, a matrix type is the code of its banner, and 500 - error that of an error's heading.
enum class Text : int {
    summary = 0, // from stage to stage
    summary_of_clean = 101,
    underline,
    stage_reorder,
    stage_factorize,
    stage_solve,
    stage_clean,
    factor_deleted,
    contents_deleted,
    times,
    times_underline,
    first_time, // one for each timer
    cgs_time = first_time + static_cast<int>(Timer::cgs),
    total_time = first_time + static_cast<int>(Timer::total),
    statistics,
    statistics_underline,
    processors,
    hybrid_solver,
    parallel_factorization,
    serial_factorization,
    linear_system,
    equations,
    matrix_entries,
    matrix_density,
    right_hand_sides,
    factors,
    tree_height,
    reduction,
    panel_columns,
    subgraphs,
    input_permutation,
    constrained_degree,
    separators_ordered,
    separators_not_ordered,
    dissection,
    supernodes,
    largest_supernode,
    entries_of_l,
    entries_of_u,
    entries_of_both,
    factor_gflop,
    factor_rate,
    matrix_norm,
    percent,
    progress_factorisation,
    progress_forward,
    progress_backward,

    clean_impossible = 401,
    ido_below_minus_one,
    not_initialised,
    contradiction,
    wrong_matrix_number,
    only_symbolic,
    ido_out_of_bounds,
    more_factors_than_stored,
    matrix_number_above_store,
    matrix_number_below_one,
    type_incompatible,
    type_out_of_bounds,
    neqns_incompatible,
    neqns_below_one,
    too_few_entries,
    no_right_hand_side,
    solution_flag,
    ordering_unknown,
    counted_threads,
    thread_counts_differ,
    unknown_step,
    diagonal_row,
    row_pointers,
    column_range,
    below_diagonal,
    column_order,
    first_dump_line,
    allocation = first_dump_line + 4,
    memory_wanted,
    memory_symbolic,
    memory_real,
    reordering,
    unclassified,
    preordering,
    structure_singular,
    internal_error,
    unknown_message,
    not_definite,
    zero_pivot,
    small_buffer,
    hybrid_failed,
    refinement,
    contraction,
    iteration_limit,

    matrix_heading = 512,

    ooc_cfg_path = 700,
    ooc_cfg_file_name,
    ooc_path,
    ooc_max_core_size,
    ooc_keep_file,
    ooc_no_configuration,
    ooc_not_asked,
    ooc_not_needed,
    ooc_needed,
    ooc_asked,
    ooc_input_error,
    ooc_not_closed,
    ooc_write_type,
    ooc_wrote,
    ooc_write_eof,
    ooc_write_seek,
    ooc_write_error,
    ooc_read_type,
    ooc_items_read,
    ooc_read_seek,
    ooc_read_error,
    first_ooc_status, // one for each
    ooc_unknown_status = first_ooc_status + 14,
    ooc_write_time,
    ooc_factor_read_time,
    ooc_solve_read_time,
    ooc_line,
    ooc_shares,
    ooc_factor_step,
    ooc_share_written,
    ooc_share_read,
    ooc_factor_rest,
    ooc_solve_step,
    ooc_solve_share_read,
    ooc_solve_rest,
    ooc_total_step,
    ooc_total_share_read,
    ooc_total_rest,
    ooc_megabytes,
    ooc_factor_transfer,
    ooc_megabytes_written,
    ooc_factor_megabytes_read,
    ooc_solve_transfer,
    ooc_solve_megabytes_read,
    ooc_total_transfer,
    ooc_total_megabytes
};

constexpr Text heading_of(Error error) { return static_cast<Text>(500 - static_cast<int>(error)); }

/// The catalogue row of a code; 0 when there is none.
int catalogue_id(int code);

/// Prints the line of a code, filled in with the values. A code that has none prints that it is unknown.
template <class... Values> void pardiso_message(int code, Values... values) {
    constexpr int mode = 1, count = sizeof...(Values);
    if (const int id = catalogue_id(code)) nxl_msg_print(mode, id, count, values...);
    else nxl_msg_print(mode, catalogue_id(static_cast<int>(Text::unknown_message)), 1, code);
}
template <class... Values> void pardiso_message(Text text, Values... values) {
    pardiso_message(static_cast<int>(text), values...);
}

/// The template of a code, for a line that is put together.
inline const char* pardiso_text(Text text) { return nxl_msg_text(catalogue_id(static_cast<int>(text))); }

inline void print_empty_line() { nxl_msg_print(1, 0, 0); }

} // namespace nxl::pardiso
