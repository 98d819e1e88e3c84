// The threaded matrix product on class 2 with SSE4.1: row slabs with private copies. Every thread packs all of B for
// itself; that is the price for never waiting on another thread.
#include "blas/kernel/default_em64t/level3/gemm_strategies.hpp"
#include "service/parallel.hpp"
#include <algorithm>

namespace nxl {
namespace {

//              all of op(B), by slices of 8 columns
//            +---+---+---+---+---+---+
//     slab 0 | 0   1   2 | 0   1   2 |       the numbers tell in which order each thread visits the slices of a group:
//     slab 1 | 2   0   1 | 2   0   1 |       at one time no two threads read the same columns of B
//     slab 2 | 1   2   0 | 1   2   0 |
//            +---+---+---+---+---+---+
//              group       group
//
// A thread packs a block of its slab of A, mb by kb, for its second cache; then slice after slice of B, 8 columns by
// kb, at most 16 KiB of real numbers, for its first one; and multiplies the two with no copy left to make.
constexpr i64 depth_unit = 4; // k is padded to a multiple of it

/// Where real and complex part: rows of a slab are multiples of row_unit, `panel` rows or columns make a packed panel.
template <class T> struct HtnForm;
template <> struct HtnForm<double> {
    static constexpr i64 row_unit = 4, panel = 4;
    static i64 block_rows(const GemmShape& shape) { return dgemm_htn_block_rows(shape, nxl_gemm_cache_sizes()); }
};
template <> struct HtnForm<zcomplex> {
    static constexpr i64 row_unit = 2, panel = 2;
    static i64 block_rows(const GemmShape&) { return zgemm_htn_block_rows(nxl_gemm_cache_sizes()); }
};

/// A block of op(A), or a slice of op(B), on its way into a packed buffer.
template <class T> struct PackTask {
    char trans;
    i64 length; ///< rows of op(A), or columns of op(B)
    i64 depth;
    const T* from;
    i64 ld;
    T* to;
    i64 stride;
};

void pack_a(const PackTask<double>& t, double alpha) {
    if (is_not_transposed(t.trans))
        slot<&KernelTable::xdgemm_copy_an>(t.length, t.depth, t.from, t.ld, t.to, t.stride, alpha);
    else slot<&KernelTable::xdgemm_copy_at>(t.length, t.depth, t.from, t.ld, t.to, t.stride, alpha);
}

void pack_a(const PackTask<zcomplex>& t, zcomplex alpha) {
    if (is_not_transposed(t.trans))
        slot<&KernelTable::xzgemm_copy_an>(t.length, t.depth, t.from, t.ld, t.to, t.stride, alpha);
    else if (is_transposed_plainly(t.trans))
        slot<&KernelTable::xzgemm_copy_at>(t.length, t.depth, t.from, t.ld, t.to, t.stride, alpha);
    else slot<&KernelTable::xzgemm_copy_ac>(t.length, t.depth, t.from, t.ld, t.to, t.stride, alpha);
}

void pack_b(const PackTask<double>& t) {
    if (is_not_transposed(t.trans)) slot<&KernelTable::xdgemm_copy_bn>(t.depth, t.length, t.from, t.ld, t.to, t.stride);
    else slot<&KernelTable::xdgemm_copy_bt>(t.depth, t.length, t.from, t.ld, t.to, t.stride);
}

void pack_b(const PackTask<zcomplex>& t) {
    if (is_not_transposed(t.trans)) slot<&KernelTable::xzgemm_copy_bn>(t.depth, t.length, t.from, t.ld, t.to, t.stride);
    else if (is_transposed_plainly(t.trans))
        slot<&KernelTable::xzgemm_copy_bt>(t.depth, t.length, t.from, t.ld, t.to, t.stride);
    else slot<&KernelTable::xzgemm_copy_bc>(t.depth, t.length, t.from, t.ld, t.to, t.stride);
}

/// The lengths that all slabs share, settled before the region.
struct HtnPlan {
    i64 mb, kb;
    i64 threads;
    i64 nmain; ///< columns that are walked in rotation: whole groups of one slice for each thread
};

/// One thread's slab of C, with its two packing buffers.
template <class T> class SlabProduct {
    const GemmCall<T>& call_;
    const HtnPlan& plan_;
    const i64 index_;
    const Slice rows_;
    const bool last_;
    const PageBuffer<T> a_buffer_, b_buffer_;

    /// Rows of the slab and steps of k that the A buffer holds.
    struct PackedBlock {
        Slice rows, depth;
        i64 stride;
    };

    PackedBlock pack_block(Slice rows, Slice depth) const {
        const i64 stride = HtnForm<T>::panel * round_up(depth.count, depth_unit);
        pack_a({call_.transa, rows.count, depth.count, call_.a_at(rows.start, depth.start), call_.lda, a_buffer_.data(),
                stride},
               call_.alpha);
        return {rows, depth, stride};
    }

    void multiply_slice(const PackedBlock& block, i64 column) const {
        const i64 columns = std::min(htn_slice_columns, call_.n - column);
        const T* b = call_.b_at(block.depth.start, column);
        pack_b({call_.transb, columns, block.depth.count, b, call_.ldb, b_buffer_.data(), block.stride});
        GemmSlots<T>::tile_pab(call_.transa, call_.transb, block.rows.count, columns, block.depth.count, call_.alpha,
                               call_.a_at(block.rows.start, block.depth.start), call_.lda, a_buffer_.data(),
                               block.stride, b, call_.ldb, b_buffer_.data(), block.stride, call_.beta,
                               call_.c_at(block.rows.start, column), call_.ldc);
    }

    /// All of C's columns for one block of A: groups in rotation, then what is left of n, in order.
    void walk_columns(const PackedBlock& block) const {
        for (i64 group = 0; group < plan_.nmain; group += htn_slice_columns * plan_.threads)
            for (i64 step = 0; step < plan_.threads; ++step)
                multiply_slice(block, group + htn_slice_columns * rotated_slice(index_, step, plan_.threads));
        for (i64 column = plan_.nmain; column < call_.n; column += htn_slice_columns) multiply_slice(block, column);
    }

  public:
    SlabProduct(const GemmCall<T>& call, const HtnPlan& plan, const GemmSlabs& slabs, i64 index)
        : call_(call),
          plan_(plan),
          index_(index),
          rows_(slabs.rows(index)),
          last_(slabs.is_last(index)),
          // The last slab may take a block and a rest at once: less than two blocks (see slab_block_rows).
          a_buffer_((last_ ? 2 : 1) * (plan.mb * plan.kb + pack_spare<T>)),
          b_buffer_(htn_slice_columns * plan.kb + pack_spare<T>) {}

    void run() const {
        if (!a_buffer_.data() || !b_buffer_.data()) return call_.cell(rows_, {0, call_.n}).run_serial();
        for (i64 depth = 0; depth < call_.k; depth += plan_.kb) {
            const Slice steps{depth, std::min(plan_.kb, call_.k - depth)};
            for (i64 from = 0; from < rows_.count;) {
                const Slice block{rows_.start + from, slab_block_rows(rows_.count, from, plan_.mb, last_)};
                walk_columns(pack_block(block, steps));
                from += block.count;
            }
        }
    }
};

template <class T> void with_private_copies(i64 nt, const GemmCall<T>& call) {
    const GemmSlabs slabs(call.m, nt, HtnForm<T>::row_unit);
    const HtnPlan plan{HtnForm<T>::block_rows(call.shape()), blocks_by(GemmSlots<T>::blocks_htn, call.shape()).kb,
                       slabs.count, round_down(call.n, htn_slice_columns * slabs.count)};
    const int threads = static_cast<int>(slabs.count);
    parallel_blocks(threads, threads, [&](int index) { SlabProduct<T>(call, plan, slabs, index).run(); });
}

} // namespace

void dgemm_2D_abcopy_abx_m_km_par_p_htn(i64 nt, const GemmCall<double>& call) { with_private_copies(nt, call); }
void zgemm_2D_abcopy_abx_m_km_par_p_htn(i64 nt, const GemmCall<zcomplex>& call) { with_private_copies(nt, call); }

} // namespace nxl
