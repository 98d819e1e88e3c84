// Drivers of the products with a symmetric or Hermitian matrix. Each is told the member of the kernel table that does
// its work on one thread.
#pragma once
#include "service/kernel_table.hpp"

namespace nxl {

/// C := alpha A B + beta C or alpha B A + beta C; A is symmetric, or Hermitian, as the kernel takes it.
template <class T, auto Kernel>
void symm_driver(const char& side, const char& uplo, const i64& m, const i64& n, const T& alpha, const T* a,
                 const i64& lda, const T* b, const i64& ldb, const T& beta, T* c, const i64& ldc);
inline constexpr auto nxl_blas_dsymm = symm_driver<double, &KernelTable::dsymm>;
inline constexpr auto nxl_blas_zsymm = symm_driver<zcomplex, &KernelTable::zsymm>;
inline constexpr auto nxl_blas_zhemm = symm_driver<zcomplex, &KernelTable::zhemm>;

} // namespace nxl
