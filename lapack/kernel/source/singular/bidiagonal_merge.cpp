// With the vectors of its parts B becomes a row z over a diagonal, M, whose singular values are roots of a secular
// equation in their squares. The row's own place counts as a diagonal element of 0. Columns that need no change leave M
// beforehand; vectors are orthogonal since z is taken from the roots. Gu and Eisenstat, SIAM J. Matrix Anal. Appl. 16
// (1995), part 2.
#include "lapack/kernel/source/singular/bidiagonal_merge.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/common/share_work.hpp"
#include "lapack/kernel/source/eigen/secular.hpp"
#include "service/workspace.hpp"
#include <cmath>

namespace nxl {
namespace {

/// Where a column is not zero: in the first k + 1 rows, in the others, or in both.
enum Rows : i64 { top, both, bottom };

class Merge {
    const Matrix<double> u_, v_;
    const i64 k_, n_; // the row's place, and the order
    const bool has_null_;
    double* const d_;
    double *z_, *poles_, *weights_, *found_, *lengths_;
    i64 *sorted_, *rows_, *kept_, *place_, *deflated_;
    i64 kept_count_ = 0, deflated_count_ = 0, counts_[3] = {};
    double tolerance_;

    void keep(i64 column) {
        kept_[kept_count_++] = column;
        ++counts_[rows_[column]];
    }
    void deflate(i64 column) { deflated_[deflated_count_++] = column; }

    /// Two columns whose values are so close that a rotation from both sides leaves `out` without a part in z.
    bool rotate_out(i64 out, i64 other) const {
        const double length = std::hypot(z_[out], z_[other]), c = z_[other] / length, s = -z_[out] / length;
        if (std::fabs((d_[other] - d_[out]) * c * s) > tolerance_) return false;
        z_[other] = length;
        z_[out] = 0.0;
        if (rows_[out] != rows_[other]) rows_[out] = rows_[other] = both;
        slot<&KernelTable::drot>(n_, u_.at(0, out), 1, u_.at(0, other), 1, c, s);
        slot<&KernelTable::drot>(v_.rows, v_.at(0, out), 1, v_.at(0, other), 1, c, s);
        const double first = d_[out];
        d_[out] = first * c * c + d_[other] * s * s;
        d_[other] = first * s * s + d_[other] * c * c;
        return true;
    }
    /// Both parts have a vector of the value 0 where B has one: one combination of them has all of their part in z.
    void join_null_vectors(double beta) const {
        const double second = beta * v_(k_ + 1, n_), length = std::hypot(z_[k_], second);
        if (length == 0.0) return;
        slot<&KernelTable::drot>(v_.rows, v_.at(0, k_), 1, v_.at(0, n_), 1, z_[k_] / length, second / length);
        z_[k_] = length;
        rows_[k_] = both;
    }

  public:
    Merge(const Matrix<double>& u, const Matrix<double>& v, i64 k, double alpha, double beta, double* d,
          const BidiagonalMergeSpace& space)
        : u_(u),
          v_(v),
          k_(k),
          n_(u.rows),
          has_null_(v.rows > u.rows),
          d_(d) {
        Sections<double> reals(space.reals);
        Sections<i64> integers(space.integers);
        for (double** part : {&z_, &poles_, &weights_, &found_, &lengths_}) *part = reals.take(n_ + 1);
        for (i64** part : {&sorted_, &rows_, &kept_, &place_, &deflated_}) *part = integers.take(n_ + 1);
        for (i64 j = 0; j < n_; ++j) {
            z_[j] = j <= k_ ? alpha * v_(k_, j) : beta * v_(k_ + 1, j);
            rows_[j] = j <= k_ ? top : bottom;
        }
        d_[k_] = 0.0;
        u_(k_, k_) = 1.0;
        if (has_null_) join_null_vectors(beta);
        // Of a part that is nothing beside the whole, which is about 1, the squares are to stay in the range.
        tolerance_ =
            8.0 * unit_roundoff * std::max({largest_abs1(n_, d_), std::fabs(alpha), std::fabs(beta), 0x1p-200});
    }

