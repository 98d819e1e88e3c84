// Sweeps of QL without square roots.
#pragma once
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"

namespace nxl {

/// Sweeps that go through a matrix together at most.
inline constexpr i64 most_sweeps = 8;

/// How many sweeps are best done together where a matrix has so many rows: shifts for more of them cost more, and some
/// rows at either end are passed by one sweep after the other. On a Xeon, all values come in 0.55 of the time of
/// single sweeps for n = 100, 0.33 for 500 and 1000.
constexpr i64 sweeps_for(i64 rows) { return rows >= 120 ? most_sweeps : rows >= 16 ? 4 : 1; }

/// `count` sweeps, 1, 4 or 8, with a shift each, over rows l to m, at least 3; e holds squares, none of which is 0.
void square_free_ql(const BlockView& t, i64 l, i64 m, i64 count, const double* shifts);

} // namespace nxl
