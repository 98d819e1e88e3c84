// Drivers of level 1: all that decides about threads, and how a vector is cut into blocks.
#pragma once
#include "service/slice.hpp"
#include "service/types.hpp"

namespace nxl {

void nxl_blas_daxpy(const i64& n, const double& alpha, const double* x, const i64& incx, double* y, const i64& incy);
double nxl_blas_ddot(const i64& n, const double* x, const i64& incx, const double* y, const i64& incy);
void nxl_blas_zaxpy(const i64& n, const zcomplex& alpha, const zcomplex* x, const i64& incx, zcomplex* y,
                    const i64& incy);
void nxl_blas_zdotc(zcomplex& result, const i64& n, const zcomplex* x, const i64& incx, const zcomplex* y,
                    const i64& incy);

/// Vector lengths, in elements, at which a routine's thread count changes.
struct Level1Gates {
    i64 serial_up_to; ///< at most this many: one thread
    i64 two_below;    ///< fewer than this many, dynamic on: at most 2 threads
    i64 four_below;   ///< fewer than this many, dynamic on: at most 4 threads
};
inline constexpr Level1Gates daxpy_gates{4300, 4300, 11000};
inline constexpr Level1Gates ddot_gates{2600, 6000, 10000};

/// True when a vector of n elements is long enough, and the class such, that threads may pay.
bool may_fork(const Level1Gates& gates, i64 n, i64 incx, i64 incy, CpuClass cpu_class);

/// Threads for a call that may fork, of `offered` ones; with `dynamic` the library may take fewer. Below 2 means
/// serial.
int threads_for(const Level1Gates& gates, i64 n, int offered, bool dynamic);

/// Block `index` of `count` of a vector: n / count elements rounded down to whole unrolled rounds of the kernels, 8;
/// the last block takes the rest.
constexpr Slice vector_block(i64 n, i64 index, i64 count) {
    return slice_of(n, round_down(n / count, 8), index, count);
}

/// Where a kernel finds its block of a vector that starts at `base`: for a negative increment the kernel itself moves
/// to the far end of its block, so that element k keeps its place at (k + 1 - n) inc from the base.
template <class T> T* block_base(T* base, i64 n, i64 inc, const Slice& block) {
    const i64 offset = block.start * inc;
    return base + (inc < 0 ? offset + (block.count - n) * inc : offset);
}

} // namespace nxl