    void deflate_all() {
        i64 count = 0;
        for (i64 j = 0; j < n_; ++j)
            if (j != k_) sorted_[count++] = j;
        std::sort(sorted_, sorted_ + count, [d = d_](i64 i, i64 j) { return d[i] < d[j]; });
        keep(k_);
        i64 pending = -1;
        for (i64 i = 0; i < count; ++i) {
            const i64 column = sorted_[i];
            if (std::fabs(z_[column]) <= tolerance_) {
                deflate(column);
                continue;
            }
            d_[column] = std::max(d_[column], 0.5 * tolerance_);
            if (pending >= 0 && rotate_out(pending, column)) deflate(pending);
            else if (pending >= 0) keep(pending);
            pending = column;
        }
        if (pending >= 0) keep(pending);
        if (kept_count_ > 1 && std::fabs(z_[k_]) < tolerance_) z_[k_] = std::copysign(tolerance_, z_[k_]);
    }

    /// The columns of u or v that stay, in the order of their zeros: upper and lower rows apart.
    struct Basis {
        Matrix<double> upper, lower, deflated;
        i64 first_lower; // the place of the first column of `lower`
    };
    /// Places: those at the top alone, the row's, in both, at the bottom.
    void settle_places() const {
        const i64 own = rows_[k_];
        i64 next[3] = {0, counts_[top] + (own == both ? 1 : 0), counts_[top] + counts_[both]};
        const i64 middle = counts_[top] - (own == top ? 1 : 0);
        if (own == top) next[top] = 0;
        place_[0] = middle;
        for (i64 i = 1; i < kept_count_; ++i) place_[i] = next[rows_[kept_[i]]]++;
    }
    Basis copy_columns(const Matrix<double>& from, bool middle_has_lower, double* memory) const {
        const i64 upper_rows = k_ + 1, lower_rows = from.rows - upper_rows;
        const i64 middle = place_[0], first_lower = middle + (middle_has_lower ? 0 : 1);
        const i64 upper_columns = counts_[top] + counts_[both], lower_columns = kept_count_ - first_lower;
        const Matrix<double> upper{memory, upper_rows, upper_columns, upper_rows};
        const Matrix<double> lower{upper.at(0, upper_columns), lower_rows, lower_columns, std::max(lower_rows, i64{1})};
        const Matrix<double> deflated{lower.at(0, lower_columns), from.rows, deflated_count_, from.rows};
        for (i64 i = 0; i < kept_count_; ++i) {
            const double* const column = from.at(0, kept_[i]);
            if (place_[i] < upper_columns) std::copy(column, column + upper_rows, upper.at(0, place_[i]));
            if (place_[i] >= first_lower)
                std::copy(column + upper_rows, column + from.rows, lower.at(0, place_[i] - first_lower));
        }
        for (i64 i = 0; i < deflated_count_; ++i) std::copy_n(from.at(0, deflated_[i]), from.rows, deflated.at(0, i));
        return {upper, lower, deflated, first_lower};
    }
    Basis copy_left(double* memory) const { return copy_columns(u_, false, memory); }
    Basis copy_right(double* memory) const { return copy_columns(v_, has_null_, memory); }

