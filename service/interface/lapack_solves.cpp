// LAPACK, solutions and inverses from LU and Cholesky factors and from triangular matrices: entries.
#include "lapack/kernel/source/cholesky.hpp"
#include "lapack/kernel/source/lu.hpp"
#include "lapack/kernel/source/reports.hpp"
#include "lapack/kernel/source/triangular.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/arguments.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dgetrs(const char* trans, const int* n, const int* nrhs, const double* a, const int* lda,
                       const int* ipiv, double* b, const int* ldb, int* info, int trans_length) noexcept {
    OutInt info64(info);
    const i64 n64 = *n, nrhs64 = *nrhs, lda64 = *lda, ldb64 = *ldb;
    const WideInts pivots(ipiv, n64);
    if (!pivots.data()) return refuse_for_memory("DGETRS", &info64.value);
    nxl_lapack_dgetrs(trans, &n64, &nrhs64, a, &lda64, pivots.data(), b, &ldb64, &info64.value, trans_length);
}

NXL_EXPORT void dgetri(const int* n, double* a, const int* lda, const int* ipiv, double* work, const int* lwork,
                       int* info) noexcept {
    OutInt info64(info);
    const i64 n64 = *n, lda64 = *lda, lwork64 = *lwork;
    const WideInts pivots(ipiv, unless_query(n64, lwork64));
    if (!pivots.data()) return refuse_for_memory("DGETRI", &info64.value);
    nxl_lapack_dgetri(&n64, a, &lda64, pivots.data(), work, &lwork64, &info64.value);
}

NXL_EXPORT void dpotri(const char* uplo, const int* n, double* a, const int* lda, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const i64 n64 = *n, lda64 = *lda;
    nxl_lapack_dpotri(uplo, &n64, a, &lda64, &info64.value, uplo_length);
}

NXL_EXPORT void dtrtri(const char* uplo, const char* diag, const int* n, double* a, const int* lda, int* info,
                       int uplo_length, int diag_length) noexcept {
    OutInt info64(info);
    const i64 n64 = *n, lda64 = *lda;
    nxl_lapack_dtrtri(uplo, diag, &n64, a, &lda64, &info64.value, uplo_length, diag_length);
}

NXL_EXPORT void dtrtrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                       const double* a, const int* lda, double* b, const int* ldb, int* info, int uplo_length,
                       int trans_length, int diag_length) noexcept {
    OutInt info64(info);
    const i64 n64 = *n, nrhs64 = *nrhs, lda64 = *lda, ldb64 = *ldb;
    nxl_lapack_dtrtrs(uplo, trans, diag, &n64, &nrhs64, a, &lda64, b, &ldb64, &info64.value, uplo_length, trans_length,
                      diag_length);
}

NXL_EXPORT void zgetrs(const char* trans, const int* n, const int* nrhs, const nxl_z* a, const int* lda,
                       const int* ipiv, nxl_z* b, const int* ldb, int* info, int trans_length) noexcept {
    OutInt info64(info);
    const i64 n64 = *n, nrhs64 = *nrhs, lda64 = *lda, ldb64 = *ldb;
    const WideInts pivots(ipiv, n64);
    if (!pivots.data()) return refuse_for_memory("ZGETRS", &info64.value);
    nxl_lapack_zgetrs(trans, &n64, &nrhs64, a, &lda64, pivots.data(), b, &ldb64, &info64.value, trans_length);
}

NXL_EXPORT void zgetri(const int* n, nxl_z* a, const int* lda, const int* ipiv, nxl_z* work, const int* lwork,
                       int* info) noexcept {
    OutInt info64(info);
    const i64 n64 = *n, lda64 = *lda, lwork64 = *lwork;
    const WideInts pivots(ipiv, unless_query(n64, lwork64));
    if (!pivots.data()) return refuse_for_memory("ZGETRI", &info64.value);
    nxl_lapack_zgetri(&n64, a, &lda64, pivots.data(), work, &lwork64, &info64.value);
}

NXL_EXPORT void zpotri(const char* uplo, const int* n, nxl_z* a, const int* lda, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const i64 n64 = *n, lda64 = *lda;
    nxl_lapack_zpotri(uplo, &n64, a, &lda64, &info64.value, uplo_length);
}

NXL_EXPORT void ztrtri(const char* uplo, const char* diag, const int* n, nxl_z* a, const int* lda, int* info,
                       int uplo_length, int diag_length) noexcept {
    OutInt info64(info);
    const i64 n64 = *n, lda64 = *lda;
    nxl_lapack_ztrtri(uplo, diag, &n64, a, &lda64, &info64.value, uplo_length, diag_length);
}

NXL_EXPORT void ztrtrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                       const nxl_z* a, const int* lda, nxl_z* b, const int* ldb, int* info, int uplo_length,
                       int trans_length, int diag_length) noexcept {
    OutInt info64(info);
    const i64 n64 = *n, nrhs64 = *nrhs, lda64 = *lda, ldb64 = *ldb;
    nxl_lapack_ztrtrs(uplo, trans, diag, &n64, &nrhs64, a, &lda64, b, &ldb64, &info64.value, uplo_length, trans_length,
                      diag_length);
}

} // extern "C"
