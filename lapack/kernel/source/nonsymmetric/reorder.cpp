// Direct exchange: the vectors of the lower block's eigenvalues, which come of a Sylvester equation, are made the first
// ones. Bai and Demmel, On swapping diagonal blocks in real Schur form, Linear Algebra Appl. 186 (1993).
#include "lapack/kernel/source/nonsymmetric/reorder.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/nonsymmetric/small_reflector.hpp"
#include "lapack/kernel/source/nonsymmetric/small_sylvester.hpp"
#include "lapack/kernel/source/nonsymmetric/standard_block.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// Eigenvalues at k and k + 1.
template <class T> void exchange_two(const Matrix<T>& t, const Matrix<T>& q, i64 k) {
    const T upper = t(k, k), lower = t(k + 1, k + 1);
    const PlaneTurn<T> turn = turn_onto_first(t(k, k + 1), T(lower - upper));
    if (k + 2 < t.columns) turn.turn_rows(t.columns - k - 2, t.at(k, k + 2), t.ld);
    turn.turn_columns(k, t.at(0, k), t.ld);
    t(k, k) = lower;
    t(k + 1, k + 1) = upper;
    if (q.rows > 0) turn.turn_columns(q.rows, q.at(0, k), q.ld);
}

/// Blocks of orders p and r, at least one of them 2.
class WideExchange {
    static constexpr i64 most = 4;

    const Matrix<double>& t_;
    const i64 k_, p_, r_, n_;
    SmallReflector<double> turns_[2]; // Q, of r reflectors
    double block_[most * most];

    Matrix<double> block() { return {block_, n_, n_, most}; }
    i64 elements(i64 j) const { return std::min(n_ - j, i64{3}); }

    /// C := C Q
    void turn_columns(double* c, i64 rows, i64 ld) const {
        for (i64 j = 0; j < r_; ++j) turns_[j].turn_columns(elements(j), c + j * ld, rows, ld);
    }
    /// C := Q^T C
    void turn_rows(double* c, i64 columns, i64 ld) const {
        for (i64 j = 0; j < r_; ++j) turns_[j].turn_rows(elements(j), c + j, columns, ld);
    }

    /// Q, whose first columns span those of (-X; s I), where A11 X - X A22 = s A12.
    void find_turn() {
        const Matrix<double> whole = t_.block(k_, k_, n_, n_);
        double right[most], basis[most * 2] = {};
        for (i64 j = 0; j < r_; ++j) std::copy_n(whole.at(0, p_ + j), p_, right + p_ * j);
        double size = 0.0;
        for (i64 j = 0; j < n_; ++j) size = std::max(size, largest_abs1(n_, whole.at(0, j)));
        const double least = std::max(2.0 * unit_roundoff * size, safe_minimum / (2.0 * unit_roundoff));
        const SmallSolution<double> solution = solve_small_sylvester<double>(
            false, false, -1.0, whole.block(0, 0, p_, p_), whole.block(p_, p_, r_, r_), right, least);
        for (i64 j = 0; j < r_; ++j) {
            for (i64 i = 0; i < p_; ++i) basis[i + most * j] = -solution.x[i + p_ * j];
            basis[p_ + j + most * j] = solution.scale;
        }
        // The reflectors of its columns: a fourth element of the first one is zero.
        for (i64 j = 0; j < r_; ++j) {
            turns_[j] = SmallReflector<double>::of(basis + j + most * j, elements(j));
            if (j + 1 < r_) turns_[j].turn_rows(elements(j), basis + j + most * (j + 1), 1, most);
        }
    }

    void make_block_standard(const Matrix<double>& q, i64 k) {
        Block2<double> block{t_(k, k), t_(k, k + 1), t_(k + 1, k), t_(k + 1, k + 1)};
        const PlaneTurn<double> turn = make_standard(block);
        t_(k, k) = block.a;
        t_(k, k + 1) = block.b;
        t_(k + 1, k) = block.c;
        t_(k + 1, k + 1) = block.d;
        if (k + 2 < t_.columns) turn.turn_rows(t_.columns - k - 2, t_.at(k, k + 2), t_.ld);
        turn.turn_columns(k, t_.at(0, k), t_.ld);
        if (q.rows > 0) turn.turn_columns(q.rows, q.at(0, k), q.ld);
    }

  public:
    WideExchange(const Matrix<double>& t, i64 k, i64 p, i64 r) : t_(t), k_(k), p_(p), r_(r), n_(p + r) {}

    /// False, with nothing changed, when what should be zero below the blocks would not be.
    bool run(const Matrix<double>& q) {
        find_turn();
        double size = 0.0, left_over = 0.0;
        for (i64 j = 0; j < n_; ++j) {
            std::copy_n(t_.at(k_, k_ + j), n_, block().at(0, j));
            size = std::max(size, largest_abs1(n_, block().at(0, j)));
        }
        turn_columns(block_, n_, most);
        turn_rows(block_, n_, most);
        for (i64 j = 0; j < r_; ++j) left_over = std::max(left_over, largest_abs1(p_, block().at(r_, j)));
        if (!(left_over <= std::max(20.0 * unit_roundoff * size, safe_minimum / unit_roundoff))) return false;
        for (i64 j = 0; j < n_; ++j)
            for (i64 i = 0; i < n_; ++i) t_(k_ + i, k_ + j) = i >= r_ && j < r_ ? 0.0 : block()(i, j);
        const i64 next = k_ + n_;
        if (next < t_.columns) turn_rows(t_.at(k_, next), t_.columns - next, t_.ld);
        turn_columns(t_.at(0, k_), k_, t_.ld);
        if (q.rows > 0) turn_columns(q.at(0, k_), q.rows, q.ld);
        if (r_ == 2) make_block_standard(q, k_);
        if (p_ == 2) make_block_standard(q, k_ + r_);
        return true;
    }
};

/// Exchanges the block of order p at row k with that of order r below it.
template <class T> bool exchange_blocks(const Matrix<T>& t, const Matrix<T>& q, i64 k, i64 p, i64 r) {
    if constexpr (!is_complex_scalar<T>)
        if (p + r > 2) return WideExchange(t, k, p, r).run(q);
    exchange_two(t, q, k);
    return true;
}

} // namespace

template <class T> i64 move_block_up(const Matrix<T>& t, const Matrix<T>& q, i64 from, i64 to) {
    const i64 order = order_of_block(t, from);
    i64 here = from;
    while (here > to) {
        const i64 before = order_of_block_before(t, here);
        if (!exchange_blocks(t, q, here - before, before, order)) return here;
        here -= before;
        if (order == 2 && order_of_block(t, here) == 1) { // it has split on its way
            const i64 first = move_block_up(t, q, here, to);
            return std::max(first, move_block_up(t, q, here + 1, first + 1) - 1);
        }
    }
    return here;
}

template i64 move_block_up(const Matrix<double>&, const Matrix<double>&, i64, i64);
template i64 move_block_up(const Matrix<zcomplex>&, const Matrix<zcomplex>&, i64, i64);

} // namespace nxl
