// dsytrd, zhetrd: the trailing update is cut among threads so that all have the same area; see trailing_update.hpp.
#include "lapack/kernel/source/eigen/xsytrd_omp.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/eigen/trailing_update.hpp"
#include "lapack/kernel/source/eigen/xsytrd.hpp"
#include "service/scratch.hpp"
#include "service/threads.hpp"

namespace nxl {
namespace {

/// C := C - V W^H - W V^H, one block of its columns.
template <class T>
void update_block(char uplo, const TrailingBlock& block, const Matrix<T>& c, const Matrix<const T>& v,
                  const Matrix<const T>& w) {
    const auto [offset, width] = block;
    if (width == 0) return;
    const i64 column = uplo == 'U' ? offset : c.rows - offset - width; // and the first row of its triangle
    if (offset > 0) {
        const i64 row = uplo == 'U' ? 0 : c.rows - offset;
        const Matrix<T> rectangle = c.block(row, column, offset, width);
        gemm('N', 'C', -1.0, v.rows_from(row, offset), w.rows_from(column, width), 1.0, rectangle);
        gemm('N', 'C', -1.0, w.rows_from(row, offset), v.rows_from(column, width), 1.0, rectangle);
    }
    slot_of<T, &KernelTable::dsyr2k, &KernelTable::zher2k>()(uplo, 'N', width, v.columns, T(-1.0), v.at(column, 0),
                                                             v.ld, w.at(column, 0), w.ld, 1.0, c.at(column, column),
                                                             c.ld);
}

/// The team is the runtime's own; the blocks are those of `threads` whatever it is.
template <class T>
void update(char uplo, i64 threads, const Matrix<T>& c, const Matrix<const T>& v, const Matrix<const T>& w) {
#pragma omp parallel for schedule(static, 1)
    for (i64 thread = 0; thread < threads; ++thread) {
        const TrailingShare share = trailing_share(c.rows, threads, thread);
        update_block(uplo, share.low, c, v, w);
        update_block(uplo, share.high, c, v, w);
    }
}

} // namespace

template <class T>
void sytrd(const char& uplo, const i64& n, T* a, const i64& lda, double* d, double* e, T* tau, T* work,
           const i64& lwork, i64& info, int) {
    const i64 threads = tridiagonal_sizes<T>.crossover > n ? 1 : max_threads(domain_all);
    if (threads <= 1) return sytrd_serial(uplo, n, a, lda, d, e, tau, work, lwork, info);
    const Workspace<T> space{work, lwork, 1, std::max(n * tridiagonal_sizes<T>.block, i64{1})};
    if (refused(uplo, n, lda, space, info) || space.is_query()) return;
    const TridiagonalReduction<T> reduction(uplo, {a, n, n, lda}, d, e, tau, work, lwork);
    const Scratch<T> parts(threads * n); // without them products stay on this thread
    reduction.run(parts.data() ? threads : 1, parts.data(),
                  [&](const Matrix<T>& c, Operand<T> v, Operand<T> w) { update<T>(uplo, threads, c, v, w); });
}

template void sytrd<double>(const char&, const i64&, double*, const i64&, double*, double*, double*, double*,
                            const i64&, i64&, int);
template void sytrd<zcomplex>(const char&, const i64&, zcomplex*, const i64&, double*, double*, zcomplex*, zcomplex*,
                              const i64&, i64&, int);

} // namespace nxl
