// The one list of kernels, with their signatures. Each target (processor class and vector width) fills one table.
// Kernels take integers as 64 bits by reference, do arithmetic on one thread, and report nothing.
#pragma once
#include "service/types.hpp"

namespace nxl {

// Signatures that several kernels share; T is double or zcomplex.
template <class T>
using GemvKernel = void (*)(const char& trans, const i64& m, const i64& n, const T& alpha, const T* a, const i64& lda,
                            const T* x, const i64& incx, const T& beta, T* y, const i64& incy);
template <class T>
using GerKernel = void (*)(const i64& m, const i64& n, const T& alpha, const T* x, const i64& incx, const T* y,
                           const i64& incy, T* a, const i64& lda);
template <class T>
using SymvKernel = void (*)(const char& uplo, const i64& n, const T& alpha, const T* a, const i64& lda, const T* x,
                            const i64& incx, const T& beta, T* y, const i64& incy);
template <class T, class Alpha>
using SyrKernel = void (*)(const char& uplo, const i64& n, const Alpha& alpha, const T* x, const i64& incx, T* a,
                           const i64& lda);
template <class T>
using Syr2Kernel = void (*)(const char& uplo, const i64& n, const T& alpha, const T* x, const i64& incx, const T* y,
                            const i64& incy, T* a, const i64& lda);
/// Product with, or solution of, a triangular matrix and one vector.
template <class T>
using TrvKernel = void (*)(const char& uplo, const char& trans, const char& diag, const i64& n, const T* a,
                           const i64& lda, T* x, const i64& incx);
/// Solution of a triangle of a band, k diagonals beside the main one, with one vector. `a`: where element
/// (0, 0) would be of a matrix with columns lda apart, which are one element less than the array's.
template <class T>
using TbsvKernel = void (*)(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& k,
                            const T* a, const i64& lda, T* x);
/// The same of a band of at most tbsm_band diagonals with the columns of B. `ipiv`: null, or the rows, from 1, that
/// change places with row j before step j of a lower triangle, for T and C after it.
template <class T>
using TbsmKernel = void (*)(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& k,
                            const T* a, const i64& lda, const i64* ipiv, const i64& columns, T* b, const i64& ldb);
inline constexpr i64 tbsm_band = 64;

/// A reflector in m rows of a panel of `before` + 1 + `after` columns: v, the column after those `before`, times
/// `scale`; of the columns after it v f^T is taken off; and `product`, of all columns, grows by their inner products
/// with the one that comes after v then, conjugates of the columns being multiplied.
template <class T>
using ReflectPanelKernel = void (*)(const i64& m, const i64& before, const i64& after, const T& scale, const T* f, T* a,
                                    const i64& lda, T* product);

template <class T>
using GemmKernel = void (*)(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                            const T& alpha, const T* a, const i64& lda, const T* b, const i64& ldb, const T& beta, T* c,
                            const i64& ldc);
template <class T> using GemmBetaKernel = void (*)(const i64& m, const i64& n, const T& beta, T* c, const i64& ldc);
/// A tile against a B panel that the caller has packed; b itself serves tiles too small for packing.
template <class T>
using GemmTilePbKernel = void (*)(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                                  const T& alpha, const T* a, const i64& lda, const T* b, const i64& ldb,
                                  const T* packed_b, const i64& ldbuf, const T& beta, T* c, const i64& ldc);
/// A tile against an A block, scaled by alpha, and a B panel that the caller has packed.
template <class T>
using GemmTilePabKernel = void (*)(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                                   const T& alpha, const T* a, const i64& lda, const T* packed_a, const i64& a_stride,
                                   const T* b, const i64& ldb, const T* packed_b, const i64& b_stride, const T& beta,
                                   T* c, const i64& ldc);
using GemmBlocksKernel = void (*)(const i64& m, const i64& n, const i64& k, i64& mb, i64& nb, i64& kb);
template <class T>
using GemmCopyAKernel = void (*)(const i64& rows, const i64& k, const T* a, const i64& lda, T* buffer,
                                 const i64& stride, const T& alpha);
template <class T>
using GemmCopyBKernel = void (*)(const i64& k, const i64& columns, const T* b, const i64& ldb, T* buffer,
                                 const i64& stride);

template <class T>
using SymmKernel = void (*)(const char& side, const char& uplo, const i64& m, const i64& n, const T& alpha, const T* a,
                            const i64& lda, const T* b, const i64& ldb, const T& beta, T* c, const i64& ldc);
template <class T, class Scalar>
using SyrkKernel = void (*)(const char& uplo, const char& trans, const i64& n, const i64& k, const Scalar& alpha,
                            const T* a, const i64& lda, const Scalar& beta, T* c, const i64& ldc);
template <class T, class Beta>
using Syr2kKernel = void (*)(const char& uplo, const char& trans, const i64& n, const i64& k, const T& alpha,
                             const T* a, const i64& lda, const T* b, const i64& ldb, const Beta& beta, T* c,
                             const i64& ldc);
/// One triangle of alpha op(A) op(B) + beta C, n by n. With an op that is C the result is taken for Hermitian.
template <class T>
using GemmtKernel = void (*)(const char& uplo, const char& transa, const char& transb, const i64& n, const i64& k,
                             const T& alpha, const T* a, const i64& lda, const T* b, const i64& ldb, const T& beta,
                             T* c, const i64& ldc);
/// Product with, or solution of, a triangular matrix and many vectors.
template <class T>
using TrmKernel = void (*)(const char& side, const char& uplo, const char& transa, const char& diag, const i64& m,
                           const i64& n, const T& alpha, const T* a, const i64& lda, T* b, const i64& ldb);

/// C(p_i, q_j) -= the sum over k of L(i, k) R(j, k), with p and q the places of rows and columns in C.
struct ScatteredProduct {
    i64 rows, columns, depth;
    i64 ld_left, ld_right, ldc;
    const i32 *row_places, *column_places; ///< from 0; no row twice
    bool lower;                            ///< only i >= j counts; some of what is above may be changed as well
    bool conjugate;                        ///< R is conjugated
};
template <class T>
using ScatteredProductKernel = void (*)(const ScatteredProduct& shape, const T* left, const T* right, T* c);

/// Unblocked P A = L U; info is 0 or the first column, from 1, whose pivot is zero.
template <class T>
using GetrfLeafKernel = void (*)(const i64& m, const i64& n, T* a, const i64& lda, i64* ipiv, i64& info);
/// What k factored columns l of m rows do to the n columns b on their right, rows interchanged already: U := L^-1 b,
/// and the product with what is below. Every product is rounded before it is taken off, one after the other.
template <class T>
using GetrfUpdateKernel = void (*)(const i64& m, const i64& k, const i64& n, const T* l, T* b, const i64& lda);
/// Rows and columns up to which an LU factorisation does all its arithmetic in this way, that of the published one:
/// what has no price beside products with fused operations.
template <class T> inline constexpr i64 lu_rounded_order = sizeof(T) == sizeof(double) ? 32 : 16;
/// Unblocked A = U^H U or L L^H; info is 0 or the order of the first leading minor that is not positive.
template <class T> using Potf2Kernel = void (*)(const i64& n, T* a, const i64& lda, i64& info);
/// Unblocked inverse of a triangle.
template <class T>
using Trti2Kernel = void (*)(const char& uplo, const char& diag, const i64& n, T* a, const i64& lda);
/// Unblocked U U^H or L^H L.
template <class T> using Lauu2Kernel = void (*)(const char& uplo, const i64& n, T* a, const i64& lda);

/// A := H^H A H, the lower triangle of a block of order n on a band's diagonal, for H = I - tau v v^H.
///
/// Here and in ChaseKernel columns are read, and stored as they were, up to chase_rest elements beyond a block; vectors
/// have zeros there, as far as it takes to fill them to a multiple of that and one. `work`: two such vectors.
template <class T>
using ChaseDiagonalKernel = void (*)(const i64& n, T* a, const i64& lda, const T* v, const T& tau, T* work);
/// A reflector goes on to a block, m by n, where the next one annihilates the first column, or row, but for one
/// element, which becomes real. Of the next one come the vector, its first element 1, with the zeros, and the scalar.
///     column   A := G^H A H, v of n elements: H = I - tau v v^H, and G has the next ones, of m elements
///     row      A := G^H A H, v of m elements: G = I - tau v v^H, and H has the next ones, of n elements
template <class T>
using ChaseKernel = void (*)(const i64& m, const i64& n, T* a, const i64& lda, const T* v, const T& tau, T* next,
                             T& next_tau, T* work);
inline constexpr i64 chase_rest = 7;

/// What each lane of ShiftedRowsKernel has of its own: lambda; the least pivot; the row of T from which on its unknowns
/// stay as they are. `im` is null where all is real. `sizes`: of the unknowns, an answer.
struct ShiftedLanes {
    i64 count;
    const double *re, *im, *least, *start;
    double* sizes;
};
/// (T - lambda I) x = b for `rows` rows of a Schur form, at most shifted_rows + 1, that begin at its row `first`; t is
/// their block on the diagonal. x has b, a column for each row, with the lanes side by side; imaginary parts of real
/// vectors come `count` elements behind the real ones. Unknowns that leave `room`, in sum, do not come to x, and the
/// answer is false. Pivots below the least one are taken to be that.
template <class T>
using ShiftedRowsKernel = bool (*)(const i64& rows, const T* t, const i64& ldt, const i64& first,
                                   const ShiftedLanes& lanes, const double& room, T* x, const i64& ldx);
inline constexpr i64 shifted_rows = 8;

/// The sum of the sizes of X, which NaN and infinity do not leave, and the smallest pivot that was met.
struct SylvesterLeafAnswer {
    double size, smallest_pivot;
};
/// A X + sign X B = C for Schur forms of orders p and q, at most sylvester_leaf + 1; pivots below `least` are taken to
/// be that. X takes the place of C, whose elements are row_step apart in a column. Blocks of order 2 of a real B have
/// equal elements on the diagonal, and off it others whose signs are opposite and whose sizes are not far apart.
template <class T>
using SylvesterLeafKernel = SylvesterLeafAnswer (*)(const i64& p, const i64& q, const T* a, const i64& lda, const T* b,
                                                    const i64& ldb, const double& sign, const double& least, T* c,
                                                    const i64& row_step, const i64& ldc);
inline constexpr i64 sylvester_leaf = 24;

struct KernelTable {
    // Level 1, real.
    double (*dasum)(const i64& n, const double* x, const i64& incx);
    void (*daxpy)(const i64& n, const double& alpha, const double* x, const i64& incx, double* y, const i64& incy);
    void (*dcopy)(const i64& n, const double* x, const i64& incx, double* y, const i64& incy);
    double (*ddot)(const i64& n, const double* x, const i64& incx, const double* y, const i64& incy);
    double (*dnrm2)(const i64& n, const double* x, const i64& incx);
    void (*drot)(const i64& n, double* x, const i64& incx, double* y, const i64& incy, const double& c,
                 const double& s);
    void (*drotg)(double& a, double& b, double& c, double& s);
    void (*drotm)(const i64& n, double* x, const i64& incx, double* y, const i64& incy, const double* param);
    void (*drotmg)(double& d1, double& d2, double& x1, const double& y1, double* param);
    void (*dscal)(const i64& n, const double& alpha, double* x, const i64& incx);
    void (*dswap)(const i64& n, double* x, const i64& incx, double* y, const i64& incy);
    i64 (*idamax)(const i64& n, const double* x, const i64& incx);
    i64 (*idamin)(const i64& n, const double* x, const i64& incx);

