// LAPACK, solutions and inverses from LU and Cholesky factors and from triangular matrices: entries.
#include "lapack/kernel/source/cholesky/potri.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/lu/getri.hpp"
#include "lapack/kernel/source/lu/getrs.hpp"
#include "lapack/kernel/source/triangular/trtri.hpp"
#include "lapack/kernel/source/triangular/trtrs.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/letters.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dgetrs(const char* trans, const int* n, const int* nrhs, const double* a, const int* lda,
                       const int* ipiv, double* b, const int* ldb, int* info, int trans_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("DGETRS", info64.value);
    nxl_lapack_dgetrs(capital(*trans), *n, *nrhs, a, *lda, pivots.data(), b, *ldb, info64.value, trans_length);
}

NXL_EXPORT void dgetri(const int* n, double* a, const int* lda, const int* ipiv, double* work, const int* lwork,
                       int* info) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, unless_query(*n, *lwork));
    if (!pivots.data()) return refuse_for_memory("DGETRI", info64.value);
    nxl_lapack_dgetri(*n, a, *lda, pivots.data(), work, *lwork, info64.value);
}

NXL_EXPORT void dpotri(const char* uplo, const int* n, double* a, const int* lda, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dpotri(capital(*uplo), *n, a, *lda, info64.value, uplo_length);
}

NXL_EXPORT void dtrtri(const char* uplo, const char* diag, const int* n, double* a, const int* lda, int* info,
                       int uplo_length, int diag_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dtrtri(capital(*uplo), capital(*diag), *n, a, *lda, info64.value, uplo_length, diag_length);
}

NXL_EXPORT void dtrtrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                       const double* a, const int* lda, double* b, const int* ldb, int* info, int uplo_length,
                       int trans_length, int diag_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dtrtrs(capital(*uplo), capital(*trans), capital(*diag), *n, *nrhs, a, *lda, b, *ldb, info64.value,
                      uplo_length, trans_length, diag_length);
}

NXL_EXPORT void zgetrs(const char* trans, const int* n, const int* nrhs, const nxl_z* a, const int* lda,
                       const int* ipiv, nxl_z* b, const int* ldb, int* info, int trans_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZGETRS", info64.value);
    nxl_lapack_zgetrs(capital(*trans), *n, *nrhs, a, *lda, pivots.data(), b, *ldb, info64.value, trans_length);
}

NXL_EXPORT void zgetri(const int* n, nxl_z* a, const int* lda, const int* ipiv, nxl_z* work, const int* lwork,
                       int* info) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, unless_query(*n, *lwork));
    if (!pivots.data()) return refuse_for_memory("ZGETRI", info64.value);
    nxl_lapack_zgetri(*n, a, *lda, pivots.data(), work, *lwork, info64.value);
}

NXL_EXPORT void zpotri(const char* uplo, const int* n, nxl_z* a, const int* lda, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zpotri(capital(*uplo), *n, a, *lda, info64.value, uplo_length);
}

NXL_EXPORT void ztrtri(const char* uplo, const char* diag, const int* n, nxl_z* a, const int* lda, int* info,
                       int uplo_length, int diag_length) noexcept {
    OutInt info64(info);
    nxl_lapack_ztrtri(capital(*uplo), capital(*diag), *n, a, *lda, info64.value, uplo_length, diag_length);
}

NXL_EXPORT void ztrtrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                       const nxl_z* a, const int* lda, nxl_z* b, const int* ldb, int* info, int uplo_length,
                       int trans_length, int diag_length) noexcept {
    OutInt info64(info);
    nxl_lapack_ztrtrs(capital(*uplo), capital(*trans), capital(*diag), *n, *nrhs, a, *lda, b, *ldb, info64.value,
                      uplo_length, trans_length, diag_length);
}

} // extern "C"
