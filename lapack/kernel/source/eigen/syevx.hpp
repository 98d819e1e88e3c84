// Selected eigenvalues and vectors of symmetric and Hermitian matrices, full and band.
#pragma once
#include "service/types.hpp"

namespace nxl {

// Options are capitals. See dsyevx and dsbevx in nxl.h.
template <class T>
void syevx(const char& jobz, const char& range, const char& uplo, const i64& n, T* a, const i64& lda, const double& vl,
           const double& vu, const i64& il, const i64& iu, const double& abstol, i64& m, double* w, T* z,
           const i64& ldz, T* work, const i64& lwork, i64* ifail, i64& info);
inline constexpr auto nxl_lapack_dsyevx = syevx<double>;
inline constexpr auto nxl_lapack_zheevx = syevx<zcomplex>;

/// What zheevr has beside dsyevr; null for that.
struct RealWorkspace {
    double* work;
    i64 length;
};
/// See dsyevr in nxl.h. isuppz may be null: then it is not told.
template <class T>
void syevr(const char& jobz, const char& range, const char& uplo, const i64& n, T* a, const i64& lda, const double& vl,
           const double& vu, const i64& il, const i64& iu, const double& abstol, i64& m, double* w, T* z,
           const i64& ldz, i64* isuppz, T* work, const i64& lwork, const RealWorkspace& real, i64* iwork,
           const i64& liwork, i64& info);
inline constexpr auto nxl_lapack_dsyevr = syevr<double>;
inline constexpr auto nxl_lapack_zheevr = syevr<zcomplex>;

/// With `q` wanted, the matrix that brings the band to tridiagonal form comes in q(n,n).
template <class T>
void sbevx(const char& jobz, const char& range, const char& uplo, const i64& n, const i64& kd, const T* ab,
           const i64& ldab, T* q, const i64& ldq, const double& vl, const double& vu, const i64& il, const i64& iu,
           const double& abstol, i64& m, double* w, T* z, const i64& ldz, i64* ifail, i64& info);
inline constexpr auto nxl_lapack_dsbevx = sbevx<double>;
inline constexpr auto nxl_lapack_zhbevx = sbevx<zcomplex>;

} // namespace nxl
