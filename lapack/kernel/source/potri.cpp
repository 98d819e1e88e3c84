// dpotri, zpotri: inverse of a positive definite matrix from its Cholesky factor.
#include "lapack/kernel/source/cholesky.hpp"
#include "lapack/kernel/source/reports.hpp"
#include "lapack/kernel/source/triangular.hpp"
#include "service/interface/blas_checks.hpp"

namespace nxl {
namespace {

/// A^-1 = U^-1 U^-H or L^-H L^-1.
template <class T, class Trtri, class Lauum>
void potri(const char* name, const char* uplo, const i64* n, T* a, const i64* lda, i64* info, const Trtri& trtri,
           const Lauum& lauum) {
    *info = 0;
    if (none_of(uplo, "UL")) return refuse_argument(name, 1, info);
    if (*n < 0) return refuse_argument(name, 2, info);
    if (below(*lda, *n)) return refuse_argument(name, 4, info);
    trtri(uplo, "N", n, a, lda, info, 1, 1);
    if (*info == 0) lauum(uplo, n, a, lda, info, 1);
}

} // namespace

void nxl_lapack_dpotri(const char* uplo, const i64* n, double* a, const i64* lda, i64* info, int) {
    potri("DPOTRI", uplo, n, a, lda, info, nxl_lapack_dtrtri, nxl_lapack_dlauum);
}

void nxl_lapack_zpotri(const char* uplo, const i64* n, zcomplex* a, const i64* lda, i64* info, int) {
    potri("ZPOTRI", uplo, n, a, lda, info, nxl_lapack_ztrtri, nxl_lapack_zlauum);
}

} // namespace nxl
