// A few rows of (T - lambda I) x = b for many lambda at once. A row has the numbers of all vectors side by side, real
// and imaginary parts apart, so that each step is a loop without branches over them. Nothing is scaled: `size` tells
// which vectors have left the range.
#pragma once
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/nonsymmetric/reorder.hpp"

namespace nxl {

/// A complex number, as loops take it.
struct Parts {
    double re, im;

    double size() const { return std::fabs(re) + std::fabs(im); }
    Parts operator-(const Parts& y) const { return {re - y.re, im - y.im}; }
    Parts operator*(const Parts& y) const { return {re * y.re - im * y.im, re * y.im + im * y.re}; }
    Parts operator*(double y) const { return {re * y, im * y}; }
    /// Squares of the divisor would overflow: it is taken as a number about 1 and its size.
    Parts operator/(const Parts& y) const {
        const double a = std::fabs(y.re), b = std::fabs(y.im), largest = a > b ? a : b;
        const double inverse = 1.0 / largest, p = y.re * inverse, q = y.im * inverse;
        const double rest = 1.0 / (p * p + q * q);
        return {(re * p + im * q) * rest * inverse, (im * p - re * q) * rest * inverse};
    }
    Parts or_if(bool condition, const Parts& other) const {
        return {condition ? other.re : re, condition ? other.im : im};
    }
    Parts at_least(double least) const { return or_if(size() < least, {least, 0.0}); }
};
inline double parts_of(double x) { return x; } // a real factor stays one
inline Parts parts_of(const zcomplex& x) { return {x.real(), x.imag()}; }
inline Parts less_shift(double x, const Parts& shift) { return {x - shift.re, -shift.im}; }
inline Parts less_shift(const zcomplex& x, const Parts& shift) { return parts_of(x) - shift; }

/// [p above; below q] (first, second) = what they hold, by elimination with a choice of the larger pivot. Pivots below
/// `least` are taken to be that; answers the smaller one.
[[gnu::always_inline]] inline double solve_pair(const Parts& p, const Parts& above, const Parts& below, const Parts& q,
                                                double least, Parts& first, Parts& second) {
    const bool swap = p.size() < below.size();
    const Parts pivot = p.or_if(swap, below), safe_pivot = pivot.at_least(least), beside = above.or_if(swap, q);
    const Parts factor = below.or_if(swap, p) / safe_pivot;
    const Parts right = first.or_if(swap, second), other = second.or_if(swap, first);
    const Parts rest = q.or_if(swap, above) - factor * beside;
    second = (other - factor * right) / rest.at_least(least);
    first = (right - beside * second) / safe_pivot;
    return pivot.size() < rest.size() ? pivot.size() : rest.size();
}

struct Lanes {
    static constexpr i64 most = 98;
    double re[most], im[most];

    Parts operator[](i64 v) const { return {re[v], im[v]}; }
    void set(i64 v, const Parts& x) {
        re[v] = x.re;
        im[v] = x.im;
    }
};

struct Shifts {
    Lanes values;
    double least[Lanes::most]; // pivots
    i64 count = 0;

    void add(const Parts& value, double least_pivot) {
        values.set(count, value);
        least[count++] = least_pivot;
    }
};

template <class T> class ShiftedRows {
  public:
    static constexpr i64 usual_rows = 8; // one more where that would cut a block

  private:
    const Matrix<const T> t_;
    const Shifts& shifts_;
    Lanes x_[usual_rows + 1];

    void solve_one(i64 i) {
        const T diagonal = t_(i, i);
        for (i64 v = 0; v < shifts_.count; ++v)
            x_[i].set(v, x_[i][v] / less_shift(diagonal, shifts_.values[v]).at_least(shifts_.least[v]));
    }
    void solve_two(i64 i) {
        const T a = t_(i, i), b = t_(i, i + 1), c = t_(i + 1, i), d = t_(i + 1, i + 1);
        const Parts above = less_shift(b, {}), below = less_shift(c, {});
        for (i64 v = 0; v < shifts_.count; ++v) {
            const Parts shift = shifts_.values[v];
            Parts first = x_[i][v], second = x_[i + 1][v];
            solve_pair(less_shift(a, shift), above, below, less_shift(d, shift), shifts_.least[v], first, second);
            x_[i].set(v, first);
            x_[i + 1].set(v, second);
        }
    }
    void take_off(i64 row, i64 i) {
        const auto factor = parts_of(t_(row, i));
        for (i64 v = 0; v < shifts_.count; ++v) x_[row].set(v, x_[row][v] - x_[i][v] * factor);
    }

  public:
    /// t: of at most usual_rows + 1 rows.
    ShiftedRows(const Matrix<const T>& t, const Shifts& shifts) : t_(t), shifts_(shifts) {}
    Lanes& operator[](i64 row) { return x_[row]; }

    /// x := what solves the rows for b, which it holds. start(i, size) is called when rows i .. i + size - 1 are done
    /// and those before them have still to come.
    template <class Start> void solve(const Start& start) {
        for (i64 i = t_.rows; i > 0;) {
            const i64 size = order_of_block_before(t_, i);
            i -= size;
            if (size == 1) solve_one(i);
            else solve_two(i);
            start(i, size);
            for (i64 k = i; k < i + size; ++k)
                for (i64 row = 0; row < i; ++row) take_off(row, k);
        }
    }
    /// The sum of a vector's elements, which NaN and infinity do not leave.
    double size(i64 v) const {
        double sum = 0.0;
        for (i64 i = 0; i < t_.rows; ++i) sum += x_[i][v].size();
        return sum;
    }
};

} // namespace nxl
