// The pivots of a factorisation A = L D L^T or U D U^T with diagonal pivoting, as the list ipiv tells them. Columns are
// eliminated in steps: from the first on for L, from the last for U.
//
//     ipiv(k) = p            one element; row and column k were interchanged with p
//     ipiv(j) = ipiv(k) = -p     two steps, j then k: a block of two; k was interchanged with p
//
// In the code positions are from 0.
#pragma once
#include "service/matrix.hpp"
#include "service/slice.hpp"

namespace nxl {

struct PivotOrder {
    bool upper;
    i64 n;

    /// The column of a step.
    i64 at(i64 step) const { return upper ? n - 1 - step : step; }
    /// The columns of steps, one after the other in memory.
    Slice columns(const Slice& steps) const {
        return {upper ? n - steps.start - steps.count : steps.start, steps.count};
    }
    /// The first column of the first `steps` steps.
    i64 first_of(i64 steps) const { return columns({0, steps}).start; }
    /// What is left before step `step`.
    Slice rest(i64 step) const { return columns({step, n - step}); }
};

/// The row that the last column of the pivot with column k was interchanged with.
inline i64 partner(const i64* ipiv, i64 k) { return (ipiv[k] < 0 ? -ipiv[k] : ipiv[k]) - 1; }

/// Calls body(step, size, partner) for each pivot of these steps, from the first to the last.
template <class Body> void for_pivots(const PivotOrder& order, const Slice& steps, const i64* ipiv, const Body& body) {
    for (i64 step = steps.start; step < steps.end();) {
        const i64 j = order.at(step), size = ipiv[j] < 0 ? 2 : 1;
        body(step, size, partner(ipiv, j));
        step += size;
    }
}

/// The same from the last to the first.
template <class Body>
void for_pivots_backward(const PivotOrder& order, const Slice& steps, const i64* ipiv, const Body& body) {
    for (i64 end = steps.end(); end > steps.start;) {
        const i64 k = order.at(end - 1), size = ipiv[k] < 0 ? 2 : 1;
        end -= size;
        body(end, size, partner(ipiv, k));
    }
}

/// Steps from `start` on, `width` of them or one more, or all there are; no pivot is cut in two.
inline Slice pivots_after(const PivotOrder& order, const i64* ipiv, i64 start, i64 width) {
    i64 end = start;
    while (end < order.n && end - start < width) end += ipiv[order.at(end)] < 0 ? 2 : 1;
    return {start, end - start};
}

/// The same before step `end`.
inline Slice pivots_before(const PivotOrder& order, const i64* ipiv, i64 end, i64 width) {
    i64 start = end;
    while (start > 0 && end - start < width) start -= ipiv[order.at(start - 1)] < 0 ? 2 : 1;
    return {start, end - start};
}

/// The first pivot of one element that is zero, from 1, or 0.
template <class T> i64 zero_pivot_of(const PivotOrder& order, const Matrix<const T>& a, const i64* ipiv) {
    for (i64 step = 0; step < order.n; ++step)
        if (const i64 j = order.at(step); ipiv[j] > 0 && a(j, j) == T{}) return j + 1;
    return 0;
}

} // namespace nxl