    /// The values of M, and its right vectors, rows in the order of places. u and v hold distances of roots and poles.
    void solve(const Matrix<double>& vectors) const {
        const i64 k = kept_count_;
        const Matrix<double> distances{u_.data, k, k, u_.ld}, sums{v_.data, k, k, v_.ld};
        for (i64 i = 0; i < k; ++i) {
            poles_[i] = i == 0 ? 0.0 : d_[kept_[i]];
            weights_[i] = z_[kept_[i]] * z_[kept_[i]];
        }
        for (i64 i = 0; i < deflated_count_; ++i) lengths_[i] = d_[deflated_[i]];
        std::copy_n(lengths_, deflated_count_, d_ + k); // kept values stand in poles
        if (k == 1) {                                   // z alone, which may be 0
            d_[0] = std::fabs(z_[k_]);
            vectors(0, 0) = -std::copysign(1.0, z_[k_]);
            lengths_[0] = 1.0;
            return;
        }
        const SecularEquation equation{SecularEquation::Poles::squared, k, poles_, weights_, 1.0};
        const auto size = static_cast<double>(k);
        share_work(k, 4, 20.0 * size, [&](i64 start, i64 end) {
            for (i64 j = start; j < end; ++j) d_[j] = equation.root(j, distances.at(0, j), sums.at(0, j));
        });
        share_work(k, 4, 8.0 * size, [&](i64 start, i64 end) {
            equation.weights_of_roots(start, end, distances, sums, found_);
            for (i64 i = start; i < end; ++i) found_[i] = std::copysign(std::sqrt(std::fabs(found_[i])), z_[kept_[i]]);
        });
        share_work(k, 4, 8.0 * size, [&](i64 start, i64 end) {
            for (i64 j = start; j < end; ++j) {
                double *const distance = distances.at(0, j), *const vector = vectors.at(0, j);
                const double* const sum = sums.at(0, j);
                double square = 0.0;
                for (i64 i = 0; i < k; ++i) {
                    distance[i] = found_[i] / distance[i] / sum[i];
                    square += distance[i] * distance[i];
                }
                lengths_[j] = std::sqrt(square);
                for (i64 i = 0; i < k; ++i) vector[place_[i]] = distance[i] / lengths_[j];
            }
        });
    }
    /// Left vectors from the right ones: M v = s u.
    void make_left(const Matrix<double>& vectors) const {
        const i64 k = kept_count_;
        share_work(k, 4, 4.0 * static_cast<double>(k), [&](i64 start, i64 end) {
            for (i64 j = start; j < end; ++j) {
                double* const vector = vectors.at(0, j);
                for (i64 i = 0; i < k; ++i) vector[place_[i]] *= poles_[i];
                vector[place_[0]] = -1.0 / lengths_[j];
                scal(k, 1.0 / nrm2(k, vector, 1), vector, 1);
            }
        });
    }
    void multiply(const Basis& basis, const Matrix<double>& vectors, const Matrix<double>& to) const {
        const i64 k = kept_count_, upper_rows = k_ + 1;
        const auto product = [&](const Matrix<double>& left, i64 first_row, const Matrix<double>& part) {
            for (i64 j = 0; j < k && left.columns == 0; ++j) std::fill_n(part.at(0, j), part.rows, 0.0);
            if (left.columns > 0 && part.rows > 0)
                gemm('N', 'N', 1.0, left, vectors.rows_from(first_row, left.columns), 0.0, part);
        };
        product(basis.upper, 0, to.block(0, 0, upper_rows, k));
        product(basis.lower, basis.first_lower, to.block(upper_rows, 0, to.rows - upper_rows, k));
        for (i64 i = 0; i < deflated_count_; ++i) std::copy_n(basis.deflated.at(0, i), to.rows, to.at(0, k + i));
    }
    i64 kept() const { return kept_count_; }
};

} // namespace

void merge_bidiagonals(const Matrix<double>& u, const Matrix<double>& v, i64 k, double alpha, double beta, double* d,
                       const BidiagonalMergeSpace& space) {
    Merge merge(u, v, k, alpha, beta, d, space);
    merge.deflate_all();
    merge.settle_places();
    const auto left = merge.copy_left(space.of_left), right = merge.copy_right(space.of_right);
    const Matrix<double> vectors{space.factors, merge.kept(), merge.kept(), merge.kept()};
    merge.solve(vectors);
    merge.multiply(right, vectors, v);
    merge.make_left(vectors);
    merge.multiply(left, vectors, u);
}

} // namespace nxl
