// dgels, zgels. With a triangle R of order min(m, n) from QR (tall) or L from LQ (wide) there are two ways to a
// solution:
//
//     op(A) tall   Q^H B, then a solution with the triangle      least squares
//     op(A) wide   a solution with the triangle, then Q times    minimum norm
//
// Golub and Van Loan, Matrix Computations, 4th ed., sections 5.3 and 5.6.
#include "lapack/kernel/source/least_squares/gels.hpp"
#include "lapack/kernel/source/common/norms.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/least_squares/range_scaling.hpp"
#include "lapack/kernel/source/orthogonal/apply_q.hpp"
#include "lapack/kernel/source/orthogonal/gelqf.hpp"
#include "lapack/kernel/source/orthogonal/geqrf.hpp"
#include "lapack/kernel/source/orthogonal/q_names.hpp"
#include "lapack/kernel/source/triangular/trtrs.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/arguments.hpp"
#include <algorithm>

namespace nxl {
namespace {

template <class T> void clear(const Matrix<T>& a) {
    for (i64 j = 0; j < a.columns; ++j) std::fill_n(a.at(0, j), a.rows, T{});
}

enum class Outcome { done, singular, no_memory };

/// One problem, with A and B scaled already.
template <class T> struct LeastSquares {
    const bool adjoint; // op(A) = A^H
    const Matrix<T> a, b;
    T* const tau;

    bool tall() const { return a.rows >= a.columns; }
    i64 order() const { return a.steps(); }
    /// The published Q of LQ is the adjoint of the product of its reflectors, as A = L Q is of QR.
    bool multiply(bool adjoint_of_product) const {
        const Reflectors<T> v = {tall() ? a.columns_from(0, order()) : a.rows_from(0, order()), Order::forward,
                                 tall() ? Storage::columns : Storage::rows};
        return apply_reflectors('L', adjoint_of_product, v, tau, b.rows_from(0, v.length()));
    }
    /// info of the solution with the triangle: its first zero on the diagonal, from 1, or 0.
    i64 solve_triangle() const {
        i64 info = 0;
        trtrs(tall() ? 'U' : 'L', adjoint ? 'C' : 'N', 'N', order(), b.columns, a.data, a.ld, b.data, b.ld, info);
        return info;
    }

    Outcome run(i64& info) const {
        if (!(tall() ? factor_qr(a, tau) : factor_lq(a, tau))) return Outcome::no_memory;
        const bool overdetermined = tall() != adjoint;
        if (overdetermined && !multiply(true)) return Outcome::no_memory;
        info = solve_triangle();
        if (info != 0) return Outcome::singular;
        if (overdetermined) return Outcome::done;
        clear(b.block(order(), 0, std::max(a.rows, a.columns) - order(), b.columns));
        return multiply(false) ? Outcome::done : Outcome::no_memory;
    }
};

} // namespace

template <class T>
void gels(const char& trans, const i64& m, const i64& n, const i64& nrhs, T* a, const i64& lda, T* b, const i64& ldb,
          T* work, const i64& lwork, i64& info, int) {
    constexpr RoutineLetters name = routine<T>("GELS ");
    const i64 order = std::min(m, n), longer = std::max(m, n), columns = std::max(order, nrhs);
    const Workspace<T> space(work, lwork, std::max(order + columns, i64{1}),
                             std::max(order + columns * block_of(q_routine<T>("MQR")), i64{1}));
    Arguments arguments(name);
    arguments.letter(1, trans, q_trans_letters<T>).size(2, m).size(3, n).size(4, nrhs);
    arguments.leading(6, lda, m).leading(8, ldb, longer);
    if (arguments.workspace(10, space).refused(info) || space.is_query()) return;
    const Matrix<T> matrix{a, m, n, lda}, sides{b, longer, nrhs, ldb};
    const double largest = nrhs == 0 ? 0.0 : largest_modulus<T>(matrix); // 0 without columns to solve for, too
    if (largest == 0.0) return clear(sides);
    const bool adjoint = trans != 'N';
    const Matrix<T> given = sides.rows_from(0, adjoint ? n : m), solution = sides.rows_from(0, adjoint ? m : n);
    const RangeScaling of_a = scale_into_range(largest, matrix);
    const RangeScaling of_b = scale_into_range(largest_modulus<T>(given), given);
    switch (LeastSquares<T>{adjoint, matrix, sides, work}.run(info)) {
    case Outcome::no_memory: return refuse_for_memory(name, info);
    case Outcome::singular: return;
    case Outcome::done: break;
    }
    scale_matrix(of_a.from, of_a.to, solution);
    scale_matrix(of_b.to, of_b.from, solution);
}
template decltype(gels<double>) gels<double>;
template decltype(gels<zcomplex>) gels<zcomplex>;

} // namespace nxl
