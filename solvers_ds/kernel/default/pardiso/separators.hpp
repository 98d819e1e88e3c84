// The separator record: which columns of an ordered matrix belong to independent subgraphs, and which to the separator
// between them.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"

namespace nxl::pardiso {

/// Pairs (first, last) of consecutive column ranges, counted from 1, last included: one for each independent subgraph
/// in ascending order, then one for the root separator, which holds all columns that no subgraph has. An empty range
/// has last = first - 1. A column of one subgraph and a column of another are never adjacent.
struct Separators {
    i32 n;     // integers in use, an even number: 2 (subgraphs + 1)
    i32* pair; // room for 4 * partitions + 4 integers

    i32 subgraphs() const { return n / 2 - 1; }
    i32& first(i32 range) const { return pair[2 * range]; }
    i32& last(i32 range) const { return pair[2 * range + 1]; }
};

/// One subgraph, all columns but the last, which is the root separator.
inline void set_single_subgraph(Separators& separators, i32 columns) {
    separators.n = 4;
    separators.first(0) = 1;
    separators.last(0) = columns - 1;
    separators.first(1) = separators.last(1) = columns;
}

/// Renumbers the columns subgraph by subgraph, each in its order, and after them those that are in no subgraph, in
/// their order, as the root separator; the ranges become those of the new numbers. The entries of `perm` move along.
/// The fill stays what it was when each column of no subgraph came after the subgraphs that it is adjacent to.
/// kNoMemory leaves all as it was.
i32 gather_subgraphs(i32 columns, i32* perm, Separators& separators);

} // namespace nxl::pardiso
