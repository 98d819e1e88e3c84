// Gates, choice of strategy and geometry of the threaded matrix product.
#include "blas/kernel/default_em64t/level3/gemm_rules.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// What one thread of a two-row grid would get.
struct ThreadShare {
    i64 h;    ///< columns of that grid
    i64 nloc; ///< columns of C
    i64 mh;   ///< rows of C

    ThreadShare(const GemmShape& shape, i64 threads)
        : h(std::max(threads / 2, i64{1})),
          nloc(shape.n / h),
          mh(shape.m / 2) {}
    i64 surface(i64 k) const { return mh * k + k * nloc + mh * nloc; }
    /// Far beyond every limit; times a depth it might not fit in 64 bits.
    bool is_huge() const { return nloc * mh > i64{1} << 40; }
};

/// Sizes between which the private copies pay, on class 2 with SSE4.1.
struct CopyThresholds {
    i64 rows;                      ///< fewer never
    i64 deep_k, deep_columns;      ///< at least this depth and these columns: always
    i64 tall_rows, tall_columns;   ///< at least these: at any depth
    i64 least_rows, least_columns; ///< of the rest, at least these and
    i64 least_k;                   ///< this depth
};
constexpr CopyThresholds dgemm_copy{1000, 150, 1000, 7000, 3000, 1200, 1200, 128};
constexpr CopyThresholds zgemm_copy{400, 200, 400, 7000, 3000, 600, 600, 128};

/// Each thread packs all of B for itself. That pays when C has so many rows that each copy is used often, and columns
/// or depth enough.
bool private_copies_pay(const CopyThresholds& t, const GemmShape& s) {
    if (s.m < t.rows) return false;
    if (s.k >= t.deep_k && s.n >= t.deep_columns) return true;
    if (s.m >= t.tall_rows && s.n >= t.tall_columns) return true;
    return s.m >= t.least_rows && s.n >= t.least_columns && s.k >= t.least_k;
}

bool is_long_and_thin(const GemmShape& s) { return s.m >= 8000 && s.k <= 512 && s.n >= 3000 && s.n < s.m; }

} // namespace

// In both gates the depth and the huge are asked first: the products below then fit in 64 bits.
bool dgemm_may_fork(const GemmShape& shape, i64 threads) {
    const ThreadShare share(shape, threads);
    if (share.nloc <= 1) return false;
    if (shape.k > 512 / share.h || share.is_huge()) return true;
    return share.nloc * share.mh * shape.k >> 9 > 36 / share.h || share.surface(shape.k) >> 7 > 48 / share.h;
}

bool zgemm_may_fork(const GemmShape& shape, i64 threads) {
    const ThreadShare share(shape, threads);
    if (shape.k < 5) return false;
    if (shape.k > 256 / share.h || share.is_huge()) return true;
    return 8 * shape.k * share.mh * share.nloc / 1024 > 24 / share.h || share.surface(shape.k) >> 6 > 24 / share.h;
}

bool counts_as(double value, double wanted) { return !(value < wanted) && !(value > wanted); }
bool counts_as(zcomplex value, double wanted) {
    return counts_as(value.real(), wanted) && counts_as(value.imag(), 0.0);
}

GemmStrategy dgemm_strategy(const GemmShape& shape, i64 threads, CpuClass cpu_class, bool sse41) {
    if (cpu_class == CpuClass::def || cpu_class == CpuClass::p4n) return GemmStrategy::split_1d;
    if (cpu_class == CpuClass::mc3) return GemmStrategy::grid_nhm;
    if (!sse41) return is_long_and_thin(shape) ? GemmStrategy::shared_copy : GemmStrategy::grid;
    const bool copies = shape.n <= shape.m * threads && private_copies_pay(dgemm_copy, shape);
    return copies ? GemmStrategy::private_copies : GemmStrategy::grid;
}

GemmStrategy zgemm_strategy(const GemmShape& shape, CpuClass cpu_class, bool sse41) {
    if (cpu_class == CpuClass::def || cpu_class == CpuClass::p4n) return GemmStrategy::split_1d;
    if (cpu_class == CpuClass::mc3) return GemmStrategy::grid_nhm;
    return sse41 && private_copies_pay(zgemm_copy, shape) ? GemmStrategy::private_copies : GemmStrategy::grid;
}

/// Cells that are nearer to squares read less of A and B for what they compute.
i64 grid_rows(const GemmShape& shape, i64 threads) {
    if (shape.m > shape.n * threads) return threads;
    return threads * shape.m < shape.n ? 1 : 2;
}

GemmGrid::GemmGrid(const GemmShape& shape, i64 threads, i64 grid_height, i64 row_unit, i64 column_unit)
    : m(shape.m),
      n(shape.n),
      tr(grid_height),
      tc(threads / grid_height),
      rchunk(round_down(m / tr, row_unit)),
      cchunk(round_down(n / tc, column_unit)) {}

GemmCell GemmGrid::cell(i64 index) const {
    const i64 column = index / tr;
    return {slice_of(m, rchunk, index - column * tr, tr), slice_of(n, cchunk, column, tc)};
}

GemmPairs::GemmPairs(const GemmShape& shape, i64 threads, i64 row_unit, i64 column_unit)
    : m(shape.m),
      n(shape.n),
      pairs(threads / 2),
      rhalf(round_down(m / 2, row_unit)),
      cchunk(round_down(n / pairs, column_unit)),
      last_width(std::max(cchunk, n - (pairs - 1) * cchunk)) {}

Slice GemmPairs::rows(i64 index) const { return slice_of(m, rhalf, index % 2, 2); }

Slice GemmPairs::columns(i64 pair, i64 from, i64 width) const {
    const i64 own = pair == pairs - 1 ? last_width : cchunk;
    return {pair * cchunk + from, std::clamp(own - from, i64{0}, width)};
}

GemmSlabs::GemmSlabs(i64 rows, i64 threads, i64 row_unit)
    : m(rows),
      count(even_threads(threads)),
      rchunk(round_down(rows / threads, row_unit)) {}

/// A short rest is not left to a block of its own, which would pack all of B once more for a few rows.
i64 slab_block_rows(i64 slab_rows, i64 from, i64 block, bool last_slab) {
    const i64 rest = slab_rows - from;
    return last_slab && rest < 2 * block ? rest : std::min(block, rest);
}

/// Rows by which a block of A fills a share of the second cache: fewer when the steps of k are as many as a block has.
i64 dgemm_htn_block_rows(const GemmShape& shape, const GemmCacheSizes& caches) {
    if (second_cache_is_small(caches)) return 448;
    if (shape.m <= 7000) return 1024;
    return shape.k == 256 || shape.k >= 512 ? 704 : 1024;
}

i64 zgemm_htn_block_rows(const GemmCacheSizes& caches) { return second_cache_is_small(caches) ? 256 : 512; }

} // namespace nxl
