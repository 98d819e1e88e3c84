// dgetri, zgetri: inverse of a general matrix from its LU factors.
#include "blas/kernel/default_em64t/level1/slots.hpp"
#include "lapack/kernel/source/blas_calls.hpp"
#include "lapack/kernel/source/lu.hpp"
#include "lapack/kernel/source/reports.hpp"
#include "lapack/kernel/source/triangular.hpp"
#include "lapack/kernel/source/tuning.hpp"
#include "service/interface/blas_checks.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "service/threads.hpp"

namespace nxl {
namespace {

/// Columns at once where there is memory: products with fewer read the matrix too often for their work.
constexpr i64 wide_block = 256;

void invert_upper(i64 n, double* a, i64 lda, i64* info) { nxl_lapack_dtrtri("U", "N", &n, a, &lda, info, 1, 1); }
void invert_upper(i64 n, zcomplex* a, i64 lda, i64* info) { nxl_lapack_ztrtri("U", "N", &n, a, &lda, info, 1, 1); }

void swap_columns(i64 rows, double* x, double* y) { dswap_slot(rows, x, i64{1}, y, i64{1}); }
void swap_columns(i64 rows, zcomplex* x, zcomplex* y) { zswap_slot(rows, x, i64{1}, y, i64{1}); }

/// Moves columns j .. j + width - 1 of L from the diagonal on to `work`, rows as in A, and leaves zeros for them. The
/// unit diagonal and what is above it stay as they are: nobody looks there.
template <class T> void take_lower(i64 n, i64 j, i64 width, T* a, i64 lda, T* work) {
    for (i64 k = 0; k < width; ++k) {
        T* const column = a + (j + k) * lda;
        T* const taken = work + k * n;
        for (i64 i = j + k + 1; i < n; ++i) {
            taken[i] = column[i];
            column[i] = T{};
        }
    }
}

/// X L = U^-1 for X, from the last columns to the first: U^-1 - X2 L21 in the product's place, then a solution with
/// L11. `work`: n by width.
template <class T> void solve_with_lower(i64 n, T* a, i64 lda, T* work, i64 width) {
    for (i64 j = (n - 1) / width * width; j >= 0; j -= width) {
        const i64 columns = std::min(width, n - j), next = j + columns;
        take_lower(n, j, columns, a, lda, work);
        if (next < n)
            gemm('N', 'N', n, columns, n - next, -1.0, a + next * lda, lda, work + next, n, 1.0, a + j * lda, lda);
        trsm('R', 'L', 'N', 'U', n, columns, 1.0, work + j, n, a + j * lda, lda);
    }
}

/// A^-1 = X P: the interchanges of rows undone as interchanges of columns, backwards. Every thread has rows of its own.
template <class T> void interchange_columns(i64 n, T* a, i64 lda, const i64* ipiv) {
    constexpr i64 least_rows = 256; // for a thread
    const i64 blocks = std::clamp(n / least_rows, i64{1}, i64{max_threads(domain_blas)});
    parallel_blocks(static_cast<int>(blocks), static_cast<int>(blocks), [=](int block) {
        const i64 from = n * block / blocks, rows = n * (block + 1) / blocks - from;
        for (i64 j = n - 2; j >= 0; --j)
            if (ipiv[j] != j + 1) swap_columns(rows, a + from + j * lda, a + from + (ipiv[j] - 1) * lda);
    });
}

/// The columns that `elements` of workspace hold at once, at most `width`.
i64 columns_in(i64 elements, i64 n, i64 width) { return std::clamp(elements / n, i64{1}, width); }

template <class T>
void getri(const char* name, i64 n, T* a, i64 lda, const i64* ipiv, T* work, i64 lwork, i64* info) {
    *info = 0;
    const i64 width = std::max(tuning(block_size, name, " ", n, -1, -1, -1), i64{1});
    work[0] = T(static_cast<double>(std::max(n * width, i64{1})));
    if (n < 0) return refuse_argument(name, 1, info);
    if (below(lda, n)) return refuse_argument(name, 3, info);
    if (lwork != -1 && below(lwork, n)) return refuse_argument(name, 6, info);
    if (lwork == -1 || n == 0) return;
    invert_upper(n, a, lda, info);
    if (*info != 0) return;
    const i64 wide = std::min(n, wide_block);
    if (lwork / n >= wide) solve_with_lower(n, a, lda, work, wide);
    else if (const Scratch<T> own(n * wide); own.data()) solve_with_lower(n, a, lda, own.data(), wide);
    else solve_with_lower(n, a, lda, work, columns_in(lwork, n, width));
    interchange_columns(n, a, lda, ipiv);
    work[0] = T(static_cast<double>(n * width));
}

} // namespace

void nxl_lapack_dgetri(const i64* n, double* a, const i64* lda, const i64* ipiv, double* work, const i64* lwork,
                       i64* info) {
    getri("DGETRI", *n, a, *lda, ipiv, work, *lwork, info);
}

void nxl_lapack_zgetri(const i64* n, zcomplex* a, const i64* lda, const i64* ipiv, zcomplex* work, const i64* lwork,
                       i64* info) {
    getri("ZGETRI", *n, a, *lda, ipiv, work, *lwork, info);
}

} // namespace nxl
