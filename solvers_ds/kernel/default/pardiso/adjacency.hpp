// The graph that is ordered: the pattern of A, or of A + A^T, without its diagonal.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"

namespace nxl::pardiso {

/// What is read and written. All counts from 1.
struct AdjacencyView {
    i32 n;
    const i32 *ia, *ja;   // the caller's
    const i32* row_order; // null, or n: row i of the matrix that is ordered is row row_order[i - 1] of the caller's
    i32 threads;
    i32* xadj; // n + 1
    i32* adjncy;
    i64 room;  // of adjncy
    i32* work; // n; for adjacency_of_sum 2 n + 1 and the entries of A
};

/// Of a symmetric pattern, from the entries above the diagonal; others are passed over. kUnsymmetricPattern when there
/// are more of them than adjncy has room for.
i32 ladj_mod(const AdjacencyView& view);

/// Of a pattern stored in full that is to be symmetric, entries and their mirrors ascending by row: as ladj_mod, after
/// a look at both triangles. kUnsymmetricPattern when they differ.
i32 ladj_full(const AdjacencyView& view);

/// The pattern of A + A^T, each pair once. Columns of a row need not ascend. adjncy has room for twice the entries of
/// A.
i32 adjacency_of_sum(const AdjacencyView& view);

} // namespace nxl::pardiso
