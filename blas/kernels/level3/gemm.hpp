// The general matrix product on one thread, as kernels call it.
#pragma once
#include "blas/kernels/level3/plain_gemm.hpp"

namespace nxl::NXL_TARGET {

/// How this class cuts a product of m by n by k that packs both operands.
template <class T> Plan plan_for(i64 m, i64 n, i64 k);

/// C := alpha op(A) op(B) + beta C, by the rules of the class. No argument is checked.
template <class T> void gemm(const GeneralProduct<T>& product);

extern template Plan plan_for<double>(i64, i64, i64);
extern template Plan plan_for<Complex>(i64, i64, i64);
extern template void gemm(const GeneralProduct<double>&);
extern template void gemm(const GeneralProduct<Complex>&);

} // namespace nxl::NXL_TARGET
