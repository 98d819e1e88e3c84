// Whether a call is worth other threads. While the library may choose (dynamic adjustment on), a call with less work
// than pays for waking them stays on its own; with it off, the gates of the routine alone decide.
#pragma once
#include "service/threads.hpp"
#include "service/types.hpp"

namespace nxl {

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

/// The threads for a call of so much work.
inline int worthwhile_threads(int domain, double work, double least) {
    return work < least && dynamic_threads() ? 1 : max_threads(domain);
}

/// Work as a product of lengths, which might not fit in 64 bits.
template <class... Lengths> constexpr double product_of(Lengths... lengths) {
    return (static_cast<double>(lengths) * ...);
}

} // namespace nxl
