// A supernode that has all its updates: its diagonal block is factored, and the rows and columns beside it are solved.
#pragma once
#include "blas/calls.hpp"
#include "lapack/kernel/source/cholesky/xpotrf.hpp"
#include "lapack/kernel/source/cholesky/xpotrf_omp.hpp"
#include "lapack/kernel/source/lu/xgetrf_omp.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/factor.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/pivots.hpp"
#include <algorithm>

namespace nxl::pardiso {

/// How pivots are chosen and replaced.
struct PivotRule {
    bool bunch_kaufman;
    Perturbation perturbation;
};

/// Interchanges the columns of `rows` rows as the pivots were. Of a pivot of order 2 the second column is moved.
template <class T> void interchange_columns(T* a, i64 ld, i32 rows, const i32* interchanges, i32 width) {
    for (i32 k = 0; k < width; ++k) {
        const bool pair = interchanges[k] < 0;
        const i32 from = pair ? k + 1 : k, to = std::abs(interchanges[k]) - 1;
        if (to != from) std::swap_ranges(a + from * ld, a + from * ld + rows, a + to * ld);
        if (pair) ++k;
    }
}

/// Rows := rows op(triangle)^-1: of a lower triangle the transpose, or the adjoint, of an upper one itself. Few columns
/// are done here, where a call would cost more than its work.
template <class T>
void solve_rows(char uplo, char transposition, char diag, i64 rows, i64 width, const T* a, i64 lda, T* b, i64 ldb) {
    constexpr i64 few = 4;
    if (width > few) return trsm<T>('R', uplo, transposition, diag, rows, width, T(1.0), a, lda, b, ldb);
    const bool adjoint = transposition == 'C';
    const auto entry = [&](i64 k, i64 j) { // of the upper triangle that is divided by
        const T value = uplo == 'L' ? a[j + k * lda] : a[k + j * lda];
        return adjoint ? conj_if<true>(value) : value;
    };
    for (i64 k = 0; k < width; ++k) {
        T* const own = b + k * ldb;
        if (diag == 'N') {
            const T pivot = entry(k, k);
            for (i64 i = 0; i < rows; ++i) own[i] /= pivot;
        }
        for (i64 j = k + 1; j < width; ++j) {
            const T factor = entry(k, j);
            T* const other = b + j * ldb;
            for (i64 i = 0; i < rows; ++i) other[i] -= own[i] * factor;
        }
    }
}

template <class T> bool factor_cholesky(const FactorBlock<T>& block) {
    constexpr i64 unblocked = 16; // columns, below which the driver costs more than its work
    i64 info = 0;
    if (block.width == 1) {
        const double pivot = real_part(block.l[0]);
        if (!(pivot > 0.0)) return false;
        block.l[0] = std::sqrt(pivot);
    } else if (block.width <= unblocked) {
        potf2('L', Matrix<T>{block.l, block.width, block.width, block.rows}, info);
    } else {
        potrf('L', block.width, block.l, block.rows, info);
    }
    if (info != 0) return false;
    if (block.below() > 0)
        solve_rows('L', 'C', 'N', block.below(), block.width, block.l, block.rows, block.l_below(), block.rows);
    return true;
}

/// Moves D out of the block, so that L has ones and zeros there.
template <class T> void take_out_d(const FactorBlock<T>& block) {
    for (i32 k = 0; k < block.width; ++k) {
        const T* const diagonal = block.l + k * (i64{block.rows} + 1);
        block.d[2 * k] = diagonal[0];
        block.d[2 * k + 1] = T{};
        if (block.row_interchanges[k] > 0) continue;
        T* const beside = block.l + k * (i64{block.rows} + 1) + 1;
        block.d[2 * k + 1] = *beside;
        *beside = T{};
        ++k;
        block.d[2 * k] = block.l[k * (i64{block.rows} + 1)];
        block.d[2 * k + 1] = T{};
    }
}

enum class DivisorSide { left, right };

/// Vectors of `count` elements, `stride` apart, one for each column of the block: as the columns of X they become those
/// of X D^-1, as the rows of X those of D^-1 X.
template <class M, DivisorSide side, class T = typename M::T>
void divide_by_d(const FactorBlock<T>& block, i64 count, T* vectors, i64 stride) {
    for (i32 k = 0; k < block.width; ++k) {
        T* const x = vectors + k * stride;
        const T d = block.d[2 * k];
        if (block.row_interchanges[k] > 0) {
            for (i64 i = 0; i < count; ++i) x[i] /= d;
            continue;
        }
        T* const y = x + stride;
        const InversePair<T, M::hermitian> inverse(d, block.d[2 * k + 1], block.d[2 * k + 2]);
        const T into_x = side == DivisorSide::left ? inverse.i12() : inverse.i21;
        const T into_y = side == DivisorSide::left ? inverse.i21 : inverse.i12();
        for (i64 i = 0; i < count; ++i) {
            const T first = x[i], last = y[i];
            x[i] = first * inverse.i11 + last * into_x;
            y[i] = first * into_y + last * inverse.i22;
        }
        ++k;
    }
}

/// L := X D^-1, for the rows below the block, which hold X = L D.
template <class M, class T = typename M::T> void ldl_apply_d(const FactorBlock<T>& block) {
    divide_by_d<M, DivisorSide::right>(block, block.below(), block.l_below(), block.rows);
}

template <class M, class T = typename M::T>
void factor_ldl(const FactorBlock<T>& block, const PivotRule& rule, PivotCounts& counts) {
    const auto pivot = rule.bunch_kaufman ? ldl_pivot_bk<T, M::hermitian> : ldl_pivot_1x1<T, M::hermitian>;
    pivot(block.width, block.l, block.rows, block.row_interchanges, rule.perturbation, counts);
    take_out_d(block);
    if (block.below() == 0) return;
    interchange_columns(block.l_below(), block.rows, block.below(), block.row_interchanges, block.width);
    solve_rows('L', M::transposition, 'U', block.below(), block.width, block.l, block.rows, block.l_below(),
               block.rows);
    ldl_apply_d<M>(block);
}

/// Rows interchanged inside the block by the driver of dense matrices. False for a pivot that is exactly 0.
template <class T> bool pivot_rows(const FactorBlock<T>& block) {
    constexpr i32 widest = 128; // panel
    i64 interchanges[widest], info = 0;
    getrf(block.width, block.width, block.l, block.rows, interchanges, info);
    for (i32 k = 0; k < block.width; ++k) {
        block.row_interchanges[k] = static_cast<i32>(interchanges[k]);
        block.column_interchanges[k] = k + 1;
    }
    return info == 0;
}

template <class M, class T = typename M::T>
bool factor_lu(const FactorBlock<T>& block, const PivotRule& rule, PivotCounts& counts) {
    if constexpr (M::form == Form::lu) {
        if (!pivot_rows(block)) return false;
    } else {
        lu_perturb(block.width, block.l, block.rows, block.row_interchanges, block.column_interchanges,
                   rule.perturbation, counts);
    }
    const i32 below = block.below(), width = block.width;
    if (below == 0) return true;
    if constexpr (M::form == Form::lu_full_pivoting)
        interchange_columns(block.l_below(), block.rows, below, block.column_interchanges, width);
    solve_rows('U', 'N', 'N', below, width, block.l, block.rows, block.l_below(), block.rows);
    interchange_columns(block.u, below, below, block.row_interchanges, width);
    solve_rows('L', 'T', 'U', below, width, block.l, block.rows, block.u, below);
    return true;
}

/// False for a pivot that ends the factorisation.
template <class M, class T = typename M::T>
bool factor_block(const FactorBlock<T>& block, const PivotRule& rule, PivotCounts& counts) {
    if constexpr (M::form == Form::cholesky) {
        if (!factor_cholesky(block)) return false;
        counts.positive += block.width;
        return true;
    } else if constexpr (M::form == Form::ldl) {
        factor_ldl<M>(block, rule, counts);
        return true;
    } else {
        return factor_lu<M>(block, rule, counts);
    }
}

} // namespace nxl::pardiso
