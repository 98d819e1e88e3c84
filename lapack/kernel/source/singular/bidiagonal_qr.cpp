// Implicit QR with shifts, and without one where a shift would cost the small values their digits. Demmel and Kahan,
// SIAM J. Sci. Stat. Comput. 11 (1990).
#include "lapack/kernel/source/singular/bidiagonal_qr.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/eigen/plane_rotation.hpp"
#include "lapack/kernel/source/eigen/rotation_batch.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "lapack/kernel/source/singular/dqds.hpp"
#include "service/scratch.hpp"
#include <cmath>
#include <cstring>

namespace nxl {
namespace {

/// The matrices of one side, which take the same rotations.
class Side {
    RotationBatch first_, second_;
    const bool uses_first_, uses_second_;

    static void add(RotationBatch& batch, i64 column, i64 step, i64 length, const double* turns) {
        std::memcpy(batch.sequence(column, step, length), turns, 2 * sizeof(double) * static_cast<std::size_t>(length));
    }

  public:
    template <class T>
    Side(const Matrix<T>& first, const Matrix<T>& second)
        : first_(first),
          second_(second),
          uses_first_(first.rows > 0),
          uses_second_(second.rows > 0) {}

    bool has_memory() const { return (!uses_first_ || first_.has_memory()) && (!uses_second_ || second_.has_memory()); }
    void turn(i64 column, i64 step, i64 length, const double* turns) {
        if (uses_first_) add(first_, column, step, length, turns);
        if (uses_second_) add(second_, column, step, length, turns);
    }
    void apply() {
        if (uses_first_) first_.apply();
        if (uses_second_) second_.apply();
    }
};

/// The smaller singular value of [f g; 0 h].
double smaller_value(double f, double g, double h) {
    const double small = std::min(std::fabs(f), std::fabs(h)), large = std::max(std::fabs(f), std::fabs(h));
    const double off = std::fabs(g);
    if (small == 0.0) return 0.0;
    const double sum = 1.0 + small / large, difference = (large - small) / large;
    if (off < large) {
        const double square = (off / large) * (off / large);
        return small * (2.0 / (std::sqrt(sum * sum + square) + std::sqrt(difference * difference + square)));
    }
    const double ratio = large / off;
    if (ratio == 0.0) return small * large / off;
    const double s = sum * ratio, t = difference * ratio;
    return 2.0 * (small * (1.0 / (std::sqrt(1.0 + s * s) + std::sqrt(1.0 + t * t)))) * ratio;
}

/// One block, seen from the end that the sweeps start at. Seen from the last element it is the transposed matrix in
/// reverse order: the sides change places.
class Block {
    const BlockView b_;
    const i64 last_, column_, step_; // last_: number of the last element; column_: of the first element in the matrices
    Side &right_, &left_;
    double *const right_turns_, *const left_turns_;

    void keep(i64 i, const PlaneRotation& right, const PlaneRotation& left) const {
        right_turns_[2 * i] = right.cosine;
        right_turns_[2 * i + 1] = right.sine;
        left_turns_[2 * i] = left.cosine;
        left_turns_[2 * i + 1] = left.sine;
    }

  public:
    Block(const BlockView& b, i64 column, Side& right, Side& left, double* turns)
        : b_(b),
          last_(b.n - 1),
          column_(column),
          step_(b.step),
          right_(right),
          left_(left),
          right_turns_(turns),
          left_turns_(turns + 2 * b.n) {}

    /// Clears an e that is nothing beside the singular values, by a lower bound on them. `least`: such a bound for all.
    bool splits(double tolerance, double& least) const {
        const auto clears = [&](i64 i, double beside) {
            if (!(std::fabs(b_.e(i)) <= tolerance * beside)) return false;
            b_.e(i) = 0.0;
            return true;
        };
        if (clears(last_ - 1, std::fabs(b_.d(last_)))) return true;
        double bound = least = std::fabs(b_.d(0));
        for (i64 i = 0; i < last_; ++i) {
            if (clears(i, bound)) return true;
            bound = bound == 0.0 ? 0.0 : std::fabs(b_.d(i + 1)) * (bound / (bound + std::fabs(b_.e(i))));
            least = std::min(least, bound);
        }
        return false;
    }
    double largest() const {
        double result = std::fabs(b_.d(last_));
        for (i64 i = 0; i < last_; ++i) result = std::max({result, std::fabs(b_.d(i)), std::fabs(b_.e(i))});
        return result;
    }
    /// The smaller value of the last two rows, or 0 where it would spoil the smallest value of the block.
    double shift(i64 n, double tolerance, double least) const {
        if (static_cast<double>(n) * tolerance * (least / largest()) <= std::max(unit_roundoff, 0.01 * tolerance))
            return 0.0;
        const double first = std::fabs(b_.d(0));
        const double value = smaller_value(b_.d(last_ - 1), b_.e(last_ - 1), b_.d(last_));
        return (value / first) * (value / first) < unit_roundoff ? 0.0 : value;
    }

