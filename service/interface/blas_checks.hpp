// The argument checks of BLAS levels 2 and 3, one per shape of argument list. Each makes its tests in order; the first
// that fails is reported with its position in the published argument list, from 1, and the rest are not made.
// `name`: the routine, six characters, padded with blanks. All return true when they have reported.
#pragma once
#include "service/errors.hpp"
#include "service/types.hpp"
#include <cstddef>

namespace nxl {

/// Whether an option is none of the letters, in either case.
template <std::size_t N> bool none_of(const char* option, const char (&letters)[N]) {
    for (std::size_t i = 0; i + 1 < N; ++i)
        if (LSAME(option, letters + i, 1, 1)) return false;
    return true;
}

/// Whether a leading dimension is below max(1, rows).
inline bool below(i64 ld, i64 rows) { return ld < 1 || ld < rows; }

// ---- Level 2 ----

inline bool check_gemv(const char* name, const char* trans, i64 m, i64 n, i64 lda, i64 incx, i64 incy) {
    if (none_of(trans, "NTC")) return report_argument(name, 1);
    if (m < 0) return report_argument(name, 2);
    if (n < 0) return report_argument(name, 3);
    if (below(lda, m)) return report_argument(name, 6);
    if (incx == 0) return report_argument(name, 8);
    if (incy == 0) return report_argument(name, 11);
    return false;
}

inline bool check_ger(const char* name, i64 m, i64 n, i64 incx, i64 incy, i64 lda) {
    if (m < 0) return report_argument(name, 1);
    if (n < 0) return report_argument(name, 2);
    if (incx == 0) return report_argument(name, 5);
    if (incy == 0) return report_argument(name, 7);
    if (below(lda, m)) return report_argument(name, 9);
    return false;
}

inline bool check_syr(const char* name, const char* uplo, i64 n, i64 incx, i64 lda) {
    if (none_of(uplo, "UL")) return report_argument(name, 1);
    if (n < 0) return report_argument(name, 2);
    if (incx == 0) return report_argument(name, 5);
    if (below(lda, n)) return report_argument(name, 7);
    return false;
}

inline bool check_syr2(const char* name, const char* uplo, i64 n, i64 incx, i64 incy, i64 lda) {
    if (none_of(uplo, "UL")) return report_argument(name, 1);
    if (n < 0) return report_argument(name, 2);
    if (incx == 0) return report_argument(name, 5);
    if (incy == 0) return report_argument(name, 7);
    if (below(lda, n)) return report_argument(name, 9);
    return false;
}

/// Symmetric and Hermitian matrix-vector products.
inline bool check_symv(const char* name, const char* uplo, i64 n, i64 lda, i64 incx, i64 incy) {
    if (none_of(uplo, "UL")) return report_argument(name, 1);
    if (n < 0) return report_argument(name, 2);
    if (below(lda, n)) return report_argument(name, 5);
    if (incx == 0) return report_argument(name, 7);
    if (incy == 0) return report_argument(name, 10);
    return false;
}

/// Product with, or solution of, a triangular matrix and one vector.
inline bool check_trv(const char* name, const char* uplo, const char* trans, const char* diag, i64 n, i64 lda,
                      i64 incx) {
    if (none_of(uplo, "UL")) return report_argument(name, 1);
    if (none_of(trans, "NTC")) return report_argument(name, 2);
    if (none_of(diag, "UN")) return report_argument(name, 3);
    if (n < 0) return report_argument(name, 4);
    if (below(lda, n)) return report_argument(name, 6);
    if (incx == 0) return report_argument(name, 8);
    return false;
}

// ---- Level 3 ----

inline bool check_gemm(const char* name, const char* transa, const char* transb, i64 m, i64 n, i64 k, i64 lda, i64 ldb,
                       i64 ldc) {
    const i64 rows_a = none_of(transa, "N") ? k : m, rows_b = none_of(transb, "N") ? n : k;
    if (none_of(transa, "NCT")) return report_argument(name, 1);
    if (none_of(transb, "NCT")) return report_argument(name, 2);
    if (m < 0) return report_argument(name, 3);
    if (n < 0) return report_argument(name, 4);
    if (k < 0) return report_argument(name, 5);
    if (below(lda, rows_a)) return report_argument(name, 8);
    if (below(ldb, rows_b)) return report_argument(name, 10);
    if (below(ldc, m)) return report_argument(name, 13);
    return false;
}

/// Products with a symmetric or Hermitian matrix.
inline bool check_symm(const char* name, const char* side, const char* uplo, i64 m, i64 n, i64 lda, i64 ldb, i64 ldc) {
    const i64 rows_a = none_of(side, "L") ? n : m;
    if (none_of(side, "LR")) return report_argument(name, 1);
    if (none_of(uplo, "UL")) return report_argument(name, 2);
    if (m < 0) return report_argument(name, 3);
    if (n < 0) return report_argument(name, 4);
    if (below(lda, rows_a)) return report_argument(name, 7);
    if (below(ldb, m)) return report_argument(name, 9);
    if (below(ldc, m)) return report_argument(name, 12);
    return false;
}

/// What `trans` of a rank update may be: N, or what keeps the result of its kind. For real matrices C means T.
inline constexpr char dsyrk_trans[] = "NTC";
inline constexpr char zherk_trans[] = "NC";
inline constexpr char zsyrk_trans[] = "NT";

/// Rank-k updates; `permitted` is one of the above.
template <std::size_t N>
bool check_syrk(const char* name, const char (&permitted)[N], const char* uplo, const char* trans, i64 n, i64 k,
                i64 lda, i64 ldc) {
    const i64 rows_a = none_of(trans, "N") ? k : n;
    if (none_of(uplo, "UL")) return report_argument(name, 1);
    if (none_of(trans, permitted)) return report_argument(name, 2);
    if (n < 0) return report_argument(name, 3);
    if (k < 0) return report_argument(name, 4);
    if (below(lda, rows_a)) return report_argument(name, 7);
    if (below(ldc, n)) return report_argument(name, 10);
    return false;
}

/// Rank-2k updates.
template <std::size_t N>
bool check_syr2k(const char* name, const char (&permitted)[N], const char* uplo, const char* trans, i64 n, i64 k,
                 i64 lda, i64 ldb, i64 ldc) {
    const i64 rows_ab = none_of(trans, "N") ? k : n;
    if (none_of(uplo, "UL")) return report_argument(name, 1);
    if (none_of(trans, permitted)) return report_argument(name, 2);
    if (n < 0) return report_argument(name, 3);
    if (k < 0) return report_argument(name, 4);
    if (below(lda, rows_ab)) return report_argument(name, 7);
    if (below(ldb, rows_ab)) return report_argument(name, 9);
    if (below(ldc, n)) return report_argument(name, 12);
    return false;
}

/// Product with, or solution of, a triangular matrix and many vectors.
inline bool check_trm(const char* name, const char* side, const char* uplo, const char* transa, const char* diag, i64 m,
                      i64 n, i64 lda, i64 ldb) {
    const i64 rows_a = none_of(side, "L") ? n : m;
    if (none_of(side, "LR")) return report_argument(name, 1);
    if (none_of(uplo, "UL")) return report_argument(name, 2);
    if (none_of(transa, "NTC")) return report_argument(name, 3);
    if (none_of(diag, "UN")) return report_argument(name, 4);
    if (m < 0) return report_argument(name, 5);
    if (n < 0) return report_argument(name, 6);
    if (below(lda, rows_a)) return report_argument(name, 9);
    if (below(ldb, m)) return report_argument(name, 11);
    return false;
}

} // namespace nxl
