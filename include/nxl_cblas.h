/* nxl: CBLAS, double precision, real and complex. Link with -lnxl_gnu. Names, prototypes and enumerators are those of
 * the C interface to the legacy BLAS (BLAS Technical Forum Standard, 2001, appendix B), so a program may just as well
 * be compiled with another library's cblas.h; include one of the two.
 *
 * What the routines compute, and what holds for their arguments, is described in nxl.h with the routine of the same
 * name. Here sizes, leading dimensions, increments and real scalars come by value; complex scalars, vectors and
 * matrices by address, as pointers to void. Order is one of:
 *   CblasRowMajor  element (i,j) of a matrix stands at a[i * lda + j], and lda is at least its number of columns
 *   CblasColMajor  element (i,j) stands at a[i + j * lda], and lda is at least its number of rows
 *
 * Row-major calls run on the transposed problem in place. Where that takes conjugates (zgemv, ztrmv and ztrsv with
 * CblasConjTrans, zhemv, zher, zher2, zgerc) a conjugated copy is made of vectors that are read, from the heap above 64
 * elements, and y or x is conjugated in its place before and after.
 *
 * Bad arguments go to cblas_xerbla with their position, from 1, in the lists below; the first bad one counts, and the
 * call returns with nothing changed. Bad is: a value that is none of its type's enumerators, CblasConjTrans for zsyrk
 * and zsyr2k, CblasTrans for zherk and zher2k, a size below 0, an increment of 0, a leading dimension that is too
 * small.
 */
#ifndef NXL_CBLAS_H
#define NXL_CBLAS_H

#include <stddef.h>