    // Level 1, complex.
    double (*dzasum)(const i64& n, const zcomplex* x, const i64& incx);
    double (*dznrm2)(const i64& n, const zcomplex* x, const i64& incx);
    i64 (*izamax)(const i64& n, const zcomplex* x, const i64& incx);
    i64 (*izamin)(const i64& n, const zcomplex* x, const i64& incx);
    void (*zaxpy)(const i64& n, const zcomplex& alpha, const zcomplex* x, const i64& incx, zcomplex* y,
                  const i64& incy);
    void (*zcopy)(const i64& n, const zcomplex* x, const i64& incx, zcomplex* y, const i64& incy);
    void (*zdotc)(zcomplex& result, const i64& n, const zcomplex* x, const i64& incx, const zcomplex* y,
                  const i64& incy);
    void (*zdotu)(zcomplex& result, const i64& n, const zcomplex* x, const i64& incx, const zcomplex* y,
                  const i64& incy);
    void (*zdrot)(const i64& n, zcomplex* x, const i64& incx, zcomplex* y, const i64& incy, const double& c,
                  const double& s);
    void (*zdscal)(const i64& n, const double& alpha, zcomplex* x, const i64& incx);
    void (*zrot)(const i64& n, zcomplex* x, const i64& incx, zcomplex* y, const i64& incy, const double& c,
                 const zcomplex& s);
    void (*zrotg)(zcomplex& a, const zcomplex& b, double& c, zcomplex& s);
    void (*zscal)(const i64& n, const zcomplex& alpha, zcomplex* x, const i64& incx);
    void (*zswap)(const i64& n, zcomplex* x, const i64& incx, zcomplex* y, const i64& incy);

