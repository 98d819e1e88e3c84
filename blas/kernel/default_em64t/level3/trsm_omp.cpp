// Drivers of the triangular solution and the triangular product with many vectors: gates, then one region per call.
#include "blas/kernel/default_em64t/level3/trsm_omp.hpp"
#include "service/kernel_slot.hpp"
#include "service/parallel.hpp"
#include "service/worthwhile_threads.hpp"
#include <limits>

namespace nxl {
namespace {

// Right-hand sides do not depend on each other, so that they are what is cut:
//
//     side = L    op(A) X = B     | X | X | X |    columns, q to a block, the last one with all that remain
//     side = R    X op(A) = B     rows likewise
//
// No thread waits for another. The price is that each reads the whole triangle, and packs it: the gates weigh that, as
// work for the triangle, against the work of a block.
constexpr i64 never = std::numeric_limits<i64>::max();
constexpr i64 always = -1;

// By class.
constexpr TriangularGate dtrsm_left_gates[cpu_class_count] = {
    {false, never, 0, never}, {true, never, 8, 512}, {true, 512, 0, never}, {false, never, 0, never}};
constexpr TriangularGate dtrsm_right_gates[cpu_class_count] = {
    {false, never, 0, never}, {true, never, 0, never}, {true, always, 0, never}, {false, never, 0, never}};

// A block of fewer than 4 vectors reads the whole triangle for too little work.
constexpr TriangularGate left_gate{true, 512, 4, always};
constexpr TriangularGate right_gate{true, always, 4, always};

/// Estimates of work, in thousands of instructions or so.
struct TriangularWork {
    double triangle; ///< of passing over the triangle
    double block;    ///< of one block

    TriangularWork(i64 order, i64 q, double factor)
        : triangle(factor * static_cast<double>(order + 1) * static_cast<double>(order) * 0.00390625),
          block(factor * static_cast<double>(order) * static_cast<double>(q) * 0.0078125) {}
};

bool too_little_on_the_left(const TriangularWork& work) {
    return (work.triangle < 1.0 && work.block < 6.0) || work.triangle + work.block <= 6.0;
}

bool too_little_on_the_right(const TriangularWork& work) {
    return work.triangle <= 1.0 || work.block < 4.0 || work.triangle + work.block <= 10.0;
}

/// The arguments of the call that its blocks have in common.
template <class T> struct TriangularCall {
    char side, uplo, transa, diag;
    i64 m, n;
    T alpha;
    const T* a;
    i64 lda;
    T* b;
    i64 ldb;

    TriangularShape shape() const { return {side == 'L', m, n}; }
};

/// One region. With q = 0 all blocks but the last are empty, and the kernel returns at once.
template <class T, class Kernel> void run_blocks(const TriangularCall<T>& p, int threads, i64 q, Kernel& kernel) {
    const TriangularShape shape = p.shape();
    parallel_blocks(threads, threads, [&, threads, q](int index) {
        const Slice part = slice_of(shape.free_length(), q, index, threads);
        const i64 rows = shape.left ? p.m : part.count, columns = shape.left ? part.count : p.n;
        T* block = p.b + (shape.left ? part.start * p.ldb : part.start);
        kernel(p.side, p.uplo, p.transa, p.diag, rows, columns, p.alpha, p.a, p.lda, block, p.ldb);
    });
}

/// The gate of a routine on one side: dtrsm's differ by class.
template <class T, auto Kernel> const TriangularGate& gate_of(bool left) {
    if constexpr (std::is_same_v<T, double>)
        if (Kernel == &KernelTable::dtrsm) return dtrsm_gate(nxl_cpu_class(), left);
    return triangular_gate(left);
}

} // namespace

const TriangularGate& dtrsm_gate(CpuClass cpu_class, bool left) {
    return (left ? dtrsm_left_gates : dtrsm_right_gates)[static_cast<int>(cpu_class)];
}

const TriangularGate& triangular_gate(bool left) { return left ? left_gate : right_gate; }

i64 triangular_block(const TriangularGate& gate, const TriangularShape& shape, i64 threads) {
    const i64 q = shape.free_length() / threads;
    return shape.order() > gate.rounds_above ? round_down(q, 4) : q;
}

bool triangular_stays_serial(const TriangularGate& gate, const TriangularShape& shape, i64 q, double work_factor) {
    if (shape.m < 17 && shape.n < 17) return true;
    if (!gate.weighs_work) return false;
    if (shape.order() > gate.least_q_above && q < gate.least_q) return true;
    const TriangularWork work(shape.order(), q, work_factor);
    return shape.left ? too_little_on_the_left(work) : too_little_on_the_right(work);
}

template <class T, auto Kernel> constexpr double least_of = least_work<T>.trmm;
template <> constexpr double least_of<double, &KernelTable::dtrsm> = least_work<double>.trsm;
template <> constexpr double least_of<zcomplex, &KernelTable::ztrsm> = least_work<zcomplex>.trsm;

template <class T, auto Kernel>
void triangular_driver(const char& side, const char& uplo, const char& transa, const char& diag, const i64& m,
                       const i64& n, const T& alpha, const T* a, const i64& lda, T* b, const i64& ldb) {
    if (n == 0) return;
    const TriangularCall<T> call{side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb};
    const TriangularShape shape = call.shape();
    const double work = product_of(shape.order(), shape.order(), shape.free_length());
    const int threads = worthwhile_threads(domain_blas, work, least_of<T, Kernel>);
    if (threads >= 2) {
        constexpr double work_factor = sizeof(T) == sizeof(double) ? 1.0 : 4.0;
        const TriangularGate& gate = gate_of<T, Kernel>(shape.left);
        const i64 q = triangular_block(gate, shape, threads);
        if (!triangular_stays_serial(gate, shape, q, work_factor)) return run_blocks(call, threads, q, slot<Kernel>);
    }
    slot<Kernel>(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}
template decltype(triangular_driver<double, &KernelTable::dtrmm>) triangular_driver<double, &KernelTable::dtrmm>;
template decltype(triangular_driver<zcomplex, &KernelTable::ztrmm>) triangular_driver<zcomplex, &KernelTable::ztrmm>;
template decltype(triangular_driver<double, &KernelTable::dtrsm>) triangular_driver<double, &KernelTable::dtrsm>;
template decltype(triangular_driver<zcomplex, &KernelTable::ztrsm>) triangular_driver<zcomplex, &KernelTable::ztrsm>;

} // namespace nxl
