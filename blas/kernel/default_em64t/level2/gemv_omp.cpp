// dgemv and zgemv over threads; on classes 0 and 1 level 2 never forks.
#include "blas/kernel/default_em64t/level2/gemv_omp.hpp"
#include "service/kernel_slot.hpp"
#include "service/parallel.hpp"
#include "service/worthwhile_threads.hpp"

namespace nxl {
namespace {

constexpr i64 smallest_side = 64; // with both sides below it a call stays on its thread
constexpr i64 row_unit = 8;       // rows of a block come in whole unrolled rounds of the kernels

bool is_plain(char trans) { return trans == 'N'; }

// A is cut along the side that y runs along, so that each thread has a part of y for itself and nothing is added up:
//
//     y := A x        y0  [ A0 ]          y := A^T x       y0  y1  y2        A0 is block 0 of all m rows or n columns;
//                     y1  [ A1 ] x                       [ A0 | A1 | A2 ]    the last block takes the rest too
//                     y2  [ A2 ]                           x, all of it
//
// Either way A is read once in all.
GemvPlan plan_split(GemvSplit split, const WorkLimit& limit, i64 block, i64 other) {
    const i64 least = block < limit.short_below ? limit.of_short : limit.otherwise;
    return block * other < least ? GemvPlan{GemvSplit::none, 0} : GemvPlan{split, block};
}

template <class T> constexpr const GemvLimits& limits_of = dgemv_limits;
template <> constexpr const GemvLimits& limits_of<zcomplex> = zgemv_limits;

/// One call of the routine; T is double or zcomplex.
template <class T> struct Gemv {
    static constexpr auto& kernel = slot_of<T, &KernelTable::dgemv, &KernelTable::zgemv>();

    char trans;
    i64 m, n;
    T alpha;
    const T* a;
    i64 lda;
    const T* x;
    i64 incx;
    T beta;
    T* y;
    i64 incy;

    void serial() const { kernel(trans, m, n, alpha, a, lda, x, incx, beta, y, incy); }

    /// With a negative incy the part of y that belongs to a block lies towards the other end: block_base finds it.
    void over_rows(const GemvPlan& plan, int threads) const {
        parallel_blocks(threads, threads, [&](int index) {
            const Slice rows = slice_of(m, plan.block, index, threads);
            kernel(trans, rows.count, n, alpha, a + rows.start, lda, x, incx, beta, block_base(y, m, incy, rows), incy);
        });
    }

    void over_columns(const GemvPlan& plan, int threads) const {
        parallel_blocks(threads, threads, [&](int index) {
            const Slice columns = slice_of(n, plan.block, index, threads);
            kernel(trans, m, columns.count, alpha, a + columns.start * lda, lda, x, incx, beta,
                   block_base(y, n, incy, columns), incy);
        });
    }

    /// Apart from the small call, which shall pay for nothing but the test of its size.
    [[gnu::noinline]] void maybe_threaded() const {
        const CpuClass cpu_class = nxl_cpu_class();
        const double least = is_plain(trans) ? least_work<T>.gemv_rows : least_work<T>.gemv_columns;
        const int threads = cpu_class >= CpuClass::mc ? worthwhile_threads(domain_blas, product_of(m, n), least) : 1;
        const GemvPlan plan = plan_gemv(limits_of<T>, trans, m, n, cpu_class, threads);
        switch (plan.split) {
        case GemvSplit::none: return serial();
        case GemvSplit::rows: return over_rows(plan, threads);
        case GemvSplit::columns: return over_columns(plan, threads);
        }
    }
};

} // namespace

GemvPlan plan_gemv(const GemvLimits& limits, char trans, i64 m, i64 n, CpuClass cpu_class, int threads) {
    constexpr GemvPlan serial{GemvSplit::none, 0};
    if (m < smallest_side && n < smallest_side) return serial;
    if (cpu_class != CpuClass::mc && cpu_class != CpuClass::mc3) return serial;
    if (threads < 2) return serial;
    if (is_plain(trans)) return plan_split(GemvSplit::rows, limits.rows, round_down(m / threads, row_unit), n);
    return plan_split(GemvSplit::columns, limits.columns, n / threads, m);
}

template <class T>
void gemv_driver(const char& trans, const i64& m, const i64& n, const T& alpha, const T* a, const i64& lda, const T* x,
                 const i64& incx, const T& beta, T* y, const i64& incy) {
    const Gemv<T> call{trans, m, n, alpha, a, lda, x, incx, beta, y, incy};
    if (m < 1 || n < 1) return;
    if (m < smallest_side && n < smallest_side) return call.serial();
    call.maybe_threaded();
}
template decltype(gemv_driver<double>) gemv_driver<double>;
template decltype(gemv_driver<zcomplex>) gemv_driver<zcomplex>;

} // namespace nxl