    void sweep(double shift) const {
        double f = (std::fabs(b_.d(0)) - shift) * (std::copysign(1.0, b_.d(0)) + shift / b_.d(0)), g = b_.e(0);
        for (i64 i = 0; i < last_; ++i) {
            const PlaneRotation right = rotation_to_first(f, g);
            if (i > 0) b_.e(i - 1) = right.length;
            f = right.cosine * b_.d(i) + right.sine * b_.e(i);
            b_.e(i) = right.cosine * b_.e(i) - right.sine * b_.d(i);
            g = right.sine * b_.d(i + 1);
            b_.d(i + 1) *= right.cosine;
            const PlaneRotation left = rotation_to_first(f, g);
            b_.d(i) = left.length;
            f = left.cosine * b_.e(i) + left.sine * b_.d(i + 1);
            b_.d(i + 1) = left.cosine * b_.d(i + 1) - left.sine * b_.e(i);
            if (i + 1 < last_) {
                g = left.sine * b_.e(i + 1);
                b_.e(i + 1) *= left.cosine;
            }
            keep(i, right, left);
        }
        b_.e(last_ - 1) = f;
    }
    /// No subtractions: every element keeps its relative accuracy.
    void sweep_without_shift() const {
        PlaneRotation right{1.0, 0.0, 0.0}, left{1.0, 0.0, 0.0};
        for (i64 i = 0; i < last_; ++i) {
            right = rotation_to_first(b_.d(i) * right.cosine, b_.e(i));
            if (i > 0) b_.e(i - 1) = left.sine * right.length;
            left = rotation_to_first(left.cosine * right.length, b_.d(i + 1) * right.sine);
            b_.d(i) = left.length;
            keep(i, right, left);
        }
        const double rest = b_.d(last_) * right.cosine;
        b_.d(last_) = rest * left.cosine;
        b_.e(last_ - 1) = rest * left.sine;
    }
    void turn_columns() const {
        right_.turn(column_, step_, last_, right_turns_);
        left_.turn(column_, step_, last_, left_turns_);
    }
};

class Iteration {
    static constexpr double tolerance = 20.0 * unit_roundoff;

    const i64 n_;
    double *const d_, *const e_, *const turns_;
    Side &right_, &left_;
    double threshold_ = 0.0;
    i64 rotations_left_ = 6 * n_ * n_;

    /// What an e may be whatever stands beside it: by a lower bound on the smallest value.
    double absolute_threshold() const {
        double bound = std::fabs(d_[0]), least = bound;
        for (i64 i = 1; i < n_ && least != 0.0; ++i) {
            bound = std::fabs(d_[i]) * (bound / (bound + std::fabs(e_[i - 1])));
            least = std::min(least, bound);
        }
        const double order = static_cast<double>(n_);
        return std::max(tolerance * (least / std::sqrt(order)), 6.0 * order * order * safe_minimum);
    }
    i64 start_of_block(i64 last) const {
        i64 first = last;
        while (first > 0 && !(std::fabs(e_[first - 1]) <= threshold_)) --first;
        if (first > 0) e_[first - 1] = 0.0;
        return first;
    }

  public:
    Iteration(i64 n, double* d, double* e, double* turns, Side& right, Side& left)
        : n_(n),
          d_(d),
          e_(e),
          turns_(turns),
          right_(right),
          left_(left) {}

