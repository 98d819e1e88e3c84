// Products with a triangular matrix on one thread: B := alpha op(A) B or B := alpha B op(A).
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level3/triangle_sweep.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// The sixteen forms are one problem, b := alpha b t, by blocks on the diagonal of t. There is no special road for few
/// columns.
template <class T>
void trmm(char side, char uplo, char trans, char diag, i64 m, i64 n, const T& alpha, const T* a, i64 lda, T* b,
          i64 ldb) {
    if (is_trivial(m, n, alpha, b, ldb)) return;
    run_triangular<T, Multiply>(triangular_problem(side, uplo, trans, diag, m, n, alpha, a, lda, b, ldb));
}

} // namespace

void dtrmm(const char& side, const char& uplo, const char& transa, const char& diag, const i64& m, const i64& n,
           const double& alpha, const double* a, const i64& lda, double* b, const i64& ldb) {
    trmm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

void ztrmm(const char& side, const char& uplo, const char& transa, const char& diag, const i64& m, const i64& n,
           const zcomplex& alpha, const zcomplex* a, const i64& lda, zcomplex* b, const i64& ldb) {
    trmm(side, uplo, transa, diag, m, n, scalar(alpha), scalars(a), lda, scalars(b), ldb);
}

} // namespace nxl::NXL_TARGET
