// Singular value decomposition of a general matrix.
#pragma once
#include "service/types.hpp"

namespace nxl {

// A = U S V^H. Options are capitals. The workspaces are looked at for their lengths alone: the routines bring their
// own; when values have not converged, the superdiagonal comes in work(2..) of dgesvd, in rwork of zgesvd.
void nxl_lapack_dgesvd(const char& jobu, const char& jobvt, const i64& m, const i64& n, double* a, const i64& lda,
                       double* s, double* u, const i64& ldu, double* vt, const i64& ldvt, double* work,
                       const i64& lwork, i64& info, int jobu_length = 1, int jobvt_length = 1);
void nxl_lapack_zgesvd(const char& jobu, const char& jobvt, const i64& m, const i64& n, zcomplex* a, const i64& lda,
                       double* s, zcomplex* u, const i64& ldu, zcomplex* vt, const i64& ldvt, zcomplex* work,
                       const i64& lwork, double* rwork, i64& info, int jobu_length = 1, int jobvt_length = 1);

/// The same by divide and conquer.
template <class T>
void gesdd(const char& jobz, const i64& m, const i64& n, T* a, const i64& lda, double* s, T* u, const i64& ldu, T* vt,
           const i64& ldvt, T* work, const i64& lwork, i64& info);
inline constexpr auto nxl_lapack_dgesdd = gesdd<double>;
inline constexpr auto nxl_lapack_zgesdd = gesdd<zcomplex>;

} // namespace nxl
