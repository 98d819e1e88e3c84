// The argument checks of BLAS levels 2 and 3, one per shape of argument list. `name`: the routine, six characters,
// padded with blanks. All return true when they have reported.
#pragma once
#include "service/arguments.hpp"

namespace nxl {

// ---- Level 2 ----

inline bool check_gemv(const RoutineLetters& name, char trans, i64 m, i64 n, i64 lda, i64 incx, i64 incy) {
    Arguments arguments(name);
    arguments.letter(1, trans, "NTC").size(2, m).size(3, n).leading(6, lda, m);
    return arguments.increment(8, incx).increment(11, incy).refused();
}

inline bool check_ger(const RoutineLetters& name, i64 m, i64 n, i64 incx, i64 incy, i64 lda) {
    Arguments arguments(name);
    arguments.size(1, m).size(2, n).increment(5, incx).increment(7, incy);
    return arguments.leading(9, lda, m).refused();
}

inline bool check_syr(const RoutineLetters& name, char uplo, i64 n, i64 incx, i64 lda) {
    return Arguments(name).letter(1, uplo, "UL").size(2, n).increment(5, incx).leading(7, lda, n).refused();
}

inline bool check_syr2(const RoutineLetters& name, char uplo, i64 n, i64 incx, i64 incy, i64 lda) {
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").size(2, n).increment(5, incx).increment(7, incy);
    return arguments.leading(9, lda, n).refused();
}

/// Symmetric and Hermitian matrix-vector products.
inline bool check_symv(const RoutineLetters& name, char uplo, i64 n, i64 lda, i64 incx, i64 incy) {
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").size(2, n).leading(5, lda, n);
    return arguments.increment(7, incx).increment(10, incy).refused();
}

/// Product with, or solution of, a triangular matrix and one vector.
inline bool check_trv(const RoutineLetters& name, char uplo, char trans, char diag, i64 n, i64 lda, i64 incx) {
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").letter(2, trans, "NTC").letter(3, diag, "UN");
    return arguments.size(4, n).leading(6, lda, n).increment(8, incx).refused();
}

// ---- Level 3 ----

/// Its letters are capitals already: a small product notices.
inline bool check_gemm(const RoutineLetters& name, char transa, char transb, i64 m, i64 n, i64 k, i64 lda, i64 ldb,
                       i64 ldc) {
    constexpr Letters letters = "NCT";
    const i64 rows_a = transa == 'N' ? m : k, rows_b = transb == 'N' ? k : n;
    Arguments arguments(name);
    arguments.expect(1, letters.has(transa)).expect(2, letters.has(transb)).size(3, m).size(4, n).size(5, k);
    return arguments.leading(8, lda, rows_a).leading(10, ldb, rows_b).leading(13, ldc, m).refused();
}

/// Products with a symmetric or Hermitian matrix.
inline bool check_symm(const RoutineLetters& name, char side, char uplo, i64 m, i64 n, i64 lda, i64 ldb, i64 ldc) {
    Arguments arguments(name);
    arguments.letter(1, side, "LR").letter(2, uplo, "UL").size(3, m).size(4, n);
    arguments.leading(7, lda, is_one_of(side, "L") ? m : n);
    return arguments.leading(9, ldb, m).leading(12, ldc, m).refused();
}

/// What `trans` of a rank update may be: N, or what keeps the result of its kind. For real matrices C means T.
inline constexpr Letters dsyrk_trans = "NTC";
inline constexpr Letters zherk_trans = "NC";
inline constexpr Letters zsyrk_trans = "NT";

/// Rank-k updates; `permitted` is one of the above.
inline bool check_syrk(const RoutineLetters& name, Letters permitted, char uplo, char trans, i64 n, i64 k, i64 lda,
                       i64 ldc) {
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").letter(2, trans, permitted).size(3, n).size(4, k);
    return arguments.leading(7, lda, is_one_of(trans, "N") ? n : k).leading(10, ldc, n).refused();
}

/// Rank-2k updates.
inline bool check_syr2k(const RoutineLetters& name, Letters permitted, char uplo, char trans, i64 n, i64 k, i64 lda,
                        i64 ldb, i64 ldc) {
    const i64 rows_ab = is_one_of(trans, "N") ? n : k;
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").letter(2, trans, permitted).size(3, n).size(4, k);
    return arguments.leading(7, lda, rows_ab).leading(9, ldb, rows_ab).leading(12, ldc, n).refused();
}

/// Product with, or solution of, a triangular matrix and many vectors.
inline bool check_trm(const RoutineLetters& name, char side, char uplo, char transa, char diag, i64 m, i64 n, i64 lda,
                      i64 ldb) {
    Arguments arguments(name);
    arguments.letter(1, side, "LR").letter(2, uplo, "UL").letter(3, transa, "NTC").letter(4, diag, "UN");
    arguments.size(5, m).size(6, n).leading(9, lda, is_one_of(side, "L") ? m : n);
    return arguments.leading(11, ldb, m).refused();
}

} // namespace nxl
