// Triangular problems seen from their right-hand sides, which are rows of B on the right and columns of B on the left:
// x t = alpha b for the solution, b := alpha b t for the product, with one triangle t for all eight forms of A.
#pragma once
#include "blas/kernels/level3/plain_gemm.hpp"

namespace nxl::NXL_TARGET {

// How the forms become one. A right-hand side is a row vector b of as many entries as t has columns:
//
//     on the right    X op(A) = alpha B       rows of B        t = op(A)
//     on the left     op(A) X = alpha B       columns of B     t = op(A)^T
//
// t is then upper or lower, by columns or by rows in memory, conjugated or not: Source and two flags say all of it, and
// no loop below asks for a letter. An upper t goes forward: entry j of x t depends on entries up to j of x.
template <class T> struct TriangularProblem {
    Source<T> t;  ///< element (j, p): column j, row p of t; what is outside the triangle is not read
    bool forward; ///< t is upper: entry j of x t takes entries up to j of x
    bool unit;    ///< the diagonal counts as ones and is not read
    bool left;    ///< right-hand sides are columns of B
    i64 order, count;
    T alpha;
    T* b;
    i64 ldb;

    /// Element (r, p): entry p of right-hand side r.
    Source<T> rhs() const { return {b, left ? ldb : 1, left ? 1 : ldb, false}; }
    T* at(i64 r, i64 p) const { return left ? b + p + r * ldb : b + r + p * ldb; }
};

template <class T>
TriangularProblem<T> triangular_problem(char side, char uplo, char trans, char diag, i64 m, i64 n, const T& alpha,
                                        const T* a, i64 lda, T* b, i64 ldb) {
    const bool left = side == 'L', upper = uplo == 'U';
    const bool upper_op = upper == (trans == 'N'); // op(A) is upper; on the left, t is its transpose
    return {left ? source_of_a(trans, a, lda) : source_of_b(trans, a, lda),
            left != upper_op,
            diag == 'U',
            left,
            left ? m : n,
            left ? n : m,
            alpha,
            b,
            ldb};
}

/// True when nothing is left to do; alpha = 0 has then made B zero, without a look at A or B.
template <class T> bool is_trivial(i64 m, i64 n, const T& alpha, T* b, i64 ldb) {
    if (m < 1 || n < 1) return true;
    if (!is_zero(alpha)) return false;
    scale_result(m, n, Result<T>{b, ldb, alpha, Before::drop});
    return true;
}

/// sum + a b, a product at a time, so that each can be fused.
[[gnu::always_inline]] inline double plus_product(double sum, double a, double b) { return sum + a * b; }
[[gnu::always_inline]] inline Complex plus_product(Complex sum, Complex a, Complex b) {
    sum.re += a.re * b.re;
    sum.re -= a.im * b.im;
    sum.im += a.re * b.im + a.im * b.re;
    return sum;
}

/// What all of t but its diagonal is multiplied with: -1 for a solver, so that everywhere products are added.
template <class T> constexpr T kMinusOne = from_real<T>(-1.0);
template <class T> [[gnu::always_inline]] inline const T* factor_of_t(bool solver) {
    return solver ? &kMinusOne<T> : nullptr;
}

/// Element (j, p) of t, conjugated where the problem says so.
template <class T> [[gnu::always_inline]] inline T read_element(const Source<T>& t, i64 j, i64 p) {
    const T value = *t.from(j, p).data;
    return t.conjugate ? conj(value) : value;
}

/// The diagonal element (j, j).
template <class T> [[gnu::always_inline]] inline T read_diagonal(const TriangularProblem<T>& problem, i64 j) {
    return problem.unit ? from_real<T>(1.0) : read_element(problem.t, j, j);
}

/// Whether the diagonal elements of entries first .. first + length - 1 have reciprocals to multiply with.
template <class T> bool has_reciprocals(const TriangularProblem<T>& problem, i64 first, i64 length) {
    for (i64 j = first; j < first + length; ++j)
        if (!has_reciprocal(read_diagonal(problem, j))) return false;
    return true;
}

/// Doubles of k steps of a group of columns.
template <class T> [[gnu::always_inline]] inline i64 group_stride(i64 k) { return kPanel * padded<T>(k); }

/// Columns of t that a tile takes at once, and their corner on the diagonal: so many steps.
template <class T> constexpr i64 kGroup = kPanelRows<T>;

/// A group of columns of an upper t, 4 real ones, from entry j on:
///
///     step 0 .. j - 1      the columns above the diagonal, times entries of x that are known
///     step j               d t t t     the corner: d is the diagonal, or its reciprocal
///          j + 1           . d t t
///          j + 2           . . d t     . are zeros in place of the other triangle
///          j + 3           . . . d
///
/// Of a lower t the corner comes first and the columns below it follow. Each step stands at its own number in the
/// group, so that a tile finds it at the place where the panels of right-hand sides have the same entry.
///
/// A diagonal block of t, from entry `first` on, packed for the tiles: groups of columns `stride` doubles apart, of
/// which only what belongs to the triangle is filled. For a solver all but the diagonal is negated, and the diagonal
/// inverted. Columns beyond the last stand as those of the unit matrix.
struct PackedTriangle {
    double* groups;
    i64 stride, first, order;
};

/// The corner of the group of columns that starts at `j`, `size` of which exist.
template <class T>
void pack_corner(const TriangularProblem<T>& problem, i64 j, i64 size, bool solver, double* to) {
    for (i64 p = 0; p < kGroup<T>; ++p)
        for (i64 c = 0; c < kGroup<T>; ++c) {
            T value = from_real<T>(p == c ? 1.0 : 0.0);
            const bool exists = p < size && c < size, stored = p == c ? !problem.unit : (p < c) == problem.forward;
            if (exists && stored) {
                value = read_element(problem.t, j + c, j + p);
                if (solver) value = p == c ? reciprocal(value) : -value;
            }
            *scalars<T>(to + p * kPanel + c * kParts<T>) = value;
        }
}

/// Columns j .. j + columns of a diagonal block, whole groups or less than one: the steps that all of them have at
/// once, then what is left of each group, and its corner.
template <class T, class Change>
void pack_columns(const TriangularProblem<T>& problem, bool solver, const PackedTriangle& to, i64 j, i64 columns,
                  Change change) {
    constexpr i64 width = kGroup<T>;
    const auto pack = [&](i64 first, i64 count, i64 p, i64 steps) {
        const Source<T> from = problem.t.from(to.first + first, to.first + p);
        double* const at = to.groups + first / width * to.stride + p * kPanel;
        if (count >= width) pack_full_groups<T>(from, count / width, steps, at, to.stride, kPanel, change);
        else pack_ragged<T>(from, static_cast<int>(count), width, steps, at, kPanel, change);
    };
    const i64 end = j + columns;
    if (problem.forward) pack(j, columns, 0, j);
    else pack(j, columns, end, to.order - end);
    for (i64 group = j; group < end; group += width) {
        const i64 size = least(width, end - group);
        if (problem.forward) pack(group, size, j, group - j);
        else pack(group, size, group + size, end - group - size);
        pack_corner(problem, to.first + group, size, solver, to.groups + group / width * to.stride + group * kPanel);
    }
}

template <class T> void pack_triangle(const TriangularProblem<T>& problem, bool solver, const PackedTriangle& to) {
    constexpr i64 width = kGroup<T>, together = 3 * width; // neighbours in memory are read together
    with_change<T>(problem.t.conjugate, factor_of_t<T>(solver), [&](auto change) {
        for (i64 j = 0; j < to.order;) {
            const i64 left = to.order - j;
            const i64 columns = left >= together ? together : least(width, left);
            pack_columns(problem, solver, to, j, columns, change);
            j += columns;
        }
    });
}

} // namespace nxl::NXL_TARGET