    // Sparse level 1; indices count from 1.
    void (*daxpyi)(const i64& nz, const double& a, const double* x, const i64* indx, double* y);
    double (*ddoti)(const i64& nz, const double* x, const i64* indx, const double* y);
    void (*dgthr)(const i64& nz, const double* y, double* x, const i64* indx);
    void (*dsctr)(const i64& nz, const double* x, const i64* indx, double* y);
    void (*zaxpyi)(const i64& nz, const zcomplex& a, const zcomplex* x, const i64* indx, zcomplex* y);
    void (*zdotci)(zcomplex& result, const i64& nz, const zcomplex* x, const i64* indx, const zcomplex* y);
    void (*zdotui)(zcomplex& result, const i64& nz, const zcomplex* x, const i64* indx, const zcomplex* y);
    void (*zgthr)(const i64& nz, const zcomplex* y, zcomplex* x, const i64* indx);
    void (*zsctr)(const i64& nz, const zcomplex* x, const i64* indx, zcomplex* y);

    // Level 2.
    GemvKernel<double> dgemv;
    GerKernel<double> dger;
    SymvKernel<double> dsymv;
    SyrKernel<double, double> dsyr;
    Syr2Kernel<double> dsyr2;
    TbsvKernel<double> dtbsv;
    TrvKernel<double> dtrmv;
    TrvKernel<double> dtrsv;
    GemvKernel<zcomplex> zgemv;
    GerKernel<zcomplex> zgerc;
    GerKernel<zcomplex> zgeru;
    SymvKernel<zcomplex> zhemv;
    SyrKernel<zcomplex, double> zher;
    Syr2Kernel<zcomplex> zher2;
    SymvKernel<zcomplex> zsymv;
    SyrKernel<zcomplex, zcomplex> zsyr;
    TbsvKernel<zcomplex> ztbsv;
    TrvKernel<zcomplex> ztrmv;
    TrvKernel<zcomplex> ztrsv;

