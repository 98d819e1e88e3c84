// dtrtrs, ztrtrs: solution of a triangular system, after a look for zeros on the diagonal.
#include "lapack/kernel/source/blas_calls.hpp"
#include "lapack/kernel/source/reports.hpp"
#include "lapack/kernel/source/triangular.hpp"
#include "lapack/kernel/source/triangular_parts.hpp"
#include "service/interface/blas_checks.hpp"

namespace nxl {
namespace {

template <class T>
void trtrs(const char* name, char uplo, char trans, char diag, i64 n, i64 nrhs, const T* a, i64 lda, T* b, i64 ldb,
           i64* info) {
    *info = 0;
    if (none_of(&uplo, "UL")) return refuse_argument(name, 1, info);
    if (none_of(&trans, "NTC")) return refuse_argument(name, 2, info);
    if (none_of(&diag, "UN")) return refuse_argument(name, 3, info);
    if (n < 0) return refuse_argument(name, 4, info);
    if (nrhs < 0) return refuse_argument(name, 5, info);
    if (below(lda, n)) return refuse_argument(name, 7, info);
    if (below(ldb, n)) return refuse_argument(name, 9, info);
    if (LSAME(&diag, "N", 1, 1)) *info = first_zero_on_diagonal(n, a, lda);
    if (*info == 0) trsm('L', uplo, trans, diag, n, nrhs, 1.0, a, lda, b, ldb);
}

} // namespace

void nxl_lapack_dtrtrs(const char* uplo, const char* trans, const char* diag, const i64* n, const i64* nrhs,
                       const double* a, const i64* lda, double* b, const i64* ldb, i64* info, int, int, int) {
    trtrs("DTRTRS", *uplo, *trans, *diag, *n, *nrhs, a, *lda, b, *ldb, info);
}

void nxl_lapack_ztrtrs(const char* uplo, const char* trans, const char* diag, const i64* n, const i64* nrhs,
                       const zcomplex* a, const i64* lda, zcomplex* b, const i64* ldb, i64* info, int, int, int) {
    trtrs("ZTRTRS", *uplo, *trans, *diag, *n, *nrhs, a, *lda, b, *ldb, info);
}

} // namespace nxl
