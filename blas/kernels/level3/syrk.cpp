// Rank-k and rank-2k updates of a symmetric or Hermitian matrix, and products that are known to be one: general
// products of which one triangle is kept.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level3/gemm_forms.hpp"

namespace nxl::NXL_TARGET {
namespace {

// C, n by n, takes op(X) op(Y)'. Loops, packing and tiles are those of the product with m = n; Result tells each tile
// which side of the diagonal it is on, and a tile outside the triangle is skipped before its sums are formed. Blocks of
// A outside are not even packed. What is computed in vain are the halves of the tiles on the diagonal.
/// The factors of an update: op(X) times the transpose of op(Y), conjugated when Hermitian. As letters of a product:
///
///     trans = N          X Y'      rows N, columns T or C
///     trans = T or C     X' Y      rows T or C, columns N
///
/// Packing conjugates, so that the tiles know nothing of it.
template <class T> struct Factors {
    char of_rows, of_columns; // letters of op for the rows of X and the columns of Y

    Factors(bool hermitian, char trans)
        : of_rows(trans == 'N' ? 'N'
                  : hermitian  ? 'C'
                               : 'T'),
          of_columns(trans != 'N' ? 'N'
                     : hermitian  ? 'C'
                                  : 'T') {}

    void multiply(i64 n, i64 k, const T& alpha, const T* x, i64 ldx, const T* y, i64 ldy, const Result<T>& to) const {
        packed_product(GeneralA<T>{source_of_a(of_rows, x, ldx), alpha}, GeneralB<T>{source_of_b(of_columns, y, ldy)},
                       n, n, k, to);
    }
};

/// The triangle of an update, beta given as a number of C's type.
template <class T> Result<T> triangle_of(char uplo, bool hermitian, T* c, i64 ldc, const T& beta) {
    const Triangle only = uplo == 'L' ? Triangle::lower : Triangle::upper;
    return {c, ldc, beta, before_of(beta), only, hermitian};
}

/// Does what beta asks for and nothing else, and says so, when there is nothing to add.
template <class T> bool only_scales_triangle(i64 n, i64 k, bool alpha_is_zero, const Result<T>& to) {
    if (n > 0 && k > 0 && !alpha_is_zero) return false;
    if (to.before == Before::keep) return true;
    for (i64 j = 0; j < n; ++j) {
        const i64 first = to.only == Triangle::lower ? j : 0, last = to.only == Triangle::lower ? n : j + 1;
        T* const column = to.c + j * to.ldc;
        scale_result<T>(last - first, 1, {column + first, to.ldc, to.beta, to.before, Triangle::none, to.hermitian});
        if (to.hermitian) column[j] = diagonal<true>(column[j]);
    }
    return true;
}

template <class T>
void syrk(bool hermitian, char uplo, char trans, i64 n, i64 k, const T& alpha, const T* a, i64 lda, const T& beta, T* c,
          i64 ldc) {
    const Result<T> to = triangle_of(uplo, hermitian, c, ldc, beta);
    if (only_scales_triangle(n, k, is_zero(alpha), to)) return;
    Factors<T>(hermitian, trans).multiply(n, k, alpha, a, lda, a, lda, to);
}

/// Two products, one after the other, beta with the first.
/// alpha X Y' + alpha' Y X': the second product has the conjugate of alpha when the update is Hermitian.
template <class T>
void syr2k(bool hermitian, char uplo, char trans, i64 n, i64 k, const T& alpha, const T* a, i64 lda, const T* b,
           i64 ldb, const T& beta, T* c, i64 ldc) {
    Result<T> to = triangle_of(uplo, hermitian, c, ldc, beta);
    if (only_scales_triangle(n, k, is_zero(alpha), to)) return;
    const Factors<T> factors(hermitian, trans);
    factors.multiply(n, k, alpha, a, lda, b, ldb, to);
    to.before = Before::keep;
    factors.multiply(n, k, hermitian ? conj(alpha) : alpha, b, ldb, a, lda, to);
}

/// op(A) op(B) of different factors, which the caller knows to be symmetric or Hermitian.
template <class T>
void gemmt(char uplo, char transa, char transb, i64 n, i64 k, const T& alpha, const T* a, i64 lda, const T* b, i64 ldb,
           const T& beta, T* c, i64 ldc) {
    const bool hermitian = transa == 'C' || transb == 'C';
    const Result<T> to = triangle_of(uplo, hermitian, c, ldc, beta);
    if (only_scales_triangle(n, k, is_zero(alpha), to)) return;
    packed_product(GeneralA<T>{source_of_a(transa, a, lda), alpha}, GeneralB<T>{source_of_b(transb, b, ldb)}, n, n, k,
                   to);
}

} // namespace

void dgemmt(const char& uplo, const char& transa, const char& transb, const i64& n, const i64& k, const double& alpha,
            const double* a, const i64& lda, const double* b, const i64& ldb, const double& beta, double* c,
            const i64& ldc) {
    gemmt(uplo, transa, transb, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

void zgemmt(const char& uplo, const char& transa, const char& transb, const i64& n, const i64& k, const zcomplex& alpha,
            const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb, const zcomplex& beta, zcomplex* c,
            const i64& ldc) {
    gemmt(uplo, transa, transb, n, k, scalar(alpha), scalars(a), lda, scalars(b), ldb, scalar(beta), scalars(c), ldc);
}

void dsyrk(const char& uplo, const char& trans, const i64& n, const i64& k, const double& alpha, const double* a,
           const i64& lda, const double& beta, double* c, const i64& ldc) {
    syrk(false, uplo, trans, n, k, alpha, a, lda, beta, c, ldc);
}

void zsyrk(const char& uplo, const char& trans, const i64& n, const i64& k, const zcomplex& alpha, const zcomplex* a,
           const i64& lda, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    syrk(false, uplo, trans, n, k, scalar(alpha), scalars(a), lda, scalar(beta), scalars(c), ldc);
}

void zherk(const char& uplo, const char& trans, const i64& n, const i64& k, const double& alpha, const zcomplex* a,
           const i64& lda, const double& beta, zcomplex* c, const i64& ldc) {
    syrk(true, uplo, trans, n, k, from_real<Complex>(alpha), scalars(a), lda, from_real<Complex>(beta), scalars(c),
         ldc);
}

void dsyr2k(const char& uplo, const char& trans, const i64& n, const i64& k, const double& alpha, const double* a,
            const i64& lda, const double* b, const i64& ldb, const double& beta, double* c, const i64& ldc) {
    syr2k(false, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

void zsyr2k(const char& uplo, const char& trans, const i64& n, const i64& k, const zcomplex& alpha, const zcomplex* a,
            const i64& lda, const zcomplex* b, const i64& ldb, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    syr2k(false, uplo, trans, n, k, scalar(alpha), scalars(a), lda, scalars(b), ldb, scalar(beta), scalars(c), ldc);
}

void zher2k(const char& uplo, const char& trans, const i64& n, const i64& k, const zcomplex& alpha, const zcomplex* a,
            const i64& lda, const zcomplex* b, const i64& ldb, const double& beta, zcomplex* c, const i64& ldc) {
    syr2k(true, uplo, trans, n, k, scalar(alpha), scalars(a), lda, scalars(b), ldb, from_real<Complex>(beta),
          scalars(c), ldc);
}

} // namespace nxl::NXL_TARGET
