// Cuppen, Numer. Math. 36 (1981): the halves differ from the whole by a matrix of rank one, so that values are roots of
// a secular equation. Columns that need no change leave it beforehand; vectors are orthogonal since the weights are
// taken from the roots: Gu and Eisenstat, SIAM J. Matrix Anal. Appl. 16 (1995). Rows of columns that are zero take no
// part in products: Rutter, LAPACK Working Note 69 (1994).
#include "lapack/kernel/source/eigen/rank_one_merge.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/common/share_work.hpp"
#include "lapack/kernel/source/eigen/pair_order.hpp"
#include "lapack/kernel/source/eigen/secular.hpp"
#include "service/workspace.hpp"

namespace nxl {
namespace {

/// Where a column is not zero.
enum Rows : i64 { top, both, bottom };

class Merge {
    const Matrix<double> q_;
    const i64 n1_, n2_;
    const double rho_;
    double* const d_;
    double *z_, *poles_, *weights_, *found_;
    i64 *sorted_, *rows_, *kept_, *place_, *deflated_;
    i64 kept_count_ = 0, deflated_count_ = 0, counts_[3] = {};

    double smallest_that_counts() const {
        return 8.0 * unit_roundoff * std::max(largest_abs1(q_.columns, d_), largest_abs1(q_.columns, z_));
    }
    void keep(i64 column) {
        kept_[kept_count_++] = column;
        ++counts_[rows_[column]];
    }
    void deflate(i64 column) { deflated_[deflated_count_++] = column; }

    /// Two columns whose values are so close that a rotation leaves `out` without a part in z.
    bool rotate_out(i64 out, i64 other, double tolerance) const {
        const double length = std::hypot(z_[out], z_[other]), c = z_[other] / length, s = -z_[out] / length;
        if (std::fabs((d_[other] - d_[out]) * c * s) > tolerance) return false;
        z_[other] = length;
        z_[out] = 0.0;
        if (rows_[out] != rows_[other]) rows_[out] = rows_[other] = both;
        slot<&KernelTable::drot>(q_.rows, q_.at(0, out), 1, q_.at(0, other), 1, c, s);
        const double first = d_[out];
        d_[out] = first * c * c + d_[other] * s * s;
        d_[other] = first * s * s + d_[other] * c * c;
        return true;
    }

  public:
    Merge(const Matrix<double>& q, i64 n1, double rho, double* d, i64 start, const MergeSpace& space)
        : q_(q),
          n1_(n1),
          n2_(q.rows - n1),
          rho_(2.0 * std::fabs(rho)),
          d_(d) {
        Sections<double> reals(space.reals + start);
        Sections<i64> integers(space.integers + start);
        for (double** part : {&z_, &poles_, &weights_, &found_}) *part = reals.take(space.n);
        for (i64** part : {&sorted_, &rows_, &kept_, &place_, &deflated_}) *part = integers.take(space.n);
        const double half = std::copysign(std::sqrt(0.5), rho); // z is of length 1
        for (i64 i = 0; i < n1_; ++i) {
            z_[i] = std::sqrt(0.5) * q_(n1_ - 1, i);
            rows_[i] = top;
        }
        for (i64 i = n1_; i < q_.columns; ++i) {
            z_[i] = half * q_(n1_, i);
            rows_[i] = bottom;
        }
    }

