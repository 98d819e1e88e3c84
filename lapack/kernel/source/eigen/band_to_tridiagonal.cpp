// Column after column is annihilated beyond its off-diagonal by a reflector, which leaves a bulge below the band:
//
//     s        columns s .. s + b - 1 turn: the block D on the diagonal from both sides, the block C below it from
//     D        the right, which fills its lower triangle. Of that, only the first column is annihilated, by the next
//     C D      reflector, which chases what follows b rows further; the rest makes room for the bulge of the next
//       C D    sweep.
#include "lapack/kernel/source/eigen/band_to_tridiagonal.hpp"
#include "lapack/kernel/source/eigen/two_sided.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "service/scalars.hpp"

namespace nxl {
namespace {

/// Elements of a column of the band with its bulge: those with 0 <= i - j < 2 b, and one that parts columns.
constexpr i64 band_height(i64 b) { return 2 * b + 1; }
constexpr i64 vectors_of_work = 3; // of b elements

template <class T> class Chase {
    const Matrix<T> a_;
    const ChasedReflectors<T>& shape_;
    const bool keeps_;
    T *const work_, *const vector_;

    /// Annihilates column `column` of rows beyond the first; the result is the reflector's tau, and v it.
    T annihilate(const Slice& rows, i64 column) const {
        T* const x = a_.at(rows.start, column);
        const T tau = make_reflector(rows.count - 1, x[0], x + 1, 1);
        vector_[0] = 1.0;
        std::copy(x + 1, x + rows.count, vector_ + 1);
        std::fill(x + 1, x + rows.count, T{});
        return tau;
    }
    void keep(i64 sweep, i64 step, const Slice& rows, const T& tau) const {
        if (!keeps_) return;
        std::copy(vector_, vector_ + rows.count, shape_.vectors.at(rows.start, sweep));
        shape_.scalars(sweep, step)[0] = tau;
    }

  public:
    /// `work`: vectors_of_work.
    Chase(const Matrix<T>& band, const ChasedReflectors<T>& shape, bool keeps, T* work)
        : a_(band),
          shape_(shape),
          keeps_(keeps),
          work_(work),
          vector_(work + 2 * shape.b) {}

    void sweep(i64 j) const {
        const i64 n = shape_.n;
        Slice rows = shape_.rows(j, 0);
        T tau = annihilate(rows, j);
        for (i64 step = 0;; ++step) {
            keep(j, step, rows, tau);
            reflect_both_sides('L', a_.block(rows.start, rows.start, rows.count, rows.count), vector_, tau, work_);
            const Slice next{rows.end(), std::min(shape_.b, n - rows.end())};
            if (next.count == 0) return;
            const Matrix<T> c = a_.block(next.start, rows.start, next.count, rows.count);
            apply_reflector('R', vector_, 1, tau, c, work_);
            tau = annihilate(next, rows.start);
            apply_reflector('L', vector_, 1, conj_if<true>(tau), c.columns_from(1, rows.count - 1), work_);
            rows = next;
        }
    }
};

} // namespace

template <class T>
BandReduction<T>::BandReduction(i64 n, i64 b, bool keeps)
    : n_(n),
      b_(b),
      keeps_(keeps),
      band_(n * band_height(b) + vectors_of_work * b),
      vectors_(keeps ? n * n : 0),
      tau_(keeps ? n * (n / b + 1) : 0) {
    if (band_.data()) std::fill(band_.data(), band_.data() + n * band_height(b), T{});
}

template <class T> void BandReduction<T>::reduce(double* d, double* e) const {
    const Matrix<T> a = band();
    const ChasedReflectors<T> shape = kept();
    const Chase<T> chase(a, shape, keeps_, band_.data() + n_ * band_height(b_));
    for (i64 j = 0; j + 1 < n_; ++j) chase.sweep(j);
    for (i64 j = 0; j < n_; ++j) {
        d[j] = real_part(a(j, j));
        if (j + 1 < n_) e[j] = real_part(a(j + 1, j));
    }
}

template class BandReduction<double>;
template class BandReduction<zcomplex>;

} // namespace nxl
