// CBLAS level 3. By rows, what is stored is the transpose of each matrix: the routines run on the transposed equation,
// with factors, sizes, sides and triangles exchanged.
#include "gnu/cblas_arguments.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include <utility>

using namespace nxl;
using namespace nxl::cblas;

namespace {

/// C^T = op(B)^T op(A)^T; each op falls on the stored transpose as it fell on the matrix.
template <class T, class Fn>
void gemm(Fn* routine, const char* name, CBLAS_ORDER order, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, int m,
          int n, int k, const T& alpha, const T* a, int lda, const T* b, int ldb, const T& beta, T* c, int ldc) {
    const bool by_rows = order == CblasRowMajor;
    const char op_a = letter(transa), op_b = letter(transb);
    CblasArguments arguments(name, order);
    arguments.option(2, transa).option(3, transb).size(4, m).size(5, n).size(6, k);
    arguments.leading(9, lda, by_rows == (op_a == 'N') ? k : m).leading(11, ldb, by_rows == (op_b == 'N') ? n : k);
    if (arguments.leading(14, ldc, by_rows ? n : m).reported()) return;
    if (by_rows) routine(&op_b, &op_a, &n, &m, &k, &alpha, b, &ldb, a, &lda, &beta, c, &ldc);
    else routine(&op_a, &op_b, &m, &n, &k, &alpha, a, &lda, b, &ldb, &beta, c, &ldc);
}

/// Symmetric and Hermitian: C^T = B^T A^T, and A^T is stored as a matrix of the same kind.
template <class T, class Fn>
void symm(Fn* routine, const char* name, CBLAS_ORDER order, CBLAS_SIDE side, CBLAS_UPLO uplo, int m, int n,
          const T& alpha, const T* a, int lda, const T* b, int ldb, const T& beta, T* c, int ldc) {
    const bool by_rows = order == CblasRowMajor;
    char s = letter(side), u = letter(uplo);
    CblasArguments arguments(name, order);
    arguments.option(2, side).option(3, uplo).size(4, m).size(5, n).leading(8, lda, s == 'L' ? m : n);
    if (arguments.leading(10, ldb, by_rows ? n : m).leading(13, ldc, by_rows ? n : m).reported()) return;
    if (by_rows) {
        s = other_side(s);
        u = other_triangle(u);
        std::swap(m, n);
    }
    routine(&s, &u, &m, &n, &alpha, a, &lda, b, &ldb, &beta, c, &ldc);
}

/// The operation of a rank update: `permitted` is what it may be beside NoTrans; real matrices permit both.
void check_operation(CblasArguments& arguments, CBLAS_TRANSPOSE trans, CBLAS_TRANSPOSE permitted) {
    if (permitted == CblasNoTrans) arguments.option(3, trans);
    else arguments.operation(3, trans, permitted);
}

/// The letter for the stored transpose of a factor: that of `permitted`, where the factor is not transposed, or N.
char other_operation(CBLAS_TRANSPOSE trans, CBLAS_TRANSPOSE permitted) {
    if (trans != CblasNoTrans) return 'N';
    return permitted == CblasConjTrans ? 'C' : 'T';
}

/// C^T = alpha (A A^T)^T + beta C^T, with A^T, or conj(A) = (A^T)^H, in the place of A. S: type of the scalars.
template <class S, class T, class Fn>
void syrk(Fn* routine, const char* name, CBLAS_TRANSPOSE permitted, CBLAS_ORDER order, CBLAS_UPLO uplo,
          CBLAS_TRANSPOSE trans, int n, int k, const S& alpha, const T* a, int lda, const S& beta, T* c, int ldc) {
    const bool by_rows = order == CblasRowMajor;
    CblasArguments arguments(name, order);
    arguments.option(2, uplo);
    check_operation(arguments, trans, permitted);
    arguments.size(4, n).size(5, k).leading(8, lda, by_rows == (trans == CblasNoTrans) ? k : n).leading(11, ldc, n);
    if (arguments.reported()) return;
    const char u = by_rows ? other_triangle(letter(uplo)) : letter(uplo);
    const char op = by_rows ? other_operation(trans, permitted) : letter(trans);
    routine(&u, &op, &n, &k, &alpha, a, &lda, &beta, c, &ldc);
}

/// As syrk. S: type of beta.
template <class S, class T, class Fn>
void syr2k(Fn* routine, const char* name, CBLAS_TRANSPOSE permitted, CBLAS_ORDER order, CBLAS_UPLO uplo,
           CBLAS_TRANSPOSE trans, int n, int k, const T& alpha, const T* a, int lda, const T* b, int ldb, const S& beta,
           T* c, int ldc) {
    const bool by_rows = order == CblasRowMajor;
    const int length = by_rows == (trans == CblasNoTrans) ? k : n;
    CblasArguments arguments(name, order);
    arguments.option(2, uplo);
    check_operation(arguments, trans, permitted);
    arguments.size(4, n).size(5, k).leading(8, lda, length).leading(10, ldb, length).leading(13, ldc, n);
    if (arguments.reported()) return;
    const char u = by_rows ? other_triangle(letter(uplo)) : letter(uplo);
    const char op = by_rows ? other_operation(trans, permitted) : letter(trans);
    routine(&u, &op, &n, &k, &alpha, a, &lda, b, &ldb, &beta, c, &ldc);
}

/// Products with, and solutions of, a triangular matrix: the op falls on A^T as it fell on A.
template <class T, class Fn>
void trm(Fn* routine, const char* name, CBLAS_ORDER order, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans,
         CBLAS_DIAG diag, int m, int n, const T& alpha, const T* a, int lda, T* b, int ldb) {
    const bool by_rows = order == CblasRowMajor;
    char s = letter(side), u = letter(uplo);
    const char op = letter(trans), diagonal = letter(diag);
    CblasArguments arguments(name, order);
    arguments.option(2, side).option(3, uplo).option(4, trans).option(5, diag).size(6, m).size(7, n);
    if (arguments.leading(10, lda, s == 'L' ? m : n).leading(12, ldb, by_rows ? n : m).reported()) return;
    if (by_rows) {
        s = other_side(s);
        u = other_triangle(u);
        std::swap(m, n);
    }
    routine(&s, &u, &op, &diagonal, &m, &n, &alpha, a, &lda, b, &ldb);
}

} // namespace

