// Reduction, and its two orthogonal factors. By way of the triangle: Chan, ACM Trans. Math. Software 8 (1982).
#include "lapack/kernel/source/singular/bidiagonal_form.hpp"
#include "lapack/kernel/source/common/adjoint.hpp"
#include "lapack/kernel/source/orthogonal/apply_q.hpp"
#include "lapack/kernel/source/orthogonal/form_q.hpp"
#include "lapack/kernel/source/orthogonal/geqrf.hpp"
#include "lapack/kernel/source/singular/gebrd.hpp"
#include "lapack/kernel/source/singular/two_stage_values.hpp"
#include "lapack/kernel/source/singular/unit_columns.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"

namespace nxl {

template <class T>
BidiagonalForm<T>::BidiagonalForm(const Matrix<T>& a)
    : a_(a),
      by_triangle_(a.rows > a.columns && a.rows >= svd_crossover(a.rows, a.columns)),
      memory_(3 * a.columns + (by_triangle_ ? a.columns * a.columns : 0)),
      values_(2 * a.columns) {}

template <class T> bool BidiagonalForm<T>::reduce(bool values_alone) const {
    if (!memory_.data() || !values_.data()) return false;
    if (by_triangle_) {
        if (!factor_qr(a_, tau())) return false;
        const Matrix<T> r = reduced();
        for (i64 j = 0; j < n(); ++j) {
            std::copy_n(a_.at(0, j), j + 1, r.at(0, j));
            std::fill_n(r.at(j, j) + 1, n() - j - 1, T{});
        }
    }
    if (values_alone && n() >= two_stage_values_order<T>)
        return bidiagonalise_in_two_stages(reduced(), bidiagonal_band_width, d(), e());
    return bidiagonalise(reduced(), d(), e(), tauq(), taup());
}

template <class T> bool BidiagonalForm<T>::multiply_left(bool adjoint, const Matrix<T>& c) const {
    const auto by_q1 = [&] { return !by_triangle_ || apply_reflectors('L', adjoint, vectors_of_q1(), tau(), c); };
    const Matrix<T> rows = c.rows_from(0, left_rows());
    if (adjoint) return by_q1() && apply_reflectors('L', adjoint, vectors_of_q2(), tauq(), rows);
    return apply_reflectors('L', adjoint, vectors_of_q2(), tauq(), rows) && by_q1();
}

template <class T> bool BidiagonalForm<T>::multiply_right(bool adjoint, const Matrix<T>& c) const {
    return n() < 2 || apply_reflectors('L', adjoint, vectors_of_p(), taup(), c.rows_from(1, n() - 1));
}

template <class T> bool BidiagonalForm<T>::form_left(const Matrix<T>& u) const {
    const Matrix<T> source = reduced();
    const i64 columns = std::min(u.columns, left_rows());
    for (i64 j = 0; j < n(); ++j) std::copy_n(source.at(0, j) + j, source.rows - j, u.at(0, j) + j);
    return form_q(Order::forward, Storage::columns, n(), u.block(0, 0, left_rows(), columns), tauq());
}

template <class T> bool BidiagonalForm<T>::complete_left(const Matrix<T>& u) const {
    if (!by_triangle_) return true;
    extend_by_unit_columns(u, n());
    return apply_reflectors('L', false, vectors_of_q1(), tau(), u);
}

template <class T> bool BidiagonalForm<T>::form_right(const Matrix<T>& v) const {
    const i64 rest = n() - 1;
    make_unit_columns(v);
    if (rest == 0) return true;
    const Matrix<T> own = v.from(1, 1);
    copy_adjoint<T>(vectors_of_p().v, own); // as columns: P itself
    return form_q(Order::forward, Storage::columns, rest, own, taup());
}

template class BidiagonalForm<double>;
template class BidiagonalForm<zcomplex>;

} // namespace nxl
