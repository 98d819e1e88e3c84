// The ordering driver: the graph of the matrix, and the order in which its columns are eliminated.
#pragma once
#include "solvers_ds/kernel/default/pardiso/separators.hpp"

namespace nxl::pardiso {

enum class OrderingMethod : i32 { minimum_degree = 0, constrained_minimum_degree = 1, nested_dissection = 2 };

/// What the ordering reads and writes. All indices count from 1.
struct OrderingView {
    i32 n, mtype, threads;
    const i32 *ia, *ja;   // the caller's
    const i32* row_order; // null, or n: row i of the matrix that is factorised is row row_order[i - 1] of A
    OrderingMethod method;
    i32 partitions;           // a power of 2, the subgraphs that are asked for
    i32 permutation_choice;   // iparam(5): positive and not 2, user_perm is the order; 2, user_perm receives it
    i32* user_perm;           // n, or null where the choice is neither
    const i32* matched_order; // null, or n: the order that mpssym gave, whose ranges stand in separators
    i32 *xadj, *adjncy;       // n + 1 and adjacency_room
    i64 adjacency_room;
    i32 *perm, *invp; // n each: new to old, old to new
    i32* work;        // n + 1 + adjacency_room
    Separators* separators;
};

/// xadj and adjncy. Their length is xadj(n + 1) - 1.
i32 sssord_adjacency(const OrderingView& view);

/// perm, invp and separators, after sssord_adjacency.
i32 sssord_order(const OrderingView& view);

} // namespace nxl::pardiso
