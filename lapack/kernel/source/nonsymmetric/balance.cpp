// dgebal, dgebak and their complex kin. Eigenvalues that stand alone are permuted to the ends: Parlett and Reinsch,
// Numer. Math. 13 (1969). The rest is scaled until the 2-norms of each row and its column are close: James, Langou and
// Lowery, On matrix balancing and eigenvector computation, arXiv:1401.5766 (2014).
#include "lapack/kernel/source/nonsymmetric/balance.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "service/arguments.hpp"
#include <algorithm>

namespace nxl {
namespace {

template <class T> class Balancing {
    const Matrix<T> a_;
    double* const scale_;
    i64 first_ = 0, end_; // rows and columns that are still there

    bool row_is_alone(i64 i) const {
        for (i64 j = 0; j < end_; ++j)
            if (j != i && a_(i, j) != T{}) return false;
        return true;
    }
    bool column_is_alone(i64 j) const {
        for (i64 i = first_; i < end_; ++i)
            if (i != j && a_(i, j) != T{}) return false;
        return true;
    }
    void exchange(i64 i, i64 with) const {
        scale_[with] = static_cast<double>(i + 1);
        if (i == with) return;
        swap(end_, a_.at(0, i), 1, a_.at(0, with), 1);
        swap(a_.columns - first_, a_.at(i, first_), a_.ld, a_.at(with, first_), a_.ld);
    }
    /// The last row with nothing but a diagonal element goes to the end.
    bool move_row_down() {
        i64 i = end_ - 1;
        while (i >= 0 && !row_is_alone(i)) --i;
        if (i < 0) return false;
        exchange(i, end_ - 1);
        --end_;
        return true;
    }
    bool move_column_left() {
        i64 j = first_;
        while (j < end_ && !column_is_alone(j)) ++j;
        if (j == end_) return false;
        exchange(j, first_);
        ++first_;
        return true;
    }

    /// The factor for column i, a power of two; 1 where nothing is to be gained.
    double factor_of(i64 i) const {
        constexpr double least = safe_minimum / (2.0 * unit_roundoff), most = 1.0 / least;
        const i64 count = end_ - first_;
        double column = nrm2(count, a_.at(first_, i), 1), row = nrm2(count, a_.at(i, first_), a_.ld);
        double tall = largest_abs1(end_, a_.at(0, i)), wide = 0.0;
        for (i64 j = first_; j < a_.columns; ++j) wide = std::max(wide, abs1(a_(i, j)));
        if (column == 0.0 || row == 0.0) return 1.0;
        const double before = column + row;
        double factor = 1.0;
        while (column < row / 2.0 && std::max({factor, column, tall}) < most / 2.0 && std::min(row, wide) > 2.0 * least)
            factor *= 2.0, column *= 2.0, tall *= 2.0, row /= 2.0, wide /= 2.0;
        while (column / 2.0 >= row && std::max(row, wide) < most / 2.0 &&
               std::min({factor, column, tall}) > 2.0 * least)
            factor /= 2.0, column /= 2.0, tall /= 2.0, row *= 2.0, wide *= 2.0;
        const double total = scale_[i] * factor;
        const bool gains = column + row < 0.95 * before; // NaN gains nothing
        return gains && total > least && total < most ? factor : 1.0;
    }

  public:
    Balancing(const Matrix<T>& a, double* scale) : a_(a), scale_(scale), end_(a.rows) {
        std::fill_n(scale, a.rows, 1.0);
    }
    i64 first() const { return first_; }
    i64 end() const { return end_; }

    void permute() {
        while (end_ > 1 && move_row_down()) {
        }
        while (end_ - first_ > 1 && move_column_left()) {
        }
    }
    void fit_scales() const {
        for (bool changed = true; changed;) {
            changed = false;
            for (i64 i = first_; i < end_; ++i) {
                const double factor = factor_of(i);
                if (factor == 1.0) continue;
                changed = true;
                scale_[i] *= factor;
                scal(a_.columns - first_, 1.0 / factor, a_.at(i, first_), a_.ld);
                scal(end_, factor, a_.at(0, i), 1);
            }
        }
    }
};

} // namespace

template <class T>
void gebal(const char& job, const i64& n, T* a, const i64& lda, i64& ilo, i64& ihi, double* scale, i64& info, int) {
    Arguments arguments(routine<T>("GEBAL"));
    if (arguments.letter(1, job, "NPSB").size(2, n).leading(4, lda, n).refused(info)) return;
    Balancing<T> balancing(Matrix<T>{a, n, n, lda}, scale);
    if (job == 'P' || job == 'B') balancing.permute();
    if (job == 'S' || job == 'B') balancing.fit_scales();
    ilo = balancing.first() + 1;
    ihi = balancing.end();
}
template decltype(gebal<double>) gebal<double>;
template decltype(gebal<zcomplex>) gebal<zcomplex>;

template <class T>
void gebak(const char& job, const char& side, const i64& n, const i64& ilo, const i64& ihi, const double* scale,
           const i64& m, T* v, const i64& ldv, i64& info, int, int) {
    Arguments arguments(routine<T>("GEBAK"));
    arguments.letter(1, job, "NPSB").letter(2, side, "RL").size(3, n);
    arguments.expect(4, ilo >= 1 && ilo <= std::max(n, i64{1})).expect(5, ihi >= std::min(ilo, n) && ihi <= n);
    if (arguments.size(7, m).leading(9, ldv, n).refused(info) || n == 0 || m == 0) return;
    const Matrix<T> vectors{v, n, m, ldv};
    const bool scaled = job == 'S' || job == 'B', permuted = job == 'P' || job == 'B';
    for (i64 j = 0; j < m && scaled; ++j)
        for (i64 i = ilo - 1; i < ihi; ++i)
            if (side == 'R') vectors(i, j) *= scale[i];
            else vectors(i, j) /= scale[i];
    const auto exchange = [&](i64 i) {
        const i64 with = static_cast<i64>(scale[i]) - 1;
        if (with != i) swap(m, vectors.at(i, 0), ldv, vectors.at(with, 0), ldv);
    };
    for (i64 i = ilo - 2; i >= 0 && permuted; --i) exchange(i);
    for (i64 i = ihi; i < n && permuted; ++i) exchange(i);
}
template decltype(gebak<double>) gebak<double>;
template decltype(gebak<zcomplex>) gebak<zcomplex>;

} // namespace nxl
