// Drivers of the symmetric and Hermitian updates of rank k and 2k, and of products with such a result. Each is told the
// member of the kernel table that does its work on one thread.
#pragma once
#include "service/kernel_table.hpp"

namespace nxl {

/// C := alpha op(A) op(A)' + beta C in one triangle. A complex C with real alpha and beta is Hermitian.
template <class T, class Scalar, auto Kernel>
void syrk_driver(const char& uplo, const char& trans, const i64& n, const i64& k, const Scalar& alpha, const T* a,
                 const i64& lda, const Scalar& beta, T* c, const i64& ldc);
inline constexpr auto nxl_blas_dsyrk = syrk_driver<double, double, &KernelTable::dsyrk>;
inline constexpr auto nxl_blas_zsyrk = syrk_driver<zcomplex, zcomplex, &KernelTable::zsyrk>;
inline constexpr auto nxl_blas_zherk = syrk_driver<zcomplex, double, &KernelTable::zherk>;

/// C := alpha op(A) op(B)' + alpha' op(B) op(A)' + beta C in one triangle. A complex C with a real beta is Hermitian,
/// and alpha' is then the conjugate of alpha.
template <class T, class Beta, auto Kernel>
void syr2k_driver(const char& uplo, const char& trans, const i64& n, const i64& k, const T& alpha, const T* a,
                  const i64& lda, const T* b, const i64& ldb, const Beta& beta, T* c, const i64& ldc);
inline constexpr auto nxl_blas_dsyr2k = syr2k_driver<double, double, &KernelTable::dsyr2k>;
inline constexpr auto nxl_blas_zsyr2k = syr2k_driver<zcomplex, zcomplex, &KernelTable::zsyr2k>;
inline constexpr auto nxl_blas_zher2k = syr2k_driver<zcomplex, double, &KernelTable::zher2k>;

/// One triangle of C := alpha op(A) op(B) + beta C, which is known to be symmetric, or Hermitian where an op is C.
template <class T, auto Kernel>
void gemmt_driver(const char& uplo, const char& transa, const char& transb, const i64& n, const i64& k, const T& alpha,
                  const T* a, const i64& lda, const T* b, const i64& ldb, const T& beta, T* c, const i64& ldc);
inline constexpr auto nxl_blas_dgemmt = gemmt_driver<double, &KernelTable::dgemmt>;
inline constexpr auto nxl_blas_zgemmt = gemmt_driver<zcomplex, &KernelTable::zgemmt>;

} // namespace nxl
