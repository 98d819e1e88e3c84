// All eigenvalues and vectors of symmetric and Hermitian band matrices.
#pragma once
#include "service/types.hpp"

namespace nxl {

// Options are capitals. The workspaces are looked at for their lengths alone: the routines bring their own.
void nxl_lapack_dsbev(const char& jobz, const char& uplo, const i64& n, const i64& kd, const double* ab,
                      const i64& ldab, double* w, double* z, const i64& ldz, double* work, i64& info, int, int);
void nxl_lapack_zhbev(const char& jobz, const char& uplo, const i64& n, const i64& kd, const zcomplex* ab,
                      const i64& ldab, double* w, zcomplex* z, const i64& ldz, zcomplex* work, double* rwork, i64& info,
                      int, int);
void nxl_lapack_dsbevd(const char& jobz, const char& uplo, const i64& n, const i64& kd, const double* ab,
                       const i64& ldab, double* w, double* z, const i64& ldz, double* work, const i64& lwork,
                       i64* iwork, const i64& liwork, i64& info, int, int);
void nxl_lapack_zhbevd(const char& jobz, const char& uplo, const i64& n, const i64& kd, const zcomplex* ab,
                       const i64& ldab, double* w, zcomplex* z, const i64& ldz, zcomplex* work, const i64& lwork,
                       double* rwork, const i64& lrwork, i64* iwork, const i64& liwork, i64& info, int, int);

} // namespace nxl
