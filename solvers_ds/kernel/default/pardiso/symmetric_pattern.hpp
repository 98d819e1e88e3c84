// Transposition of a pattern, and the pattern of A + A^T: built once for matrices of the caller and for smat.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"

namespace nxl::pardiso {

/// Rows of a square pattern that stand in arrays of either base, in any order.
struct PatternRows {
    i32 n;
    const i32 *start, *column;
    i32 base;
    const i32* row_order; // null, or which row of the arrays is row i, in their base

    i32 row(i32 i) const { return row_order ? row_order[i] - base : i; }
    i32 begin(i32 i) const { return start[row(i)] - base; }
    i32 end(i32 i) const { return start[row(i) + 1] - base; }
    i32 at(i32 k) const { return column[k] - base; }
};

/// Turns counts, that of list i in start[i + 1], into cursors: start[i + 1] is where list i begins, and its end once as
/// many elements have been put there.
inline void cursors_from_counts(i32 lists, i32* start) {
    i32 next = 0;
    for (i32 i = 0; i <= lists; ++i) {
        const i32 count = start[i];
        start[i] = next;
        next += count;
    }
}

/// Calls put(place, i, k) for entry k, of row i, of each column in turn by its place in the transpose; rows of a column
/// ascend. start: n + 1, the columns' first places.
template <class Put> void transpose(const PatternRows& rows, i32* start, const Put& put) {
    for (i32 j = 0; j <= rows.n; ++j) start[j] = 0;
    for (i32 i = 0; i < rows.n; ++i)
        for (i32 k = rows.begin(i); k < rows.end(i); ++k) ++start[rows.at(k) + 1];
    cursors_from_counts(rows.n, start);
    for (i32 i = 0; i < rows.n; ++i)
        for (i32 k = rows.begin(i); k < rows.end(i); ++k) put(start[rows.at(k) + 1]++, i, k);
}

/// The pattern of A + A^T without the diagonal, counted from 0; lists ascend, each neighbour once. xadj: n + 1;
/// adjncy: room for two entries for each of A; work: 2 n + 1 and the entries of A.
void add_transpose(const PatternRows& rows, i32* xadj, i32* adjncy, i32* work);

} // namespace nxl::pardiso
