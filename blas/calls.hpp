// BLAS by value, one name for double and zcomplex. The drivers decide about threads. Level 3 stays on this thread where
// that is as well known here: see stays_here.
#pragma once
#include "blas/kernel/default_em64t/level1/xf_l1_omp.hpp"
#include "blas/kernel/default_em64t/level2/gemv_omp.hpp"
#include "blas/kernel/default_em64t/level3/gemm_omp.hpp"
#include "blas/kernel/default_em64t/level3/rank_update_omp.hpp"
#include "blas/kernel/default_em64t/level3/symm_omp.hpp"
#include "blas/kernel/default_em64t/level3/trsm_omp.hpp"
#include "service/kernel_slot.hpp"
#include "service/parallel.hpp"
#include <type_traits>

namespace nxl {

/// A scalar that is to be taken as it stands, and not to decide what T is.
template <class T> using Factor = std::type_identity_t<T>;

// ---- Level 1 ----

/// The sum of x(i) y(i), without conjugation.
inline double dot(i64 n, const double* x, i64 incx, const double* y, i64 incy) {
    return nxl_blas_ddot(n, x, incx, y, incy);
}
inline zcomplex dot(i64 n, const zcomplex* x, i64 incx, const zcomplex* y, i64 incy) {
    zcomplex sum;
    slot<&KernelTable::zdotu>(sum, n, x, incx, y, incy);
    return sum;
}

/// y := y + alpha x
inline void axpy(i64 n, Factor<double> alpha, const double* x, i64 incx, double* y, i64 incy) {
    nxl_blas_daxpy(n, alpha, x, incx, y, incy);
}
inline void axpy(i64 n, const Factor<zcomplex>& alpha, const zcomplex* x, i64 incx, zcomplex* y, i64 incy) {
    nxl_blas_zaxpy(n, alpha, x, incx, y, incy);
}

template <class T> double nrm2(i64 n, const T* x, i64 incx) {
    return slot_of<T, &KernelTable::dnrm2, &KernelTable::dznrm2>()(n, x, incx);
}
template <class T> void scal(i64 n, const Factor<T>& alpha, T* x, i64 incx) {
    slot_of<T, &KernelTable::dscal, &KernelTable::zscal>()(n, alpha, x, incx);
}
template <class T> void copy(i64 n, const T* x, i64 incx, T* y, i64 incy) {
    slot_of<T, &KernelTable::dcopy, &KernelTable::zcopy>()(n, x, incx, y, incy);
}
template <class T> void swap(i64 n, T* x, i64 incx, T* y, i64 incy) {
    slot_of<T, &KernelTable::dswap, &KernelTable::zswap>()(n, x, incx, y, incy);
}

// ---- Level 2 ----

/// y := alpha op(A) x + beta y
template <class T>
void gemv(char trans, i64 m, i64 n, Factor<T> alpha, const T* a, i64 lda, const T* x, i64 incx, Factor<T> beta, T* y,
          i64 incy) {
    gemv_driver(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);
}

// ---- Level 3 ----

/// Whether a product of m by n by k, `share` of which is done, is to be done on this thread whatever the driver would
/// say: in a task of a factorisation, where a region would have one thread, and when the work is short of several
/// forks. Recursive algorithms end in many such calls, and some processor classes fork for any.
template <class T> bool stays_here(i64 m, i64 n, i64 k, double share) {
    constexpr double least = sizeof(T) == sizeof(double) ? 2e6 : 5e5; // multiply-adds
    return share * static_cast<double>(m) * static_cast<double>(n) * static_cast<double>(k) < least ||
           region_would_be_serial();
}

/// C := alpha op(A) op(B) + beta C
template <class T>
void gemm(char transa, char transb, i64 m, i64 n, i64 k, Factor<T> alpha, const T* a, i64 lda, const T* b, i64 ldb,
          Factor<T> beta, T* c, i64 ldc) {
    if (!stays_here<T>(m, n, k, 1.0)) return gemm_driver(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
    slot_of<T, &KernelTable::xdgemm, &KernelTable::xzgemm>()(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c,
                                                             ldc);
}

/// B := alpha op(A)^-1 B, or from the right.
template <class T>
void trsm(char side, char uplo, char transa, char diag, i64 m, i64 n, Factor<T> alpha, const T* a, i64 lda, T* b,
          i64 ldb) {
    const auto call = [&](auto&& routine) { routine(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb); };
    if (stays_here<T>(m, n, side == 'L' ? m : n, 0.5))
        return call(slot_of<T, &KernelTable::dtrsm, &KernelTable::ztrsm>());
    if constexpr (std::is_same_v<T, double>) call(nxl_blas_dtrsm);
    else call(nxl_blas_ztrsm);
}

/// B := alpha op(A) B, or from the right.
template <class T>
void trmm(char side, char uplo, char transa, char diag, i64 m, i64 n, Factor<T> alpha, const T* a, i64 lda, T* b,
          i64 ldb) {
    const auto call = [&](auto&& routine) { routine(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb); };
    if (stays_here<T>(m, n, side == 'L' ? m : n, 0.5))
        return call(slot_of<T, &KernelTable::dtrmm, &KernelTable::ztrmm>());
    if constexpr (std::is_same_v<T, double>) call(nxl_blas_dtrmm);
    else call(nxl_blas_ztrmm);
}

/// C := alpha op(A) op(A)^H + beta C, one triangle: the symmetric update of a real matrix, the Hermitian one of a
/// complex matrix. `trans` is N or C.
template <class T>
void herk(char uplo, char trans, i64 n, i64 k, double alpha, const T* a, i64 lda, double beta, T* c, i64 ldc) {
    const auto call = [&](auto&& routine) { routine(uplo, trans, n, k, alpha, a, lda, beta, c, ldc); };
    if (stays_here<T>(n, n, k, 0.5)) return call(slot_of<T, &KernelTable::dsyrk, &KernelTable::zherk>());
    if constexpr (std::is_same_v<T, double>) call(nxl_blas_dsyrk);
    else call(nxl_blas_zherk);
}

} // namespace nxl
