#include "solvers_ds/kernel/default/pardiso/adjacency.hpp"
#include "service/parallel.hpp"
#include "solvers_ds/kernel/default/pardiso/symmetric_pattern.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

/// Below this the fork costs more than it spares.
constexpr i64 kLeastToFork = 200000;
/// The part of the rows that the first of two groups has: its entries go to both halves of the lists.
constexpr float kFirstGroup = 0.48F;

PatternRows rows_of(const AdjacencyView& view) {
    return {.n = view.n, .start = view.ia, .column = view.ja, .base = 1, .row_order = view.row_order};
}

template <class Visit> void for_each_above(const PatternRows& rows, i32 begin, i32 end, const Visit& visit) {
    for (i32 i = begin; i < end; ++i)
        for (i32 k = rows.begin(i); k < rows.end(i); ++k)
            if (const i32 j = rows.at(k); j > i) visit(i, j);
}

void to_one_base(const AdjacencyView& view) {
    const i32 length = view.xadj[view.n];
    for (i32 i = 0; i <= view.n; ++i) ++view.xadj[i];
    for (i32 k = 0; k < length; ++k) ++view.adjncy[k];
}

/// Whether each entry of the lower triangle mirrors one of the upper and the other way round. Rows ascend, so the
/// entries before the diagonal of row j are met one after the other.
bool is_mirrored(const PatternRows& rows, i32* next) {
    for (i32 i = 0; i < rows.n; ++i) next[i] = rows.begin(i);
    for (i32 i = 0; i < rows.n; ++i) {
        i32& own = next[i]; // rows before this one have passed what they mirror
        if (own == rows.end(i) || rows.at(own) != i) return false;
        for (i32 k = own + 1; k < rows.end(i); ++k) {
            const i32 j = rows.at(k);
            if (j <= i || next[j] == rows.end(j) || rows.at(next[j]) != i) return false;
            ++next[j];
        }
    }
    return true;
}

} // namespace

// Rows below `split` fill lists from xadj, the others, which reach lists from `split` on, from a second cursor, after
// what the first group puts there: each list is what a single pass over the rows makes it.
i32 ladj_mod(const AdjacencyView& view) {
    const PatternRows rows = rows_of(view);
    const i32 n = view.n;
    i32 *cursor = view.xadj, *second = view.work;
    const bool fork = view.threads > 1 && i64{view.ia[n]} > kLeastToFork && !region_would_be_serial();
    const i32 split = fork ? static_cast<i32>(kFirstGroup * static_cast<float>(n)) : n;
    i64 length = 0;
    std::fill_n(cursor, i64{n} + 1, 0);
    const auto count = [&](i32 i, i32 j) {
        ++cursor[i + 1];
        ++cursor[j + 1];
        length += 2;
    };
    for_each_above(rows, 0, split, count);
    std::copy_n(cursor + 1, n, second); // yet counts
    for_each_above(rows, split, n, count);
    if (length > view.room) return kUnsymmetricPattern;
    cursors_from_counts(n, cursor);
    for (i32 i = split; i < n; ++i) second[i] += cursor[i + 1];
    i32* first_end = cursor + 1;
    const auto fill = [&](i32 group) {
        i32* at = group == 0 ? first_end : second;
        const auto put = [&](i32 i, i32 j) {
            view.adjncy[at[i]++] = j;
            view.adjncy[at[j]++] = i;
        };
        for_each_above(rows, group == 0 ? 0 : split, group == 0 ? split : n, put);
    };
    if (fork) parallel_blocks(2, 2, fill);
    else fill(0);
    std::copy(second + split, second + n, first_end + split);
    to_one_base(view);
    return 0;
}

i32 ladj_full(const AdjacencyView& view) {
    return is_mirrored(rows_of(view), view.work) ? ladj_mod(view) : i32{kUnsymmetricPattern};
}

i32 adjacency_of_sum(const AdjacencyView& view) {
    if (2 * (i64{view.ia[view.n]} - 1) > view.room) return kUnsymmetricPattern;
    add_transpose(rows_of(view), view.xadj, view.adjncy, view.work);
    to_one_base(view);
    return 0;
}

} // namespace nxl::pardiso