    // Level 3: whole problems on one thread.
    GemmKernel<double> xdgemm;
    GemmKernel<zcomplex> xzgemm;
    SymmKernel<double> dsymm;
    SymmKernel<zcomplex> zsymm;
    SymmKernel<zcomplex> zhemm;
    SyrkKernel<double, double> dsyrk;
    SyrkKernel<zcomplex, zcomplex> zsyrk;
    SyrkKernel<zcomplex, double> zherk;
    Syr2kKernel<double, double> dsyr2k;
    Syr2kKernel<zcomplex, zcomplex> zsyr2k;
    Syr2kKernel<zcomplex, double> zher2k;
    GemmtKernel<double> dgemmt;
    GemmtKernel<zcomplex> zgemmt;
    TrmKernel<double> dtrmm;
    TrmKernel<zcomplex> ztrmm;
    TrmKernel<double> dtrsm;
    TrmKernel<zcomplex> ztrsm;

    // LAPACK: unblocked pieces.
    GetrfLeafKernel<double> dgetrf_leaf;
    GetrfLeafKernel<zcomplex> zgetrf_leaf;
    GetrfUpdateKernel<double> dgetrf_update;
    GetrfUpdateKernel<zcomplex> zgetrf_update;
    ReflectPanelKernel<double> dreflect_panel;
    ReflectPanelKernel<zcomplex> zreflect_panel;
    Potf2Kernel<double> xdpotf2_u;
    Potf2Kernel<double> xdpotf2_l;
    Potf2Kernel<zcomplex> xzpotf2_u;
    Potf2Kernel<zcomplex> xzpotf2_l;
    Trti2Kernel<double> dtrti2;
    Trti2Kernel<zcomplex> ztrti2;
    Lauu2Kernel<double> dlauu2;
    Lauu2Kernel<zcomplex> zlauu2;

    // Pieces of GEMM that the threaded strategies put together. Only classes 2 and 3, or 2 alone, have most of them;
    // "htn" marks the form for class 2 with SSE4.1.
    GemmCopyAKernel<double> xdgemm_copy_at;
    GemmCopyAKernel<zcomplex> xzgemm_copy_at;

