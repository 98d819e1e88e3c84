// dsyr, zsyr: A := A + alpha x x^T; zher: A := A + alpha x x^H with a real alpha. One triangle of the n by n matrix A.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/rank_update.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// One product with u = v = x: x is both the vector in registers and, an element per column, the factors. Imaginary
/// parts that stand on the diagonal of a Hermitian A are dropped on the way.
template <bool Conjugate, class T> void syr(char uplo, i64 n, T alpha, const T* x, i64 incx, T* a, i64 lda) {
    if (n < 1 || is_zero(alpha)) return;
    x += first_index(n, incx);
    const OuterProduct<T> product[] = {{alpha, x, incx, x, incx}};
    update_triangle<Conjugate>(uplo == 'U', n, product, a, lda);
}

} // namespace

void dsyr(const char& uplo, const i64& n, const double& alpha, const double* x, const i64& incx, double* a,
          const i64& lda) {
    syr<false>(uplo, n, alpha, x, incx, a, lda);
}

void zsyr(const char& uplo, const i64& n, const zcomplex& alpha, const zcomplex* x, const i64& incx, zcomplex* a,
          const i64& lda) {
    const bool no_letter = uplo != 'U' && uplo != 'L';
    if (no_letter || incx == 0 || lda < n) return; // its entry checks nothing
    syr<false>(uplo, n, scalar(alpha), scalars(x), incx, scalars(a), lda);
}

void zher(const char& uplo, const i64& n, const double& alpha, const zcomplex* x, const i64& incx, zcomplex* a,
          const i64& lda) {
    syr<true>(uplo, n, Complex{alpha, 0.0}, scalars(x), incx, scalars(a), lda);
}

} // namespace nxl::NXL_TARGET
