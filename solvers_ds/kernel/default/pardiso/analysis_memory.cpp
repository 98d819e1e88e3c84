#include "solvers_ds/kernel/default/pardiso/analysis_memory.hpp"
#include "solvers_ds/kernel/default/pardiso/sfinit.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

/// Sizes in 8-byte words; their terms count 4-byte integers.
i64 struc_s0_words(const AnalysisSizes& s) {
    return (s.partition_work + 3 * s.n + 2 * (3 * s.n + 2) + 3 * s.n + 2 * s.threads * s.n + 22) / 2;
}

i64 work_i0_words(const AnalysisSizes& s) {
    const i64 n = s.n, t = s.threads, adjacency = s.adjacency;
    const i64 ordering = s.partition_work + t + adjacency + n + (s.dissection ? 5 : 3);
    const i64 storage = s.symmetric ? s.off_diagonals + 2 * n + 1 : 0;
    const i64 partitions = n * (6 * s.partitions + 4) + 3;
    const i64 lists = 2 * n + t + 2 * t * n + 1;
    const i64 updates = std::min(t * n, 3 * n + 2 * adjacency + 3);
    const i64 cursors = (t + 1) * n + adjacency;
    return (std::max({ordering, 2 * n + 3, storage, partitions, lists, updates, cursors}) + 15) / 2;
}

i64 struc_s1_words(const AnalysisSizes& s) { return (2 * s.n + s.adjacency + 1 + 16) / 2; }

i64 layout_order(Control control, const AnalysisSizes& s) {
    return Layout(control)
        .place<i32>(ArrayBase::order_perm, s.n)
        .place<i32>(ArrayBase::order_invp, s.n)
        .place<i32>(ArrayBase::order_parent, s.n)
        .place<i32>(ArrayBase::order_counts, s.n)
        .place<i32>(ArrayBase::order_snode, s.n)
        .place<i32>(ArrayBase::order_xsup, s.n + 1)
        .place<i32>(ArrayBase::order_separators, s.partition_work)
        .place<i32>(ArrayBase::order_matched, s.n)
        .words();
}

i64 layout_graph(Control control, const AnalysisSizes& s) {
    return Layout(control).place<i32>(ArrayBase::xadj, s.n + 1).place<i32>(ArrayBase::adjncy, s.adjacency).words();
}

i64 layout_supernode_tree(Control control) {
    const i64 supernodes = control[Word::supernodes];
    return Layout(control)
        .place<i32>(ArrayBase::supernode_parent, supernodes)
        .place<i32>(ArrayBase::first_child, supernodes)
        .place<i32>(ArrayBase::sibling, supernodes)
        .words();
}

/// The row lists stand last, where they can be cut off.
i64 layout_structure(Control control, const AnalysisSizes& s, i64 lists) {
    const i64 n = s.n, supernodes = control[Word::supernodes], entries = control[Word::entries];
    return Layout(control)
        .place<i32>(ArrayBase::perm, n)
        .place<i32>(ArrayBase::invp, n)
        .place<i32>(ArrayBase::snode, n)
        .place<i32>(ArrayBase::xsup, supernodes + 1)
        .place<i64>(ArrayBase::xlindx, supernodes + 1)
        .place<i64>(ArrayBase::xlnz, n + 1)
        .place<i64>(ArrayBase::xunz, n + 1)
        .place<i32>(ArrayBase::nmod, supernodes)
        .place<i32>(ArrayBase::nmod_saved, supernodes)
        .place<i32>(ArrayBase::link, supernodes)
        .place<i32>(ArrayBase::length, supernodes)
        .place<i32>(ArrayBase::root_overlap, supernodes)
        .place<i32>(ArrayBase::separators, s.partition_work)
        .place<i32>(ArrayBase::scatter_start, n + 1)
        .place<i64>(ArrayBase::scatter_position, entries)
        .place<i32>(ArrayBase::scatter_source, entries)
        .place<i32>(ArrayBase::one_by_one, n / 32 + 1)
        .place<i32>(ArrayBase::pnlsch, s.threads > 1 ? supernodes : 0)
        .place<i32>(ArrayBase::lindx, lists)
        .words();
}

} // namespace

void store_partitions(Control control) {
    const i64 threads = control[Word::threads];
    i64 partitions = 1;
    while (partitions < threads) partitions *= 2;
    partitions = std::min(partitions, control[Word::neqns]);
    control[Word::partitions] = partitions;
    control[Word::partition_work] = std::max<i64>(4 * partitions + 4, 16);
}

AnalysisSizes sizes_of(Control control) {
    return {control[Word::neqns],
            control[Word::threads],
            control[Word::partitions],
            control[Word::partition_work],
            control[Word::off_diagonals],
            control[Word::adjacency_length],
            control[Word::symmetric_storage] != 0,
            control[Word::ordering] == 2};
}

Fault take_order_blocks(const Handle& handle) {
    const Control control = handle.control();
    const AnalysisSizes sizes = sizes_of(control);
    const i64 order = std::max(struc_s0_words(sizes), layout_order(control, sizes));
    const i64 work = work_i0_words(sizes);
    const i64 graph = std::max(struc_s1_words(sizes), layout_graph(control, sizes));
    control[ArrayBase::work] = 0;
    if (const Fault fault = handle.take(HandleWord::struc_s0, 8 * order, Tag::struc_s0, Account::peak)) return fault;
    if (const Fault fault = handle.take(HandleWord::work_i0, 8 * work, Tag::work_i0, Account::peak)) return fault;
    return handle.take(HandleWord::struc_s1, 8 * graph, Tag::struc_s1, Account::peak);
}

Fault take_symbolic_blocks(const Handle& handle) {
    const Control control = handle.control();
    const i64 lists = (8 * control[Word::supernodes] + control[Word::structure_length] + 18) / 2;
    const i64 tree = std::max(lists, layout_supernode_tree(control));
    const i64 structure =
        layout_structure(control, sizes_of(control), control[Word::structure_length]) + 17; // 35 integers
    if (const Fault fault = handle.take(HandleWord::struc_s2, 8 * tree, Tag::struc_s2, Account::peak)) return fault;
    return handle.take(HandleWord::struc_fi, 8 * structure, Tag::struc_fi, Account::permanent);
}

i64 structure_bytes(const Handle& handle) {
    const Control control = handle.control();
    return 8 * (layout_structure(control, sizes_of(control), control[Word::structure_length]) + 3);
}

void trim_structure(const Handle& handle) {
    const i64 lists = handle.ooc().out_of_core() ? 4 * handle.control()[Word::structure_length] : 0;
    handle.shrink(HandleWord::struc_fi, structure_bytes(handle) - lists / 8 * 8);
}

void release_work_blocks(const Handle& handle) {
    for (const HandleWord word :
         {HandleWord::struc_s2, HandleWord::struc_s1, HandleWord::work_i0, HandleWord::work_r0, HandleWord::struc_s0})
        handle.release(word);
}

} // namespace nxl::pardiso
