// Column after column is annihilated beyond its off-diagonal by a reflector, which leaves a bulge below the band:
//
//     s        columns s .. s + b - 1 turn: the block D on the diagonal from both sides, the block C below it from
//     D        the right, which fills its lower triangle. Of that, only the first column is annihilated, by the next
//     C D      reflector, which chases what follows b rows further; the rest makes room for the bulge of the next
//       C D    sweep.
#include "lapack/kernel/source/eigen/band_to_tridiagonal.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "service/scalars.hpp"

namespace nxl {
namespace {

template <class T> class Chase {
    const Matrix<T> a_;
    const ChasedReflectors<T>& shape_;
    const bool keeps_;
    const ChasedVectors<T> chased_;

    /// Annihilates column `sweep` beyond its off-diagonal.
    void start(i64 sweep, const Slice& rows, i64 place) const {
        T *const x = a_.at(rows.start, sweep), *const v = chased_.vector(place, 0);
        chased_.tau(place, 0) = make_reflector(rows.count - 1, x[0], x + 1, 1);
        v[0] = 1.0;
        std::copy(x + 1, x + rows.count, v + 1);
        std::fill(x + 1, x + rows.count, T{});
        chased_.clear_rest(place, 0, rows.count);
    }
    void keep(i64 sweep, i64 step, const Slice& rows, const T* v, const T& tau) const {
        std::copy(v, v + rows.count, shape_.vectors.at(rows.start, sweep));
        shape_.scalars(sweep, step)[0] = tau;
    }

  public:
    Chase(const Matrix<T>& band, const ChasedReflectors<T>& shape, bool keeps, const ChasedVectors<T>& chased)
        : a_(band),
          shape_(shape),
          keeps_(keeps),
          chased_(chased) {}

    void step(i64 sweep, i64 k, i64 place) const {
        const Slice rows = shape_.rows(sweep, k), below = shape_.rows(sweep, k + 1);
        if (k == 0) start(sweep, rows, place);
        const T *const v = chased_.vector(place, k), &tau = chased_.tau(place, k);
        if (keeps_) keep(sweep, k, rows, v, tau);
        slot_of<T, &KernelTable::dchase_diagonal, &KernelTable::zchase_diagonal>()(
            rows.count, a_.at(rows.start, rows.start), a_.ld, v, tau, chased_.work());
        if (below.count == 0) return;
        slot_of<T, &KernelTable::dchase_column, &KernelTable::zchase_column>()(
            below.count, rows.count, a_.at(below.start, rows.start), a_.ld, v, tau, chased_.vector(place, k + 1),
            chased_.tau(place, k + 1), chased_.work());
    }
};

} // namespace

template <class T>
BandReduction<T>::BandReduction(i64 n, i64 b, bool keeps)
    : n_(n),
      b_(b),
      keeps_(keeps),
      pipeline_(n, b),
      band_(n * height()),
      chased_(pipeline_.threads() * ChasedVectors<T>::room(b)),
      vectors_(keeps ? n * n : 0),
      tau_(keeps ? n * (n / b + 1) : 0) {
    if (band_.data()) std::fill(band_.data(), band_.data() + n * height(), T{});
}

template <class T> void BandReduction<T>::reduce(double* d, double* e) const {
    const Matrix<T> a = band();
    const ChasedReflectors<T> shape = kept();
    pipeline_.run([&](int thread, i64 sweep, i64 k, i64 place) {
        const ChasedVectors<T> chased(b_, chased_.data() + thread * ChasedVectors<T>::room(b_));
        Chase<T>(a, shape, keeps_, chased).step(sweep, k, place);
    });
    for (i64 j = 0; j < n_; ++j) {
        d[j] = real_part(a(j, j));
        if (j + 1 < n_) e[j] = real_part(a(j + 1, j));
    }
}

template class BandReduction<double>;
template class BandReduction<zcomplex>;

} // namespace nxl
