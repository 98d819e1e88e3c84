// The decisions of the threaded matrix product, as pure functions of its sizes, the threads and the processor.
#pragma once
#include "blas/gemm_processor.hpp"
#include "service/slice.hpp"
#include "service/types.hpp"

namespace nxl {

/// C is m by n, op(A) m by k, op(B) k by n.
struct GemmShape {
    i64 m, n, k;
};

/// Too small for any thought of threads. A small m ends the threaded road at once, a small n alone does not.
constexpr bool gemm_is_small(const GemmShape& s) {
    return s.k <= 4 || s.m / 2 <= 2 || (s.m <= 16 && s.n <= 16 && s.k <= 16);
}

/// Whether the product is worth a region of `threads` (at least 2) on classes 2 and 3.
bool dgemm_may_fork(const GemmShape& shape, i64 threads);
bool zgemm_may_fork(const GemmShape& shape, i64 threads);

// How beta and alpha count on the threaded roads: a NaN passes for the value that it is compared with.
bool counts_as(double value, double wanted);
bool counts_as(zcomplex value, double wanted);

/// How the product is cut. The routines that carry the strategies out stand in gemm_strategies.hpp.
enum class GemmStrategy {
    split_1d,       ///< slices of rows or columns, each a product of its own: classes 0 and 1
    grid_nhm,       ///< class 3
    grid,           ///< class 2
    private_copies, ///< row slabs; each thread packs A and B for itself: class 2 with SSE4.1
    shared_copy     ///< row slabs against a panel of B that all threads pack: class 2 without SSE4.1, real alone
};
GemmStrategy dgemm_strategy(const GemmShape& shape, i64 threads, CpuClass cpu_class, bool sse41);
GemmStrategy zgemm_strategy(const GemmShape& shape, CpuClass cpu_class, bool sse41);

/// Grids and copies work on an even number of threads: the lowest bit is cleared.
constexpr i64 even_threads(i64 threads) { return threads & ~i64{1}; }

/// Rows of the thread grid over C: as many as threads for a tall C, 1 for a wide one, else 2. `threads` is even.
i64 grid_rows(const GemmShape& shape, i64 threads);

struct GemmCell {
    Slice rows, columns; ///< of C
};

/// C cut into cells; the last ones of each row and column of the grid take what remains.
struct GemmGrid {
    i64 m, n;
    i64 tr, tc;         ///< rows and columns of the grid
    i64 rchunk, cchunk; ///< rows and columns of C in a cell

    /// `threads` cells in `tr` rows; cells hold a multiple of row_unit rows and of column_unit columns.
    GemmGrid(const GemmShape& shape, i64 threads, i64 tr, i64 row_unit, i64 column_unit);

    i64 cells() const { return tr * tc; }
    /// Cell numbers run down the columns of the grid.
    GemmCell cell(i64 index) const;
};

/// Pairs of threads that share one packed panel of B: a pair has its own columns, its two threads half of the rows
/// each.
struct GemmPairs {
    i64 m, n;
    i64 pairs;
    i64 rhalf;      ///< rows of the first thread
    i64 cchunk;     ///< columns of a pair
    i64 last_width; ///< columns of the last pair, never less

    GemmPairs(const GemmShape& shape, i64 threads, i64 row_unit, i64 column_unit);

    i64 pair_of(i64 index) const { return index / 2; }
    Slice rows(i64 index) const;
    /// The pair's columns within its stretch from `from` of at most `width`; none when the pair is narrower than that.
    Slice columns(i64 pair, i64 from, i64 width) const;
};

/// Row slabs of the private-copies strategy: the length comes from all threads, the number from the even ones, so that
/// with an odd count the last slab is larger.
struct GemmSlabs {
    i64 m;
    i64 count;
    i64 rchunk;

    GemmSlabs(i64 m, i64 threads, i64 row_unit);

    Slice rows(i64 index) const { return slice_of(m, rchunk, index, count); }
    bool is_last(i64 index) const { return index == count - 1; }
};

/// Rows of the block of A that starts at row `from` of a slab: `block`, but on the last slab a rest that is shorter
/// than a block goes with the block before it, so that such a block is less than twice as long.
i64 slab_block_rows(i64 slab_rows, i64 from, i64 block, bool last_slab);

/// Rows in a block of A of the private-copies strategy.
i64 dgemm_htn_block_rows(const GemmShape& shape, const GemmCacheSizes& caches);
i64 zgemm_htn_block_rows(const GemmCacheSizes& caches);

/// Columns of B that the private-copies strategy packs at a time.
inline constexpr i64 htn_slice_columns = 8;

/// The slice of columns that thread `index` visits at `step` of a group of `threads` slices: each starts at its own, so
/// that no two threads read the same columns at one time.
constexpr i64 rotated_slice(i64 index, i64 step, i64 threads) { return (index + step) % threads; }

} // namespace nxl
