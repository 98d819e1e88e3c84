// Solution of A X = B from the Cholesky factor: two triangular solutions.
#include "lapack/kernel/source/blas_calls.hpp"
#include "lapack/kernel/source/cholesky.hpp"
#include "lapack/kernel/source/reports.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// The first bad argument, from 1, or 0.
int bad_argument(const char* uplo, i64 n, i64 nrhs, i64 lda, i64 ldb) {
    if (LSAME(uplo, "U", 1, 1) == 0 && LSAME(uplo, "L", 1, 1) == 0) return 1;
    if (n < 0) return 2;
    if (nrhs < 0) return 3;
    if (lda < std::max(i64{1}, n)) return 5;
    return ldb < std::max(i64{1}, n) ? 7 : 0;
}

template <class T>
void potrs(const char* name, const char* uplo, i64 n, i64 nrhs, const T* a, i64 lda, T* b, i64 ldb, i64* info) {
    *info = 0;
    if (const int bad = bad_argument(uplo, n, nrhs, lda, ldb); bad != 0) return refuse_argument(name, bad, info);
    if (n == 0 || nrhs == 0) return;
    const bool upper = LSAME(uplo, "U", 1, 1) != 0;
    const char letter = upper ? 'U' : 'L';
    trsm('L', letter, upper ? 'C' : 'N', 'N', n, nrhs, 1.0, a, lda, b, ldb);
    trsm('L', letter, upper ? 'N' : 'C', 'N', n, nrhs, 1.0, a, lda, b, ldb);
}

} // namespace

void nxl_lapack_dpotrs(const char* uplo, const i64* n, const i64* nrhs, const double* a, const i64* lda, double* b,
                       const i64* ldb, i64* info, int) {
    potrs("DPOTRS", uplo, *n, *nrhs, a, *lda, b, *ldb, info);
}

void nxl_lapack_zpotrs(const char* uplo, const i64* n, const i64* nrhs, const zcomplex* a, const i64* lda, zcomplex* b,
                       const i64* ldb, i64* info, int) {
    potrs("ZPOTRS", uplo, *n, *nrhs, a, *lda, b, *ldb, info);
}

} // namespace nxl
