// The blocked Cholesky factorisation on the caller's thread: left-looking blocks of columns, or rows for U.
// Method: Golub and Van Loan, Matrix Computations, 4th ed., section 4.2.
//
//     +------+                      The columns before the block are finished. Their product is taken off its diagonal
//     | done |                      part, which is then factored, and off the panel beneath, which is then solved with
//     +------+----------+           it. For U the picture is transposed.
//     | left | diagonal |
//     +------+----------+
//     | far  |  panel   |
//     +------+----------+
#include "lapack/kernel/source/cholesky/xpotrf.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/kernel_slot.hpp"
#include <algorithm>

namespace nxl {
namespace {

template <class T> void finish_columns(const Matrix<T>& left, const Matrix<T>& far, const Matrix<T>& diagonal,
                                       const Matrix<T>& panel) {
    if (left.columns > 0) gemm('N', 'C', -1.0, far, left, 1.0, panel);
    trsm('R', 'L', 'C', 'N', 1.0, diagonal, panel);
}

template <class T> void finish_rows(const Matrix<T>& above, const Matrix<T>& far, const Matrix<T>& diagonal,
                                    const Matrix<T>& panel) {
    if (above.rows > 0) gemm('C', 'N', -1.0, above, far, 1.0, panel);
    trsm('L', 'U', 'C', 'N', 1.0, diagonal, panel);
}

/// What comes before and after the diagonal part of the block that starts at column j.
template <class T> void update_diagonal(char uplo, const Matrix<T>& a, i64 j, const Matrix<T>& diagonal) {
    if (j == 0) return;
    if (uplo == 'L') herk('L', 'N', -1.0, a.block(j, 0, diagonal.rows, j), 1.0, diagonal);
    else herk('U', 'C', -1.0, a.block(0, j, j, diagonal.rows), 1.0, diagonal);
}

template <class T> void finish_panel(char uplo, const Matrix<T>& a, i64 j, const Matrix<T>& diagonal) {
    const i64 width = diagonal.rows, after = j + width, rest = a.rows - after;
    if (rest == 0) return;
    if (uplo == 'L')
        finish_columns(a.block(j, 0, width, j), a.block(after, 0, rest, j), diagonal, a.block(after, j, rest, width));
    else finish_rows(a.block(0, j, j, width), a.block(0, after, j, rest), diagonal, a.block(j, after, width, rest));
}

} // namespace

template <class T> void potf2(char uplo, const Matrix<T>& a, i64& info) {
    if (uplo == 'U') slot_of<T, &KernelTable::xdpotf2_u, &KernelTable::xzpotf2_u>()(a.rows, a.data, a.ld, info);
    else slot_of<T, &KernelTable::xdpotf2_l, &KernelTable::xzpotf2_l>()(a.rows, a.data, a.ld, info);
}

template <class T> bool potrf_serial(char uplo, const Matrix<T>& a, i64& info, i64 thread, i64 offset) {
    info = 0;
    const i64 n = a.rows, nb = cholesky_sizes.block(n, 1);
    if (nb < 2 || n <= nb) {
        potf2(uplo, a, info);
        return stop_requested(potrf_name<T>, thread, offset + n);
    }
    for (i64 j = 0; j < n; j += nb) {
        const i64 width = std::min(nb, n - j);
        const Matrix<T> diagonal = a.block(j, j, width, width);
        update_diagonal(uplo, a, j, diagonal);
        const bool stop = potrf_serial(uplo, diagonal, info, thread, offset + j);
        if (info != 0) info += j;
        if (stop || info != 0) return stop;
        finish_panel(uplo, a, j, diagonal);
    }
    return false;
}

template void potf2(char, const Matrix<double>&, i64&);
template void potf2(char, const Matrix<zcomplex>&, i64&);
template bool potrf_serial(char, const Matrix<double>&, i64&, i64, i64);
template bool potrf_serial(char, const Matrix<zcomplex>&, i64&, i64, i64);

} // namespace nxl
