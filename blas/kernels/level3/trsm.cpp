// Triangular systems with many right-hand sides on one thread: op(A) X = alpha B or X op(A) = alpha B, X over B.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level3/few_rhs.hpp"
#include "blas/kernels/level3/triangle_sweep.hpp"

namespace nxl::NXL_TARGET {
namespace {

void solve_vector(char uplo, char trans, char diag, i64 n, const double* a, i64 lda, double* x, i64 incx) {
    dtrsv(uplo, trans, diag, n, a, lda, x, incx);
}
void solve_vector(char uplo, char trans, char diag, i64 n, const Complex* a, i64 lda, Complex* x, i64 incx) {
    ztrsv(uplo, trans, diag, n, numbers(a), lda, numbers(x), incx);
}

/// One right-hand side is a vector. On the right, a row x of B solves x op(A) = alpha b, or op(A)^T x^T = alpha b^T.
template <class T>
void solve_single(bool left, char uplo, char trans, char diag, i64 order, const T& alpha, const T* a, i64 lda, T* b,
                  i64 ldb) {
    scale_result(left ? order : 1, left ? 1 : order, Result<T>{b, ldb, alpha, before_of(alpha)});
    if (left) return solve_vector(uplo, trans, diag, order, a, lda, b, 1);
    solve_vector(uplo, trans == 'N' ? 'T' : 'N', diag, order, a, lda, b, ldb);
}

/// Three roads, by the number of right-hand sides:
///
///     1           trsv's substitution; not for a conjugated t on the right, a form that trsv does not have
///     up to 8     few_rhs.hpp: t is read in place, once for all of them
///     more        triangle_sweep.hpp: t is packed, and most of the work is a matrix product
///
/// The first two divide by the diagonal, the third multiplies with its reciprocals where it has them.
template <class T>
void trsm(char side, char uplo, char trans, char diag, i64 m, i64 n, const T& alpha, const T* a, i64 lda, T* b,
          i64 ldb) {
    if (is_trivial(m, n, alpha, b, ldb)) return;
    const auto problem = triangular_problem(side, uplo, trans, diag, m, n, alpha, a, lda, b, ldb);
    if (problem.count == 1 && (problem.left || !problem.t.conjugate))
        return solve_single(problem.left, uplo, trans, diag, problem.order, alpha, a, lda, b, ldb);
    if (problem.count <= kFewRhs && solve_few(problem)) return;
    run_triangular<T, Solve>(problem);
}

} // namespace

void dtrsm(const char& side, const char& uplo, const char& transa, const char& diag, const i64& m, const i64& n,
           const double& alpha, const double* a, const i64& lda, double* b, const i64& ldb) {
    trsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb);
}

void ztrsm(const char& side, const char& uplo, const char& transa, const char& diag, const i64& m, const i64& n,
           const zcomplex& alpha, const zcomplex* a, const i64& lda, zcomplex* b, const i64& ldb) {
    trsm(side, uplo, transa, diag, m, n, scalar(alpha), scalars(a), lda, scalars(b), ldb);
}

} // namespace nxl::NXL_TARGET
