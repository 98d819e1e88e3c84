// Whether a call is worth other threads: all limits of work stand here. Two rules use them. By the share of each
// thread, for whatever drivers call among themselves and for drivers whose decision is ours: it holds always. By the
// least work of a routine, for entries that fork by a gate of their processor class: it holds while the library may
// choose (dynamic adjustment on); with it off, the gates alone decide.
#pragma once
#include "service/threads.hpp"
#include "service/types.hpp"
#include <algorithm>

namespace nxl {

/// Real operations below which one more thread costs more than it gives: some 50 microseconds of work, against a few
/// for the region and for the operands that each thread packs again.
inline constexpr double flops_per_thread = 2e6;

/// Work as a product of lengths, which might not fit in 64 bits.
template <class... Lengths> constexpr double product_of(Lengths... lengths) {
    return (static_cast<double>(lengths) * ...);
}

/// A multiply-add in real operations: 2, or 8 for complex.
template <class T> inline constexpr double flops_of_multiply_add = sizeof(T) == sizeof(double) ? 2.0 : 8.0;

template <class T> constexpr double flops_of(i64 m, i64 n, i64 k) {
    return flops_of_multiply_add<T> * product_of(m, n, k);
}

/// Threads for so much work, of `offered` ones; below 2 means serial.
constexpr int threads_for_work(double flops, int offered) {
    return static_cast<int>(std::min(flops / flops_per_thread, static_cast<double>(offered)));
}

// Where two threads first were faster than one, with the threads of the runtime awake: measured on a server processor
// with 512-bit registers (class 3), calls with one and two threads in turns, square problems. A product of order 64
// took 10 microseconds on one thread and 19 on two. Work is counted in elements of the vector, elements of A, or
// multiply-adds m n k; of a triangle's n^2 times right-hand sides, and of m n min(m, n) for factorisations, since only
// the ratio of a call's work to its limit counts.
struct LeastWork {
    double axpy = 30e3, dot = 35e3;
    double gemv_rows, gemv_columns;
    double gemm;
    double trsm, trmm;
    double getrf, potrf;
};
template <class T> inline constexpr LeastWork least_work{.gemv_rows = 170e3,
                                                         .gemv_columns = 110e3,
                                                         .gemm = 3.0e6,
                                                         .trsm = 0.9e6,
                                                         .trmm = 1.5e6,
                                                         .getrf = 15e6,
                                                         .potrf = 30e6};
template <> inline constexpr LeastWork least_work<zcomplex>{.gemv_rows = 115e3,
                                                            .gemv_columns = 50e3,
                                                            .gemm = 2.7e6,
                                                            .trsm = 0.15e6,
                                                            .trmm = 0.15e6,
                                                            .getrf = 2.7e6,
                                                            .potrf = 9e6};

// A product that would stay on one thread for its share does not fork for its least work either.
static_assert(threads_for_work(flops_of_multiply_add<double> * least_work<double>.gemm, 2) == 2);
static_assert(threads_for_work(flops_of_multiply_add<zcomplex> * least_work<zcomplex>.gemm, 2) == 2);

/// The threads for a call of so much work.
inline int worthwhile_threads(int domain, double work, double least) {
    return work < least && dynamic_threads() ? 1 : max_threads(domain);
}

} // namespace nxl
