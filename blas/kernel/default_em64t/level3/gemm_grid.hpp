// The strategy that classes 2 and 3 share for real products: one tile per cell of a grid over C.
#pragma once
#include "blas/kernel/default_em64t/level3/gemm_strategies.hpp"
#include "service/parallel.hpp"

namespace nxl {

/// One call of `tile` for each cell of the grid, over the whole of k. With 2 rows and 6 threads:
///
///     0  2  4      cells of one row read the same rows of A, cells of one column the same columns of B;
///     1  3  5      nothing is shared but that, and no thread waits before the end
template <class Tile> void dgemm_on_grid(const GemmGrid& grid, const GemmCall<double>& call, Tile& tile) {
    const int cells = static_cast<int>(grid.cells());
    parallel_blocks(cells, cells, [&](int index) {
        const GemmCell cell = grid.cell(index);
        call.cell(cell.rows, cell.columns).run(tile);
    });
}

} // namespace nxl
