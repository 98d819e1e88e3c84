// dtrtri, ztrtri: inverse of a triangular matrix.
#include "lapack/kernel/source/blas_calls.hpp"
#include "lapack/kernel/source/reports.hpp"
#include "lapack/kernel/source/slots.hpp"
#include "lapack/kernel/source/triangular.hpp"
#include "lapack/kernel/source/triangular_parts.hpp"
#include "service/interface/blas_checks.hpp"

namespace nxl {
namespace {

void trti2(char uplo, char diag, i64 n, double* a, i64 lda) { dtrti2_slot(uplo, diag, n, a, lda); }
void trti2(char uplo, char diag, i64 n, zcomplex* a, i64 lda) { ztrti2_slot(uplo, diag, n, a, lda); }

/// Inverse by halves: with X the inverse of the triangle that comes first in the product, the block beside the diagonal
/// becomes -X A12 A22^-1, or -X A21 A11^-1, so that the second factor is solved with and not inverted: the residual of
/// the published column-wise method (Du Croz and Higham, IMA J. Numer. Anal. 12, 1992).
template <class T> struct TriangularInverse {
    char uplo, diag;
    i64 lda, unblocked;

    void run(i64 n, T* a) const {
        if (n <= unblocked) return trti2(uplo, diag, n, a, lda);
        const i64 first = first_part(n), rest = n - first;
        T* const second = a + first * (lda + 1);
        if (LSAME(&uplo, "U", 1, 1)) halves(first, a, rest, second, a + first * lda);
        else halves(rest, second, first, a, a + first);
    }

  private:
    /// The inverse of `x`, then what is beside the diagonal, p by q, then the inverse of `y`. Where `x` has no inverse
    /// within the range, it is solved with as well.
    void halves(i64 p, T* x, i64 q, T* y, T* beside) const {
        const bool invertible = diag == 'U' || diag == 'u' || has_reciprocals(p, x, lda);
        if (invertible) {
            run(p, x);
            trmm('L', uplo, 'N', diag, p, q, 1.0, x, lda, beside, lda);
        } else {
            trsm('L', uplo, 'N', diag, p, q, 1.0, x, lda, beside, lda);
        }
        trsm('R', uplo, 'N', diag, p, q, -1.0, y, lda, beside, lda);
        if (!invertible) run(p, x);
        run(q, y);
    }
};

template <class T> void trtri(const char* name, char uplo, char diag, i64 n, T* a, i64 lda, i64* info) {
    *info = 0;
    if (none_of(&uplo, "UL")) return refuse_argument(name, 1, info);
    if (none_of(&diag, "UN")) return refuse_argument(name, 2, info);
    if (n < 0) return refuse_argument(name, 3, info);
    if (below(lda, n)) return refuse_argument(name, 5, info);
    if (LSAME(&diag, "N", 1, 1)) *info = first_zero_on_diagonal(n, a, lda);
    if (n == 0 || *info != 0) return;
    TriangularInverse<T>{uplo, diag, lda, unblocked_order(name, uplo, n)}.run(n, a);
}

} // namespace

void nxl_lapack_dtrtri(const char* uplo, const char* diag, const i64* n, double* a, const i64* lda, i64* info, int,
                       int) {
    trtri("DTRTRI", *uplo, *diag, *n, a, *lda, info);
}

void nxl_lapack_ztrtri(const char* uplo, const char* diag, const i64* n, zcomplex* a, const i64* lda, i64* info, int,
                       int) {
    trtri("ZTRTRI", *uplo, *diag, *n, a, *lda, info);
}

} // namespace nxl
