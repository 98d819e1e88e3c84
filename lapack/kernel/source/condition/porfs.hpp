// Refinement of solutions of positive definite systems.
#pragma once
#include "lapack/kernel/source/condition/estimate_space.hpp"

namespace nxl {

/// Improves each column of X, for A X = B, with the factor af that potrf has left of a; the forward bound and the
/// backward error go to ferr and berr. work: 3n real, or 2n complex elements and n in rwork, which is `spare`.
template <class T>
void porfs(const char& uplo, const i64& n, const i64& nrhs, const T* a, const i64& lda, const T* af, const i64& ldaf,
           const T* b, const i64& ldb, T* x, const i64& ldx, double* ferr, double* berr, T* work, Spare<T>* spare,
           i64& info, int = 1);
inline constexpr auto nxl_lapack_dporfs = porfs<double>;
inline constexpr auto nxl_lapack_zporfs = porfs<zcomplex>;

} // namespace nxl
