// Names of all that PARDISO keeps by number: iparam, the words of a handle and of its control block, errors, memory
// tags. No other file has such a number.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"

namespace nxl::pardiso {

/// Entries of iparam, counted from 1 as they are documented.
enum class Iparam : int {
    caller_values = 1, ///< 0: stage 1 fills the defaults in; 1: the caller's values stand
    ordering = 2,
    threads = 3,
    hybrid = 4, ///< 10 L + K
    permutation = 5,
    solution_in_b = 6,
    steps_done = 7,
    step_limit = 8,
    accounting = 9,
    perturbation = 10,
    scaling = 11,
    transposed = 12, ///< -1 marks a diagonal matrix
    matching = 13,
    perturbed_pivots = 14,
    peak_memory = 15,
    permanent_memory = 16,
    numeric_memory = 17,
    factor_entries = 18,
    factor_mflop = 19,
    hybrid_outcome = 20,
    pivoting = 21,
    positive_pivots = 22,
    negative_pivots = 23,
    reserved_24 = 24,
    reserved_25 = 25,
    residual_loop = 26,
    check_matrix = 27,
    fault_place = 31,
    fault_first = 32,
    fault_second = 33,
    partition_exponent = 50,
    out_of_core = 60,
    ooc_peak_memory = 61, ///< megabytes: of the analysis, of what stays of it, of factors in memory
    ooc_permanent_memory = 62,
    ooc_numeric_memory = 63,
    exit_mark = 64
};

/// Words of the handle `pt`.
enum class HandleWord : int {
    calls = 0,
    control = 1,
    factor_table = 3,
    struc_s0 = 4,
    struc_s1 = 5,
    struc_s2 = 6,
    struc_fi = 7,
    work_i0 = 8,
    work_r0 = 9,
    refinement = 10,
    update_lists = 11,
    scaling = 12,
    matching = 13,
    matrix_copy = 15,
    ooc_context = 16
};
inline constexpr int first_array_word = 4, last_array_word = 15, handle_words = 17;

/// An array word or array base that holds this has no array and is never freed.
inline constexpr i64 unset_slot = 777777777;

/// Integer words of the control block.
enum class Word : int {
    neqns,
    neqns_plus_1,
    off_diagonals,
    adjacency_length,
    scalar_words, ///< doubles per entry: 1 real, 2 complex
    symmetric_storage,
    matrix_type,
    ordering,
    threads,
    construction, ///< -1: half built
    panel_width,
    hybrid_kind, ///< K of iparam(4)
    permutation,
    sub_step,
    transposed,
    matching,
    scaling,
    iparam_12,
    partitions,
    partition_work,
    inner_error,
    perturbed_pivots,
    positive_pivots,
    negative_pivots,
    steps_done,
    peak_memory, ///< the three memory counters, kilobytes
    permanent_memory,
    numeric_memory,
    max_fac_store,
    accepted_type, ///< matrix type of the last accepted call
    analysed_type, ///< matrix type that the symbolic arrays are for
    entries,       ///< length of A
    ido,
    right_hand_sides,
    matrix_number,
    serial,
    pivoting,
    residual_loop,
    parallel_metis,
    element_bound, ///< values that every start of stage 1 sets; consumed by the orderings and the iterations
    fixed_2,
    fixed_6,
    fixed_pair_first,
    fixed_pair_second,
    fixed_1,
    divergence_limit,
    initial_threads,
    supernodes,
    structure_length, ///< of lindx
    l_size,
    u_size,
    largest_supernode, ///< columns, before the panel limit cuts
    tallest_column,
    update_words, ///< size of the update buffer `temp`
    update_count, ///< word count beside it
    subgraphs,
    separator_integers, ///< of ddist
    table_slots,        ///< of the factor table, whatever max_fac_store says since
    deleted,            ///< by a clean: the matrix number, or the negated count of factors
    iteration_budget,   ///< it_max of the hybrid iteration
    refactor,           ///< 1: the factor has to be built anew before it is used
    factor_memory       ///< of the numeric counter what factors take, without the work of one call
};
inline constexpr int integer_words = 70;
static_assert(static_cast<int>(Word::factor_memory) < integer_words);

/// Real words of the control block, from word 100.
enum class RealWord : int { mflop, matrix_norm, factor_seconds, divergence = 10, unit, tolerance, tiny };
inline constexpr int first_real_word = 100, real_words = 20;

/// Array bases of the control block, from word 120: where an array begins in its block, in 4-byte units. Those of one
/// block stand together, from a multiple of 20 on.
enum class ArrayBase : int {
    perm = 0, ///< STRUC_FI, what stays
    invp,
    snode,
    xsup,
    xlindx,
    lindx,
    xlnz,
    xunz,
    nmod,
    nmod_saved,
    link,
    length,
    root_overlap,
    separators, ///< ddist
    scatter_start,
    scatter_position,
    scatter_source,
    one_by_one, ///< bits: 1x1 pivots
    pnlsch,
    order_perm = 20, ///< STRUC_S0
    order_invp,
    order_parent,
    order_counts,
    order_snode,
    order_xsup,
    order_separators,
    order_matched, ///< that mpssym gave
    work = 40,     ///< WORK_I0
    xadj = 60,     ///< STRUC_S1
    adjncy,
    supernode_parent = 80, ///< STRUC_S2
    first_child,
    sibling
};
inline constexpr int first_base_word = 120, base_words = 100, bases_per_block = 20, control_words = 220;

constexpr HandleWord block_of(ArrayBase base) {
    constexpr HandleWord blocks[] = {HandleWord::struc_fi, HandleWord::struc_s0, HandleWord::work_i0,
                                     HandleWord::struc_s1, HandleWord::struc_s2};
    return blocks[static_cast<int>(base) / bases_per_block];
}

/// The ten timers, from word 70 of the control block, and their flags, from word 80: those that this call has touched.
enum class Timer : int {
    full_adjacency,
    reorder,
    symbolic,
    parallel_list,
    scatter,
    factorization,
    solve,
    cgs,
    malloc,
    total
};
inline constexpr int timer_count = 10, kept_timers = 8, first_timer_word = 70, first_flag_word = 80;

/// Settings of an OocContext.
enum class OocWord : int {
    mode, ///< one of OocMode
    max_core_megabytes,
    delete_files, ///< when the factors go; under the name keep_file outside
    message_level,
    phase,
    steps, ///< the last iparam(8)
    error, ///< of `error`: what out-of-core work failed with
    file_kinds,
    largest_block, ///< entries of L, and of U, of the largest supernode
    largest_upper_block,
    whole_window, ///< 1: the window holds all of the factor
    window_words, ///< 8-byte words
    window_list_words,
    files,  ///< 1: the three files are this handle's
    device, ///< of the first of them, and where it is in its file system
    inode,
    next_holder,
    write_percent, ///< of factorisation, solution and both, for the statistics
    read_percent,
    solve_read_percent,
    total_write_percent,
    total_read_percent
};
inline constexpr int ooc_words = 128, ooc_stem_bytes = 1024, ooc_stem_length = 1000, ooc_file_kinds = 4;
static_assert(static_cast<int>(OocWord::total_read_percent) < ooc_words);

/// What OocWord::mode says: before an analysis what was asked for, after it what is done.
enum class OocMode : int { in_core = 0, decide = 1, out_of_core = 2 };

/// Statistics of an OocContext, doubles.
enum class OocFigure : int {
    write_seconds,
    factor_read_seconds,
    solve_read_seconds,
    total_seconds,
    megabytes_written,
    factor_megabytes_read,
    solve_megabytes_read
};

/// Values of the argument `error`.
enum class Error : int {
    none = 0,
    parameters = -1,
    memory = -2,
    reordering = -3,
    factorization = -4,
    internal = -5,
    preordering = -6,
    unclassified = -7,
    overflow = -8,
    ooc_memory = -9,
    ooc_open = -10,
    ooc_transfer = -11
};

/// Inner codes of Error::parameters. Those of a bad matrix are 21 to 24.
namespace inner {
inline constexpr i32 ido_out_of_bounds = 1, more_factors_than_stored = 2, matrix_number_above_store = 3,
                     matrix_number_below_one = 4, type_incompatible = 5, neqns_incompatible = 6, neqns_below_one = 7,
                     too_few_entries = 8, no_right_hand_side = 9, solution_flag = 10, ordering_unknown = 11,
                     counted_threads = 12, thread_counts_differ = 13, type_out_of_bounds = 15, unknown_step = 20,
                     row_pointers = 21, column_range = 22, below_diagonal = 23, column_order = 24, diagonal_done = 99,
                     wrong_matrix_number = 100, only_symbolic = 999, not_initialised = 1000, below_minus_one = 10000,
                     not_analysed = 100000;
} // namespace inner

/// What an allocation is for: names it in a report of missing memory.
enum class Tag : int {
    control = -100,
    factor_table = -200,
    ooc_stem = -201,
    ooc_words = -202,
    struc_s0 = -400,
    matching_integers = -401,
    matching_reals = -402,
    scaling = -403,
    matching = -404,
    work_i0 = -500,
    struc_s1 = -600,
    struc_s2 = -700,
    struc_fi = -800,
    scheduling = -900,
    update_lists = -1000,
    factor = -1100,
    work_r0 = -1200,
    refinement = -1300
};

/// Answers to the two queries, `ido` -2 and -3.
inline constexpr int ido_query_parameters = -2, ido_query_version = -3, answer_parameters = 16, answer_iparam_1 = 23,
                     answer_version = 300000;
inline constexpr int exit_mark_value = 105;

/// The caller's iparam by name.
class Parameters {
    int* entries_;

  public:
    explicit Parameters(int* entries) : entries_(entries) {}
    int& operator[](Iparam entry) const { return entries_[static_cast<int>(entry) - 1]; }
};

} // namespace nxl::pardiso
