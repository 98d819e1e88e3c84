// LAPACK, condition numbers and error bounds: entries.
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/condition/trcon.hpp"
#include "lapack/kernel/source/condition/trrfs.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/letters.hpp"

using namespace nxl;

extern "C" {

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
