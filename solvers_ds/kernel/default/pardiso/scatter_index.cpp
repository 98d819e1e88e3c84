#include "solvers_ds/kernel/default/pardiso/scatter_index.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

/// Entry (row, column) of the permuted matrix: the column that it is assembled with, and its row there. `across` marks
/// an entry that is stored at its mirror place: in the column of its row.
struct Place {
    i32 column, row;
    bool across;
};

/// The upper triangle of a diagonal block of LU is a part of the block; what is right of the block belongs to U, which
/// is stored by rows.
Place place_of(const ScatterView& view, i32 row, i32 column) {
    const bool upper = row < column;
    const bool across = upper && (view.triangle || view.supernodes.snode[row] != view.supernodes.snode[column]);
    return across ? Place{row, column, true} : Place{column, row, false};
}

template <class Body> void for_each_entry(const ScatterView& view, Body&& body) {
    for (i32 i = 1; i <= view.n; ++i)
        for (i32 k = view.ia[i]; k < view.ia[i + 1]; ++k)
            body(k, place_of(view, view.row_place[i], view.column_place[view.ja[k]]));
}

/// Sorts the entries by column. position[k] is the row of an entry still, with the sign of its mark.
void sort_entries(const ScatterView& view) {
    const FromOne<i32> start = view.start;
    std::fill_n(start.data(), view.n + 1, 0);
    for_each_entry(view, [&](i32, const Place& place) { ++start[place.column]; });
    i32 end = 1; // start[j] is made the end of column j, from which it is filled backwards
    for (i32 j = 1; j <= view.n; ++j) start[j] = end += start[j];
    start[view.n + 1] = end;
    for (i32 i = view.n; i >= 1; --i)
        for (i32 k = view.ia[i + 1] - 1; k >= view.ia[i]; --k) {
            const Place place = place_of(view, view.row_place[i], view.column_place[view.ja[k]]);
            const i32 slot = --start[place.column];
            view.source[slot] = k;
            view.position[slot] = place.across ? -i64{place.row} : i64{place.row};
        }
}

/// Makes positions of the rows of one supernode's entries. False when there is a row that it does not have.
bool place_entries(const ScatterView& view, i32 s) {
    const Supernodes& supernodes = view.supernodes;
    const i32 *const list = supernodes.list(s), rows = supernodes.rows(s), width = supernodes.width(s);
    const FromOne<i32> index = view.work; // of each row in the list, from 0
    for (i32 k = 0; k < rows; ++k) index[list[k]] = k;
    for (i32 j = supernodes.first(s); j <= supernodes.last(s); ++j)
        for (i32 k = view.start[j]; k < view.start[j + 1]; ++k) {
            const bool across = view.position[k] < 0, to_u = across && !view.triangle;
            const i64 row = across ? -view.position[k] : view.position[k];
            const i32 at = index[row];
            if (at >= rows || list[at] != row) return false;
            const i64 place = to_u ? view.xunz[j] + at - width : view.xlnz[j] + at;
            view.position[k] = across ? -place : place;
        }
    return true;
}

} // namespace

i32 build_scatter_index(const ScatterView& view) {
    sort_entries(view);
    std::fill_n(view.work.data(), view.n, 0);
    for (i32 s = 1; s <= view.supernodes.count; ++s)
        if (!place_entries(view, s)) return kUnsymmetricPattern;
    return 0;
}

} // namespace nxl::pardiso
