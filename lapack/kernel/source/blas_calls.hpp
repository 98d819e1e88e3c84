// Level 3 as LAPACK algorithms call it: one name for double and zcomplex, options and sizes by value. The drivers
// decide about threads; in a task of a factorisation, where a region would have one thread, the kernels are called at
// once.
#pragma once
#include "blas/kernel/default_em64t/level3/gemm_omp.hpp"
#include "blas/kernel/default_em64t/level3/level3_omp.hpp"
#include "blas/kernel/default_em64t/level3/slots.hpp"
#include "service/parallel.hpp"
#include <type_traits>

namespace nxl {

/// A scalar that is to be taken as it stands, and not to decide what T is.
template <class T> using Factor = std::type_identity_t<T>;

/// Whether a product of m by n by k, `share` of which is done, is to be done on this thread whatever the driver would
/// say: in a task of a factorisation, where a region would have one thread, and when the work is short of several
/// forks. Recursive algorithms end in many such calls, and some processor classes fork for any.
template <class T> bool stays_here(i64 m, i64 n, i64 k, double share) {
    constexpr double least = sizeof(T) == sizeof(double) ? 2e6 : 5e5; // multiply-adds
    return share * static_cast<double>(m) * static_cast<double>(n) * static_cast<double>(k) < least ||
           region_would_be_serial();
}

template <class T>
void gemm(char transa, char transb, i64 m, i64 n, i64 k, Factor<T> alpha, const T* a, i64 lda, const T* b, i64 ldb,
          Factor<T> beta, T* c, i64 ldc) {
    const bool serial = stays_here<T>(m, n, k, 1.0);
    if constexpr (std::is_same_v<T, double>)
        serial ? xdgemm_slot(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc)
               : nxl_blas_dgemm(&transa, &transb, &m, &n, &k, &alpha, a, &lda, b, &ldb, &beta, c, &ldc);
    else
        serial ? xzgemm_slot(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc)
               : nxl_blas_zgemm(&transa, &transb, &m, &n, &k, &alpha, a, &lda, b, &ldb, &beta, c, &ldc);
}

/// B := alpha op(A)^-1 B, or from the right.
template <class T>
void trsm(char side, char uplo, char transa, char diag, i64 m, i64 n, Factor<T> alpha, const T* a, i64 lda, T* b,
          i64 ldb) {
    const bool serial = stays_here<T>(m, n, side == 'L' ? m : n, 0.5);
    if constexpr (std::is_same_v<T, double>)
        serial ? dtrsm_slot(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb)
               : nxl_blas_dtrsm(&side, &uplo, &transa, &diag, &m, &n, &alpha, a, &lda, b, &ldb);
    else
        serial ? ztrsm_slot(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb)
               : nxl_blas_ztrsm(&side, &uplo, &transa, &diag, &m, &n, &alpha, a, &lda, b, &ldb);
}

/// B := alpha op(A) B, or from the right.
template <class T>
void trmm(char side, char uplo, char transa, char diag, i64 m, i64 n, Factor<T> alpha, const T* a, i64 lda, T* b,
          i64 ldb) {
    const bool serial = stays_here<T>(m, n, side == 'L' ? m : n, 0.5);
    if constexpr (std::is_same_v<T, double>)
        serial ? dtrmm_slot(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb)
               : nxl_blas_dtrmm(&side, &uplo, &transa, &diag, &m, &n, &alpha, a, &lda, b, &ldb);
    else
        serial ? ztrmm_slot(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb)
               : nxl_blas_ztrmm(&side, &uplo, &transa, &diag, &m, &n, &alpha, a, &lda, b, &ldb);
}

/// C := alpha op(A) op(A)^H + beta C, one triangle: the symmetric update of a real matrix, the Hermitian one of a
/// complex matrix. `trans` is N or C.
template <class T>
void herk(char uplo, char trans, i64 n, i64 k, double alpha, const T* a, i64 lda, double beta, T* c, i64 ldc) {
    const bool serial = stays_here<T>(n, n, k, 0.5);
    if constexpr (std::is_same_v<T, double>)
        serial ? dsyrk_slot(uplo, trans, n, k, alpha, a, lda, beta, c, ldc)
               : nxl_blas_dsyrk(&uplo, &trans, &n, &k, &alpha, a, &lda, &beta, c, &ldc);
    else
        serial ? zherk_slot(uplo, trans, n, k, alpha, a, lda, beta, c, ldc)
               : nxl_blas_zherk(&uplo, &trans, &n, &k, &alpha, a, &lda, &beta, c, &ldc);
}

} // namespace nxl
