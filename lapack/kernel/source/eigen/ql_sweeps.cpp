// QL without square roots, on the squares of the off-diagonal: the variant of Pal, Walker and Kahan; Parlett, The
// Symmetric Eigenvalue Problem, SIAM 1998, section 8.15.
//
// A sweep goes up the rows, each of which waits for a division of the one before. So several sweeps go up together, two
// rows apart, one in each lane: what a sweep leaves in a row is what the next one finds there a step later.
//
//     row i     sweep 0        in memory: all rows above, which no sweep has come to,
//     i + 1
//     i + 2     sweep 1        between two lanes: one element each of d and e,
//     i + 3
//     i + 4     sweep 2        in memory: all rows below, which all sweeps have left
#include "lapack/kernel/source/eigen/ql_sweeps.hpp"

namespace nxl {
namespace {

/// Two to a register are as fast as eight: it is the divisions that take the time.
template <int W> using Lanes [[gnu::vector_size(W * sizeof(double))]] = double;

/// W sweeps, between two rows: the squares of cosine and sine of the last rotation, gamma, and gamma^2 / cosine.
template <int W> struct Sweeps {
    Lanes<W> sigma, cosine, sine, gamma, p;

    /// From the element of a row on the diagonal, and the square beside it; leaves those of the row below.
    [[gnu::always_inline]] void pass(Lanes<W>& diagonal, Lanes<W>& square) {
        const Lanes<W> sum = p + square, before = gamma, cosine_before = cosine, sine_before = sine;
        const Lanes<W> reciprocal = sum / p; // not waited for: shortens the chain of operations
        cosine = p / sum;
        sine = square / sum;
        gamma = cosine * (diagonal - sigma) - sine * before;
        p = gamma * gamma * reciprocal;
        const auto in_range = reciprocal < 1.0 / safe_minimum;
        if (!__builtin_reduce_and(in_range)) [[unlikely]] {
            const Lanes<W> divided = cosine != 0.0 ? gamma * gamma / cosine : cosine_before * square;
            p = in_range ? p : divided;
        }
        diagonal = before + (diagonal - gamma);
        square = sine_before * sum;
    }
};

/// One sweep, through rows in memory.
class OneSweep {
    const BlockView& t_;
    const i64 l_, m_;
    Sweeps<1> state_;

  public:
    OneSweep(const BlockView& t, i64 l, i64 m) : t_(t), l_(l), m_(m), state_() {}

    void start(double shift) {
        const double gamma = t_.d(m_) - shift;
        state_ = {Lanes<1>{shift}, Lanes<1>{1.0}, Lanes<1>{0.0}, Lanes<1>{gamma}, Lanes<1>{gamma * gamma}};
    }
    /// Rows first, first - 1, ... end.
    void run(i64 first, i64 end) {
        for (i64 i = first; i >= end; --i) {
            Lanes<1> diagonal{t_.d(i)}, square{t_.e(i)};
            state_.pass(diagonal, square);
            t_.d(i + 1) = diagonal[0];
            if (i + 1 < m_) t_.e(i + 1) = square[0];
        }
    }
    void finish() {
        t_.e(l_) = state_.sine[0] * state_.p[0];
        t_.d(l_) = state_.sigma[0] + state_.gamma[0];
    }
    template <int W> void give(Sweeps<W>& to, int lane) const {
        to.sigma[lane] = state_.sigma[0];
        to.cosine[lane] = state_.cosine[0];
        to.sine[lane] = state_.sine[0];
        to.gamma[lane] = state_.gamma[0];
        to.p[lane] = state_.p[0];
    }
    template <int W> void take(const Sweeps<W>& from, int lane) {
        state_ = {Lanes<1>{from.sigma[lane]}, Lanes<1>{from.cosine[lane]}, Lanes<1>{from.sine[lane]},
                  Lanes<1>{from.gamma[lane]}, Lanes<1>{from.p[lane]}};
    }
};

/// Every lane's value moves on to the next one, and `value` into the first.
template <int W> [[gnu::always_inline]] inline void move_in(double value, Lanes<W>& v) {
    for (int lane = W - 1; lane > 0; --lane) v[lane] = v[lane - 1];
    v[0] = value;
}

/// W sweeps, over more than 2 W rows.
template <int W> void sweep_together(const BlockView& t, i64 l, i64 m, const double* shifts) {
    const i64 start = m + 1 - 2 * W; // row of sweep 0 when all of them have started
    Sweeps<W> state;
    Lanes<W> diagonal{}, square{};
    OneSweep one(t, l, m);
    for (int k = 0; k < W; ++k) {
        one.start(shifts[k]);
        one.run(m - 1, start + 2 * k + 1);
        one.give(state, k);
    }
    for (int k = 0; k + 1 < W; ++k) {
        diagonal[k] = t.d(start + 2 * k + 2);
        square[k] = t.e(start + 2 * k + 2);
    }
    for (i64 i = start; i >= l; --i) {
        move_in<W>(t.d(i), diagonal);
        move_in<W>(t.e(i), square);
        state.pass(diagonal, square);
        const i64 left = i + 2 * W - 1;
        t.d(left) = diagonal[W - 1];
        if (left < m) t.e(left) = square[W - 1];
    }
    for (int k = 0; k + 1 < W; ++k) {
        t.d(l + 2 * k + 1) = diagonal[k];
        t.e(l + 2 * k + 1) = square[k];
    }
    for (int k = 0; k < W; ++k) {
        one.take(state, k);
        one.run(l + 2 * k - 1, l);
        one.finish();
    }
}

} // namespace

void square_free_ql(const BlockView& t, i64 l, i64 m, i64 count, const double* shifts) {
    if (count == 8) sweep_together<8>(t, l, m, shifts);
    else if (count == 4) sweep_together<4>(t, l, m, shifts);
    else sweep_together<1>(t, l, m, shifts);
}

} // namespace nxl
