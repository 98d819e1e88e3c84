// Blocks of columns with the interchanges among them made.
#include "lapack/kernel/source/indefinite/pivot_block.hpp"
#include "blas/calls.hpp"
#include <algorithm>

namespace nxl {

/// A row beyond the corner, as its place in `moved`; at the end where it is new.
template <class T> i64 PivotBlock<T>::place_of(i64 r) const {
    return std::find(moved_rows_, moved_rows_ + moved_, r) - moved_rows_;
}

/// The copy of row r, at the block's first column.
template <class T> T* PivotBlock<T>::row(i64 r) const {
    const i64 inside = r - columns_.start;
    return inside >= 0 && inside < columns_.count ? corner().at(inside, 0) : moved().at(place_of(r), 0);
}

template <class T> void PivotBlock<T>::interchange(i64 k, i64 p, const Slice& columns) const {
    const i64 first = (columns.start - columns_.start) * most;
    swap(columns.count, row(k) + first, most, row(p) + first, most);
}

template <class T>
PivotBlock<T>::PivotBlock(const PivotOrder& order, const Slice& steps, const Matrix<const T>& a, const i64* ipiv,
                          T* room, i64* rows)
    : order_(order),
      steps_(steps),
      columns_(order.columns(steps)),
      a_(a),
      room_(room),
      moved_rows_(rows) {
    const i64 first = columns_.start, count = columns_.count;
    const Matrix<T> own = corner();
    for (i64 c = 0; c < count; ++c)
        for (i64 r = order.upper ? 0 : c + 1; r < (order.upper ? c : count); ++r) own(r, c) = a(first + r, first + c);
    for_pivots(order, steps, ipiv, [&](i64 step, i64 size, i64 p) {
        if (size == 2) *own.at(order.at(step + 1) - first, order.at(step) - first) = T{};
        const bool inside = p >= first && p < first + count;
        if (inside || place_of(p) < moved_) return;
        moved_rows_[moved_] = p;
        copy(count, a.at(p, first), a.ld, room_ + most * most + moved_, most);
        ++moved_;
    });
    for_pivots(order, steps, ipiv, [&](i64 step, i64 size, i64 p) {
        const i64 k = order.at(step + size - 1);
        if (k != p) interchange(k, p, order.columns({steps.start, step - steps.start}));
    });
}

template class PivotBlock<double>;
template class PivotBlock<zcomplex>;

} // namespace nxl
