// Drivers of the matrix-vector product, the threaded members of level 2: whether a call forks, and how it is cut.
#pragma once
#include "blas/kernel/default_em64t/level1/xf_l1_omp.hpp"

namespace nxl {

/// y := alpha op(A) x + beta y, over threads where that pays.
template <class T>
void gemv_driver(const char& trans, const i64& m, const i64& n, const T& alpha, const T* a, const i64& lda, const T* x,
                 const i64& incx, const T& beta, T* y, const i64& incy);
inline constexpr auto nxl_blas_dgemv = gemv_driver<double>;
inline constexpr auto nxl_blas_zgemv = gemv_driver<zcomplex>;

/// Elements of A that a thread must have to work on, by the length of its block along the split dimension.
struct WorkLimit {
    i64 short_below; ///< a block of fewer rows or columns than this is short
    i64 of_short;    ///< a short block needs this many elements,
    i64 otherwise;   ///< any other this many
};
struct GemvLimits {
    WorkLimit rows, columns;
};
inline constexpr GemvLimits dgemv_limits{.rows = {64, 1536, 3072}, .columns = {64, 2048, 4096}};
inline constexpr GemvLimits zgemv_limits{.rows = {32, 512, 1024}, .columns = {32, 512, 1024}};

/// What is cut among threads: the dimension of A along which y runs, so that blocks write disjoint parts of y.
enum class GemvSplit { none, rows, columns };
struct GemvPlan {
    GemvSplit split;
    i64 block; ///< rows or columns of every block but the last, which takes the rest as well; 0 without a split
};

/// The plan of a call with m, n >= 1 on up to `threads` threads.
GemvPlan plan_gemv(const GemvLimits& limits, char trans, i64 m, i64 n, CpuClass cpu_class, int threads);

} // namespace nxl
