// CBLAS level 2. By rows, what is stored is the transpose B of the matrix A: the routine runs on B, with the other
// triangle and the other operation; complex routines need conj(B) = A^H and get it by conjugating the vectors instead.
#include "gnu/cblas_arguments.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include <type_traits>

using namespace nxl;
using namespace nxl::cblas;

namespace {

const int one = 1;

/// A vector that alpha = 0 drops is not read.
int count_unless_zero(const zcomplex& alpha, int n) { return alpha == 0.0 ? 0 : n; }

/// y := alpha A^H x + beta y by rows: conj(y) := conj(alpha) B conj(x) + conj(beta) conj(y).
void zgemv_conjugated_rows(int m, int n, const zcomplex& alpha, const zcomplex* a, int lda, const zcomplex* x, int incx,
                           const zcomplex& beta, zcomplex* y, int incy) {
    const ConjugateCopy u("cblas_zgemv", count_unless_zero(alpha, m), x, incx);
    if (!u.data()) return;
    const zcomplex alpha_bar = conjugate(alpha), beta_bar = conjugate(beta);
    conjugate_in_place(n, y, incy);
    ::zgemv("N", &n, &m, &alpha_bar, a, &lda, u.data(), &one, &beta_bar, y, &incy);
    conjugate_in_place(n, y, incy);
}

template <class T, class Fn>
void gemv(Fn* routine, const char* name, CBLAS_ORDER order, CBLAS_TRANSPOSE trans, int m, int n, const T& alpha,
          const T* a, int lda, const T* x, int incx, const T& beta, T* y, int incy) {
    const bool by_rows = order == CblasRowMajor;
    CblasArguments arguments(name, order);
    arguments.option(2, trans).size(3, m).size(4, n).leading(7, lda, by_rows ? n : m);
    if (arguments.increment(9, incx).increment(12, incy).reported()) return;
    const char op = letter(trans), other_op = op == 'N' ? 'T' : 'N';
    if (!by_rows) return routine(&op, &m, &n, &alpha, a, &lda, x, &incx, &beta, y, &incy);
    if constexpr (std::is_same_v<T, zcomplex>)
        if (op == 'C') return zgemv_conjugated_rows(m, n, alpha, a, lda, x, incx, beta, y, incy);
    routine(&other_op, &n, &m, &alpha, a, &lda, x, &incx, &beta, y, &incy);
}

bool bad_ger(const char* name, CBLAS_ORDER order, int m, int n, int incx, int incy, int lda) {
    CblasArguments arguments(name, order);
    arguments.size(2, m).size(3, n).increment(6, incx).increment(8, incy);
    return arguments.leading(10, lda, order == CblasRowMajor ? n : m).reported();
}

/// A := A + alpha x y^T: by rows, B := B + alpha y x^T.
template <class T, class Fn>
void ger(Fn* routine, const char* name, CBLAS_ORDER order, int m, int n, const T& alpha, const T* x, int incx,
         const T* y, int incy, T* a, int lda) {
    if (bad_ger(name, order, m, n, incx, incy, lda)) return;
    if (order == CblasColMajor) return routine(&m, &n, &alpha, x, &incx, y, &incy, a, &lda);
    routine(&n, &m, &alpha, y, &incy, x, &incx, a, &lda);
}

/// Products with a symmetric or Hermitian matrix; all of them are symmetric to the check.
bool bad_symv(const char* name, CBLAS_ORDER order, CBLAS_UPLO uplo, int n, int lda, int incx, int incy) {
    CblasArguments arguments(name, order);
    arguments.option(2, uplo).size(3, n).leading(6, lda, n).increment(8, incx).increment(11, incy);
    return arguments.reported();
}

bool bad_syr(const char* name, CBLAS_ORDER order, CBLAS_UPLO uplo, int n, int incx, int lda) {
    CblasArguments arguments(name, order);
    return arguments.option(2, uplo).size(3, n).increment(6, incx).leading(8, lda, n).reported();
}

bool bad_syr2(const char* name, CBLAS_ORDER order, CBLAS_UPLO uplo, int n, int incx, int incy, int lda) {
    CblasArguments arguments(name, order);
    arguments.option(2, uplo).size(3, n).increment(6, incx).increment(8, incy).leading(10, lda, n);
    return arguments.reported();
}

/// Products with, and solutions of, a triangular matrix: x := op(A) x or op(A)^-1 x.
template <class T, class Fn>
void trv(Fn* routine, const char* name, CBLAS_ORDER order, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag,
         int n, const T* a, int lda, T* x, int incx) {
    CblasArguments arguments(name, order);
    arguments.option(2, uplo).option(3, trans).option(4, diag).size(5, n).leading(7, lda, n).increment(9, incx);
    if (arguments.reported()) return;
    const char triangle = letter(uplo), op = letter(trans), diagonal = letter(diag);
    if (order == CblasColMajor) return routine(&triangle, &op, &diagonal, &n, a, &lda, x, &incx);
    const char other = other_triangle(triangle), other_op = op == 'N' ? 'T' : 'N';
    const bool conjugated = std::is_same_v<T, zcomplex> && op == 'C'; // A^H is conj(B): conj(x) := B conj(x)
    if constexpr (std::is_same_v<T, zcomplex>)
        if (conjugated) conjugate_in_place(n, x, incx);
    routine(&other, &other_op, &diagonal, &n, a, &lda, x, &incx);
    if constexpr (std::is_same_v<T, zcomplex>)
        if (conjugated) conjugate_in_place(n, x, incx);
}

} // namespace

