// Drivers of the general matrix product.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// C := alpha op(A) op(B) + beta C, over threads where that pays.
template <class T>
void gemm_driver(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k, const T& alpha,
                 const T* a, const i64& lda, const T* b, const i64& ldb, const T& beta, T* c, const i64& ldc);
inline constexpr auto nxl_blas_dgemm = gemm_driver<double>;
inline constexpr auto nxl_blas_zgemm = gemm_driver<zcomplex>;

} // namespace nxl