#ifdef __cplusplus
#define NXL_CBLAS_ENUM(name) enum name : int /* any value may come in */
#define NXL_CBLAS_NOEXCEPT noexcept
extern "C" {
#else
#define NXL_CBLAS_ENUM(name) enum name
#define NXL_CBLAS_NOEXCEPT
#endif

/* ==== CBLAS: options and reports =================================================================================
 * What CBLAS calls take beside numbers and arrays, and where reports of bad arguments go. */

/* What the search for an extreme element returns: its position, from 0. */
#define CBLAS_INDEX size_t

/* Whether matrices are stored by rows or by columns. */
typedef NXL_CBLAS_ENUM(CBLAS_ORDER){CblasRowMajor = 101, CblasColMajor = 102} CBLAS_ORDER;

/* The later name of CBLAS_ORDER. */
typedef CBLAS_ORDER CBLAS_LAYOUT;

/* The matrix, its transpose or its conjugate transpose. */
typedef NXL_CBLAS_ENUM(CBLAS_TRANSPOSE){CblasNoTrans = 111, CblasTrans = 112, CblasConjTrans = 113} CBLAS_TRANSPOSE;

/* Which triangle of a symmetric, Hermitian or triangular matrix is stored. */
typedef NXL_CBLAS_ENUM(CBLAS_UPLO){CblasUpper = 121, CblasLower = 122} CBLAS_UPLO;

/* Whether the diagonal of a triangular matrix is read, or taken for ones. */
typedef NXL_CBLAS_ENUM(CBLAS_DIAG){CblasNonUnit = 131, CblasUnit = 132} CBLAS_DIAG;

/* On which side of the product the matrix with special structure stands. */
typedef NXL_CBLAS_ENUM(CBLAS_SIDE){CblasLeft = 141, CblasRight = 142} CBLAS_SIDE;

/* Takes all reports. Prints to standard error: the position p and the routine, unless p is 0, and what form says, as
 * printf does. It returns; a program that wants to stop, or to count, defines a function of this name itself. */
void cblas_xerbla(int p, const char* rout, const char* form, ...);

/* ==== CBLAS level 1 ===============================================================================================
 * Vectors: sums, norms, rotations, copies. Nothing is checked or reported. */

double cblas_ddot(int N, const double* X, int incX, const double* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_zdotu_sub(int N, const void* X, int incX, const void* Y, int incY, void* dotu) NXL_CBLAS_NOEXCEPT;
void cblas_zdotc_sub(int N, const void* X, int incX, const void* Y, int incY, void* dotc) NXL_CBLAS_NOEXCEPT;
double cblas_dnrm2(int N, const double* X, int incX) NXL_CBLAS_NOEXCEPT;
double cblas_dznrm2(int N, const void* X, int incX) NXL_CBLAS_NOEXCEPT;
double cblas_dasum(int N, const double* X, int incX) NXL_CBLAS_NOEXCEPT;
double cblas_dzasum(int N, const void* X, int incX) NXL_CBLAS_NOEXCEPT;

/* Positions count from 0 here, and an empty vector gives 0. The two for the smallest element are not in the standard.
 */
CBLAS_INDEX cblas_idamax(int N, const double* X, int incX) NXL_CBLAS_NOEXCEPT;
CBLAS_INDEX cblas_izamax(int N, const void* X, int incX) NXL_CBLAS_NOEXCEPT;
CBLAS_INDEX cblas_idamin(int N, const double* X, int incX) NXL_CBLAS_NOEXCEPT;
CBLAS_INDEX cblas_izamin(int N, const void* X, int incX) NXL_CBLAS_NOEXCEPT;

void cblas_dswap(int N, double* X, int incX, double* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_zswap(int N, void* X, int incX, void* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_dcopy(int N, const double* X, int incX, double* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_zcopy(int N, const void* X, int incX, void* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_daxpy(int N, double alpha, const double* X, int incX, double* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_zaxpy(int N, const void* alpha, const void* X, int incX, void* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_dscal(int N, double alpha, double* X, int incX) NXL_CBLAS_NOEXCEPT;
void cblas_zscal(int N, const void* alpha, void* X, int incX) NXL_CBLAS_NOEXCEPT;
void cblas_zdscal(int N, double alpha, void* X, int incX) NXL_CBLAS_NOEXCEPT;

/* zrotg and zdrot are not in the standard. */
void cblas_drotg(double* a, double* b, double* c, double* s) NXL_CBLAS_NOEXCEPT;
void cblas_zrotg(void* a, void* b, double* c, void* s) NXL_CBLAS_NOEXCEPT;
void cblas_drotmg(double* d1, double* d2, double* b1, double b2, double* P) NXL_CBLAS_NOEXCEPT;
void cblas_drot(int N, double* X, int incX, double* Y, int incY, double c, double s) NXL_CBLAS_NOEXCEPT;
void cblas_zdrot(int N, void* X, int incX, void* Y, int incY, double c, double s) NXL_CBLAS_NOEXCEPT;
void cblas_drotm(int N, double* X, int incX, double* Y, int incY, const double* P) NXL_CBLAS_NOEXCEPT;

/* ==== CBLAS level 2 ===============================================================================================
 * A matrix with a vector: products, updates of rank one and two, triangular solutions. */

void cblas_dgemv(CBLAS_ORDER Order, CBLAS_TRANSPOSE TransA, int M, int N, double alpha, const double* A, int lda,
                 const double* X, int incX, double beta, double* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_zgemv(CBLAS_ORDER Order, CBLAS_TRANSPOSE TransA, int M, int N, const void* alpha, const void* A, int lda,
                 const void* X, int incX, const void* beta, void* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_dger(CBLAS_ORDER Order, int M, int N, double alpha, const double* X, int incX, const double* Y, int incY,
                double* A, int lda) NXL_CBLAS_NOEXCEPT;
void cblas_zgeru(CBLAS_ORDER Order, int M, int N, const void* alpha, const void* X, int incX, const void* Y, int incY,
                 void* A, int lda) NXL_CBLAS_NOEXCEPT;
void cblas_zgerc(CBLAS_ORDER Order, int M, int N, const void* alpha, const void* X, int incX, const void* Y, int incY,
                 void* A, int lda) NXL_CBLAS_NOEXCEPT;
void cblas_dsymv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, double alpha, const double* A, int lda, const double* X,
                 int incX, double beta, double* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_zhemv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, const void* alpha, const void* A, int lda, const void* X,
                 int incX, const void* beta, void* Y, int incY) NXL_CBLAS_NOEXCEPT;
void cblas_dsyr(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, double alpha, const double* X, int incX, double* A,
                int lda) NXL_CBLAS_NOEXCEPT;
void cblas_zher(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, double alpha, const void* X, int incX, void* A,
                int lda) NXL_CBLAS_NOEXCEPT;
void cblas_dsyr2(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, double alpha, const double* X, int incX, const double* Y,
                 int incY, double* A, int lda) NXL_CBLAS_NOEXCEPT;
void cblas_zher2(CBLAS_ORDER Order, CBLAS_UPLO Uplo, int N, const void* alpha, const void* X, int incX, const void* Y,
                 int incY, void* A, int lda) NXL_CBLAS_NOEXCEPT;
void cblas_dtrmv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int N, const double* A,
                 int lda, double* X, int incX) NXL_CBLAS_NOEXCEPT;
void cblas_ztrmv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int N, const void* A,
                 int lda, void* X, int incX) NXL_CBLAS_NOEXCEPT;
void cblas_dtrsv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int N, const double* A,
                 int lda, double* X, int incX) NXL_CBLAS_NOEXCEPT;
void cblas_ztrsv(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int N, const void* A,
                 int lda, void* X, int incX) NXL_CBLAS_NOEXCEPT;

/* ==== CBLAS level 3 ===============================================================================================
 * Matrices with matrices: products, updates of rank k, triangular solutions for many right-hand sides. */

void cblas_dgemm(CBLAS_ORDER Order, CBLAS_TRANSPOSE TransA, CBLAS_TRANSPOSE TransB, int M, int N, int K, double alpha,
                 const double* A, int lda, const double* B, int ldb, double beta, double* C,
                 int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_zgemm(CBLAS_ORDER Order, CBLAS_TRANSPOSE TransA, CBLAS_TRANSPOSE TransB, int M, int N, int K,
                 const void* alpha, const void* A, int lda, const void* B, int ldb, const void* beta, void* C,
                 int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_dsymm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, int M, int N, double alpha, const double* A,
                 int lda, const double* B, int ldb, double beta, double* C, int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_zsymm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, int M, int N, const void* alpha, const void* A,
                 int lda, const void* B, int ldb, const void* beta, void* C, int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_zhemm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, int M, int N, const void* alpha, const void* A,
                 int lda, const void* B, int ldb, const void* beta, void* C, int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_dsyrk(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, double alpha, const double* A,
                 int lda, double beta, double* C, int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_zsyrk(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, const void* alpha,
                 const void* A, int lda, const void* beta, void* C, int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_zherk(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, double alpha, const void* A,
                 int lda, double beta, void* C, int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_dsyr2k(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, double alpha,
                  const double* A, int lda, const double* B, int ldb, double beta, double* C,
                  int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_zsyr2k(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, const void* alpha,
                  const void* A, int lda, const void* B, int ldb, const void* beta, void* C,
                  int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_zher2k(CBLAS_ORDER Order, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE Trans, int N, int K, const void* alpha,
                  const void* A, int lda, const void* B, int ldb, double beta, void* C, int ldc) NXL_CBLAS_NOEXCEPT;
void cblas_dtrmm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int M,
                 int N, double alpha, const double* A, int lda, double* B, int ldb) NXL_CBLAS_NOEXCEPT;
void cblas_ztrmm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int M,
                 int N, const void* alpha, const void* A, int lda, void* B, int ldb) NXL_CBLAS_NOEXCEPT;
void cblas_dtrsm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int M,
                 int N, double alpha, const double* A, int lda, double* B, int ldb) NXL_CBLAS_NOEXCEPT;
void cblas_ztrsm(CBLAS_ORDER Order, CBLAS_SIDE Side, CBLAS_UPLO Uplo, CBLAS_TRANSPOSE TransA, CBLAS_DIAG Diag, int M,
                 int N, const void* alpha, const void* A, int lda, void* B, int ldb) NXL_CBLAS_NOEXCEPT;

#ifdef __cplusplus
}
#endif
#undef NXL_CBLAS_ENUM
#undef NXL_CBLAS_NOEXCEPT
#endif