    // Classes 2 and 3.
    GemmBetaKernel<double> xdgemm_beta;
    GemmBetaKernel<zcomplex> xzgemm_beta;
    GemmKernel<double> xdgemm_tile;
    GemmKernel<zcomplex> xzgemm_tile;
    GemmTilePbKernel<double> xdgemm_tile_pb;
    GemmTilePbKernel<zcomplex> xzgemm_tile_pb;
    GemmBlocksKernel xzgemm_blocks;
    GemmCopyBKernel<zcomplex> xzgemm_copy_bn;
    GemmCopyBKernel<zcomplex> xzgemm_copy_bt;
    GemmCopyBKernel<zcomplex> xzgemm_copy_bc;

    // Class 2 alone.
    GemmBlocksKernel xdgemm_blocks_mc;
    GemmKernel<double> xdgemm_tile_htn;
    GemmTilePbKernel<double> xdgemm_tile_pb_htn;
    GemmTilePabKernel<double> xdgemm_tile_pab;
    GemmBlocksKernel xdgemm_blocks_htn;
    GemmCopyAKernel<double> xdgemm_copy_an;
    GemmCopyBKernel<double> xdgemm_copy_bn;
    GemmCopyBKernel<double> xdgemm_copy_bt;
    GemmKernel<zcomplex> xzgemm_tile_htn;
    GemmTilePbKernel<zcomplex> xzgemm_tile_pb_htn;
    GemmTilePabKernel<zcomplex> xzgemm_tile_pab;
    GemmBlocksKernel xzgemm_blocks_htn;
    GemmCopyAKernel<zcomplex> xzgemm_copy_an;
    GemmCopyAKernel<zcomplex> xzgemm_copy_ac;

    // Sparse factorisations.
    ScatteredProductKernel<double> dscattered_product;
    ScatteredProductKernel<zcomplex> zscattered_product;

    // LAPACK: eigenproblems.
    ChaseDiagonalKernel<double> dchase_diagonal;
    ChaseDiagonalKernel<zcomplex> zchase_diagonal;
    ChaseKernel<double> dchase_column;
    ChaseKernel<zcomplex> zchase_column;
    ChaseKernel<double> dchase_row;
    ChaseKernel<zcomplex> zchase_row;
    /// For each of `sequences` in turn, for j = 0 .. columns - 2 in turn, with cosine c and sine s at turns[2 ((columns
    /// - 1) sequence + j)]: columns j and j + 1 of a become c a_j + s a_j+1 and c a_j+1 - s a_j. lda may be negative.
    void (*drotations)(const i64& rows, const i64& columns, const i64& sequences, const double* turns, double* a,
                       const i64& lda);
    /// Reflectors H = I - tau v v^H, v = (1, v2, v3), each given by tau, v2 and v3, number r of `count` of rows 3 r to
    /// 3 r + 2 of c: c := H^H c. Whether these have it in the 3 r first columns, too, is left open.
    void (*dreflect_rows)(const i64& count, const double* reflectors, const i64& columns, double* c, const i64& ldc);
    void (*zreflect_rows)(const i64& count, const zcomplex* reflectors, const i64& columns, zcomplex* c,
                          const i64& ldc);
    /// c := c H, number r of the three columns from element r next of c on, with rows + r growth rows.
    void (*dreflect_columns)(const i64& count, const double* reflectors, const i64& rows, const i64& growth, double* c,
                             const i64& ldc, const i64& next);
    void (*zreflect_columns)(const i64& count, const zcomplex* reflectors, const i64& rows, const i64& growth,
                             zcomplex* c, const i64& ldc, const i64& next);
    /// counts[k]: the eigenvalues up to shifts[k] of the tridiagonal matrix with diagonal d[0 .. n-1] and squares of
    /// off-diagonal elements e2[0 .. n-1], of which the last does not count. pivmin > 0: the least pivot.
    void (*dsturm)(const i64& n, const double* d, const double* e2, const double& pivmin, const i64& many,
                   const double* shifts, i64* counts);
    ShiftedRowsKernel<double> dshifted_rows;
    ShiftedRowsKernel<zcomplex> zshifted_rows;
    SylvesterLeafKernel<double> dsylvester_leaf;
    SylvesterLeafKernel<zcomplex> zsylvester_leaf;
    /// Triangles of narrow bands, with several right-hand sides.
    TbsmKernel<double> dtbsm;
    TbsmKernel<zcomplex> ztbsm;
};

} // namespace nxl
