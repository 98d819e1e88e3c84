// LU factorisation with a static share of the columns for each thread, for mid-sized matrices and for when there is no
// memory for the task queue.
#pragma once
#include "lapack/kernel/source/lu/xgetrf.hpp"

namespace nxl {

/// How the `remaining` columns right of a factored panel are shared out: the first `first_share` columns to block 0,
/// `share` to each further block, what is left to the last.
struct LookAheadShares {
    bool look_ahead; ///< block 0 factors the next panel, which its columns begin with, in the same region
    i64 first_share, share;
};

/// For a next panel of `width` columns, with panels of nb otherwise; `panel_cost` is tuning's panel_share. At least two
/// threads.
LookAheadShares look_ahead_shares(i64 remaining, i64 width, i64 nb, i64 panel_cost, i64 threads);

/// P A = L U as factor_serially has it, over threads where that pays.
template <class T> bool factor_with_look_ahead(const LuBlock<T>& lu, i64* info, i64 thread, i64 offset);

} // namespace nxl
