// BLAS by value, one name for double and zcomplex. The drivers decide about threads. Level 3 stays on this thread where
// that is as well known here: see stays_here. Of its routines there is a form that takes the sizes from views.
#pragma once
#include "blas/kernel/default_em64t/level1/xf_l1_omp.hpp"
#include "blas/kernel/default_em64t/level2/gemv_omp.hpp"
#include "blas/kernel/default_em64t/level3/gemm_omp.hpp"
#include "blas/kernel/default_em64t/level3/rank_update_omp.hpp"
#include "blas/kernel/default_em64t/level3/symm_omp.hpp"
#include "blas/kernel/default_em64t/level3/trsm_omp.hpp"
#include "service/kernel_slot.hpp"
#include "service/matrix.hpp"
#include "service/parallel.hpp"
#include "service/worthwhile_threads.hpp"
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

/// The sum of the conjugates of x(i) times y(i).
inline double dotc(i64 n, const double* x, i64 incx, const double* y, i64 incy) { return dot(n, x, incx, y, incy); }
inline zcomplex dotc(i64 n, const zcomplex* x, i64 incx, const zcomplex* y, i64 incy) {
    zcomplex sum;
    slot<&KernelTable::zdotc>(sum, n, x, incx, y, incy);
    return sum;
}

template <class T> double nrm2(i64 n, const T* x, i64 incx) {
    return slot_of<T, &KernelTable::dnrm2, &KernelTable::dznrm2>()(n, x, incx);
}
/// The sum of |re| + |im|.
template <class T> double asum(i64 n, const T* x, i64 incx) {
    return slot_of<T, &KernelTable::dasum, &KernelTable::dzasum>()(n, x, incx);
}
/// The first element, from 1, with the largest |re| + |im|.
template <class T> i64 iamax(i64 n, const T* x, i64 incx) {
    return slot_of<T, &KernelTable::idamax, &KernelTable::izamax>()(n, x, incx);
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

/// y := alpha A x + beta y, A symmetric or Hermitian, of which one triangle is stored.
template <class T>
void symv(char uplo, Factor<T> alpha, const Operand<T>& a, const T* x, Factor<T> beta, T* y) {
    slot_of<T, &KernelTable::dsymv, &KernelTable::zsymv>()(uplo, a.rows, alpha, a.data, a.ld, x, 1, beta, y, 1);
}
template <class T>
void hemv(char uplo, Factor<T> alpha, const Operand<T>& a, const T* x, Factor<T> beta, T* y) {
    slot_of<T, &KernelTable::dsymv, &KernelTable::zhemv>()(uplo, a.rows, alpha, a.data, a.ld, x, 1, beta, y, 1);
}

/// x := op(A) x, A triangular.
template <class T> void trmv(char uplo, char trans, char diag, const Operand<T>& a, T* x) {
    slot_of<T, &KernelTable::dtrmv, &KernelTable::ztrmv>()(uplo, trans, diag, a.rows, a.data, a.ld, x, 1);
}
/// x := op(A)^-1 x
template <class T> void trsv(char uplo, char trans, char diag, const Operand<T>& a, T* x) {
    slot_of<T, &KernelTable::dtrsv, &KernelTable::ztrsv>()(uplo, trans, diag, a.rows, a.data, a.ld, x, 1);
}

// ---- Level 3 ----

/// Whether a product of m by n by k, `share` of which is done, is to be done on this thread whatever the driver would
/// say: in a task of a factorisation, where a region would have one thread, and when the work is no share for each of
/// two threads. Recursive algorithms end in many such calls, and some processor classes fork for any.
template <class T> bool stays_here(i64 m, i64 n, i64 k, double share) {
    return threads_for_work(share * flops_of<T>(m, n, k), 2) < 2 || region_would_be_serial();
}

/// C := alpha op(A) op(B) + beta C
template <class T>
void gemm(char transa, char transb, i64 m, i64 n, i64 k, Factor<T> alpha, const T* a, i64 lda, const T* b, i64 ldb,
          Factor<T> beta, T* c, i64 ldc) {
    if (!stays_here<T>(m, n, k, 1.0)) return gemm_driver(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
    slot_of<T, &KernelTable::xdgemm, &KernelTable::xzgemm>()(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c,
                                                             ldc);
}

template <class T>
void gemm(char transa, char transb, Factor<T> alpha, const Operand<T>& a, const Operand<T>& b, Factor<T> beta,
          const Matrix<T>& c) {
    const i64 k = transa == 'N' ? a.columns : a.rows;
    gemm(transa, transb, c.rows, c.columns, k, alpha, a.data, a.ld, b.data, b.ld, beta, c.data, c.ld);
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

template <class T>
void trsm(char side, char uplo, char transa, char diag, Factor<T> alpha, const Operand<T>& a, const Matrix<T>& b) {
    trsm(side, uplo, transa, diag, b.rows, b.columns, alpha, a.data, a.ld, b.data, b.ld);
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

template <class T>
void trmm(char side, char uplo, char transa, char diag, Factor<T> alpha, const Operand<T>& a, const Matrix<T>& b) {
    trmm(side, uplo, transa, diag, b.rows, b.columns, alpha, a.data, a.ld, b.data, b.ld);
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

template <class T>
void herk(char uplo, char trans, double alpha, const Operand<T>& a, double beta, const Matrix<T>& c) {
    herk(uplo, trans, c.rows, trans == 'N' ? a.columns : a.rows, alpha, a.data, a.ld, beta, c.data, c.ld);
}

/// C := alpha A B^H + conj(alpha) B A^H + beta C, or with `trans` C of the adjoints, one triangle.
template <class T>
void her2k(char uplo, char trans, Factor<T> alpha, const Operand<T>& a, const Operand<T>& b, double beta,
           const Matrix<T>& c) {
    const i64 n = c.rows, k = trans == 'N' ? a.columns : a.rows;
    const auto call = [&](auto&& routine) {
        routine(uplo, trans, n, k, alpha, a.data, a.ld, b.data, b.ld, beta, c.data, c.ld);
    };
    if (stays_here<T>(n, n, k, 1.0)) return call(slot_of<T, &KernelTable::dsyr2k, &KernelTable::zher2k>());
    if constexpr (std::is_same_v<T, double>) call(nxl_blas_dsyr2k);
    else call(nxl_blas_zher2k);
}

/// One triangle of C := alpha op(A) op(B) + beta C, which is known to be symmetric, or Hermitian where an op is C.
template <class T>
void gemmt(char uplo, char transa, char transb, Factor<T> alpha, const Operand<T>& a, const Operand<T>& b,
           Factor<T> beta, const Matrix<T>& c) {
    const i64 n = c.rows, k = transa == 'N' ? a.columns : a.rows;
    const auto call = [&](auto&& routine) {
        routine(uplo, transa, transb, n, k, alpha, a.data, a.ld, b.data, b.ld, beta, c.data, c.ld);
    };
    if (stays_here<T>(n, n, k, 0.5)) return call(slot_of<T, &KernelTable::dgemmt, &KernelTable::zgemmt>());
    if constexpr (std::is_same_v<T, double>) call(nxl_blas_dgemmt);
    else call(nxl_blas_zgemmt);
}

/// C := alpha A B + beta C, or B A from the right, A symmetric.
template <class T>
void symm(char side, char uplo, Factor<T> alpha, const Operand<T>& a, const Operand<T>& b, Factor<T> beta,
          const Matrix<T>& c) {
    const auto call = [&](auto&& routine) {
        routine(side, uplo, c.rows, c.columns, alpha, a.data, a.ld, b.data, b.ld, beta, c.data, c.ld);
    };
    const i64 inner = a.rows, others = side == 'L' ? c.columns : c.rows;
    if (stays_here<T>(inner, inner, others, 1.0)) return call(slot_of<T, &KernelTable::dsymm, &KernelTable::zsymm>());
    if constexpr (std::is_same_v<T, double>) call(nxl_blas_dsymm);
    else call(nxl_blas_zsymm);
}
/// The same, A Hermitian.
template <class T>
void hemm(char side, char uplo, Factor<T> alpha, const Operand<T>& a, const Operand<T>& b, Factor<T> beta,
          const Matrix<T>& c) {
    if constexpr (std::is_same_v<T, double>) return symm(side, uplo, alpha, a, b, beta, c);
    else {
        const auto call = [&](auto&& routine) {
            routine(side, uplo, c.rows, c.columns, alpha, a.data, a.ld, b.data, b.ld, beta, c.data, c.ld);
        };
        const i64 inner = a.rows, others = side == 'L' ? c.columns : c.rows;
        if (stays_here<T>(inner, inner, others, 1.0)) call(slot<&KernelTable::zhemm>);
        else call(nxl_blas_zhemm);
    }
}

} // namespace nxl
