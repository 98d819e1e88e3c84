// Half of the work of the reduction is two products of all that is left with a vector: with A^H for the column's
// reflector, and with A for the row's. The row follows from the first product element by element, so that a few columns
// of A serve for both while they are in the cache: A moves through the processor once for each column. Howell, Demmel,
// Fulton, Hammarling and Marmol, ACM Trans. Math. Software 34 (2008).
#include "lapack/kernel/source/singular/bidiagonal_panel.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/vector_product.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "service/scalars.hpp"
#include "service/slice.hpp"

namespace nxl {
namespace {

/// Step i of a panel, after i columns and rows: the partners so far make the matrix A - left right^H in their first 2i
/// columns. Column 2i of `left` is the vector v of the column's reflector, with y in `right`; column 2i + 1 of `right`
/// is the vector u of the row's, with x in `left`.
template <class T> class PanelStep {
    const Matrix<T>&a_, &left_, &right_;
    const i64 threads_, i_, done_, next_;
    T* const parts_;
    T row_[2 * widest_bidiagonal_panel], products_[2 * widest_bidiagonal_panel];

    i64 rows() const { return a_.rows - next_; }       // below the diagonal
    i64 columns() const { return a_.columns - next_; } // right of it
    T* v() const { return left_.at(i_, done_); }
    T* u() const { return right_.at(next_, done_ + 1); }
    T* x() const { return left_.at(next_, done_ + 1); }

    /// y and the conjugate of row i for these columns, and what they add to A times that vector.
    void pass(const Slice& mine, T* sums) const {
        constexpr i64 piece = i64{1 << 17} / sizeof(T); // elements that are still in the cache when used once more
        const i64 width = std::max(round_down(piece / (a_.rows - i_), 8), i64{8});
        for (i64 j = mine.start; j < mine.end(); j += width) {
            const i64 count = std::min(width, mine.end() - j);
            T *const y = right_.at(j, done_), *const row = right_.at(j, done_ + 1);
            vector_product<T>('C', 1.0, a_.block(i_, j, a_.rows - i_, count), v(), 0.0, y);
            vector_product<T>('N', -1.0, right_.block(j, 0, count, done_), products_, 1.0, y);
            scal(count, tauq, y, 1);
            for (i64 k = 0; k < count; ++k) row[k] = conj_if<true>(a_(i_, j + k));
            vector_product<T>('N', -1.0, right_.block(j, 0, count, done_ + 1), row_, 1.0, row);
            vector_product<T>('N', 1.0, a_.block(next_, j, rows(), count), row, 1.0, sums);
        }
    }

    /// The same for all columns: A times the conjugated row comes in x.
    void pass_over_all() const {
        constexpr i64 least = i64{3 << 17} / sizeof(T); // elements that are worth a thread
        const i64 strips = std::min(threads_, rows() * columns() / least);
        std::fill_n(x(), rows(), T{});
        if (strips < 2 || region_would_be_serial()) return pass({next_, columns()}, x());
        const int count = static_cast<int>(strips);
        parallel_blocks(count, count, [&](int part) {
            T* const own = parts_ + part * rows();
            std::fill_n(own, rows(), T{});
            const Slice mine = balanced_slice(columns(), 8, part, strips);
            pass({next_ + mine.start, mine.count}, own);
        });
        for (i64 part = 0; part < strips; ++part) axpy(rows(), 1.0, parts_ + part * rows(), 1, x(), 1);
    }

    /// u := the vector of the reflector of a row, x := A u.
    void reflect_row() {
        const double norm = columns() > 1 ? nrm2(columns() - 1, u() + 1, 1) : 0.0;
        if (may_scale_later(*u(), norm, rows(), x())) {
            const ReflectorScalars<T> reflector = reflector_scalars(*u(), norm);
            taup = reflector.tau;
            axpy(rows(), -*u(), a_.at(next_, next_), 1, x(), 1);
            scal(rows(), reflector.scale, x(), 1);
            scal(columns() - 1, reflector.scale, u() + 1, 1);
            e = real_part(*u());
            *u() = 1.0;
        } else {
            taup = make_reflector(columns() - 1, *u(), u() + 1, 1);
            e = real_part(*u());
            *u() = 1.0;
            vector_product<T>('N', 1.0, a_.from(next_, next_), u(), 0.0, x());
        }
    }

  public:
    T tauq{}, taup{};
    double d = 0.0, e = 0.0;

    PanelStep(const Matrix<T>& a, const Matrix<T>& left, const Matrix<T>& right, i64 i, i64 threads, T* parts)
        : a_(a),
          left_(left),
          right_(right),
          threads_(threads),
          i_(i),
          done_(2 * i),
          next_(i + 1),
          parts_(parts) {}

    void eliminate_column() {
        T* const column = a_.at(i_, i_);
        for (i64 k = 0; k < done_; ++k) row_[k] = conj_if<true>(right_(i_, k));
        vector_product<T>('N', -1.0, left_.block(i_, 0, a_.rows - i_, done_), row_, 1.0, column);
        tauq = make_reflector(rows(), *column, column + 1, 1);
        d = real_part(*column);
        std::copy_n(column, a_.rows - i_, v());
        *v() = 1.0;
    }
    void eliminate_row() {
        vector_product<T>('C', 1.0, left_.block(i_, 0, a_.rows - i_, done_), v(), 0.0, products_);
        for (i64 k = 0; k <= done_; ++k) row_[k] = conj_if<true>(left_(i_, k));
        pass_over_all();
        reflect_row();
        vector_product<T>('C', 1.0, right_.block(next_, 0, columns(), done_ + 1), u(), 0.0, products_);
        vector_product<T>('N', -1.0, left_.block(next_, 0, rows(), done_ + 1), products_, 1.0, x());
        scal(rows(), taup, x(), 1);
        for (i64 k = 1; k < columns(); ++k) a_(i_, next_ + k) = conj_if<true>(u()[k]);
        a_(i_, next_) = e;
    }
};

} // namespace

template <class T>
void reduce_panel(const Matrix<T>& a, i64 width, const PanelResults<T>& results, const Matrix<T>& left,
                  const Matrix<T>& right, i64 threads, T* parts) {
    for (i64 i = 0; i < width; ++i) {
        PanelStep<T> step(a, left, right, i, threads, parts);
        step.eliminate_column();
        if (i + 1 < a.columns) {
            step.eliminate_row();
            results.e[i] = step.e;
        }
        a(i, i) = results.d[i] = step.d;
        results.tauq[i] = step.tauq;
        results.taup[i] = step.taup;
    }
}

template void reduce_panel(const Matrix<double>&, i64, const PanelResults<double>&, const Matrix<double>&,
                           const Matrix<double>&, i64, double*);
template void reduce_panel(const Matrix<zcomplex>&, i64, const PanelResults<zcomplex>&, const Matrix<zcomplex>&,
                           const Matrix<zcomplex>&, i64, zcomplex*);

} // namespace nxl