extern "C" {

NXL_EXPORT void cblas_dgemm(CBLAS_ORDER Order, CBLAS_TRANSPOSE TransA, CBLAS_TRANSPOSE TransB, int M, int N, int K,
                            double alpha, const double* A, int lda, const double* B, int ldb, double beta, double* C,
                            int ldc) noexcept {
    gemm(dgemm, "cblas_dgemm", Order, TransA, TransB, M, N, K, alpha, A, lda, B, ldb, beta, C, ldc);
}

NXL_EXPORT void cblas_zgemm(CBLAS_ORDER Order, CBLAS_TRANSPOSE TransA, CBLAS_TRANSPOSE TransB, int M, int N, int K,
                            const void* alpha, const void* A, int lda, const void* B, int ldb, const void* beta,
                            void* C, int ldc) noexcept {
    gemm(zgemm, "cblas_zgemm", Order, TransA, TransB, M, N, K, *z(alpha), z(A), lda, z(B), ldb, *z(beta), z(C), ldc);
}

NXL_EXPORT void cblas_dsymm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, int M, int N, double alpha,
                            const double* A, int lda, const double* B, int ldb, double beta, double* C,
                            int ldc) noexcept {
    symm(dsymm, "cblas_dsymm", Order, Side, Uplo, M, N, alpha, A, lda, B, ldb, beta, C, ldc);
}

NXL_EXPORT void cblas_zsymm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, int M, int N, const void* alpha,
                            const void* A, int lda, const void* B, int ldb, const void* beta, void* C,
                            int ldc) noexcept {
    symm(zsymm, "cblas_zsymm", Order, Side, Uplo, M, N, *z(alpha), z(A), lda, z(B), ldb, *z(beta), z(C), ldc);
}

