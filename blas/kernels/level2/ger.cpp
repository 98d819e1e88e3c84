// dger, zgeru: A := A + alpha x y^T; zgerc: A := A + alpha x y^H. A m by n.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/rank_update.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// A is read and written once. x is kept in cache a block of rows at a time, and a panel of columns takes each vector
/// of it from a register; y is needed one element per column. rank_update.hpp has the loops: this is the case of one
/// product and no triangle.
template <bool Conjugate, class T>
void ger(i64 m, i64 n, T alpha, const T* x, i64 incx, const T* y, i64 incy, T* a, i64 lda) {
    if (m < 1 || n < 1 || is_zero(alpha)) return;
    const OuterProduct<T> product[] = {{alpha, x + first_index(m, incx), incx, y + first_index(n, incy), incy}};
    update_matrix<Conjugate>(m, n, product, a, lda);
}

} // namespace

void dger(const i64& m, const i64& n, const double& alpha, const double* x, const i64& incx, const double* y,
          const i64& incy, double* a, const i64& lda) {
    ger<false>(m, n, alpha, x, incx, y, incy, a, lda);
}

void zgeru(const i64& m, const i64& n, const zcomplex& alpha, const zcomplex* x, const i64& incx, const zcomplex* y,
           const i64& incy, zcomplex* a, const i64& lda) {
    ger<false>(m, n, scalar(alpha), scalars(x), incx, scalars(y), incy, scalars(a), lda);
}

void zgerc(const i64& m, const i64& n, const zcomplex& alpha, const zcomplex* x, const i64& incx, const zcomplex* y,
           const i64& incy, zcomplex* a, const i64& lda) {
    ger<true>(m, n, scalar(alpha), scalars(x), incx, scalars(y), incy, scalars(a), lda);
}

} // namespace nxl::NXL_TARGET
