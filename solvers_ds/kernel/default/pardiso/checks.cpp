#include "solvers_ds/kernel/default/pardiso/checks.hpp"
#include "solvers_ds/kernel/default/pardiso/diagonal.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

constexpr i32 first_invalid_ido = 34;

/// A type may take the place of another that is stored alike: its negative, 2 and 3, 10 and 11, 12 and 13.
bool types_go_together(i64 mtype, i64 stored) {
    return stored == 0 || mtype == stored || mtype == -stored || magnitude(mtype) / 2 == magnitude(stored) / 2;
}

bool between(i32 value, i32 least, i32 most) { return value >= least && value <= most; }

/// The buffer of updates holds so many words per entry of the largest block at least.
i64 least_update_count(int mtype) { return mtype == 6 || mtype > 10 || mtype < 0 ? 4 : 2; }

/// A definite type has become its indefinite namesake: the update buffer needs more words per entry.
void raise_update_count(const Call& call, Control control) {
    const i64 stored = control[Word::accepted_type], count = control[Word::update_count];
    const i64 least = least_update_count(call.mtype);
    if (call.mtype > 0 || call.mtype != -stored || count == 0 || count >= least) return;
    control[Word::update_words] = least * control[Word::update_words] / count;
    control[Word::update_count] = least;
}

i32 check_numbers(const Call& call, Control control) {
    const i64 stored_factors = control[Word::max_fac_store], stored_neqns = control[Word::neqns];
    if (call.ido < -1 || call.ido >= first_invalid_ido) return inner::ido_out_of_bounds;
    const bool more_than_stored = stored_factors >= 1 && call.max_fac_store > stored_factors;
    if (more_than_stored || call.max_fac_store > control[Word::table_slots]) return inner::more_factors_than_stored;
    if (call.matrix_number > call.max_fac_store) return inner::matrix_number_above_store;
    if (call.matrix_number < 1 && call.ido >= 22) return inner::matrix_number_below_one;
    if (!type_in_bounds(call.mtype)) return inner::type_out_of_bounds;
    if (!types_go_together(call.mtype, control[Word::accepted_type])) return inner::type_incompatible;
    if (stored_neqns >= 1 && call.neqns != stored_neqns) return inner::neqns_incompatible;
    if (call.neqns < 1) return inner::neqns_below_one;
    if (call.length < call.neqns) return inner::too_few_entries;
    return 0;
}

i32 check_options(const Call& call) {
    if (call.nb < 1 && call.ido >= 33) return inner::no_right_hand_side;
    if (!between(call.iparam[Iparam::solution_in_b], 0, 1)) return inner::solution_flag;
    if (!between(call.iparam[Iparam::ordering], 0, 2)) return inner::ordering_unknown;
    return 0;
}

/// Columns of a panel: narrower where more threads want a share.
i32 panel_width(int mtype, i32 threads) {
    if (is_lu(mtype)) return threads == 1 ? 128 : threads <= 4 ? 96 : 72;
    return threads <= 4 ? 80 : 64;
}

/// Sizes of the graph, for a call that starts with the analysis.
void store_graph_sizes(const Call& call, Control control) {
    const i64 n = call.neqns, entries = control[Word::entries], beside = entries - n;
    const i64 off_diagonals = stores_triangle(call.mtype) ? beside : beside / 2;
    control[Word::off_diagonals] = off_diagonals;
    control[Word::adjacency_length] = is_unsymmetric(call.mtype) ? n + 3 * entries : 2 * off_diagonals;
}

void store_options(const Call& call, Control control) {
    const Parameters iparam = call.iparam;
    const i32 threads = iparam[Iparam::threads];
    const bool triangle = stores_triangle(call.mtype);
    control[Word::symmetric_storage] = triangle;
    control[Word::scalar_words] = scalar_words(call.mtype);
    control[Word::ordering] = iparam[Iparam::ordering];
    control[Word::threads] = threads;
    control[Word::serial] = threads == 1;
    control[Word::panel_width] = panel_width(call.mtype, threads);
    control[Word::hybrid_kind] = iparam[Iparam::hybrid] % 10;
    control[Word::permutation] = iparam[Iparam::permutation];
    control[Word::pivoting] = iparam[Iparam::pivoting];
    control[Word::residual_loop] = iparam[Iparam::residual_loop];
    control[Word::iparam_12] = iparam[Iparam::caller_values] == 1 ? 0 : iparam[Iparam::transposed];
    control[Word::transposed] = triangle ? 0 : control[Word::iparam_12];
    control[Word::parallel_metis] = iparam[Iparam::ordering] == 2 && call.mtype == 11 && threads > 1;
}

i32 known_step(i32 ido) {
    constexpr i32 steps[] = {11, 12, 13, 22, 23, 33};
    return std::find(std::begin(steps), std::end(steps), ido) != std::end(steps) ? 0 : inner::unknown_step;
}

} // namespace

i32 check_input(const Call& call, Control control) {
    int& threads = call.iparam[Iparam::threads];
    threads = std::max(threads, 1);
    raise_update_count(call, control);
    if (const i32 code = check_numbers(call, control)) return code;
    if (const i32 code = check_options(call)) return code;
    if (call.iparam[Iparam::check_matrix] != 0)
        if (const i32 code = check_csr(call)) return code;
    return accept(call, control);
}

i32 accept(const Call& call, Control control) {
    call.iparam[Iparam::check_matrix] = 0;
    control[Word::entries] = call.length;
    control[Word::max_fac_store] = call.max_fac_store;
    control[Word::accepted_type] = control[Word::matrix_type] = call.mtype;
    control[Word::ido] = call.ido;
    control[Word::right_hand_sides] = call.nb;
    control[Word::matrix_number] = call.matrix_number;
    control[Word::sub_step] = call.sub_step;
    if (control[Word::entries] == call.neqns) {
        call.iparam[Iparam::transposed] = -1;
        const i32 row = call.ido % 10 == 3 ? solve_diagonal(call, true) : 0;
        return row == 0 ? inner::diagonal_done : -static_cast<i32>(magnitude(row));
    }
    control[Word::neqns] = call.neqns;
    control[Word::neqns_plus_1] = i64{call.neqns} + 1;
    if (call.starts_analysis()) store_graph_sizes(call, control);
    store_options(call, control);
    return known_step(call.ido);
}

} // namespace nxl::pardiso