    /// One sequence over all columns makes a lower bidiagonal matrix upper.
    void make_upper() const {
        for (i64 i = 0; i + 1 < n_; ++i) {
            const PlaneRotation rotation = rotation_to_first(d_[i], e_[i]);
            d_[i] = rotation.length;
            e_[i] = rotation.sine * d_[i + 1];
            d_[i + 1] *= rotation.cosine;
            turns_[2 * i] = rotation.cosine;
            turns_[2 * i + 1] = rotation.sine;
        }
        if (n_ > 1) left_.turn(0, 1, n_ - 1, turns_);
    }
    /// False when no rotations are left, or an element is not a number.
    bool run() {
        threshold_ = absolute_threshold();
        i64 before_first = -1, before_last = -1;
        bool from_end = false;
        for (i64 last = n_ - 1; last > 0;) {
            const i64 first = start_of_block(last);
            if (first == last) {
                --last;
                continue;
            }
            if (before_last < 0 || first > before_last || last < before_first)
                from_end = std::fabs(d_[first]) < std::fabs(d_[last]);
            before_first = first;
            before_last = last;
            const BlockView view(d_ + first, e_ + first, last - first + 1, from_end);
            const Block block(view, from_end ? last : first, from_end ? left_ : right_, from_end ? right_ : left_,
                              turns_);
            double least = 0.0;
            if (block.splits(tolerance, least)) continue;
            const double shift = block.shift(n_, tolerance, least);
            rotations_left_ -= last - first;
            if (rotations_left_ < 0 || !std::isfinite(least) || !std::isfinite(shift)) return false;
            if (shift == 0.0) block.sweep_without_shift();
            else block.sweep(shift);
            block.turn_columns();
        }
        return true;
    }
};

/// Positive, descending values, and the columns that belong to them.
template <class T> void finish(i64 n, double* d, const TurnedColumns<T>& turned) {
    const Matrix<T>* const all[] = {&turned.right, &turned.left, &turned.other_left};
    for (i64 j = 0; j < n; ++j)
        if (std::signbit(d[j])) {
            d[j] = -d[j];
            if (turned.right.rows > 0) scal(turned.right.rows, -1.0, turned.right.at(0, j), 1);
        }
    for (i64 i = 0; i + 1 < n; ++i) {
        const i64 largest = std::max_element(d + i, d + n) - d;
        if (largest == i) continue;
        std::swap(d[i], d[largest]);
        for (const Matrix<T>* m : all)
            if (m->rows > 0) swap(m->rows, m->at(0, i), 1, m->at(0, largest), 1);
    }
}

/// A power of two that keeps sums from leaving the range, and brings a tiny matrix away from its lower end. It takes
/// nothing from the small elements beside large ones.
double scale_for(double largest) {
    if (largest > 0x1p1000) return 0x1p-40;
    return largest > 0.0 && largest < 0x1p-500 ? std::ldexp(1.0, std::min(-std::ilogb(largest), 1000)) : 1.0;
}
void multiply(i64 n, double* d, double* e, double factor) {
    for (i64 i = 0; i < n && factor != 1.0; ++i) d[i] *= factor;
    for (i64 i = 0; i + 1 < n && factor != 1.0; ++i) e[i] *= factor;
}

} // namespace

template <class T> i64 bidiagonal_qr(char uplo, i64 n, double* d, double* e, const TurnedColumns<T>& turned) {
    if (n == 0) return 0;
    Side right(turned.right, Matrix<T>{nullptr, 0, 0, 1}), left(turned.left, turned.other_left);
    const Scratch<double> turns(4 * n);
    if (!turns.data() || !right.has_memory() || !left.has_memory()) return -1;
    if (!std::isfinite(largest_abs1(n, d)) || !std::isfinite(largest_abs1(n - 1, e)))
        return std::max(count_nonzeros(n, e), i64{1});
    const double scale = scale_for(std::max(largest_abs1(n, d), largest_abs1(n - 1, e)));
    multiply(n, d, e, scale);
    Iteration iteration(n, d, e, turns.data(), right, left);
    if (uplo == 'L') iteration.make_upper();
    const bool by_dqds = turned.none() && values_by_dqds(n, d, e);
    const bool done = by_dqds || iteration.run();
    right.apply();
    left.apply();
    if (done && !by_dqds) finish(n, d, turned);
    multiply(n, d, e, 1.0 / scale);
    return done ? 0 : std::max(count_nonzeros(n, e), i64{1});
}
template i64 bidiagonal_qr(char, i64, double*, double*, const TurnedColumns<double>&);
template i64 bidiagonal_qr(char, i64, double*, double*, const TurnedColumns<zcomplex>&);

i64 bidiagonal_values(char uplo, i64 n, double* d, double* e) {
    const Matrix<double> none{nullptr, 0, 0, 1};
    return bidiagonal_qr<double>(uplo, n, d, e, {none, none, none});
}

} // namespace nxl
