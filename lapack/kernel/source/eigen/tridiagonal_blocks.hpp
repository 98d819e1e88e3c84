// What the QL and QR iterations on symmetric tridiagonal matrices share: the blocks that a matrix splits into, their
// scale, and a view of a block from either end.
#pragma once
#include "lapack/kernel/source/common/scalars.hpp"
#include "service/slice.hpp"
#include <utility>

namespace nxl {

/// The square of what an off-diagonal element may be beside its neighbours on the diagonal.
inline constexpr double roundoff_squared = unit_roundoff * unit_roundoff;

/// Diagonal d(0 .. n-1) and off-diagonal e(0 .. n-2) of a block, seen from one of its ends: QR is QL from the other
/// end.
struct BlockView {
    double *d_start, *e_start;
    i64 n, step;

    BlockView(double* d, double* e, i64 order, bool from_end)
        : d_start(from_end ? d + order - 1 : d),
          e_start(from_end ? e + order - 2 : e),
          n(order),
          step(from_end ? -1 : 1) {}

    double& d(i64 i) const { return d_start[i * step]; }
    double& e(i64 i) const { return e_start[i * step]; }
};

/// A power of two that brings the largest element of a block to a size whose squares stay in the range; 1 where they
/// do.
double block_scale(const double* d, const double* e, i64 n);

/// The first block from `start` on: it ends before an off-diagonal element that is negligible, which becomes 0.
Slice next_block(i64 n, const double* d, double* e, i64 start);

/// Calls iterate(d, e, block) with a pointer to the scaled elements of each block that is larger than 1, until all of
/// them are diagonal or iterate says, by false, that it has come to the limit of its steps.
template <class Iterate> void iterate_on_blocks(i64 n, double* d, double* e, const Iterate& iterate) {
    bool may_go_on = true;
    for (i64 start = 0; start < n && may_go_on;) {
        const Slice block = next_block(n, d, e, start);
        start = block.end();
        if (block.count == 1) continue;
        double *const diagonal = d + block.start, *const off = e + block.start;
        const double scale = block_scale(diagonal, off, block.count);
        const auto multiply = [&](double factor) {
            if (factor == 1.0) return;
            for (i64 i = 0; i < block.count; ++i) diagonal[i] *= factor;
            for (i64 i = 0; i < block.count - 1; ++i) off[i] *= factor;
        };
        multiply(scale);
        may_go_on = iterate(diagonal, off, block);
        multiply(1.0 / scale);
    }
}

/// QL on one block until e is 0. False when no steps are left, or a shift is not a number. Of an iteration it asks
/// end_of_part(l), split_two(l), which makes two rows diagonal, and advance(l, m), which returns how many sweeps it has
/// done over rows l to m, 0 when a shift is not a number.
template <class Iteration> bool run_ql(const BlockView& t, const Iteration& iteration, i64& steps_left) {
    for (i64 l = 0; l < t.n;) {
        const i64 m = iteration.end_of_part(l);
        if (m + 1 < t.n) t.e(m) = 0.0;
        if (m == l) {
            ++l;
        } else if (m == l + 1) {
            iteration.split_two(l);
            l += 2;
        } else {
            const i64 sweeps = steps_left > 0 ? iteration.advance(l, m) : 0;
            if (sweeps == 0) return false;
            steps_left -= sweeps;
        }
    }
    return true;
}

/// How many off-diagonal elements are not 0: what a QL iteration tells when it does not converge.
i64 count_nonzeros(i64 n, const double* e);

/// Sorts n values into ascending order; NaN stand last.
void sort_ascending(i64 n, double* values);

/// The same with as few exchanges as possible: exchange(i, j) is called for all that goes with values i and j.
template <class Exchange> void sort_ascending(i64 n, double* values, const Exchange& exchange) {
    for (i64 i = 0; i + 1 < n; ++i) {
        i64 least = i;
        for (i64 j = i + 1; j < n; ++j)
            if (values[j] < values[least]) least = j;
        if (least == i) continue;
        std::swap(values[i], values[least]);
        exchange(i, least);
    }
}

} // namespace nxl