extern "C" {

NXL_EXPORT void cblas_dgemv(CBLAS_ORDER Order, CBLAS_TRANSPOSE TransA, int M, int N, double alpha, const double* A,
                            int lda, const double* X, int incX, double beta, double* Y, int incY) noexcept {
    gemv(dgemv, "cblas_dgemv", Order, TransA, M, N, alpha, A, lda, X, incX, beta, Y, incY);
}

NXL_EXPORT void cblas_zgemv(CBLAS_ORDER Order, CBLAS_TRANSPOSE TransA, int M, int N, const void* alpha, const void* A,
                            int lda, const void* X, int incX, const void* beta, void* Y, int incY) noexcept {
    gemv(zgemv, "cblas_zgemv", Order, TransA, M, N, *z(alpha), z(A), lda, z(X), incX, *z(beta), z(Y), incY);
}

NXL_EXPORT void cblas_dger(CBLAS_ORDER Order, int M, int N, double alpha, const double* X, int incX, const double* Y,
                           int incY, double* A, int lda) noexcept {
    ger(dger, "cblas_dger", Order, M, N, alpha, X, incX, Y, incY, A, lda);
}

NXL_EXPORT void cblas_zgeru(CBLAS_ORDER Order, int M, int N, const void* alpha, const void* X, int incX, const void* Y,
                            int incY, void* A, int lda) noexcept {
    ger(zgeru, "cblas_zgeru", Order, M, N, *z(alpha), z(X), incX, z(Y), incY, z(A), lda);
}

// By rows B := B + alpha conj(y) x^T.
NXL_EXPORT void cblas_zgerc(CBLAS_ORDER Order, int M, int N, const void* alpha, const void* X, int incX, const void* Y,
                            int incY, void* A, int lda) noexcept {
    if (bad_ger("cblas_zgerc", Order, M, N, incX, incY, lda)) return;
    if (Order == CblasColMajor) return zgerc(&M, &N, z(alpha), z(X), &incX, z(Y), &incY, z(A), &lda);
    const ConjugateCopy v("cblas_zgerc", count_unless_zero(*z(alpha), N), z(Y), incY);
    if (v.data()) zgeru(&N, &M, z(alpha), v.data(), &one, z(X), &incX, z(A), &lda);
}

NXL_EXPORT void cblas_dsymv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, double alpha, const double* A, int lda,
                            const double* X, int incX, double beta, double* Y, int incY) noexcept {
    if (bad_symv("cblas_dsymv", Order, Uplo, N, lda, incX, incY)) return;
    const char uplo = Order == CblasColMajor ? letter(Uplo) : other_triangle(letter(Uplo));
    dsymv(&uplo, &N, &alpha, A, &lda, X, &incX, &beta, Y, &incY);
}

