// Eigenvalues and eigenvectors of general matrices.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Options are capitals. See dgeev and zgeev in nxl.h.
void nxl_lapack_dgeev(const char& jobvl, const char& jobvr, const i64& n, double* a, const i64& lda, double* wr,
                      double* wi, double* vl, const i64& ldvl, double* vr, const i64& ldvr, double* work,
                      const i64& lwork, i64& info);
void nxl_lapack_zgeev(const char& jobvl, const char& jobvr, const i64& n, zcomplex* a, const i64& lda, zcomplex* w,
                      zcomplex* vl, const i64& ldvl, zcomplex* vr, const i64& ldvr, zcomplex* work, const i64& lwork,
                      i64& info);

} // namespace nxl
