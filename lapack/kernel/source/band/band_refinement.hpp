// Refinement of solutions of band systems.
#pragma once
#include "lapack/kernel/source/condition/estimate_space.hpp"

namespace nxl {

/// Improves each column of X, for op(A) X = B, with the factors afb and ipiv that gbtrf has left of a; the forward
/// bound and the backward error go to ferr and berr. work: 3n real, or 2n complex elements and n in rwork, which is
/// `spare`.
template <class T>
void gbrfs(const char& trans, const i64& n, const i64& kl, const i64& ku, const i64& nrhs, const T* ab, const i64& ldab,
           const T* afb, const i64& ldafb, const i64* ipiv, const T* b, const i64& ldb, T* x, const i64& ldx,
           double* ferr, double* berr, T* work, Spare<T>* spare, i64& info, int = 1);
inline constexpr auto nxl_lapack_dgbrfs = gbrfs<double>;
inline constexpr auto nxl_lapack_zgbrfs = gbrfs<zcomplex>;

/// The same for A X = B with the factor that pbtrf has left.
template <class T>
void pbrfs(const char& uplo, const i64& n, const i64& kd, const i64& nrhs, const T* ab, const i64& ldab, const T* afb,
           const i64& ldafb, const T* b, const i64& ldb, T* x, const i64& ldx, double* ferr, double* berr, T* work,
           Spare<T>* spare, i64& info, int = 1);
inline constexpr auto nxl_lapack_dpbrfs = pbrfs<double>;
inline constexpr auto nxl_lapack_zpbrfs = pbrfs<zcomplex>;

} // namespace nxl
