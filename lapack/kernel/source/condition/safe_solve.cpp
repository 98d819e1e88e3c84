// A bound on the growth of the solution decides: mostly it shows that nothing can overflow, and the plain solution is
// taken. Otherwise each step looks at what it is about to do, and scales all of x down first when it must.
#include "lapack/kernel/source/condition/safe_solve.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/band/band_triangle.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include <algorithm>
#include <cmath>

namespace nxl {
namespace {

/// What is larger than `huge` may not be multiplied, what is smaller than `tiny` not divided by, without a look.
constexpr double tiny = safe_minimum / (2.0 * unit_roundoff), huge = 1.0 / tiny;

const double* as_doubles(const double* x) { return x; }
const double* as_doubles(const zcomplex* x) { return reinterpret_cast<const double*>(x); }

} // namespace

template <class T>
SafeTriangle<T>::SafeTriangle(char uplo, char diag, const Columns<const T>& triangle, double* column_sums)
    : uplo_(uplo),
      diag_(diag),
      upper_(uplo == 'U'),
      unit_(diag == 'U'),
      n_(triangle.a.rows),
      triangle_(triangle),
      off_(triangle.off_diagonal()),
      sums_(column_sums) {
    double largest = 0.0;
    for (i64 j = 0; j < n_; ++j) {
        sums_[j] = asum(off_.count(j), off_.start(j), 1);
        if (!(sums_[j] <= largest) && !std::isnan(largest)) largest = sums_[j]; // a NaN wins and stays
    }
    if (!(largest <= huge / 2)) fit_sums();
}

/// Scales the sums by as much as keeps them, and what is done with them, within the range.
template <class T> void SafeTriangle<T>::fit_sums() {
    constexpr i64 parts = sizeof(T) / sizeof(double); // one by one: the abs1 of a complex number may not fit either
    double largest = 0.0;
    for (i64 j = 0; j < n_; ++j) {
        const double size = largest_abs1(parts * off_.count(j), as_doubles(off_.start(j)));
        finite_ = finite_ && size <= std::numeric_limits<double>::max(); // a NaN is not
        largest = std::max(largest, size);
    }
    if (!finite_) return;
    scale_ = 0.5 / (tiny * largest) / static_cast<double>(parts * n_);
    for (i64 j = 0; j < n_; ++j) {
        const T* const off = off_.start(j);
        double sum = 0.0;
        for (i64 i = 0; i < off_.count(j); ++i) sum += abs1(off[i] * scale_);
        sums_[j] = sum;
    }
}

/// A lower bound of 1 / max |x| on all intermediate solutions, from a right-hand side with elements up to `largest`.
template <class T> double SafeTriangle<T>::growth_bound(bool transposed, double largest) const {
    double grow = 1.0 / std::max(largest, tiny), bound = grow;
    if (unit_) grow = std::min(1.0, grow);
    for (i64 step = 0; step < n_ && grow > tiny; ++step) {
        const i64 j = column(step, transposed);
        const double size = unit_ ? 1.0 : abs1(triangle_.a(j, j)), both = 1.0 + sums_[j];
        if (unit_) {
            grow /= both;
        } else if (transposed) {
            grow = std::min(grow, bound / both);
            if (both > size) bound *= size / both;
        } else {
            bound = std::min(bound, std::min(1.0, size) * grow);
            grow = size + sums_[j] >= tiny ? grow * (size / (size + sums_[j])) : 0.0;
        }
    }
    if (unit_) return grow;
    return transposed ? std::min(grow, bound) : bound;
}

/// One careful solution.
template <class T> class SafeTriangle<T>::Run {
    const SafeTriangle& t_;
    const char trans_;
    T* const x_;
    const i64 n_;
    double scale_ = 1.0, largest_;

    void scale_by(double factor) {
        for (i64 i = 0; i < n_; ++i) x_[i] *= factor;
        scale_ *= factor;
        largest_ *= factor;
    }

    T diagonal(i64 j) const {
        return t_.unit_ ? T(t_.scale_) : conj_if(trans_ == 'C', t_.triangle_.a(j, j)) * t_.scale_;
    }

    /// x(j) := x(j) / the diagonal element, after scaling where the quotient would overflow. Of a zero on the diagonal
    /// a solution of the homogeneous system is made.
    void divide(i64 j) {
        if (t_.unit_ && t_.scale_ == 1.0) return;
        const T pivot = diagonal(j);
        const double size = abs1(pivot), element = abs1(x_[j]);
        if (size == 0.0) {
            std::fill_n(x_, n_, T{});
            x_[j] = 1.0;
            scale_ = 0.0;
            largest_ = 0.0;
            return;
        }
        if (size > tiny) {
            if (size < 1.0 && element > size * huge) scale_by(1.0 / element);
        } else if (element > size * huge) {
            // room as well for the column that x(j) is to be multiplied with
            double factor = size * huge / element;
            if (trans_ == 'N' && t_.sums_[j] > 1.0) factor /= t_.sums_[j];
            scale_by(factor);
        }
        x_[j] /= pivot;
    }

    /// Before x(j) times column j is taken off the rest.
    void make_room_for_column(i64 j) {
        const double element = abs1(x_[j]), sum = t_.sums_[j];
        if (element > 1.0) {
            if (sum > (huge - largest_) / element) scale_by(0.5 / element);
        } else if (element * sum > huge - largest_) scale_by(0.5);
    }

    void by_columns() {
        for (i64 step = 0; step < n_; ++step) {
            const i64 j = t_.column(step, false), first = t_.off_.first(j), count = t_.off_.count(j);
            divide(j);
            make_room_for_column(j);
            if (count == 0) continue;
            axpy(count, -x_[j] * t_.scale_, t_.off_.start(j), 1, x_ + first, 1);
            largest_ = largest_abs1(count, x_ + first);
        }
    }

    /// Before column j times x is summed. What the sum is to be multiplied with: where the pivot is large the division
    /// comes first, so that less has to be given up.
    T make_room_for_sum(i64 j) {
        T factor = t_.scale_;
        double room = 1.0 / std::max(largest_, 1.0);
        if (t_.sums_[j] <= (huge - abs1(x_[j])) * room) return factor;
        room *= 0.5;
        if (const T pivot = diagonal(j); abs1(pivot) > 1.0) {
            room = std::min(1.0, room * abs1(pivot));
            factor /= pivot;
        }
        if (room < 1.0) scale_by(room);
        return factor;
    }

    T column_times_x(i64 j, const T& factor) const {
        const i64 first = t_.off_.first(j), count = t_.off_.count(j);
        const T* const off = t_.off_.start(j);
        const bool conjugate = trans_ == 'C';
        if (factor == T(1.0)) return conjugate ? dotc(count, off, 1, x_ + first, 1) : dot(count, off, 1, x_ + first, 1);
        T sum{};
        for (i64 i = 0; i < count; ++i) sum += conj_if(conjugate, off[i]) * factor * x_[first + i];
        return sum;
    }

    void by_rows() {
        for (i64 step = 0; step < n_; ++step) {
            const i64 j = t_.column(step, true);
            const T factor = make_room_for_sum(j), sum = column_times_x(j, factor);
            if (factor == T(t_.scale_)) {
                x_[j] -= sum;
                divide(j);
            } else x_[j] = x_[j] / diagonal(j) - sum;
            largest_ = std::max(largest_, abs1(x_[j]));
        }
    }

  public:
    Run(const SafeTriangle& t, char trans, T* x, double largest)
        : t_(t),
          trans_(trans),
          x_(x),
          n_(t.n_),
          largest_(largest) {}

    double solve() {
        if (largest_ > huge / 2) scale_by(huge / 2 / largest_);
        if (trans_ == 'N') by_columns();
        else by_rows();
        return scale_ / t_.scale_;
    }
};

template <class T> double SafeTriangle<T>::solve(char trans, T* x) const {
    if (n_ == 0) return 1.0;
    const double largest = largest_abs1(n_, x);
    const bool safe = scale_ == 1.0 && growth_bound(trans != 'N', largest) > tiny;
    if (!safe && finite_ && std::isfinite(largest)) return Run(*this, trans, x, largest).solve();
    solve_triangle(uplo_, trans, diag_, triangle_, x);
    return 1.0;
}

template class SafeTriangle<double>;
template class SafeTriangle<zcomplex>;

} // namespace nxl
