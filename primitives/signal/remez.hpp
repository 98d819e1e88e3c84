// The exchange algorithm of Remez for weighted minimax approximation by cosines on a grid.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Of all sums of alpha(k+1) cos(2 pi k f), k = 0 to nfc - 1, the one whose largest wt |des - sum| on the grid is
/// least. des, grid (ascending, in 0 to 0.5), wt: ngr elements; all others nfc + 2. iext: where the nfc + 1 extrema are
/// on the grid, from 1, and behind them ngr + 1; on entry where they may be.
void nxl_remez(const i64* ngr, const i64* nfc, i64* iext, double* ad, double* x, double* y, const double* des,
               const double* grid, const double* wt, double* a, double* p, double* q, double* alpha);

} // namespace nxl
