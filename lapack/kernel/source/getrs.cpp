// dgetrs, zgetrs: solution of a general system from its LU factors.
#include "lapack/kernel/source/blas_calls.hpp"
#include "lapack/kernel/source/lu.hpp"
#include "lapack/kernel/source/reports.hpp"
#include "service/interface/blas_checks.hpp"

namespace nxl {
namespace {

/// Interchanges the rows of b as the factorisation did those of A, or back.
template <class T> void interchange(i64 nrhs, T* b, i64 ldb, i64 n, const i64* ipiv, i64 incx) {
    const i64 one = 1;
    if constexpr (std::is_same_v<T, double>) nxl_lapack_dlaswp(&nrhs, b, &ldb, &one, &n, ipiv, &incx);
    else nxl_lapack_zlaswp(&nrhs, b, &ldb, &one, &n, ipiv, &incx);
}

template <class T>
void getrs(const char* name, char trans, i64 n, i64 nrhs, const T* a, i64 lda, const i64* ipiv, T* b, i64 ldb,
           i64* info) {
    *info = 0;
    if (none_of(&trans, "NTC")) return refuse_argument(name, 1, info);
    if (n < 0) return refuse_argument(name, 2, info);
    if (nrhs < 0) return refuse_argument(name, 3, info);
    if (below(lda, n)) return refuse_argument(name, 5, info);
    if (below(ldb, n)) return refuse_argument(name, 8, info);
    if (n == 0 || nrhs == 0) return;
    if (LSAME(&trans, "N", 1, 1)) { // A = P^T L U
        interchange(nrhs, b, ldb, n, ipiv, 1);
        trsm('L', 'L', 'N', 'U', n, nrhs, 1.0, a, lda, b, ldb);
        trsm('L', 'U', 'N', 'N', n, nrhs, 1.0, a, lda, b, ldb);
    } else { // A^T = U^T L^T P
        trsm('L', 'U', trans, 'N', n, nrhs, 1.0, a, lda, b, ldb);
        trsm('L', 'L', trans, 'U', n, nrhs, 1.0, a, lda, b, ldb);
        interchange(nrhs, b, ldb, n, ipiv, -1);
    }
}

} // namespace

void nxl_lapack_dgetrs(const char* trans, const i64* n, const i64* nrhs, const double* a, const i64* lda,
                       const i64* ipiv, double* b, const i64* ldb, i64* info, int) {
    getrs("DGETRS", *trans, *n, *nrhs, a, *lda, ipiv, b, *ldb, info);
}

void nxl_lapack_zgetrs(const char* trans, const i64* n, const i64* nrhs, const zcomplex* a, const i64* lda,
                       const i64* ipiv, zcomplex* b, const i64* ldb, i64* info, int) {
    getrs("ZGETRS", *trans, *n, *nrhs, a, *lda, ipiv, b, *ldb, info);
}

} // namespace nxl
