#include "solvers_ds/kernel/default/pardiso/preprocessing.hpp"
#include "solvers_ds/kernel/default/pardiso/analysis.hpp"
#include "solvers_ds/kernel/default/pardiso/matching.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"
#include "solvers_ds/kernel/default/pardiso/mpssym.hpp"
#include <algorithm>
#include <bit>
#include <cmath>

namespace nxl::pardiso {
namespace {

bool matched(const Handle& handle, bool (*kind)(int)) {
    return handle.control()[Word::matching] != 0 && kind(handle.control().small(Word::matrix_type));
}

/// Word 12: the row matched to each column, and with pairs the bits of the pivots.
i32* rows_of_columns(const Handle& handle) { return handle.block<i32>(HandleWord::scaling); }

/// Local blocks of the matching. The first lies in a word that the analysis fills later.
constexpr HandleWord local_integers = HandleWord::struc_s2, local_reals = HandleWord::work_r0;

i64 entries_to_match(const Call& call) {
    return is_indefinite(call.mtype) ? 2 * call.length - call.neqns : call.length;
}

Fault take_matching_blocks(const Handle& handle, const Call& call) {
    const i64 n = call.neqns, entries = entries_to_match(call), arrays = is_indefinite(call.mtype) ? 2 : 1;
    const i64 moduli = is_complex(call.mtype) ? call.length : 0;
    if (const Fault fault =
            handle.take(HandleWord::scaling, (n * arrays + 3) / 2 * 8, Tag::scaling, Account::permanent))
        return fault;
    if (const Fault fault = handle.take(HandleWord::matching, 2 * n * 8, Tag::matching, Account::permanent))
        return fault;
    if (const Fault fault =
            handle.take(local_integers, (6 * n + 20 + entries) * 4, Tag::matching_integers, Account::peak))
        return fault;
    return handle.take(local_reals, (2 * n + entries + moduli) * 8, Tag::matching_reals, Account::peak);
}

/// The values that are matched: those of the caller, which nothing changes though the containers could, or moduli
/// behind the reals of the search.
double* values_to_match(const Handle& handle, const Call& call) {
    if (!is_complex(call.mtype)) return static_cast<double*>(const_cast<void*>(call.a)); // NOLINT
    const zcomplex* const a = static_cast<const zcomplex*>(call.a);
    double* const moduli = handle.block<double>(local_reals) + 2 * i64{call.neqns} + entries_to_match(call);
    for (i64 k = 0; k < call.length; ++k) moduli[k] = std::hypot(a[k].real(), a[k].imag());
    return moduli;
}

/// What iparam(13) may be: 2 to 4 name methods that are not there.
i32 matching_mode(i32 choice) { return choice >= 2 && choice <= 4 ? choice : 1; }

Fault match(const Handle& handle, const Call& call, double* values) {
    const i64 n = call.neqns;
    const Control control = handle.control();
    double* const scales = handle.block<double>(HandleWord::matching);
    i32 found = 0;
    const i32 code = match_and_scale({.n = call.neqns,
                                      .ia = call.ia,
                                      .ja = call.ja,
                                      .a = values,
                                      .symmetric = is_indefinite(call.mtype),
                                      .scale = control[Word::scaling] != 0,
                                      .mode = matching_mode(control.small(Word::matching)),
                                      .work = {handle.block<i32>(local_integers), handle.block<double>(local_reals)},
                                      .row_of_column = rows_of_columns(handle),
                                      .row_scale = scales,
                                      .column_scale = scales + n},
                                     found);
    if (code == 0) return {};
    if (code == kNoMemory) return {Error::memory, static_cast<i32>(Tag::matching_integers), 4 * entries_to_match(call)};
    if (code == kUnsymmetricPattern) return fault_of(code);
    return {Error::preordering, code > 0 ? code : -found};
}

/// Pairs of the matching are ordered as one.
Fault order_pairs(const Handle& handle, const Call& call, double* values) {
    const Control control = handle.control();
    const i32 n = call.neqns;
    i32* const order = handle.array<i32>(ArrayBase::order_matched);
    std::copy_n(rows_of_columns(handle), n, order);
    const OwnedBitvec bits(bitvec_wrap(static_cast<u32>(n), reinterpret_cast<u32*>(rows_of_columns(handle) + n)));
    if (!bits) return fault_of(kNoMemory);
    Separators separators{0, handle.array<i32>(ArrayBase::order_separators)};
    const i32 code = mpssym({.n = n,
                             .ia = call.ia,
                             .ja = call.ja,
                             .a = values,
                             .method = control.small(Word::ordering),
                             .parts = static_cast<i32>(std::bit_floor(static_cast<u32>(control[Word::partitions]))),
                             .perm = order,
                             .sym_perm_1x1_pivots = bits.get(),
                             .ddist = &separators});
    control[Word::separator_integers] = separators.n;
    return fault_of(code);
}

} // namespace

const i32* matched_rows(const Handle& handle) {
    return matched(handle, is_unsymmetric) ? rows_of_columns(handle) : nullptr;
}

const u32* one_by_one_pivots(const Handle& handle) {
    if (!matched(handle, is_indefinite)) return nullptr;
    return reinterpret_cast<const u32*>(rows_of_columns(handle) + handle.control()[Word::neqns]);
}

Fault match_matrix(const Handle& handle, const Call& call) {
    const Stopwatch watch(handle.control(), Timer::reorder);
    if (const Fault fault = take_matching_blocks(handle, call)) return fault;
    double* const values = values_to_match(handle, call);
    Fault fault = match(handle, call, values);
    if (!fault && is_indefinite(call.mtype)) fault = order_pairs(handle, call, values);
    handle.release(local_reals);
    handle.release(local_integers);
    return fault;
}

} // namespace nxl::pardiso
