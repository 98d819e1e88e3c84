// A = Q B P^H, or the adjoint of a wide A is. With a bidiagonal of full rank there is no need of its vectors:
//
//     A X = B      tall   X = P  B^-1   Q^H B          else the inverse is that of the values above the cutoff,
//                  wide   X = Q (B^-1)^H P^H B         between the vectors of the bidiagonal.
//
// Golub and Van Loan, Matrix Computations, 4th ed., section 5.5.
#include "lapack/kernel/source/least_squares/svd_solution.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/adjoint.hpp"
#include "lapack/kernel/source/common/norms.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/least_squares/range_scaling.hpp"
#include "lapack/kernel/source/singular/bdsdc.hpp"
#include "lapack/kernel/source/singular/bidiagonal_form.hpp"
#include "lapack/kernel/source/singular/bidiagonal_qr.hpp"
#include "lapack/kernel/source/singular/unit_columns.hpp"
#include <algorithm>

namespace nxl {
namespace {

template <class T> void clear(const Matrix<T>& a) {
    for (i64 j = 0; j < a.columns; ++j) std::fill_n(a.at(0, j), a.rows, T{});
}

/// The values that count.
i64 rank_of(i64 n, const double* s, double cutoff) {
    i64 rank = 0;
    while (rank < n && s[rank] > cutoff) ++rank;
    return rank;
}

/// X := S^+ X, row by row.
template <class T> void divide_by_values(const double* s, i64 rank, const Matrix<T>& x) {
    for (i64 j = 0; j < x.columns; ++j)
        for (i64 i = 0; i < x.rows; ++i) x(i, j) = i < rank ? x(i, j) / s[i] : T{};
}

/// X := B^-1 X, or B^-T X.
template <class T> void solve_bidiagonal(bool transposed, i64 n, const double* d, const double* e, const Matrix<T>& x) {
    for (i64 j = 0; j < x.columns; ++j) {
        T* const column = x.at(0, j);
        if (transposed)
            for (i64 i = 0; i < n; ++i) column[i] = (i > 0 ? column[i] - e[i - 1] * column[i - 1] : column[i]) / d[i];
        else
            for (i64 i = n - 1; i >= 0; --i)
                column[i] = (i + 1 < n ? column[i] - e[i] * column[i + 1] : column[i]) / d[i];
    }
}

/// The tall matrix, A or its adjoint, with B for it.
template <class T> struct TallSolution {
    const BidiagonalForm<T>& form;
    const i64 n;
    const bool adjoint; // the system is that of the adjoint: right-hand sides belong to P, solutions to Q
    const Matrix<T>& sides;
    double* const s;
    const double rcond;
    i64& rank;

    double cutoff(double largest) const {
        return keeps_smallest() ? std::max(rcond * largest, safe_minimum) : unit_roundoff * largest;
    }
    bool keeps_smallest() const { return rcond >= 0.0; }
    Matrix<T> coordinates() const { return sides.rows_from(0, n); }
    bool to_coordinates() const {
        return adjoint ? form.multiply_right(true, coordinates()) : form.multiply_left(true, sides);
    }
    bool from_coordinates() const {
        if (!adjoint) return form.multiply_right(false, coordinates());
        clear(sides.block(n, 0, sides.rows - n, sides.columns));
        return form.multiply_left(false, sides);
    }

    /// By the vectors of the bidiagonal matrix, V S^+ U^T or U S^+ V^T.
    i64 solve_by_vectors() const {
        const Scratch<double> memory(2 * n * n);
        const Scratch<T> own(n * (n + sides.columns));
        if (!memory.data() || !own.data()) return -1;
        const Matrix<double> u{memory.data(), n, n, n}, v{memory.data() + n * n, n, n, n};
        const i64 failed = divide_bidiagonal(n, form.d(), form.e(), u, v);
        if (failed != 0) return failed;
        const Matrix<T> vectors{own.data(), n, n, n}, products{own.data() + n * n, n, sides.columns, n};
        const auto take = [&](const Matrix<double>& from) {
            for (i64 j = 0; j < n; ++j) std::copy_n(from.at(0, j), n, vectors.at(0, j));
        };
        take(adjoint ? v : u);
        gemm('C', 'N', 1.0, vectors, coordinates(), 0.0, products);
        divide_by_values(s, rank, products);
        take(adjoint ? u : v);
        gemm('N', 'N', 1.0, vectors, products, 0.0, coordinates());
        return 0;
    }
    i64 run() const {
        const Scratch<double> memory(n);
        if (!memory.data() || !to_coordinates()) return -1;
        std::copy_n(form.d(), n, s);
        std::copy_n(form.e(), n - 1, memory.data());
        if (const i64 failed = bidiagonal_values('U', n, s, memory.data()); failed != 0) return failed;
        rank = rank_of(n, s, cutoff(s[0]));
        if (rank == n) solve_bidiagonal(adjoint, n, form.d(), form.e(), coordinates());
        else if (const i64 failed = solve_by_vectors(); failed != 0) return failed;
        return from_coordinates() ? 0 : -1;
    }

    /// The same where the vectors that belong to the solution are wanted: they come in `vectors`.
    i64 run_with_vectors(const Matrix<T>& vectors) const {
        const Matrix<T> none{nullptr, 0, 0, 1};
        const Scratch<T> memory(2 * sides.columns * n + 1);
        if (!memory.data() || !to_coordinates()) return -1;
        if (!(adjoint ? form.form_left(vectors) : form.form_right(vectors))) return -1;
        const Matrix<T> turned{memory.data(), sides.columns, n, std::max(sides.columns, i64{1})};
        const Matrix<T> products{memory.data() + sides.columns * n, n, sides.columns, n};
        copy_adjoint<T>(coordinates(), turned);
        const Matrix<T> own = adjoint ? vectors.block(0, 0, form.left_rows(), n) : vectors;
        const i64 failed =
            bidiagonal_qr<T>('U', n, form.d(), form.e(),
                             adjoint ? TurnedColumns<T>{turned, own, none} : TurnedColumns<T>{own, turned, none});
        if (failed != 0) return failed;
        if (adjoint && !form.complete_left(vectors)) return -1;
        std::copy_n(form.d(), n, s);
        rank = rank_of(n, s, cutoff(s[0]));
        copy_adjoint<T>(turned, products);
        divide_by_values(s, rank, products);
        gemm('N', 'N', 1.0, vectors, products, 0.0, sides.rows_from(0, vectors.rows));
        return 0;
    }
};

} // namespace

template <class T> i64 SvdSolution<T>::solve() const {
    const bool tall = a.rows >= a.columns;
    const i64 longer = std::max(a.rows, a.columns), n = a.steps();
    const Scratch<T> memory((tall ? 0 : longer * n) + (keeps_vectors ? (tall ? n : longer) * n : 0) + 1);
    if (!memory.data()) return -1;
    const Matrix<T> matrix = tall ? a : Matrix<T>{memory.data(), longer, n, longer};
    if (!tall) copy_adjoint<T>(a, matrix);
    const BidiagonalForm<T> form(matrix);
    if (!form.reduce()) return -1;
    const TallSolution<T> solution{form, n, !tall, sides, s, rcond, rank};
    if (!keeps_vectors) return solution.run();
    const i64 rows = tall ? n : longer;
    const Matrix<T> vectors{memory.data() + (tall ? 0 : longer * n), rows, n, rows};
    const i64 failed = solution.run_with_vectors(vectors);
    if (failed == 0) copy_adjoint<T>(vectors, a.rows_from(0, n));
    return failed;
}

template <class T> i64 SvdSolution<T>::run() const {
    const i64 n = a.steps();
    const double largest = largest_modulus<T>(a);
    const Matrix<T> given = sides.rows_from(0, a.rows), solutions = sides.rows_from(0, a.columns);
    rank = 0;
    if (largest == 0.0) {
        clear(sides);
        std::fill_n(s, n, 0.0);
        return 0;
    }
    const RangeScaling of_a = scale_into_range(largest, a), of_b = scale_into_range(largest_modulus<T>(given), given);
    const i64 failed = solve();
    if (failed != 0) return failed;
    scale_matrix(of_a.from, of_a.to, solutions);
    scale_matrix(of_b.to, of_b.from, solutions);
    scale_matrix(of_a.to, of_a.from, Matrix<double>{s, n, 1, n});
    return 0;
}
template struct SvdSolution<double>;
template struct SvdSolution<zcomplex>;

} // namespace nxl
