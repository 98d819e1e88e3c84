// dgbtrf, zgbtrf: blocks of columns are copied out of the band, factored as dense panels, and put back with the
// interchanges undone that came after each column. Du Croz, Mayes and Radicati, LAPACK Working Note 21 (1990).
//
//       j      after     full     end
//       +-------+---------+--------+        full: the columns up to here have all rows of the panel in memory. Beyond,
//     j |       |         |  . u u |        the triangle of dots is not in the band, and is zero; these columns are
//       | panel |  in     |  . . u |        brought up to date in a copy.
//       |       |  place  |        |        end: what interchanges have filled so far
//       +-------+---------+--------+
#include "lapack/kernel/source/band/gbtrf.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/band/band_triangle.hpp"
#include "lapack/kernel/source/band/narrow_columns.hpp"
#include "lapack/kernel/source/lu/laswp.hpp"
#include "lapack/kernel/source/lu/xgetrf.hpp"
#include "service/arguments.hpp"
#include "service/scratch.hpp"
#include <utility>

namespace nxl {
namespace {

template <class T> class BandElimination {
    const i64 m_, n_, kl_, ku_;
    const Columns<T> band_; // with the diagonals that are filled in
    i64* const ipiv_;
    i64 end_ = 0; // of the columns that rows so far reach into
    i64& info_;

    /// What lies above the band of column j is not the caller's.
    void clear_fill(i64 j) const {
        if (j < n_) std::fill(band_.start(j), band_.a.at(std::max(j - ku_, band_.first(j)), j), T{});
    }
    void took_pivot(i64 j, i64 pivot) {
        ipiv_[j] = pivot + 1;
        end_ = std::max(end_, std::min(pivot + ku_ + 1, n_));
    }

    /// The first of the largest; a NaN in the first row stays.
    i64 find_pivot(i64 j, i64 below) const {
        i64 best = 0;
        const T* const column = band_.a.at(j, j);
        for (i64 i = 1; i <= below; ++i)
            if (abs1(column[i]) > abs1(column[best])) best = i;
        return j + best;
    }

    void eliminate_column(i64 j) {
        const i64 below = std::min(kl_, m_ - j - 1), pivot = find_pivot(j, below);
        T* const column = band_.a.at(j, j);
        took_pivot(j, pivot);
        if (column[pivot - j] == T{}) {
            if (info_ == 0) info_ = j + 1;
            return;
        }
        if (pivot != j)
            for (i64 k = j; k < end_; ++k) std::swap(band_.a(j, k), band_.a(pivot, k));
        if (below == 0) return;
        const T reciprocal = 1.0 / column[0];
        if (abs1(column[0]) >= safe_minimum)
            for (i64 i = 1; i <= below; ++i) column[i] *= reciprocal;
        else
            for (i64 i = 1; i <= below; ++i) column[i] /= column[0];
        for (i64 k = j + 1; k < end_; ++k) subtract_multiple(below, band_.a(j, k), column + 1, band_.a.at(j + 1, k));
    }

    void by_columns() {
        for (i64 j = 0; j < std::min(kl_ + ku_, n_); ++j) clear_fill(j);
        for (i64 j = 0; j < std::min(m_, n_); ++j) {
            clear_fill(j + kl_ + ku_);
            eliminate_column(j);
        }
    }

    /// What the panel does to columns, whose first row is the panel's.
    static void update(const Matrix<T>& panel, const i64* pivots, const Matrix<T>& columns) {
        const i64 width = panel.columns, rest = panel.rows - width;
        if (columns.columns < 1) return;
        laswp(columns.columns, columns.data, columns.ld, 1, width, pivots, 1);
        const Matrix<T> u = columns.rows_from(0, width);
        trsm('L', 'L', 'N', 'U', 1.0, panel, u);
        if (rest > 0) gemm('N', 'N', -1.0, panel.rows_from(width, rest), u, 1.0, columns.rows_from(width, rest));
    }

    void eliminate_panel(i64 j, i64 width, T* panel_space, T* copy_space) {
        const i64 rows = std::min(width + kl_, m_ - j), after = j + width;
        const Matrix<T> panel{panel_space, rows, width, rows};
        i64* const pivots = ipiv_ + j;
        i64 zero = 0;
        pack<T>(band_, j, j, panel);
        factor_unblocked(panel, pivots, &zero);
        if (zero > 0 && info_ == 0) info_ = j + zero;
        for (i64 c = 0; c < width; ++c) end_ = std::max(end_, std::min(j + pivots[c] + ku_, n_));
        const i64 full = std::max(after, std::min(end_, j + kl_ + ku_ + 1));
        update(panel, pivots, {band_.a.at(j, after), rows, full - after, band_.a.ld});
        const Matrix<T> copy{copy_space, rows, end_ - full, rows};
        if (copy.columns > 0) {
            pack<T>(band_, j, full, copy);
            update(panel, pivots, copy);
            unpack(copy, band_, j, full);
        }
        for (i64 c = width - 1; c > 0; --c)
            if (pivots[c] != c + 1) swap(c, panel.at(c, 0), rows, panel.at(pivots[c] - 1, 0), rows);
        unpack(panel, band_, j, j);
        for (i64 c = 0; c < width; ++c) pivots[c] += j;
    }

    void by_panels(T* panel_space, T* copy_space) {
        for (i64 j = 0; j < std::min(kl_ + ku_, n_); ++j) clear_fill(j);
        for (i64 j = 0; j < std::min(m_, n_); j += BandSizes::panel) {
            const i64 width = std::min(BandSizes::panel, std::min(m_, n_) - j);
            for (i64 c = 0; c < width; ++c) clear_fill(j + c + kl_ + ku_);
            eliminate_panel(j, width, panel_space, copy_space);
        }
    }

  public:
    BandElimination(i64 m, i64 n, i64 kl, i64 ku, T* ab, i64 ldab, i64* ipiv, i64& info)
        : m_(m),
          n_(n),
          kl_(kl),
          ku_(ku),
          band_(band_of(ab, ldab, m, n, kl, kl + ku)),
          ipiv_(ipiv),
          info_(info) {}

    void run() {
        if (kl_ <= BandSizes::narrow) return by_columns();
        const i64 elements = (BandSizes::panel + kl_) * BandSizes::panel;
        const Scratch<T> space(2 * elements);
        if (space.data()) by_panels(space.data(), space.data() + elements);
        else by_columns();
    }
};

} // namespace

template <class T>
void gbtrf(const i64& m, const i64& n, const i64& kl, const i64& ku, T* ab, const i64& ldab, i64* ipiv, i64& info) {
    Arguments arguments(routine<T>("GBTRF"));
    arguments.size(1, m).size(2, n).size(3, kl).size(4, ku).leading(6, ldab, 2 * kl + ku + 1);
    if (arguments.refused(info) || m == 0 || n == 0) return;
    BandElimination<T>(m, n, kl, ku, ab, ldab, ipiv, info).run();
}
template decltype(gbtrf<double>) gbtrf<double>;
template decltype(gbtrf<zcomplex>) gbtrf<zcomplex>;

} // namespace nxl
