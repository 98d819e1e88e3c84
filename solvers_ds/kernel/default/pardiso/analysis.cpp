#include "solvers_ds/kernel/default/pardiso/analysis.hpp"
#include "solvers_ds/kernel/default/pardiso/analysis_memory.hpp"
#include "solvers_ds/kernel/default/pardiso/column_order.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"
#include "solvers_ds/kernel/default/pardiso/ordering.hpp"
#include "solvers_ds/kernel/default/pardiso/panel_schedule.hpp"
#include "solvers_ds/kernel/default/pardiso/preprocessing.hpp"
#include "solvers_ds/kernel/default/pardiso/scatter_index.hpp"
#include "solvers_ds/kernel/default/pardiso/sfinit.hpp"
#include "solvers_ds/kernel/default/pardiso/update_counts.hpp"
#include <algorithm>
#include <bit>

namespace nxl::pardiso {
namespace {

constexpr i64 largest_i32 = 2147483647;

/// Entries beside the diagonal, each pair once where the pattern is symmetric; as many as the graph has lists for, also
/// where entries of the diagonal are missing.
i64 graph_length(const Call& call) {
    i64 beside = 0;
    for (i32 i = 1; i <= call.neqns; ++i)
        for (i32 k = call.ia[i - 1]; k < call.ia[i]; ++k) beside += call.ja[k - 1] != i;
    return stores_triangle(call.mtype) ? 2 * beside : beside;
}

Separators separators_of(const Handle& handle, ArrayBase base) {
    return {handle.control().small(Word::separator_integers), handle.array<i32>(base)};
}

OrderingView ordering_view(const Handle& handle, const Call& call, Separators& separators) {
    const Control control = handle.control();
    const bool paired = control[Word::matching] != 0 && is_indefinite(call.mtype);
    return {.n = call.neqns,
            .mtype = call.mtype,
            .threads = control.small(Word::threads),
            .ia = call.ia,
            .ja = call.ja,
            .row_order = matched_rows(handle),
            .method = static_cast<OrderingMethod>(control[Word::ordering]),
            .partitions = static_cast<i32>(std::bit_floor(static_cast<std::uint32_t>(control[Word::partitions]))),
            .permutation_choice = control.small(Word::permutation),
            .user_perm = call.perm,
            .matched_order = paired ? handle.array<i32>(ArrayBase::order_matched) : nullptr,
            .xadj = handle.array<i32>(ArrayBase::xadj),
            .adjncy = handle.array<i32>(ArrayBase::adjncy),
            .adjacency_room = control[Word::adjacency_length],
            .perm = handle.array<i32>(ArrayBase::order_perm),
            .invp = handle.array<i32>(ArrayBase::order_invp),
            .work = handle.array<i32>(ArrayBase::work),
            .separators = &separators};
}

SupernodeTree tree_of(const Handle& handle) {
    return {handle.array<i32>(ArrayBase::supernode_parent), handle.array<i32>(ArrayBase::first_child),
            handle.array<i32>(ArrayBase::sibling)};
}

void find_columns(const Handle& handle, Separators& separators) {
    const Control control = handle.control();
    const SfinitResult found = sfinit({.n = control.small(Word::neqns),
                                       .xadj = handle.array<i32>(ArrayBase::xadj),
                                       .adjncy = handle.array<i32>(ArrayBase::adjncy),
                                       .perm = handle.array<i32>(ArrayBase::order_perm),
                                       .invp = handle.array<i32>(ArrayBase::order_invp),
                                       .panel_width = control.small(Word::panel_width),
                                       .keep_pairs = one_by_one_pivots(handle) != nullptr,
                                       .separators = separators,
                                       .parent = handle.array<i32>(ArrayBase::order_parent),
                                       .counts = handle.array<i32>(ArrayBase::order_counts),
                                       .snode = handle.array<i32>(ArrayBase::order_snode),
                                       .xsup = handle.array<i32>(ArrayBase::order_xsup),
                                       .work = handle.array<i32>(ArrayBase::work)});
    control[Word::supernodes] = found.sizes.supernodes;
    control[Word::structure_length] = found.sizes.structure_length;
    control[Word::largest_supernode] = found.sizes.largest;
}

/// The bits of the pivots belong to positions of the order by pairs; columns have moved within it since.
void keep_pivot_bits(const Handle& handle) {
    const u32* const bits = one_by_one_pivots(handle);
    if (!bits) return;
    const i32* const order = handle.array<i32>(ArrayBase::order_matched);
    const FromOne<i32> invp = handle.array<i32>(ArrayBase::invp);
    u32* const kept = handle.array<u32>(ArrayBase::one_by_one);
    for (i64 k = 0; k < handle.control()[Word::neqns]; ++k) {
        const i32 column = invp[order[k]] - 1;
        kept[column / 32] |= (bits[k / 32] >> (k % 32) & 1u) << (column % 32);
    }
}

/// What step 1 found and the factors need goes from the work blocks to where it stays.
void keep_order(const Handle& handle) {
    const Control control = handle.control();
    const auto keep = [&](ArrayBase from, ArrayBase to, i64 count) {
        std::copy_n(handle.array<i32>(from), count, handle.array<i32>(to));
    };
    const i64 n = control[Word::neqns];
    keep(ArrayBase::order_perm, ArrayBase::perm, n);
    keep(ArrayBase::order_invp, ArrayBase::invp, n);
    keep(ArrayBase::order_snode, ArrayBase::snode, n);
    keep(ArrayBase::order_xsup, ArrayBase::xsup, control[Word::supernodes] + 1);
    keep(ArrayBase::order_separators, ArrayBase::separators, control[Word::separator_integers]);
    keep_pivot_bits(handle);
}

i32 find_structure(const Handle& handle, const SupernodeTree& tree) {
    const Control control = handle.control();
    const i32 n = control.small(Word::neqns), supernodes = control.small(Word::supernodes);
    const FromOne<i32> counts = handle.array<i32>(ArrayBase::order_counts), work = handle.array<i32>(ArrayBase::work);
    const FromOne<i32> xsup = handle.array<i32>(ArrayBase::xsup);
    supernode_tree(supernodes, xsup, handle.array<i32>(ArrayBase::snode), handle.array<i32>(ArrayBase::order_parent),
                   counts, tree);
    const OrderedGraph graph{n, handle.array<i32>(ArrayBase::xadj), handle.array<i32>(ArrayBase::adjncy),
                             handle.array<i32>(ArrayBase::perm), handle.array<i32>(ArrayBase::invp)};
    return symfct({.graph = graph,
                   .supernodes = supernodes,
                   .xsup = xsup,
                   .counts = counts,
                   .tree = tree,
                   .symmetric = control[Word::symmetric_storage] != 0,
                   .xlindx = handle.array<i64>(ArrayBase::xlindx),
                   .xlnz = handle.array<i64>(ArrayBase::xlnz),
                   .xunz = handle.array<i64>(ArrayBase::xunz),
                   .lindx = handle.array<i32>(ArrayBase::lindx),
                   .mark = work,
                   .waiting = work.data() + n});
}

/// Columns move inside their supernodes, but for those of a caller's order and of pairs.
void gather_rows(const Handle& handle, const SupernodeTree& tree) {
    const Control control = handle.control();
    const i64 choice = control[Word::permutation];
    if ((choice > 0 && choice != 2) || one_by_one_pivots(handle)) return;
    const Supernodes supernodes = supernodes_of(handle);
    order_columns({.n = control.small(Word::neqns),
                   .supernodes = supernodes,
                   .lindx = handle.array<i32>(ArrayBase::lindx),
                   .perm = handle.array<i32>(ArrayBase::perm),
                   .invp = handle.array<i32>(ArrayBase::invp),
                   .separators = separators_of(handle, ArrayBase::separators),
                   .work = handle.array<i32>(ArrayBase::work)});
    for (i32 s = 1; s <= supernodes.count; ++s) tree.parent[s] = supernodes.parent(s);
}

/// The update buffer: four words for each entry of the largest block that goes through it.
void size_update_buffer(const Supernodes& supernodes, int mtype, Control control) {
    constexpr i64 words_per_entry = 4;
    const i64 panel = control[Word::panel_width];
    i64 entries = largest_update(supernodes);
    if (entries == 0) entries = control[Word::neqns];
    if (entries == 0 && (mtype == 6 || mtype < 0)) entries = panel * panel / 2;
    control[Word::update_words] = words_per_entry * entries;
    control[Word::update_count] = words_per_entry;
}

void prepare_updates(const Handle& handle, int mtype) {
    const Control control = handle.control();
    const Supernodes supernodes = supernodes_of(handle);
    size_update_buffer(supernodes, mtype, control);
    count_updates(supernodes, handle.array<i32>(ArrayBase::nmod));
    std::copy_n(handle.array<i32>(ArrayBase::nmod), supernodes.count, handle.array<i32>(ArrayBase::nmod_saved));
    const Separators separators = separators_of(handle, ArrayBase::separators);
    const i32 root = separators.first(separators.subgraphs());
    count_overlap(supernodes, supernodes.xsup[root], handle.array<i32>(ArrayBase::root_overlap));
    control[Word::tallest_column] = tallest_supernode(supernodes);
}

FlopRule flop_rule(int mtype) { return {is_lu(mtype), is_complex(mtype)}; }

void build_schedule(const Handle& handle, int mtype) {
    const Control control = handle.control();
    const Stopwatch watch(control, Timer::parallel_list);
    build_pnlsch({.supernodes = supernodes_of(handle),
                  .parent = handle.array<i32>(ArrayBase::supernode_parent),
                  .rule = flop_rule(mtype),
                  .threads = control.small(Word::threads),
                  .pnlsch = handle.array<i32>(ArrayBase::pnlsch),
                  .work = handle.array<double>(ArrayBase::work)});
}

i32 scatter(const Handle& handle, const Call& call) {
    const Stopwatch watch(handle.control(), Timer::scatter);
    const FromOne<i32> invp = handle.array<i32>(ArrayBase::invp), work = handle.array<i32>(ArrayBase::work);
    const FromOne<i32> row_place = work.data() + call.neqns;
    const i32* const rows = matched_rows(handle);
    for (i32 i = 1; i <= call.neqns; ++i) row_place[rows ? rows[i - 1] : i] = invp[i];
    return build_scatter_index({.n = call.neqns,
                                .ia = call.ia,
                                .ja = call.ja,
                                .row_place = row_place,
                                .column_place = invp,
                                .triangle = stores_triangle(call.mtype),
                                .supernodes = supernodes_of(handle),
                                .xlnz = handle.array<i64>(ArrayBase::xlnz),
                                .xunz = handle.array<i64>(ArrayBase::xunz),
                                .start = handle.array<i32>(ArrayBase::scatter_start),
                                .position = handle.array<i64>(ArrayBase::scatter_position),
                                .source = handle.array<i32>(ArrayBase::scatter_source),
                                .work = work});
}

/// Figures that the caller asked for, with a negative number in their place.
void report_figures(const Call& call, Control control) {
    const auto whole = [](double value) { return value < 2147483647.0 ? static_cast<i32>(value) : 2147483647; };
    int &entries = call.iparam[Iparam::factor_entries], &mflop = call.iparam[Iparam::factor_mflop];
    if (entries < 0) entries = whole(static_cast<double>(control[Word::l_size] + control[Word::u_size]));
    if (mflop < 0) mflop = whole(control[RealWord::mflop]);
}

/// As it was before columns moved inside their supernodes, which a caller's order has to give again.
void hand_out_order(const Handle& handle, const Call& call) {
    if (handle.control()[Word::permutation] >= 0) return;
    std::copy_n(handle.array<i32>(ArrayBase::order_perm), call.neqns, call.perm);
}

} // namespace

Supernodes supernodes_of(const Handle& handle) {
    return {handle.control().small(Word::supernodes), handle.array<i32>(ArrayBase::xsup),
            handle.array<i32>(ArrayBase::snode), handle.array<i64>(ArrayBase::xlindx),
            handle.array<i32>(ArrayBase::lindx)};
}

Fault settle_sizes(const Call& call, Control control) {
    store_partitions(control);
    i64& length = control[Word::adjacency_length];
    if (!is_unsymmetric(call.mtype)) length = std::max(length, graph_length(call));
    return fault_of(length + call.neqns >= largest_i32 ? too_large : 0);
}

Fault order_matrix(const Handle& handle, const Call& call) {
    const Control control = handle.control();
    Separators separators = separators_of(handle, ArrayBase::order_separators);
    const OrderingView view = ordering_view(handle, call, separators);
    {
        const Stopwatch watch(control, Timer::full_adjacency);
        if (const i32 code = sssord_adjacency(view)) return fault_of(code);
    }
    {
        const Stopwatch watch(control, Timer::reorder);
        if (const i32 code = sssord_order(view)) return fault_of(code);
    }
    const Stopwatch watch(control, Timer::symbolic);
    find_columns(handle, separators);
    control[Word::separator_integers] = separators.n;
    control[Word::subgraphs] = separators.subgraphs();
    return {};
}

Fault build_structure(const Handle& handle, const Call& call) {
    const Control control = handle.control();
    const Stopwatch watch(control, Timer::symbolic);
    keep_order(handle);
    if (const i32 code = find_structure(handle, tree_of(handle)))
        return fault_of(code == factor_too_large ? too_large : structure_mismatch);
    gather_rows(handle, tree_of(handle));
    const i64 n = call.neqns;
    control[Word::l_size] = FromOne<i64>(handle.array<i64>(ArrayBase::xlnz))[n + 1] - 1;
    control[Word::u_size] = FromOne<i64>(handle.array<i64>(ArrayBase::xunz))[n + 1] - 1;
    prepare_updates(handle, call.mtype);
    return {};
}

Fault prepare_factorization(const Handle& handle, const Call& call) {
    const Control control = handle.control();
    if (const i32 code = scatter(handle, call)) return fault_of(code);
    if (call.messages || call.iparam[Iparam::factor_mflop] < 0)
        control[RealWord::mflop] = mflop_count(supernodes_of(handle), flop_rule(call.mtype));
    if (control[Word::threads] > 1) build_schedule(handle, call.mtype);
    report_figures(call, control);
    hand_out_order(handle, call);
    return {};
}

} // namespace nxl::pardiso
