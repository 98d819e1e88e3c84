// dlauum, zlauum: the product of a triangular factor and its conjugate transpose, in its place.
#include "lapack/kernel/source/blas_calls.hpp"
#include "lapack/kernel/source/cholesky.hpp"
#include "lapack/kernel/source/reports.hpp"
#include "lapack/kernel/source/slots.hpp"
#include "lapack/kernel/source/triangular_parts.hpp"
#include "service/interface/blas_checks.hpp"

namespace nxl {
namespace {

void lauu2(char uplo, i64 n, double* a, i64 lda) { dlauu2_slot(uplo, n, a, lda); }
void lauu2(char uplo, i64 n, zcomplex* a, i64 lda) { zlauu2_slot(uplo, n, a, lda); }

/// By halves. U U^H has the blocks U11 U11^H + U12 U12^H, U12 U22^H and U22 U22^H; L^H L has L11^H L11 + L21^H L21,
/// L22^H L21 and L22^H L22. In this order each is made of what has not yet been written over.
template <class T> void product_with_adjoint(char uplo, i64 n, T* a, i64 lda, i64 unblocked) {
    if (n <= unblocked) return lauu2(uplo, n, a, lda);
    const i64 first = first_part(n), rest = n - first;
    T* const second = a + first * (lda + 1);
    product_with_adjoint(uplo, first, a, lda, unblocked);
    if (LSAME(&uplo, "U", 1, 1)) {
        T* const above = a + first * lda;
        herk('U', 'N', first, rest, 1.0, above, lda, 1.0, a, lda);
        trmm('R', 'U', 'C', 'N', first, rest, 1.0, second, lda, above, lda);
    } else {
        T* const below_diagonal = a + first;
        herk('L', 'C', first, rest, 1.0, below_diagonal, lda, 1.0, a, lda);
        trmm('L', 'L', 'C', 'N', rest, first, 1.0, second, lda, below_diagonal, lda);
    }
    product_with_adjoint(uplo, rest, second, lda, unblocked);
}

template <class T> void lauum(const char* name, char uplo, i64 n, T* a, i64 lda, i64* info) {
    *info = 0;
    if (none_of(&uplo, "UL")) return refuse_argument(name, 1, info);
    if (n < 0) return refuse_argument(name, 2, info);
    if (below(lda, n)) return refuse_argument(name, 4, info);
    if (n == 0) return;
    product_with_adjoint(uplo, n, a, lda, unblocked_order(name, &uplo, n));
}

} // namespace

void nxl_lapack_dlauum(const char* uplo, const i64* n, double* a, const i64* lda, i64* info, int) {
    lauum("DLAUUM", *uplo, *n, a, *lda, info);
}

void nxl_lapack_zlauum(const char* uplo, const i64* n, zcomplex* a, const i64* lda, i64* info, int) {
    lauum("ZLAUUM", *uplo, *n, a, *lda, info);
}

} // namespace nxl
