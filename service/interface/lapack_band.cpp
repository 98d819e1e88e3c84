// LAPACK, band matrices: entries.
#include "lapack/kernel/source/band/band_condition.hpp"
#include "lapack/kernel/source/band/band_refinement.hpp"
#include "lapack/kernel/source/band/band_solve.hpp"
#include "lapack/kernel/source/band/gbtrf.hpp"
#include "lapack/kernel/source/band/pbtrf.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/letters.hpp"
#include <algorithm>

using namespace nxl;

extern "C" {

NXL_EXPORT void dgbcon(const char* norm, const int* n, const int* kl, const int* ku, const double* ab, const int* ldab,
                       const int* ipiv, const double* anorm, double* rcond, double* work, int* iwork, int* info,
                       int norm_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("DGBCON", info64.value);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DGBCON", info64.value);
    nxl_lapack_dgbcon(capital(*norm), *n, *kl, *ku, ab, *ldab, pivots.data(), *anorm, *rcond, work, integers.data(),
                      info64.value, norm_length);
}

NXL_EXPORT void dgbrfs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const double* ab,
                       const int* ldab, const double* afb, const int* ldafb, const int* ipiv, const double* b,
                       const int* ldb, double* x, const int* ldx, double* ferr, double* berr, double* work, int* iwork,
                       int* info, int trans_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("DGBRFS", info64.value);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DGBRFS", info64.value);
    nxl_lapack_dgbrfs(capital(*trans), *n, *kl, *ku, *nrhs, ab, *ldab, afb, *ldafb, pivots.data(), b, *ldb, x, *ldx,
                      ferr, berr, work, integers.data(), info64.value, trans_length);
}

NXL_EXPORT void dgbtrf(const int* m, const int* n, const int* kl, const int* ku, double* ab, const int* ldab, int* ipiv,
                       int* info) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, std::min(*m, *n), Transfer::out);
    if (!pivots.data()) return refuse_for_memory("DGBTRF", info64.value);
    nxl_lapack_dgbtrf(*m, *n, *kl, *ku, ab, *ldab, pivots.data(), info64.value);
}

NXL_EXPORT void dgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const double* ab,
                       const int* ldab, const int* ipiv, double* b, const int* ldb, int* info,
                       int trans_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("DGBTRS", info64.value);
    nxl_lapack_dgbtrs(capital(*trans), *n, *kl, *ku, *nrhs, ab, *ldab, pivots.data(), b, *ldb, info64.value,
                      trans_length);
}

NXL_EXPORT void dpbcon(const char* uplo, const int* n, const int* kd, const double* ab, const int* ldab,
                       const double* anorm, double* rcond, double* work, int* iwork, int* info,
                       int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DPBCON", info64.value);
    nxl_lapack_dpbcon(capital(*uplo), *n, *kd, ab, *ldab, *anorm, *rcond, work, integers.data(), info64.value,
                      uplo_length);
}

NXL_EXPORT void dpbrfs(const char* uplo, const int* n, const int* kd, const int* nrhs, const double* ab,
                       const int* ldab, const double* afb, const int* ldafb, const double* b, const int* ldb, double* x,
                       const int* ldx, double* ferr, double* berr, double* work, int* iwork, int* info,
                       int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DPBRFS", info64.value);
    nxl_lapack_dpbrfs(capital(*uplo), *n, *kd, *nrhs, ab, *ldab, afb, *ldafb, b, *ldb, x, *ldx, ferr, berr, work,
                      integers.data(), info64.value, uplo_length);
}

NXL_EXPORT void dpbtrf(const char* uplo, const int* n, const int* kd, double* ab, const int* ldab, int* info,
                       int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dpbtrf(capital(*uplo), *n, *kd, ab, *ldab, info64.value, uplo_length);
}

NXL_EXPORT void dpbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const double* ab,
                       const int* ldab, double* b, const int* ldb, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dpbtrs(capital(*uplo), *n, *kd, *nrhs, ab, *ldab, b, *ldb, info64.value, uplo_length);
}

NXL_EXPORT void zgbcon(const char* norm, const int* n, const int* kl, const int* ku, const nxl_z* ab, const int* ldab,
                       const int* ipiv, const double* anorm, double* rcond, nxl_z* work, double* rwork, int* info,
                       int norm_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZGBCON", info64.value);
    nxl_lapack_zgbcon(capital(*norm), *n, *kl, *ku, ab, *ldab, pivots.data(), *anorm, *rcond, work, rwork, info64.value,
                      norm_length);
}

NXL_EXPORT void zgbrfs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const nxl_z* ab,
                       const int* ldab, const nxl_z* afb, const int* ldafb, const int* ipiv, const nxl_z* b,
                       const int* ldb, nxl_z* x, const int* ldx, double* ferr, double* berr, nxl_z* work, double* rwork,
                       int* info, int trans_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZGBRFS", info64.value);
    nxl_lapack_zgbrfs(capital(*trans), *n, *kl, *ku, *nrhs, ab, *ldab, afb, *ldafb, pivots.data(), b, *ldb, x, *ldx,
                      ferr, berr, work, rwork, info64.value, trans_length);
}

NXL_EXPORT void zgbtrf(const int* m, const int* n, const int* kl, const int* ku, nxl_z* ab, const int* ldab, int* ipiv,
                       int* info) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, std::min(*m, *n), Transfer::out);
    if (!pivots.data()) return refuse_for_memory("ZGBTRF", info64.value);
    nxl_lapack_zgbtrf(*m, *n, *kl, *ku, ab, *ldab, pivots.data(), info64.value);
}

NXL_EXPORT void zgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const nxl_z* ab,
                       const int* ldab, const int* ipiv, nxl_z* b, const int* ldb, int* info,
                       int trans_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZGBTRS", info64.value);
    nxl_lapack_zgbtrs(capital(*trans), *n, *kl, *ku, *nrhs, ab, *ldab, pivots.data(), b, *ldb, info64.value,
                      trans_length);
}

NXL_EXPORT void zpbcon(const char* uplo, const int* n, const int* kd, const nxl_z* ab, const int* ldab,
                       const double* anorm, double* rcond, nxl_z* work, double* rwork, int* info,
                       int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zpbcon(capital(*uplo), *n, *kd, ab, *ldab, *anorm, *rcond, work, rwork, info64.value, uplo_length);
}

NXL_EXPORT void zpbrfs(const char* uplo, const int* n, const int* kd, const int* nrhs, const nxl_z* ab, const int* ldab,
                       const nxl_z* afb, const int* ldafb, const nxl_z* b, const int* ldb, nxl_z* x, const int* ldx,
                       double* ferr, double* berr, nxl_z* work, double* rwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zpbrfs(capital(*uplo), *n, *kd, *nrhs, ab, *ldab, afb, *ldafb, b, *ldb, x, *ldx, ferr, berr, work, rwork,
                      info64.value, uplo_length);
}

NXL_EXPORT void zpbtrf(const char* uplo, const int* n, const int* kd, nxl_z* ab, const int* ldab, int* info,
                       int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zpbtrf(capital(*uplo), *n, *kd, ab, *ldab, info64.value, uplo_length);
}

NXL_EXPORT void zpbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const nxl_z* ab, const int* ldab,
                       nxl_z* b, const int* ldb, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zpbtrs(capital(*uplo), *n, *kd, *nrhs, ab, *ldab, b, *ldb, info64.value, uplo_length);
}

} // extern "C"
