// Drivers of the general matrix product: gates, the pass that applies beta, the choice of strategy, and the strategy of
// classes 0 and 1. The other strategies stand in gemm_omp_nhm.cpp, gemm_omp_mc.cpp and gemm_omp_htn.cpp.
#include "blas/kernel/default_em64t/level3/gemm_omp.hpp"
#include "blas/kernel/default_em64t/level3/gemm_strategies.hpp"
#include "service/parallel.hpp"
#include "service/worthwhile_threads.hpp"

namespace nxl {
namespace {

/// C := beta C over threads, in slices of columns, which are stretches of memory. It is a pass of its own: strategies
/// that cut k add to C in each stretch, and only the first would have to know beta.
template <class T> void apply_beta(int threads, const GemmCall<T>& call) {
    const i64 chunk = call.n / threads;
    parallel_blocks(threads, threads, [&call, threads, chunk](int index) {
        const Slice columns = slice_of(call.n, chunk, index, threads);
        GemmSlots<T>::beta(call.m, columns.count, call.beta, call.c_at(0, columns.start), call.ldc);
    });
}

/// Cuts the longer side of C, each slice a product of its own with the caller's beta. Slices share nothing: the operand
/// that is not cut is packed by every thread.
template <class T> void split_1d(i64 nt, const GemmCall<T>& call) {
    const bool by_rows = call.n < call.m;
    const i64 length = by_rows ? call.m : call.n;
    const int slices = static_cast<int>(nt);
    parallel_blocks(slices, slices, [&call, by_rows, length, nt](int index) {
        const Slice part = slice_of(length, length / nt, index, nt);
        const Slice rows = by_rows ? part : Slice{0, call.m};
        const Slice columns = by_rows ? Slice{0, call.n} : part;
        call.cell(rows, columns).run_serial();
    });
}

bool may_fork(const GemmCall<double>& call, i64 nt) { return dgemm_may_fork(call.shape(), nt); }
bool may_fork(const GemmCall<zcomplex>& call, i64 nt) { return zgemm_may_fork(call.shape(), nt); }

/// Class 2 is divided in two; of the other classes nobody asks.
bool is_htn(CpuClass cpu_class) { return cpu_class == CpuClass::mc && nxl_has_sse41(); }

void run_strategy(CpuClass cpu_class, i64 nt, const GemmCall<double>& call) {
    switch (dgemm_strategy(call.shape(), nt, cpu_class, is_htn(cpu_class))) {
    case GemmStrategy::split_1d: return nxl_blas_dgemm_1d(nt, call);
    case GemmStrategy::grid_nhm: return dgemm_2D_nhm(nt, call);
    case GemmStrategy::grid: return dgemm_2D(nt, call);
    case GemmStrategy::private_copies: return dgemm_2D_abcopy_abx_m_km_par_p_htn(nt, call);
    case GemmStrategy::shared_copy: return dgemm_1D_with_copy(nt, call);
    }
}

void run_strategy(CpuClass cpu_class, i64 nt, const GemmCall<zcomplex>& call) {
    switch (zgemm_strategy(call.shape(), cpu_class, is_htn(cpu_class))) {
    case GemmStrategy::split_1d: return nxl_blas_zgemm_1d(nt, call);
    case GemmStrategy::grid_nhm: return zgemm_2D_nhm(nt, call);
    case GemmStrategy::grid: return zgemm_2D(nt, call);
    case GemmStrategy::private_copies: return zgemm_2D_abcopy_abx_m_km_par_p_htn(nt, call);
    case GemmStrategy::shared_copy: return; // of real products alone
    }
}

/// Classes 2 and 3 weigh the work, then apply beta once for all, since several passes over k may follow. Classes 0 and
/// 1 fork whenever they may: their slices are whole products, which apply beta themselves.
template <class T> void gemm_over_threads(int threads, GemmCall<T> call) {
    const CpuClass cpu_class = nxl_cpu_class();
    if (cpu_class == CpuClass::mc || cpu_class == CpuClass::mc3) {
        if (!may_fork(call, threads)) return call.run_serial();
        if (!counts_as(call.beta, 1.0)) apply_beta(threads, call);
        if (counts_as(call.alpha, 0.0)) return;
        call.beta = T{1.0};
    }
    run_strategy(cpu_class, threads, call);
}

} // namespace

void nxl_blas_dgemm_1d(i64 nt, const GemmCall<double>& call) { split_1d(nt, call); }
void nxl_blas_zgemm_1d(i64 nt, const GemmCall<zcomplex>& call) { split_1d(nt, call); }

/// In the order of what the tests cost: sizes first, then the number of threads, then the class. A call that stays on
/// this thread hands its arguments on as they came.
template <class T>
void gemm_driver(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k, const T& alpha,
                 const T* a, const i64& lda, const T* b, const i64& ldb, const T& beta, T* c, const i64& ldc) {
    if (m < 1 || n < 1) return;
    const int threads =
        gemm_is_small({m, n, k}) ? 1 : worthwhile_threads(domain_blas, product_of(m, n, k), least_work<T>.gemm);
    if (threads < 2) return GemmSlots<T>::serial(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
    gemm_over_threads<T>(threads, {transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc});
}
template decltype(gemm_driver<double>) gemm_driver<double>;
template decltype(gemm_driver<zcomplex>) gemm_driver<zcomplex>;

} // namespace nxl
