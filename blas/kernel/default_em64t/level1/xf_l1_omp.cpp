// daxpy and ddot over threads; on classes 0 and 1 level 1 never forks. zaxpy and zdotc go straight to their kernels.
#include "blas/kernel/default_em64t/level1/xf_l1_omp.hpp"
#include "service/kernel_slot.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "service/worthwhile_threads.hpp"

namespace nxl {
namespace {

// A vector is cut into as many blocks as there are threads, of equal length but for the last, which takes the rest too:
//
//     n = 5003, 4 threads     | 1248 | 1248 | 1248 | 1259 |
//
// Each block is a call of the serial kernel. daxpy writes disjoint parts of y. ddot fills a slot per block, and the
// slots are added in order: the sum depends on the number of threads that was decided, not on who was early.
/// Apart from the short call, which shall pay for nothing but the test of its length.
[[gnu::noinline]] int decide_threads(const Level1Gates& gates, double least, i64 n, i64 incx, i64 incy) {
    if (!may_fork(gates, n, incx, incy, nxl_cpu_class())) return 1;
    return threads_for(gates, n, worthwhile_threads(domain_blas, product_of(n), least), dynamic_threads());
}

int threads_of_call(const Level1Gates& gates, double least, i64 n, i64 incx, i64 incy) {
    return n <= gates.serial_up_to ? 1 : decide_threads(gates, least, n, incx, incy);
}

/// Fills one slot per block; the slots are added in ascending order, so that the result does not depend on scheduling.
double ddot_blocks(int threads, i64 n, const double* x, i64 incx, const double* y, i64 incy, double* partial) {
    parallel_blocks(threads, threads, [=](int index) {
        const Slice block = vector_block(n, index, threads);
        partial[index] = slot<&KernelTable::ddot>(block.count, block_base(x, n, incx, block), incx,
                                                  block_base(y, n, incy, block), incy);
    });
    double sum = 0.0;
    for (int index = 0; index < threads; ++index) sum += partial[index];
    return sum;
}

/// Up to 128 slots stand on the stack; more threads than that are rare enough to allocate.
[[gnu::noinline]] double ddot_over_threads(int threads, i64 n, const double* x, i64 incx, const double* y, i64 incy) {
    constexpr int local_slots = 128;
    if (threads <= local_slots) {
        double partial[local_slots];
        return ddot_blocks(threads, n, x, incx, y, incy, partial);
    }
    const Scratch<double> partial(threads, 0);
    if (!partial.data()) return slot<&KernelTable::ddot>(n, x, incx, y, incy);
    return ddot_blocks(threads, n, x, incx, y, incy, partial.data());
}

[[gnu::noinline]] void daxpy_over_threads(int threads, i64 n, double alpha, const double* x, i64 incx, double* y,
                                          i64 incy) {
    parallel_blocks(threads, threads, [=](int index) {
        const Slice block = vector_block(n, index, threads);
        slot<&KernelTable::daxpy>(block.count, alpha, block_base(x, n, incx, block), incx,
                                  block_base(y, n, incy, block), incy);
    });
}

} // namespace

/// With an increment of 0 all blocks of y would be the same element.
bool may_fork(const Level1Gates& gates, i64 n, i64 incx, i64 incy, CpuClass cpu_class) {
    if (n <= gates.serial_up_to) return false;
    if (incx == 0 || incy == 0) return false;
    return cpu_class == CpuClass::mc || cpu_class == CpuClass::mc3;
}

int threads_for(const Level1Gates& gates, i64 n, int offered, bool dynamic) {
    int threads = offered;
    if (!dynamic) return threads;
    if (threads > 2 && n < gates.two_below) threads = 2;
    if (threads > 4 && n < gates.four_below) threads = 4;
    return threads;
}

void nxl_blas_daxpy(const i64& n, const double& alpha, const double* x, const i64& incx, double* y, const i64& incy) {
    const int threads = threads_of_call(daxpy_gates, least_work<double>.axpy, n, incx, incy);
    if (threads < 2) return slot<&KernelTable::daxpy>(n, alpha, x, incx, y, incy);
    daxpy_over_threads(threads, n, alpha, x, incx, y, incy);
}

double nxl_blas_ddot(const i64& n, const double* x, const i64& incx, const double* y, const i64& incy) {
    const int threads = threads_of_call(ddot_gates, least_work<double>.dot, n, incx, incy);
    if (threads < 2) return slot<&KernelTable::ddot>(n, x, incx, y, incy);
    return ddot_over_threads(threads, n, x, incx, y, incy);
}

// The complex ones never fork, on any class.
void nxl_blas_zaxpy(const i64& n, const zcomplex& alpha, const zcomplex* x, const i64& incx, zcomplex* y,
                    const i64& incy) {
    slot<&KernelTable::zaxpy>(n, alpha, x, incx, y, incy);
}

void nxl_blas_zdotc(zcomplex& result, const i64& n, const zcomplex* x, const i64& incx, const zcomplex* y,
                    const i64& incy) {
    slot<&KernelTable::zdotc>(result, n, x, incx, y, incy);
}

} // namespace nxl
