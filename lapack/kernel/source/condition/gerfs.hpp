// Refinement of solutions of general systems.
#pragma once
#include "lapack/kernel/source/condition/estimate_space.hpp"

namespace nxl {

/// Improves each column of X, for op(A) X = B, with the factors af and ipiv that getrf has left of a; the forward bound
/// and the backward error go to ferr and berr. work: 3n real, or 2n complex elements and n in rwork, which is `spare`.
template <class T>
void gerfs(const char& trans, const i64& n, const i64& nrhs, const T* a, const i64& lda, const T* af, const i64& ldaf,
           const i64* ipiv, const T* b, const i64& ldb, T* x, const i64& ldx, double* ferr, double* berr, T* work,
           Spare<T>* spare, i64& info, int = 1);
inline constexpr auto nxl_lapack_dgerfs = gerfs<double>;
inline constexpr auto nxl_lapack_zgerfs = gerfs<zcomplex>;

} // namespace nxl