    void sort(const i64* order) const {
        const i64 n = q_.columns;
        for (i64 i = 0, a = 0, b = n1_; i < n; ++i) {
            const bool first = b == n || (a < n1_ && d_[order[a]] <= d_[n1_ + order[b]]);
            sorted_[i] = first ? order[a++] : n1_ + order[b++];
        }
    }
    void deflate_all() {
        const double tolerance = smallest_that_counts();
        i64 pending = -1;
        for (i64 i = 0; i < q_.columns; ++i) {
            const i64 column = sorted_[i];
            if (rho_ * std::fabs(z_[column]) <= tolerance) {
                deflate(column);
                continue;
            }
            if (pending >= 0 && rotate_out(pending, column, tolerance)) deflate(pending);
            else if (pending >= 0) keep(pending);
            pending = column;
        }
        if (pending >= 0) keep(pending);
    }
    /// The columns, in the order of their zeros, go to `copies`; q is free then.
    struct Copies {
        Matrix<double> top_rows, bottom_rows, deflated;
    };
    Copies copy_columns(double* copies) const {
        const i64 of_top = counts_[top] + counts_[both], of_bottom = counts_[both] + counts_[bottom];
        const Matrix<double> top_rows{copies, n1_, of_top, n1_},
            bottom_rows{copies + n1_ * of_top, n2_, of_bottom, n2_};
        const Matrix<double> deflated{bottom_rows.at(0, of_bottom), q_.rows, deflated_count_, q_.rows};
        i64 next[3] = {0, counts_[top], counts_[top] + counts_[both]};
        for (i64 i = 0; i < kept_count_; ++i) place_[i] = next[rows_[kept_[i]]]++;
        const auto work = static_cast<double>(q_.rows);
        share_work(kept_count_, 4, work, [&](i64 start, i64 end) {
            for (i64 i = start; i < end; ++i) {
                const double *const upper = q_.at(0, kept_[i]), *const lower = upper + n1_;
                if (rows_[kept_[i]] != bottom) std::copy(upper, upper + n1_, top_rows.at(0, place_[i]));
                if (rows_[kept_[i]] != top) std::copy(lower, lower + n2_, bottom_rows.at(0, place_[i] - counts_[top]));
            }
        });
        for (i64 i = 0; i < deflated_count_; ++i)
            std::copy(q_.at(0, deflated_[i]), q_.at(0, deflated_[i]) + q_.rows, deflated.at(0, i));
        return {top_rows, bottom_rows, deflated};
    }
    /// The vectors of diag(poles) + rho z z^T, rows in the order of the copied columns; d: their values. q is used for
    /// the distances between poles and roots.
    Matrix<double> solve(double* factors) const {
        const i64 k = kept_count_;
        const Matrix<double> distances{q_.data, k, k, q_.ld}, vectors{factors, k, k, k};
        for (i64 i = 0; i < k; ++i) {
            poles_[i] = d_[kept_[i]];
            weights_[i] = z_[kept_[i]] * z_[kept_[i]];
        }
        for (i64 i = 0; i < deflated_count_; ++i) poles_[k + i] = d_[deflated_[i]];
        const SecularEquation equation{SecularEquation::Poles::plain, k, poles_, weights_, rho_};
        const auto size = static_cast<double>(k);
        share_work(k, 4, 20.0 * size, [&](i64 start, i64 end) {
            for (i64 j = start; j < end; ++j) vectors(0, j) = equation.root(j, distances.at(0, j), nullptr);
        });
        share_work(k, 4, 5.0 * size, [&](i64 start, i64 end) {
            equation.weights_of_roots(start, end, distances, {}, found_);
            for (i64 i = start; i < end; ++i) found_[i] = std::copysign(std::sqrt(std::fabs(found_[i])), z_[kept_[i]]);
        });
        for (i64 j = 0; j < k; ++j) d_[j] = vectors(0, j);
        std::copy(poles_ + k, poles_ + q_.columns, d_ + k);
        share_work(k, 4, 5.0 * size, [&](i64 start, i64 end) {
            for (i64 j = start; j < end; ++j) {
                double *const distance = distances.at(0, j), *const vector = vectors.at(0, j);
                double square = 0.0;
                for (i64 i = 0; i < k; ++i) distance[i] = found_[i] / distance[i];
                for (i64 i = 0; i < k; ++i) square += distance[i] * distance[i];
                const double scale = 1.0 / std::sqrt(square);
                for (i64 i = 0; i < k; ++i) vector[place_[i]] = scale * distance[i];
            }
        });
        return vectors;
    }
    void multiply(const Copies& copied, const Matrix<double>& vectors) const {
        const i64 k = kept_count_;
        const auto product = [&](const Matrix<double>& left, i64 first_row, const Matrix<double>& to) {
            for (i64 j = 0; j < k && left.columns == 0; ++j) std::fill(to.at(0, j), to.at(0, j) + to.rows, 0.0);
            if (left.columns > 0) gemm('N', 'N', 1.0, left, vectors.rows_from(first_row, left.columns), 0.0, to);
        };
        product(copied.top_rows, 0, q_.block(0, 0, n1_, k));
        product(copied.bottom_rows, counts_[top], q_.block(n1_, 0, n2_, k));
        for (i64 i = 0; i < deflated_count_; ++i)
            std::copy(copied.deflated.at(0, i), copied.deflated.at(0, i) + q_.rows, q_.at(0, k + i));
    }
};

} // namespace

void merge_halves(const Matrix<double>& q, i64 n1, double rho, double* d, i64* order, i64 start,
                  const MergeSpace& space) {
    Merge merge(q, n1, rho, d, start, space);
    merge.sort(order);
    merge.deflate_all();
    const auto copied = merge.copy_columns(space.copies + start * space.n);
    merge.multiply(copied, merge.solve(space.factors + start * space.n));
    find_order(q.columns, d, order);
}

} // namespace nxl
