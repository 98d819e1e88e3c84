// dsyr2: A := A + alpha (x y^T + y x^T); zher2: A := A + alpha x y^H + conj(alpha) y x^H. One triangle of the n by n
// matrix A, in one pass.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/rank_update.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// Two products in one pass: reading and writing A is what takes the time, and so it is done once.
template <bool Conjugate, class T>
void syr2(char uplo, i64 n, T alpha, const T* x, i64 incx, const T* y, i64 incy, T* a, i64 lda) {
    if (n < 1 || is_zero(alpha)) return;
    x += first_index(n, incx);
    y += first_index(n, incy);
    const OuterProduct<T> products[] = {{alpha, x, incx, y, incy}, {conj_if<Conjugate>(alpha), y, incy, x, incx}};
    update_triangle<Conjugate>(uplo == 'U', n, products, a, lda);
}

} // namespace

void dsyr2(const char& uplo, const i64& n, const double& alpha, const double* x, const i64& incx, const double* y,
           const i64& incy, double* a, const i64& lda) {
    syr2<false>(uplo, n, alpha, x, incx, y, incy, a, lda);
}

void zher2(const char& uplo, const i64& n, const zcomplex& alpha, const zcomplex* x, const i64& incx, const zcomplex* y,
           const i64& incy, zcomplex* a, const i64& lda) {
    syr2<true>(uplo, n, scalar(alpha), scalars(x), incx, scalars(y), incy, scalars(a), lda);
}

} // namespace nxl::NXL_TARGET
