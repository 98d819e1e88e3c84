// The blocked Cholesky factorisation on the caller's thread: left-looking blocks of columns, or rows for U.
// Method: Golub and Van Loan, Matrix Computations, 4th ed., section 4.2.
#include "lapack/kernel/source/cholesky/xpotrf.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// The block of `width` columns that starts at column j of a, with what lies before and after it.
template <class T> struct Block {
    i64 n, j, width;
    T* a;
    i64 lda;

    T* diagonal() const { return a + j + j * lda; }
    i64 rest() const { return n - j - width; }
};

/// Takes the columns before the block off its diagonal part.
template <class T> void update_diagonal(char uplo, const Block<T>& b) {
    if (b.j == 0) return;
    if (uplo == 'L') herk('L', 'N', b.width, b.j, -1.0, b.a + b.j, b.lda, 1.0, b.diagonal(), b.lda);
    else herk('U', 'C', b.width, b.j, -1.0, b.a + b.j * b.lda, b.lda, 1.0, b.diagonal(), b.lda);
}

/// Takes the columns before the block off its panel beneath the diagonal part, and solves with that.
template <class T> void finish_panel(char uplo, const Block<T>& b) {
    if (b.rest() == 0) return;
    const i64 after = b.j + b.width;
    if (uplo == 'L') {
        T* panel = b.diagonal() + b.width;
        if (b.j > 0)
            gemm('N', 'C', b.rest(), b.width, b.j, -1.0, b.a + after, b.lda, b.a + b.j, b.lda, 1.0, panel, b.lda);
        trsm('R', 'L', 'C', 'N', b.rest(), b.width, 1.0, b.diagonal(), b.lda, panel, b.lda);
    } else {
        T* panel = b.diagonal() + b.width * b.lda;
        if (b.j > 0)
            gemm('C', 'N', b.width, b.rest(), b.j, -1.0, b.a + b.j * b.lda, b.lda, b.a + after * b.lda, b.lda, 1.0,
                 panel, b.lda);
        trsm('L', 'U', 'C', 'N', b.width, b.rest(), 1.0, b.diagonal(), b.lda, panel, b.lda);
    }
}

template <class T> i64 xpotrf(char uplo, i64 n, T* a, i64 lda, i64& info, i64 thread, i64 offset) {
    info = 0;
    const i64 nb = potrf_tuning<T>(block_size, uplo, n);
    if (nb < 2 || n <= nb) {
        potf2(uplo, n, a, lda, info);
        return stop_requested(potrf_name<T>(), thread, offset + n);
    }
    for (i64 j = 0; j < n; j += nb) {
        const Block<T> block{n, j, std::min(nb, n - j), a, lda};
        update_diagonal(uplo, block);
        const i64 stop = xpotrf(uplo, block.width, block.diagonal(), lda, info, thread, offset + j);
        if (info != 0) info += j;
        if (stop != 0 || info != 0) return stop;
        finish_panel(uplo, block);
    }
    return 0;
}

} // namespace

i64 xdpotrf(char uplo, i64 n, double* a, i64 lda, i64& info, i64 thread, i64 offset) {
    return xpotrf(uplo, n, a, lda, info, thread, offset);
}

i64 xzpotrf(char uplo, i64 n, zcomplex* a, i64 lda, i64& info, i64 thread, i64 offset) {
    return xpotrf(uplo, n, a, lda, info, thread, offset);
}

} // namespace nxl