// By rows A = conj(B): conj(y) := conj(alpha) B conj(x) + conj(beta) conj(y).
NXL_EXPORT void cblas_zhemv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, const void* alpha, const void* A, int lda,
                            const void* X, int incX, const void* beta, void* Y, int incY) noexcept {
    if (bad_symv("cblas_zhemv", Order, Uplo, N, lda, incX, incY)) return;
    const char uplo = letter(Uplo), other = other_triangle(uplo);
    if (Order == CblasColMajor) return zhemv(&uplo, &N, z(alpha), z(A), &lda, z(X), &incX, z(beta), z(Y), &incY);
    const ConjugateCopy u("cblas_zhemv", count_unless_zero(*z(alpha), N), z(X), incX);
    if (!u.data()) return;
    const zcomplex alpha_bar = conjugate(*z(alpha)), beta_bar = conjugate(*z(beta));
    conjugate_in_place(N, z(Y), incY);
    zhemv(&other, &N, &alpha_bar, z(A), &lda, u.data(), &one, &beta_bar, z(Y), &incY);
    conjugate_in_place(N, z(Y), incY);
}

NXL_EXPORT void cblas_dsyr(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, double alpha, const double* X, int incX,
                           double* A, int lda) noexcept {
    if (bad_syr("cblas_dsyr", Order, Uplo, N, incX, lda)) return;
    const char uplo = Order == CblasColMajor ? letter(Uplo) : other_triangle(letter(Uplo));
    dsyr(&uplo, &N, &alpha, X, &incX, A, &lda);
}

// By rows B := B + alpha conj(x) conj(x)^H.
NXL_EXPORT void cblas_zher(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, double alpha, const void* X, int incX, void* A,
                           int lda) noexcept {
    if (bad_syr("cblas_zher", Order, Uplo, N, incX, lda)) return;
    const char uplo = letter(Uplo), other = other_triangle(uplo);
    if (Order == CblasColMajor) return zher(&uplo, &N, &alpha, z(X), &incX, z(A), &lda);
    const ConjugateCopy u("cblas_zher", count_unless_zero(alpha, N), z(X), incX);
    if (u.data()) zher(&other, &N, &alpha, u.data(), &one, z(A), &lda);
}

NXL_EXPORT void cblas_dsyr2(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, double alpha, const double* X, int incX,
                            const double* Y, int incY, double* A, int lda) noexcept {
    if (bad_syr2("cblas_dsyr2", Order, Uplo, N, incX, incY, lda)) return;
    const char uplo = Order == CblasColMajor ? letter(Uplo) : other_triangle(letter(Uplo));
    dsyr2(&uplo, &N, &alpha, X, &incX, Y, &incY, A, &lda);
}

// By rows B := B + alpha conj(y) conj(x)^H + conj(alpha) conj(x) conj(y)^H.
NXL_EXPORT void cblas_zher2(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, const void* alpha, const void* X, int incX,
                            const void* Y, int incY, void* A, int lda) noexcept {
    if (bad_syr2("cblas_zher2", Order, Uplo, N, incX, incY, lda)) return;
    const char uplo = letter(Uplo), other = other_triangle(uplo);
    if (Order == CblasColMajor) return zher2(&uplo, &N, z(alpha), z(X), &incX, z(Y), &incY, z(A), &lda);
    const int count = count_unless_zero(*z(alpha), N);
    const ConjugateCopy u("cblas_zher2", count, z(X), incX), v("cblas_zher2", count, z(Y), incY);
    if (u.data() && v.data()) zher2(&other, &N, z(alpha), v.data(), &one, u.data(), &one, z(A), &lda);
}

NXL_EXPORT void cblas_dtrmv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int N,
                            const double* A, int lda, double* X, int incX) noexcept {
    trv(dtrmv, "cblas_dtrmv", Order, Uplo, TransA, Diag, N, A, lda, X, incX);
}

NXL_EXPORT void cblas_ztrmv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int N,
                            const void* A, int lda, void* X, int incX) noexcept {
    trv(ztrmv, "cblas_ztrmv", Order, Uplo, TransA, Diag, N, z(A), lda, z(X), incX);
}

NXL_EXPORT void cblas_dtrsv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int N,
                            const double* A, int lda, double* X, int incX) noexcept {
    trv(dtrsv, "cblas_dtrsv", Order, Uplo, TransA, Diag, N, A, lda, X, incX);
}

NXL_EXPORT void cblas_ztrsv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int N,
                            const void* A, int lda, void* X, int incX) noexcept {
    trv(ztrsv, "cblas_ztrsv", Order, Uplo, TransA, Diag, N, z(A), lda, z(X), incX);
}

} // extern "C"
