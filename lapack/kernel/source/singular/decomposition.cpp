// A wide matrix is decomposed as its adjoint, whose left vectors are its right ones.
#include "lapack/kernel/source/singular/decomposition.hpp"
#include "lapack/kernel/source/common/adjoint.hpp"
#include "lapack/kernel/source/common/norms.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "lapack/kernel/source/singular/bdsdc.hpp"
#include "lapack/kernel/source/singular/bidiagonal_form.hpp"
#include "lapack/kernel/source/singular/bidiagonal_qr.hpp"
#include "lapack/kernel/source/singular/unit_columns.hpp"
#include "service/scratch.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// A tall matrix and the places of its vectors, as columns; those that are not wanted have no columns.
template <class T> struct TallDecomposition {
    const DiagonalBy by;
    const Matrix<T> a, left, right;
    double *const s, *const off;

    i64 n() const { return a.columns; }

    i64 by_qr(const BidiagonalForm<T>& form) const {
        const Matrix<T> none{nullptr, 0, 0, 1};
        if (left.columns > 0 && !form.form_left(left)) return -1;
        if (right.columns > 0 && !form.form_right(right)) return -1;
        const Matrix<T> turned = left.columns > 0 ? left.block(0, 0, form.left_rows(), n()) : none;
        const i64 failed =
            bidiagonal_qr<T>('U', n(), form.d(), form.e(), {right.columns > 0 ? right : none, turned, none});
        if (failed < 0) return -1;
        return left.columns > 0 && !form.complete_left(left) ? -1 : failed;
    }
    i64 by_division(const BidiagonalForm<T>& form) const {
        const Scratch<double> memory(2 * n() * n());
        if (!memory.data()) return -1;
        const Matrix<double> u{memory.data(), n(), n(), n()}, v{memory.data() + n() * n(), n(), n(), n()};
        const i64 failed = divide_bidiagonal(n(), form.d(), form.e(), u, v);
        if (failed < 0) return -1;
        const auto take = [&](const Matrix<double>& from, const Matrix<T>& to) {
            for (i64 j = 0; j < n(); ++j) std::copy_n(from.at(0, j), n(), to.at(0, j));
            extend_by_unit_columns(to, n());
        };
        if (left.columns > 0) {
            take(u, left);
            if (!form.multiply_left(false, left)) return -1;
        }
        if (right.columns > 0) {
            take(v, right);
            if (!form.multiply_right(false, right)) return -1;
        }
        return failed;
    }
    i64 run() const {
        const double largest = largest_modulus<T>(a), scale = block_scale(&largest, nullptr, 1);
        for (i64 j = 0; j < n() && scale != 1.0; ++j)
            for (i64 i = 0; i < a.rows; ++i) a(i, j) *= scale;
        const BidiagonalForm<T> form(a);
        const bool values_alone = left.columns == 0 && right.columns == 0;
        if (!form.reduce(values_alone)) return -1;
        i64 failed = 0;
        if (values_alone) failed = bidiagonal_values('U', n(), form.d(), form.e());
        else failed = by == DiagonalBy::qr ? by_qr(form) : by_division(form);
        for (i64 i = 0; i < n(); ++i) s[i] = form.d()[i] / scale;
        for (i64 i = 0; i + 1 < n() && off && failed > 0; ++i) off[i] = form.e()[i] / scale;
        return failed;
    }
};

template <class T> void copy_matrix(const Matrix<T>& from, const Matrix<T>& to) {
    for (i64 j = 0; j < to.columns; ++j) std::copy_n(from.at(0, j), to.rows, to.at(0, j));
}

} // namespace

template <class T> i64 Decomposition<T>::run() const {
    const bool tall = a.rows >= a.columns;
    const i64 longer = std::max(a.rows, a.columns), order = a.steps();
    // In the words of the tall matrix: `outer` are its vectors of the longer side.
    const char outer = tall ? left : right, inner = tall ? right : left;
    const i64 outer_columns = outer == 'N'   ? 0
                              : outer == 'A' ? longer
                                             : order,
              inner_columns = inner == 'N' ? 0 : order;
    const bool own_outer = !tall || outer == 'O', own_inner = tall || inner == 'O'; // in memory of our own
    const Scratch<T> memory((own_outer ? longer * outer_columns : 0) + (own_inner ? order * inner_columns : 0) +
                            (tall ? 0 : longer * order) + 1);
    if (!memory.data()) return -1;
    T* next = memory.data();
    const auto take = [&](i64 rows, i64 columns) {
        const Matrix<T> part{next, rows, columns, std::max(rows, i64{1})};
        next += rows * columns;
        return part;
    };
    const Matrix<T> outer_place = own_outer ? take(longer, outer_columns) : Matrix<T>{u, longer, outer_columns, ldu};
    const Matrix<T> inner_place = own_inner ? take(order, inner_columns) : Matrix<T>{u, order, inner_columns, ldu};
    const Matrix<T> matrix = tall ? a : take(longer, order);
    if (!tall) copy_adjoint<T>(a, matrix);
    const i64 failed = TallDecomposition<T>{by, matrix, outer_place, inner_place, s, off}.run();
    if (failed < 0) return -1;
    const Matrix<T>&of_left = tall ? outer_place : inner_place, &of_right = tall ? inner_place : outer_place;
    if (left == 'O') copy_matrix(of_left, a.block(0, 0, of_left.rows, of_left.columns));
    if (right == 'O') copy_adjoint<T>(of_right, a.block(0, 0, of_right.columns, of_right.rows));
    else if (right != 'N') copy_adjoint<T>(of_right, Matrix<T>{vt, of_right.columns, of_right.rows, ldvt});
    return failed;
}
template struct Decomposition<double>;
template struct Decomposition<zcomplex>;

} // namespace nxl
