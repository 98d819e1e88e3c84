// dgemv, zgemv: y := alpha op(A) x + beta y, A m by n.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/products.hpp"
#include "blas/kernels/level2/rows.hpp"

namespace nxl::NXL_TARGET {
namespace {

// A is read once, from memory as a rule, and that takes the time. Blocks of rows keep the contiguous vector, y or, for
// a transposed A, x, in cache while all columns of the block pass, 8 real columns at a time:
//
//     A  | 8 cols | 8 cols | ... |     block of rows: 16384 doubles of y, or 1024 where it has to be gathered
//        +--------+--------+-----+
//        |  1     |  2     |     |     within a panel each element of y is loaded and stored once for 8 columns
//        +--------+--------+-----+
//
template <class T> void plain(i64 m, i64 n, T alpha, const T* a, i64 lda, const T* x, i64 incx, T* y, i64 incy) {
    for_blocks(m, rows_at_once<T>(incy), true, [&](i64 i, i64 rows) {
        T copy[kRowBlock<T>];
        T* block = gather(y + i * incy, incy, rows, copy);
        add_product(rows, n, alpha, a + i, lda, x, incx, block);
        scatter(block, y + i * incy, incy, rows);
    });
}

/// Each block of rows adds its share to all of y, so that y is read as often as there are blocks.
template <bool Conjugate, class T>
void transposed(i64 m, i64 n, T alpha, const T* a, i64 lda, const T* x, i64 incx, T* y, i64 incy) {
    for_blocks(m, rows_at_once<T>(incx), true, [&](i64 i, i64 rows) {
        T copy[kRowBlock<T>];
        const T* block = gather(x + i * incx, incx, rows, copy);
        add_transposed_product<Conjugate>(rows, n, alpha, a + i, lda, block, y, incy);
    });
}

template <class T>
void gemv(char trans, i64 m, i64 n, T alpha, const T* a, i64 lda, const T* x, i64 incx, T beta, T* y, i64 incy) {
    if (m < 1 || n < 1) return;
    const bool straight = trans == 'N';
    x += first_index(straight ? n : m, incx);
    y += first_index(straight ? m : n, incy);
    scale(straight ? m : n, beta, y, incy);
    if (is_zero(alpha)) return;
    if (straight) return plain(m, n, alpha, a, lda, x, incx, y, incy);
    if (trans == 'C') return transposed<true>(m, n, alpha, a, lda, x, incx, y, incy);
    transposed<false>(m, n, alpha, a, lda, x, incx, y, incy);
}

} // namespace

void dgemv(const char& trans, const i64& m, const i64& n, const double& alpha, const double* a, const i64& lda,
           const double* x, const i64& incx, const double& beta, double* y, const i64& incy) {
    gemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}

void zgemv(const char& trans, const i64& m, const i64& n, const zcomplex& alpha, const zcomplex* a, const i64& lda,
           const zcomplex* x, const i64& incx, const zcomplex& beta, zcomplex* y, const i64& incy) {
    gemv(trans, m, n, scalar(alpha), scalars(a), lda, scalars(x), incx, scalar(beta), scalars(y), incy);
}

} // namespace nxl::NXL_TARGET