NXL_EXPORT void cblas_zhemm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, int M, int N, const void* alpha,
                            const void* A, int lda, const void* B, int ldb, const void* beta, void* C,
                            int ldc) noexcept {
    symm(zhemm, "cblas_zhemm", Order, Side, Uplo, M, N, *z(alpha), z(A), lda, z(B), ldb, *z(beta), z(C), ldc);
}

NXL_EXPORT void cblas_dsyrk(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, double alpha,
                            const double* A, int lda, double beta, double* C, int ldc) noexcept {
    syrk(dsyrk, "cblas_dsyrk", CblasNoTrans, Order, Uplo, Trans, N, K, alpha, A, lda, beta, C, ldc);
}

NXL_EXPORT void cblas_zsyrk(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, const void* alpha,
                            const void* A, int lda, const void* beta, void* C, int ldc) noexcept {
    syrk(zsyrk, "cblas_zsyrk", CblasTrans, Order, Uplo, Trans, N, K, *z(alpha), z(A), lda, *z(beta), z(C), ldc);
}

NXL_EXPORT void cblas_zherk(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, double alpha,
                            const void* A, int lda, double beta, void* C, int ldc) noexcept {
    syrk(zherk, "cblas_zherk", CblasConjTrans, Order, Uplo, Trans, N, K, alpha, z(A), lda, beta, z(C), ldc);
}

NXL_EXPORT void cblas_dsyr2k(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, double alpha,
                             const double* A, int lda, const double* B, int ldb, double beta, double* C,
                             int ldc) noexcept {
    syr2k(dsyr2k, "cblas_dsyr2k", CblasNoTrans, Order, Uplo, Trans, N, K, alpha, A, lda, B, ldb, beta, C, ldc);
}

NXL_EXPORT void cblas_zsyr2k(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, const void* alpha,
                             const void* A, int lda, const void* B, int ldb, const void* beta, void* C,
                             int ldc) noexcept {
    syr2k(zsyr2k, "cblas_zsyr2k", CblasTrans, Order, Uplo, Trans, N, K, *z(alpha), z(A), lda, z(B), ldb, *z(beta), z(C),
          ldc);
}

// By rows (A B^H)^T = (B^T)^H A^T: the terms change places, and so do alpha and its conjugate.
NXL_EXPORT void cblas_zher2k(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, const void* alpha,
                             const void* A, int lda, const void* B, int ldb, double beta, void* C, int ldc) noexcept {
    const zcomplex factor = Order == CblasRowMajor ? conjugate(*z(alpha)) : *z(alpha);
    syr2k(zher2k, "cblas_zher2k", CblasConjTrans, Order, Uplo, Trans, N, K, factor, z(A), lda, z(B), ldb, beta, z(C),
          ldc);
}

NXL_EXPORT void cblas_dtrmm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA,
                            CBLAS_DIAG Diag, int M, int N, double alpha, const double* A, int lda, double* B,
                            int ldb) noexcept {
    trm(dtrmm, "cblas_dtrmm", Order, Side, Uplo, TransA, Diag, M, N, alpha, A, lda, B, ldb);
}

NXL_EXPORT void cblas_ztrmm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA,
                            CBLAS_DIAG Diag, int M, int N, const void* alpha, const void* A, int lda, void* B,
                            int ldb) noexcept {
    trm(ztrmm, "cblas_ztrmm", Order, Side, Uplo, TransA, Diag, M, N, *z(alpha), z(A), lda, z(B), ldb);
}

NXL_EXPORT void cblas_dtrsm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA,
                            CBLAS_DIAG Diag, int M, int N, double alpha, const double* A, int lda, double* B,
                            int ldb) noexcept {
    trm(dtrsm, "cblas_dtrsm", Order, Side, Uplo, TransA, Diag, M, N, alpha, A, lda, B, ldb);
}

NXL_EXPORT void cblas_ztrsm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA,
                            CBLAS_DIAG Diag, int M, int N, const void* alpha, const void* A, int lda, void* B,
                            int ldb) noexcept {
    trm(ztrsm, "cblas_ztrsm", Order, Side, Uplo, TransA, Diag, M, N, *z(alpha), z(A), lda, z(B), ldb);
}

} // extern "C"
