// Triangular problems seen from their right-hand sides, which are rows of B on the right and columns of B on the left:
// x t = alpha b for the solution, b := alpha b t for the product, with one triangle t for all eight forms of A.
#pragma once
#include "blas/kernels/level3/plain_gemm.hpp"

namespace nxl::NXL_TARGET {

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
    const bool left = is_letter(side, 'L'), upper = is_letter(uplo, 'U');
    const bool upper_op = upper == is_letter(trans, 'N'); // op(A) is upper; on the left, t is its transpose
    return {left ? source_of_a(trans, a, lda) : source_of_b(trans, a, lda),
            left != upper_op,
            is_letter(diag, 'U'),
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

/// T as kernels compute with it.
template <class T> struct NumberOf {
    using type = double;
};
template <> struct NumberOf<zcomplex> {
    using type = Complex;
};

/// A number given as its parts.
template <class T> [[gnu::always_inline]] inline auto number(const double* from) {
    typename NumberOf<T>::type value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}

/// sum += a b, all given as their parts.
template <class T> [[gnu::always_inline]] inline void add_product(double* sum, const double* a, const double* b) {
    sum[0] += a[0] * b[0];
    if constexpr (kParts<T> == 2) {
        sum[0] -= a[1] * b[1];
        sum[1] += a[0] * b[1] + a[1] * b[0];
    }
}

alignas(16) constexpr double kOne[2] = {1.0, 0.0}, kMinusOne[2] = {-1.0, 0.0}; // real or complex

/// What all of t but its diagonal is multiplied with: -1 for a solver, so that everywhere products are added.
template <class T> [[gnu::always_inline]] inline const T* factor_of_t(bool solver) {
    return solver ? reinterpret_cast<const T*>(kMinusOne) : nullptr;
}

/// Element (j, p) of t as its parts, conjugated where the problem says so.
template <class T> [[gnu::always_inline]] inline void read_element(const Source<T>& t, i64 j, i64 p, double* to) {
    __builtin_memcpy(to, t.from(j, p).data, sizeof(T));
    if constexpr (kParts<T> == 2)
        if (t.conjugate) to[1] = -to[1];
}

/// The diagonal element (j, j) as its parts, or its reciprocal.
template <class T>
[[gnu::always_inline]] inline void read_diagonal(const TriangularProblem<T>& problem, i64 j, bool inverted,
                                                 double* to) {
    to[0] = 1.0;
    if constexpr (kParts<T> == 2) to[1] = 0.0;
    if (problem.unit) return;
    read_element(problem.t, j, j, to);
    if (!inverted) return;
    const auto inverse = reciprocal(number<T>(to));
    __builtin_memcpy(to, &inverse, sizeof inverse);
}

/// Whether the diagonal elements of entries first .. first + length - 1 have reciprocals to multiply with.
template <class T> bool has_reciprocals(const TriangularProblem<T>& problem, i64 first, i64 length) {
    double diagonal[2];
    for (i64 j = first; j < first + length; ++j) {
        read_diagonal(problem, j, false, diagonal);
        if (!has_reciprocal(number<T>(diagonal))) return false;
    }
    return true;
}

/// Columns of t that a tile takes at once, and their corner on the diagonal: so many steps.
template <class T> constexpr i64 kGroup = kPanelRows<T>;

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
            double* const out = to + p * kPanel + c * kParts<T>;
            for (int part = 0; part < kParts<T>; ++part) out[part] = p == c && part == 0 ? 1.0 : 0.0;
            if (p >= size || c >= size || (p != c && (p < c) != problem.forward)) continue;
            if (p == c) read_diagonal(problem, j + c, solver, out);
            else read_element(problem.t, j + c, j + p, out);
            for (int part = 0; part < kParts<T>; ++part)
                if (solver && p != c) out[part] = -out[part];
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
        if (count >= width) pack_full_panels<T>(from, count / width, steps, at, to.stride, kPanel, change);
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
