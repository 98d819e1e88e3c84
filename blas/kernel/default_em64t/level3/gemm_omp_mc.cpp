// The threaded matrix product on class 2: the grids of both its kinds of processor, and what only those without SSE4.1
// do. The private copies of those with SSE4.1 stand in gemm_omp_htn.cpp.
#include "blas/kernel/default_em64t/level3/gemm_grid.hpp"
#include "blas/kernel/default_em64t/level3/gemm_pairs.hpp"

namespace nxl {
namespace {

struct McPairs {
    static constexpr auto& blocks = slot<&KernelTable::xzgemm_blocks>;
    static constexpr auto& copy_bn = slot<&KernelTable::xzgemm_copy_bn>;
    static constexpr auto& copy_bt = slot<&KernelTable::xzgemm_copy_bt>;
    static constexpr auto& copy_bc = slot<&KernelTable::xzgemm_copy_bc>;
    static constexpr auto& tile_pb = slot<&KernelTable::xzgemm_tile_pb>;
    static constexpr i64 row_unit = 2, column_unit = 2, depth_unit = 2, panel = 2;
};

struct HtnPairs {
    static constexpr auto& blocks = slot<&KernelTable::xzgemm_blocks_htn>;
    static constexpr auto& copy_bn = slot<&KernelTable::xzgemm_copy_bn>;
    static constexpr auto& copy_bt = slot<&KernelTable::xzgemm_copy_bt>;
    static constexpr auto& copy_bc = slot<&KernelTable::xzgemm_copy_bc>;
    static constexpr auto& tile_pb = slot<&KernelTable::xzgemm_tile_pb_htn>;
    static constexpr i64 row_unit = 2, column_unit = 2, depth_unit = 4, panel = 2;
};

// Without SSE4.1 a long and thin product goes by row slabs against one panel of B, which all threads pack together:
//
//     region 1    panel of B, kb by nb:  | thread 0 | thread 1 | thread 2 |       each packs a share of the columns
//     region 2    C:  slab 0 = A0 panel;  slab 1 = A1 panel;  slab 2 = A2 panel   each multiplies its own rows
//
// The end of a region waits for all: after the first the panel is complete, after the second it may be overwritten. B
// is packed once in all, and every thread reads all of it from the cache that they share.
constexpr i64 panel = 4;       // columns of B in a packed panel
constexpr i64 depth_unit = 4;  // k is padded to a multiple of it
constexpr i64 row_block = 512; // rows of A that a tile takes at a time

/// A block of op(B) that all threads pack together and then multiply their own rows with.
class SharedPanel {
    const GemmCall<double>& call_;
    const i64 threads_;
    const Slice depth_, columns_;
    const i64 kpad_ = round_up(depth_.count, depth_unit);
    const i64 ldbuf_ = panel * kpad_;
    double* const buffer_;

    void pack_share(i64 index) const {
        const i64 share = round_down(columns_.count / threads_, panel);
        const Slice own = slice_of(columns_.count, share, index, threads_);
        if (own.count < 1) return;
        const double* b = call_.b_at(depth_.start, columns_.start + own.start);
        double* stretch = buffer_ + index * kpad_ * share;
        if (is_not_transposed(call_.transb))
            slot<&KernelTable::xdgemm_copy_bn>(depth_.count, own.count, b, call_.ldb, stretch, ldbuf_);
        else slot<&KernelTable::xdgemm_copy_bt>(depth_.count, own.count, b, call_.ldb, stretch, ldbuf_);
    }

    void multiply_rows(Slice rows) const {
        slot<&KernelTable::xdgemm_tile_pb>(call_.transa, call_.transb, rows.count, columns_.count, depth_.count,
                                           call_.alpha, call_.a_at(rows.start, depth_.start), call_.lda,
                                           call_.b_at(depth_.start, columns_.start), call_.ldb, buffer_, ldbuf_,
                                           call_.beta, call_.c_at(rows.start, columns_.start), call_.ldc);
    }

  public:
    SharedPanel(const GemmCall<double>& call, i64 threads, Slice depth, Slice columns, double* buffer)
        : call_(call),
          threads_(threads),
          depth_(depth),
          columns_(columns),
          buffer_(buffer) {}

    void pack() const {
        const int team = static_cast<int>(threads_);
        parallel_blocks(team, team, [this](int index) { pack_share(index); });
    }

    void multiply() const {
        const int team = static_cast<int>(threads_);
        const i64 rchunk = round_down(call_.m / threads_, 4);
        parallel_blocks(team, team, [this, rchunk](int index) {
            const Slice slab = slice_of(call_.m, rchunk, index, threads_);
            for (i64 from = 0; from < slab.count; from += row_block)
                multiply_rows({slab.start + from, std::min(row_block, slab.count - from)});
        });
    }
};

} // namespace

/// With SSE4.1 the grid follows the shape of C; without, it has two rows always.
void dgemm_2D(i64 nt, const GemmCall<double>& call) {
    const i64 threads = even_threads(nt);
    if (nxl_has_sse41()) {
        const GemmGrid grid(call.shape(), threads, grid_rows(call.shape(), threads), 4, 4);
        return dgemm_on_grid(grid, call, slot<&KernelTable::xdgemm_tile_htn>);
    }
    dgemm_on_grid(GemmGrid(call.shape(), threads, 2, 4, 4), call, slot<&KernelTable::xdgemm_tile>);
}

void dgemm_1D_with_copy(i64 nt, const GemmCall<double>& call) {
    const GemmBlocks blocks = blocks_by(slot<&KernelTable::xdgemm_blocks_mc>, call.shape());
    const i64 nb = std::min(blocks.nb, call.n);
    const PageBuffer<double> buffer(blocks.kb * nb + pack_spare<double>);
    if (!buffer.data()) return call.run_serial();
    for (i64 depth = 0; depth < call.k; depth += blocks.kb)
        for (i64 column = 0; column < call.n; column += nb) {
            const SharedPanel panel_of_b(call, even_threads(nt), {depth, std::min(blocks.kb, call.k - depth)},
                                         {column, std::min(nb, call.n - column)}, buffer.data());
            panel_of_b.pack();     // complete at the join,
            panel_of_b.multiply(); // and no longer read at this one
        }
}

void zgemm_2D(i64 nt, const GemmCall<zcomplex>& call) {
    if (nxl_has_sse41()) return ZgemmInPairs<HtnPairs>(nt, call).run();
    ZgemmInPairs<McPairs>(nt, call).run();
}

} // namespace nxl
