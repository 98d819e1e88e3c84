// LAPACK, condition numbers and error bounds: entries.
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/condition/gecon.hpp"
#include "lapack/kernel/source/condition/gerfs.hpp"
#include "lapack/kernel/source/condition/pocon.hpp"
#include "lapack/kernel/source/condition/porfs.hpp"
#include "lapack/kernel/source/condition/trcon.hpp"
#include "lapack/kernel/source/condition/trrfs.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/letters.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dgecon(const char* norm, const int* n, const double* a, const int* lda, const double* anorm,
                       double* rcond, double* work, int* iwork, int* info, int norm_length) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DGECON", info64.value);
    nxl_lapack_dgecon(capital(*norm), *n, a, *lda, *anorm, *rcond, work, integers.data(), info64.value, norm_length);
}

NXL_EXPORT void dgerfs(const char* trans, const int* n, const int* nrhs, const double* a, const int* lda,
                       const double* af, const int* ldaf, const int* ipiv, const double* b, const int* ldb, double* x,
                       const int* ldx, double* ferr, double* berr, double* work, int* iwork, int* info,
                       int trans_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("DGERFS", info64.value);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DGERFS", info64.value);
    nxl_lapack_dgerfs(capital(*trans), *n, *nrhs, a, *lda, af, *ldaf, pivots.data(), b, *ldb, x, *ldx, ferr, berr, work,
                      integers.data(), info64.value, trans_length);
}

NXL_EXPORT void dpocon(const char* uplo, const int* n, const double* a, const int* lda, const double* anorm,
                       double* rcond, double* work, int* iwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DPOCON", info64.value);
    nxl_lapack_dpocon(capital(*uplo), *n, a, *lda, *anorm, *rcond, work, integers.data(), info64.value, uplo_length);
}

NXL_EXPORT void dporfs(const char* uplo, const int* n, const int* nrhs, const double* a, const int* lda,
                       const double* af, const int* ldaf, const double* b, const int* ldb, double* x, const int* ldx,
                       double* ferr, double* berr, double* work, int* iwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DPORFS", info64.value);
    nxl_lapack_dporfs(capital(*uplo), *n, *nrhs, a, *lda, af, *ldaf, b, *ldb, x, *ldx, ferr, berr, work,
                      integers.data(), info64.value, uplo_length);
}

NXL_EXPORT void dtrcon(const char* norm, const char* uplo, const char* diag, const int* n, const double* a,
                       const int* lda, double* rcond, double* work, int* iwork, int* info, int norm_length,
                       int uplo_length, int diag_length) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DTRCON", info64.value);
    nxl_lapack_dtrcon(capital(*norm), capital(*uplo), capital(*diag), *n, a, *lda, *rcond, work, integers.data(),
                      info64.value, norm_length, uplo_length, diag_length);
}

NXL_EXPORT void dtrrfs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                       const double* a, const int* lda, const double* b, const int* ldb, const double* x,
                       const int* ldx, double* ferr, double* berr, double* work, int* iwork, int* info, int uplo_length,
                       int trans_length, int diag_length) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DTRRFS", info64.value);
    nxl_lapack_dtrrfs(capital(*uplo), capital(*trans), capital(*diag), *n, *nrhs, a, *lda, b, *ldb, x, *ldx, ferr, berr,
                      work, integers.data(), info64.value, uplo_length, trans_length, diag_length);
}

NXL_EXPORT void zgecon(const char* norm, const int* n, const nxl_z* a, const int* lda, const double* anorm,
                       double* rcond, nxl_z* work, double* rwork, int* info, int norm_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zgecon(capital(*norm), *n, a, *lda, *anorm, *rcond, work, rwork, info64.value, norm_length);
}

NXL_EXPORT void zgerfs(const char* trans, const int* n, const int* nrhs, const nxl_z* a, const int* lda,
                       const nxl_z* af, const int* ldaf, const int* ipiv, const nxl_z* b, const int* ldb, nxl_z* x,
                       const int* ldx, double* ferr, double* berr, nxl_z* work, double* rwork, int* info,
                       int trans_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZGERFS", info64.value);
    nxl_lapack_zgerfs(capital(*trans), *n, *nrhs, a, *lda, af, *ldaf, pivots.data(), b, *ldb, x, *ldx, ferr, berr, work,
                      rwork, info64.value, trans_length);
}

NXL_EXPORT void zpocon(const char* uplo, const int* n, const nxl_z* a, const int* lda, const double* anorm,
                       double* rcond, nxl_z* work, double* rwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zpocon(capital(*uplo), *n, a, *lda, *anorm, *rcond, work, rwork, info64.value, uplo_length);
}

NXL_EXPORT void zporfs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const nxl_z* af,
                       const int* ldaf, const nxl_z* b, const int* ldb, nxl_z* x, const int* ldx, double* ferr,
                       double* berr, nxl_z* work, double* rwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zporfs(capital(*uplo), *n, *nrhs, a, *lda, af, *ldaf, b, *ldb, x, *ldx, ferr, berr, work, rwork,
                      info64.value, uplo_length);
}

NXL_EXPORT void ztrcon(const char* norm, const char* uplo, const char* diag, const int* n, const nxl_z* a,
                       const int* lda, double* rcond, nxl_z* work, double* rwork, int* info, int norm_length,
                       int uplo_length, int diag_length) noexcept {
    OutInt info64(info);
    nxl_lapack_ztrcon(capital(*norm), capital(*uplo), capital(*diag), *n, a, *lda, *rcond, work, rwork, info64.value,
                      norm_length, uplo_length, diag_length);
}

NXL_EXPORT void ztrrfs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                       const nxl_z* a, const int* lda, const nxl_z* b, const int* ldb, const nxl_z* x, const int* ldx,
                       double* ferr, double* berr, nxl_z* work, double* rwork, int* info, int uplo_length,
                       int trans_length, int diag_length) noexcept {
    OutInt info64(info);
    nxl_lapack_ztrrfs(capital(*uplo), capital(*trans), capital(*diag), *n, *nrhs, a, *lda, b, *ldb, x, *ldx, ferr, berr,
                      work, rwork, info64.value, uplo_length, trans_length, diag_length);
}

} // extern "C"
