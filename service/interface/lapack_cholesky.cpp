// LAPACK, Cholesky factorisation: entries.
#include "lapack/kernel/source/cholesky/potrs.hpp"
#include "lapack/kernel/source/cholesky/xpotrf_omp.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/letters.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dpotrf(const char* uplo, const int* n, double* a, const int* lda, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dpotrf(capital(*uplo), *n, a, *lda, info64.value, uplo_length);
}

NXL_EXPORT void zpotrf(const char* uplo, const int* n, nxl_z* a, const int* lda, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zpotrf(capital(*uplo), *n, a, *lda, info64.value, uplo_length);
}

NXL_EXPORT void ZPOTF2(const char* uplo, const int* n, nxl_z* a, const int* lda, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zpotf2(capital(*uplo), *n, a, *lda, info64.value, uplo_length);
}

NXL_EXPORT void dpotrs(const char* uplo, const int* n, const int* nrhs, const double* a, const int* lda, double* b,
                       const int* ldb, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dpotrs(capital(*uplo), *n, *nrhs, a, *lda, b, *ldb, info64.value, uplo_length);
}

NXL_EXPORT void zpotrs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, nxl_z* b,
                       const int* ldb, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zpotrs(capital(*uplo), *n, *nrhs, a, *lda, b, *ldb, info64.value, uplo_length);
}

} // extern "C"
