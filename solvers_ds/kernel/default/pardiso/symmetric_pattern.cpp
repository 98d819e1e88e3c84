#include "solvers_ds/kernel/default/pardiso/symmetric_pattern.hpp"
#include <algorithm>

namespace nxl::pardiso {

// Row and column k of A together name the lists that k belongs to; with k ascending every list ascends.
void add_transpose(const PatternRows& rows, i32* xadj, i32* adjncy, i32* work) {
    const i32 n = rows.n;
    i32 *column_start = work, *met_by = work + n + 1, *row_of = met_by + n;
    transpose(rows, column_start, [&](i32 place, i32 i, i32) { row_of[place] = i; });
    xadj[0] = 0;
    for (i32 i = 0; i < n; ++i)
        xadj[i + 1] = rows.end(i) - rows.begin(i) + column_start[i + 1] - column_start[i]; // at most
    cursors_from_counts(n, xadj);
    std::fill_n(met_by, n, -1);
    for (i32 k = 0; k < n; ++k) {
        met_by[k] = k;
        const auto append_to = [&](i32 i) {
            if (met_by[i] == k) return;
            met_by[i] = k;
            adjncy[xadj[i + 1]++] = k;
        };
        for (i32 e = rows.begin(k); e < rows.end(k); ++e) append_to(rows.at(e));
        for (i32 e = column_start[k]; e < column_start[k + 1]; ++e) append_to(row_of[e]);
    }
    i32 begin = 0, next = 0; // of list i, with the gaps that mirrored entries left, and without
    for (i32 i = 0; i < n; ++i) {
        const i32 length = xadj[i + 1] - begin;
        if (next != begin) std::copy_n(adjncy + begin, length, adjncy + next);
        begin += rows.end(i) - rows.begin(i) + column_start[i + 1] - column_start[i];
        next += length;
        xadj[i + 1] = next;
    }
}

} // namespace nxl::pardiso
