// LAPACK, symmetric indefinite and Hermitian systems: entries.
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/indefinite/sycon.hpp"
#include "lapack/kernel/source/indefinite/syrfs.hpp"
#include "lapack/kernel/source/indefinite/sytrf.hpp"
#include "lapack/kernel/source/indefinite/sytri.hpp"
#include "lapack/kernel/source/indefinite/sytrs.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/letters.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dsytrf(const char* uplo, const int* n, double* a, const int* lda, int* ipiv, double* work,
                       const int* lwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    WideInts pivots(ipiv, unless_query(*n, *lwork), Transfer::out);
    if (!pivots.data()) return refuse_for_memory("DSYTRF", info64.value);
    nxl_lapack_dsytrf(capital(*uplo), *n, a, *lda, pivots.data(), work, *lwork, info64.value, uplo_length);
}

NXL_EXPORT void dsytrs(const char* uplo, const int* n, const int* nrhs, const double* a, const int* lda,
                       const int* ipiv, double* b, const int* ldb, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("DSYTRS", info64.value);
    nxl_lapack_dsytrs(capital(*uplo), *n, *nrhs, a, *lda, pivots.data(), b, *ldb, info64.value, uplo_length);
}

NXL_EXPORT void dsytri(const char* uplo, const int* n, double* a, const int* lda, const int* ipiv, double* work,
                       int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("DSYTRI", info64.value);
    nxl_lapack_dsytri(capital(*uplo), *n, a, *lda, pivots.data(), work, info64.value, uplo_length);
}

NXL_EXPORT void dsycon(const char* uplo, const int* n, const double* a, const int* lda, const int* ipiv,
                       const double* anorm, double* rcond, double* work, int* iwork, int* info,
                       int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!pivots.data() || !integers.data()) return refuse_for_memory("DSYCON", info64.value);
    nxl_lapack_dsycon(capital(*uplo), *n, a, *lda, pivots.data(), *anorm, *rcond, work, info64.value, uplo_length);
}

NXL_EXPORT void dsyrfs(const char* uplo, const int* n, const int* nrhs, const double* a, const int* lda,
                       const double* af, const int* ldaf, const int* ipiv, const double* b, const int* ldb, double* x,
                       const int* ldx, double* ferr, double* berr, double* work, int* iwork, int* info,
                       int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    const WideInts integers(iwork, *n, Transfer::first_out);
    if (!pivots.data() || !integers.data()) return refuse_for_memory("DSYRFS", info64.value);
    nxl_lapack_dsyrfs(capital(*uplo), *n, *nrhs, a, *lda, af, *ldaf, pivots.data(), b, *ldb, x, *ldx, ferr, berr, work,
                      integers.data(), info64.value, uplo_length);
}

NXL_EXPORT void zsytrf(const char* uplo, const int* n, nxl_z* a, const int* lda, int* ipiv, nxl_z* work,
                       const int* lwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    WideInts pivots(ipiv, unless_query(*n, *lwork), Transfer::out);
    if (!pivots.data()) return refuse_for_memory("ZSYTRF", info64.value);
    nxl_lapack_zsytrf(capital(*uplo), *n, a, *lda, pivots.data(), work, *lwork, info64.value, uplo_length);
}

NXL_EXPORT void zsytrs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const int* ipiv,
                       nxl_z* b, const int* ldb, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZSYTRS", info64.value);
    nxl_lapack_zsytrs(capital(*uplo), *n, *nrhs, a, *lda, pivots.data(), b, *ldb, info64.value, uplo_length);
}

NXL_EXPORT void zsytri(const char* uplo, const int* n, nxl_z* a, const int* lda, const int* ipiv, nxl_z* work,
                       int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZSYTRI", info64.value);
    nxl_lapack_zsytri(capital(*uplo), *n, a, *lda, pivots.data(), work, info64.value, uplo_length);
}

NXL_EXPORT void zsycon(const char* uplo, const int* n, const nxl_z* a, const int* lda, const int* ipiv,
                       const double* anorm, double* rcond, nxl_z* work, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZSYCON", info64.value);
    nxl_lapack_zsycon(capital(*uplo), *n, a, *lda, pivots.data(), *anorm, *rcond, work, info64.value, uplo_length);
}

NXL_EXPORT void zsyrfs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const nxl_z* af,
                       const int* ldaf, const int* ipiv, const nxl_z* b, const int* ldb, nxl_z* x, const int* ldx,
                       double* ferr, double* berr, nxl_z* work, double* rwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZSYRFS", info64.value);
    nxl_lapack_zsyrfs(capital(*uplo), *n, *nrhs, a, *lda, af, *ldaf, pivots.data(), b, *ldb, x, *ldx, ferr, berr, work,
                      rwork, info64.value, uplo_length);
}

NXL_EXPORT void zhetrf(const char* uplo, const int* n, nxl_z* a, const int* lda, int* ipiv, nxl_z* work,
                       const int* lwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    WideInts pivots(ipiv, unless_query(*n, *lwork), Transfer::out);
    if (!pivots.data()) return refuse_for_memory("ZHETRF", info64.value);
    nxl_lapack_zhetrf(capital(*uplo), *n, a, *lda, pivots.data(), work, *lwork, info64.value, uplo_length);
}

NXL_EXPORT void zhetrs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const int* ipiv,
                       nxl_z* b, const int* ldb, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZHETRS", info64.value);
    nxl_lapack_zhetrs(capital(*uplo), *n, *nrhs, a, *lda, pivots.data(), b, *ldb, info64.value, uplo_length);
}

NXL_EXPORT void zhetri(const char* uplo, const int* n, nxl_z* a, const int* lda, const int* ipiv, nxl_z* work,
                       int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZHETRI", info64.value);
    nxl_lapack_zhetri(capital(*uplo), *n, a, *lda, pivots.data(), work, info64.value, uplo_length);
}

NXL_EXPORT void zhecon(const char* uplo, const int* n, const nxl_z* a, const int* lda, const int* ipiv,
                       const double* anorm, double* rcond, nxl_z* work, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZHECON", info64.value);
    nxl_lapack_zhecon(capital(*uplo), *n, a, *lda, pivots.data(), *anorm, *rcond, work, info64.value, uplo_length);
}

NXL_EXPORT void zherfs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const nxl_z* af,
                       const int* ldaf, const int* ipiv, const nxl_z* b, const int* ldb, nxl_z* x, const int* ldx,
                       double* ferr, double* berr, nxl_z* work, double* rwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, *n);
    if (!pivots.data()) return refuse_for_memory("ZHERFS", info64.value);
    nxl_lapack_zherfs(capital(*uplo), *n, *nrhs, a, *lda, af, *ldaf, pivots.data(), b, *ldb, x, *ldx, ferr, berr, work,
                      rwork, info64.value, uplo_length);
}

} // extern "C"
