// A panel of the diagonal pivoting factorisation, for uplo L:
//
//     +-----+-----------+        L D L^T takes its columns one or two at a time, as the pivot is one element or a
//     | L11 |           |        block of two. What is done to A by earlier columns of the panel is caught up with when
//     +-----+-----------+        a column is looked at: w := a(:, p) - L W(p, :)^T, where W = L D is kept beside A.
//     |     |           |        A(22), which no pivot has come from yet, follows at the end, by one product
//     | L21 |   A22     |
//     |     |           |            A22 := A22 - L21 W21^T.
//     +-----+-----------+
//
// For U the picture is turned by half a circle. Where the comments say transposed, Hermitian matrices are conjugated,
// too. Bunch and Kaufman, Math. Comp. 31 (1977); blocked: Anderson and Dongarra, LAPACK Working Note 19 (1989).
#include "lapack/kernel/source/indefinite/panel.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/vector_product.hpp"
#include "lapack/kernel/source/indefinite/pivots.hpp"
#include <algorithm>
#include <cmath>

namespace nxl {
namespace {

/// (1 + sqrt(17)) / 8: elements grow no faster by two steps with one pivot each than by one with a block of two.
constexpr double pivot_threshold = 0.6403882032022076;

/// y := x / d
template <class T> void divide(i64 n, const T* x, const T& d, T* y) {
    if (abs1(d) < safe_minimum) { // the reciprocal may overflow
        for (i64 i = 0; i < n; ++i) y[i] = x[i] / d;
        return;
    }
    const T inverse = T(1.0) / d;
    for (i64 i = 0; i < n; ++i) y[i] = inverse * x[i];
}

template <class T, Symmetry kind> class Panel {
    const PivotOrder order_;
    const Matrix<T> a_, w_;
    const i64 shift_; // column c of A has its column c - shift_ in W
    i64 done_ = 0;    // columns

    struct Pivot {
        i64 size, with; // 1 or 2 columns; the row and column that is interchanged with the last of them
    };

    T* w_column(i64 c) const { return w_.at(0, c - shift_); }
    /// The columns of A and of W that are finished.
    Matrix<T> finished(const Matrix<T>& of, i64 shift) const {
        return of.columns_from(order_.first_of(done_) - shift, done_);
    }
    /// The rows that take part from step `step` on.
    Slice rest(i64 step) const { return order_.rest(step); }

    /// Column p of the part that is left, brought up to date, in column `to` of W.
    void bring_up(i64 p, i64 to) const {
        const Slice rows = rest(done_);
        const i64 end = rows.start + rows.count;
        T* const w = w_column(to);
        const i64 stored = order_.upper ? rows.start : p, stored_end = order_.upper ? p + 1 : end;
        for (i64 i = rows.start; i < stored; ++i) w[i] = mirrored<kind>(a_(p, i));
        std::copy(a_.at(stored, p), a_.at(stored_end, p), w + stored);
        for (i64 i = stored_end; i < end; ++i) w[i] = mirrored<kind>(a_(p, i));
        w[p] = on_diagonal<kind>(w[p]);
        if (done_ == 0) return;
        T factors[most_columns];
        const Matrix<T> before = finished(w_, shift_), l = finished(a_, 0);
        for (i64 c = 0; c < done_; ++c) factors[c] = mirrored<kind>(before(p, c));
        subtract_vector_product('N', l.rows_from(rows.start, rows.count), factors, w + rows.start);
        w[p] = on_diagonal<kind>(w[p]);
    }

    struct Largest {
        i64 row;
        double size;
    };
    static Largest largest_of(const T* w, i64 start, i64 end) {
        if (start >= end) return {start, 0.0};
        const i64 row = start + iamax(end - start, w + start, 1) - 1;
        return {row, abs1(w[row])};
    }
    /// The largest element of column w off its diagonal element p.
    Largest off_diagonal(const T* w, i64 p) const {
        const Slice rows = rest(done_);
        const Largest before = largest_of(w, rows.start, p), after = largest_of(w, p + 1, rows.start + rows.count);
        return after.size > before.size ? after : before;
    }

    /// The next pivot, with the columns that it comes from in W. A NaN is taken as it comes.
    Pivot choose() const {
        const i64 j = order_.at(done_);
        bring_up(j, j);
        const double diagonal = abs1(w_column(j)[j]);
        const Largest column = off_diagonal(w_column(j), j);
        if (!(diagonal < pivot_threshold * column.size)) return {1, j};
        const i64 p = column.row, second = order_.at(done_ + 1);
        bring_up(p, second);
        const Largest row = off_diagonal(w_column(second), p);
        if (diagonal >= pivot_threshold * column.size * (column.size / row.size)) return {1, j};
        if (!(abs1(w_column(second)[p]) >= pivot_threshold * row.size)) return {2, p};
        const Slice rows = rest(done_);
        std::copy_n(w_column(second) + rows.start, rows.count, w_column(j) + rows.start);
        return {1, p};
    }

    /// Rows and columns k and p change places in the part that is left; column k of A itself is about to be written.
    void interchange(const Pivot& pivot) const {
        const i64 k = order_.at(done_ + pivot.size - 1), p = pivot.with;
        if (k == p) return;
        a_(p, p) = a_(k, k);
        for (i64 i = std::min(k, p) + 1; i < std::max(k, p); ++i) a_(p, i) = mirrored<kind>(a_(i, k));
        if (order_.upper) std::copy_n(a_.at(0, k), p, a_.at(0, p));
        else std::copy_n(a_.at(p, k) + 1, a_.rows - p - 1, a_.at(p, p) + 1);
        const Matrix<T> l = finished(a_, 0);
        swap(done_, l.at(k, 0), l.ld, l.at(p, 0), l.ld);
        const i64 columns = done_ + pivot.size, first = order_.first_of(columns) - shift_;
        swap(columns, w_.at(k, first), w_.ld, w_.at(p, first), w_.ld);
    }

    /// L of one pivot: the column over the pivot.
    void store_one() const {
        const i64 j = order_.at(done_);
        const Slice below = rest(done_ + 1);
        const T* const w = w_column(j);
        const T d = a_(j, j) = w[j];
        if (d != T{}) divide(below.count, w + below.start, d, a_.at(below.start, j));
        else std::copy_n(w + below.start, below.count, a_.at(below.start, j)); // zeros
    }

    /// L of a block of two: (w1, w2) times its inverse.
    void store_two() const {
        const i64 j = order_.at(done_), k = order_.at(done_ + 1);
        const Slice below = rest(done_ + 2);
        const T *const w1 = w_column(j), *const w2 = w_column(k);
        const PivotPair<T, kind> pair(w1[j], w1[k], w2[k]);
        const T for_second = T(1.0) / pair.determinant / pair.b, for_first = mirrored<kind>(for_second);
        a_(j, j) = w1[j];
        a_(k, j) = w1[k];
        a_(k, k) = w2[k];
        T *const l1 = a_.at(0, j), *const l2 = a_.at(0, k);
        for (i64 i = below.start; i < below.end(); ++i) {
            const T x = w1[i], y = w2[i];
            l1[i] = for_first * (pair.second * x - y);
            l2[i] = for_second * (pair.first * y - x);
        }
    }

    void update_rest() const {
        const Slice left = rest(done_);
        if (left.count == 0) return;
        const Matrix<T> l = finished(a_, 0).rows_from(left.start, left.count);
        const Matrix<T> w = finished(w_, shift_).rows_from(left.start, left.count);
        gemmt(order_.upper ? 'U' : 'L', 'N', adjoint_letter<T, kind>, -1.0, l, w, 1.0,
              a_.block(left.start, left.start, left.count, left.count));
    }

    /// Columns keep the rows as they were when they were finished: later interchanges are taken back.
    void undo_interchanges(const i64* ipiv, i64 offset) const {
        for_pivots_backward(order_, {0, done_}, ipiv, [&](i64 step, i64 size, i64 with) {
            const i64 k = order_.at(step + size - 1), p = with - offset, first = order_.first_of(step);
            if (k != p) swap(step, a_.at(k, first), a_.ld, a_.at(p, first), a_.ld);
        });
    }

  public:
    static constexpr i64 most_columns = 128;

    Panel(char uplo, const Matrix<T>& a, const Matrix<T>& w)
        : order_{uplo == 'U', a.rows},
          a_(a),
          w_(w),
          shift_(uplo == 'U' ? a.columns - w.columns : 0) {}

    PanelResult factor(i64* ipiv, i64 offset) {
        i64 zero_pivot = 0;
        const i64 enough = w_.columns < a_.rows ? w_.columns - 1 : a_.rows; // a pivot may look one column further
        while (done_ < enough) {
            const Pivot pivot = choose();
            interchange(pivot);
            const i64 j = order_.at(done_), place = pivot.with + offset + 1;
            ipiv[j] = place;
            if (pivot.size == 2) {
                ipiv[j] = ipiv[order_.at(done_ + 1)] = -place;
                store_two();
            } else {
                store_one();
                if (a_(j, j) == T{} && zero_pivot == 0) zero_pivot = j + offset + 1;
            }
            done_ += pivot.size;
        }
        update_rest();
        undo_interchanges(ipiv, offset);
        return {done_, zero_pivot};
    }
};

} // namespace

template <class T, Symmetry kind>
PanelResult factor_panel(char uplo, const Matrix<T>& a, const Matrix<T>& w, i64* ipiv, i64 offset) {
    return Panel<T, kind>(uplo, a, w).factor(ipiv, offset);
}

template PanelResult factor_panel<double, Symmetry::symmetric>(char, const Matrix<double>&, const Matrix<double>&, i64*,
                                                               i64);
template PanelResult factor_panel<zcomplex, Symmetry::symmetric>(char, const Matrix<zcomplex>&, const Matrix<zcomplex>&,
                                                                 i64*, i64);
template PanelResult factor_panel<zcomplex, Symmetry::hermitian>(char, const Matrix<zcomplex>&, const Matrix<zcomplex>&,
                                                                 i64*, i64);

} // namespace nxl
