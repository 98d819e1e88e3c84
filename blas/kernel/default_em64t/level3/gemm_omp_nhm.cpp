// The threaded matrix product on class 3.
#include "blas/kernel/default_em64t/level3/gemm_grid.hpp"
#include "blas/kernel/default_em64t/level3/gemm_pairs.hpp"

namespace nxl {
namespace {

/// Columns of a pair are multiples of 4: a packed panel has 4 complex columns on this class, 8 real ones for its tile.
struct NhmPairs {
    static constexpr auto& blocks = slot<&KernelTable::xzgemm_blocks>;
    static constexpr auto& copy_bn = slot<&KernelTable::xzgemm_copy_bn>;
    static constexpr auto& copy_bt = slot<&KernelTable::xzgemm_copy_bt>;
    static constexpr auto& copy_bc = slot<&KernelTable::xzgemm_copy_bc>;
    static constexpr auto& tile_pb = slot<&KernelTable::xzgemm_tile_pb>;
    static constexpr i64 row_unit = 1, column_unit = 4, depth_unit = 4, panel = 4;
};

} // namespace

/// Cells are a multiple of the tile's 2 rows high and of a packed panel's 4 columns wide.
void dgemm_2D_nhm(i64 nt, const GemmCall<double>& call) {
    const i64 threads = even_threads(nt);
    const GemmGrid grid(call.shape(), threads, grid_rows(call.shape(), threads), 2, 4);
    dgemm_on_grid(grid, call, slot<&KernelTable::xdgemm_tile>);
}

void zgemm_2D_nhm(i64 nt, const GemmCall<zcomplex>& call) { ZgemmInPairs<NhmPairs>(nt, call).run(); }

} // namespace nxl
