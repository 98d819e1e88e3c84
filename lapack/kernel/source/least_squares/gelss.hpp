// Least squares solutions of least norm by the singular value decomposition.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The X of least norm among those with the least |B - A X|, singular values up to rcond times the largest being taken
/// as 0; A becomes the right singular vectors. The workspaces are looked at for their lengths alone.
template <class T>
void gelss(const i64& m, const i64& n, const i64& nrhs, T* a, const i64& lda, T* b, const i64& ldb, double* s,
           const double& rcond, i64& rank, T* work, const i64& lwork, i64& info);
inline constexpr auto nxl_lapack_dgelss = gelss<double>;
inline constexpr auto nxl_lapack_zgelss = gelss<zcomplex>;

/// The same without the vectors, which are not needed but where the rank is short. The first elements of the workspaces
/// tell their least lengths.
void nxl_lapack_dgelsd(const i64& m, const i64& n, const i64& nrhs, double* a, const i64& lda, double* b,
                       const i64& ldb, double* s, const double& rcond, i64& rank, double* work, const i64& lwork,
                       i64* iwork, i64& info);
void nxl_lapack_zgelsd(const i64& m, const i64& n, const i64& nrhs, zcomplex* a, const i64& lda, zcomplex* b,
                       const i64& ldb, double* s, const double& rcond, i64& rank, zcomplex* work, const i64& lwork,
                       double* rwork, i64* iwork, i64& info);

} // namespace nxl
