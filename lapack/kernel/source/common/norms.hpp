// Norms of matrices of every storage, by the published letters: M the largest modulus, 1 or O the largest sum of moduli
// in a column, I that in a row, F or E the root of the sum of squares. A NaN anywhere in a matrix makes them NaN, and
// they are infinite only where the norm itself is. On no kernels: libnxl_gnu.so has them as dlange_ and its relatives.
#pragma once
#include "lapack/kernel/source/common/columns.hpp"
#include "lapack/kernel/source/common/length.hpp"
#include "service/scalars.hpp"

namespace nxl {

/// The largest of some numbers that are not negative. A NaN wins and stays.
class Largest {
    double value_ = 0.0;

  public:
    void take(double x) {
        if (!(x <= value_) && !std::isnan(value_)) value_ = x;
    }
    /// Of a complex number the modulus is found only where it may be larger.
    template <class T> void take_modulus(const T& x) {
        if (!(abs1(x) <= value_)) take(length_of(x));
    }
    double value() const { return value_; }
};

/// The sum of squares in three parts, of numbers that are small, ordinary and large: Blue, ACM Trans. Math. Software 4
/// (1978); Anderson, ACM Trans. Math. Software 44 (2017), algorithm 978.
class SumOfSquares {
    static constexpr double small = 0x1p-511, large = 0x1p486, up = 0x1p537, down = 0x1p-538;
    double of_small_ = 0.0, ordinary_ = 0.0, of_large_ = 0.0; // scaled by the squares of up, 1 and down

    /// In four chains, without a look at the range.
    static double plain_sum(i64 n, const double* x) {
        double sums[4] = {};
        i64 i = 0;
        for (; i + 4 <= n; i += 4)
            for (i64 k = 0; k < 4; ++k) sums[k] += x[i + k] * x[i + k];
        for (; i < n; ++i) sums[0] += x[i] * x[i];
        return (sums[0] + sums[1]) + (sums[2] + sums[3]);
    }

  public:
    void add(double x) {
        const double size = std::fabs(x);
        if (size > large) of_large_ += (size * down) * (size * down);
        else if (size < small) of_small_ += (size * up) * (size * up);
        else ordinary_ += size * size;
    }
    void add(i64 n, const double* x) {
        constexpr double least = 0x1p-900, most = 0x1p960; // of sums that neither lost much nor will overflow together
        if (const double sum = plain_sum(n, x); sum > least && sum < most) ordinary_ += sum;
        else
            for (i64 i = 0; i < n; ++i) add(x[i]);
    }
    void add(i64 n, const zcomplex* z) { add(2 * n, reinterpret_cast<const double*>(z)); }
    void add_ones(i64 n) { ordinary_ += static_cast<double>(n); }
    void count_twice() {
        for (double* part : {&of_small_, &ordinary_, &of_large_}) *part *= 2.0;
    }
    double root() const {
        if (of_large_ > 0.0) return std::sqrt(of_large_ + (ordinary_ * down) * down) / down;
        return std::hypot(std::sqrt(ordinary_), std::sqrt(of_small_) / up);
    }
};

/// The sum of moduli in eight chains: long columns take no longer than their memory.
template <class T> double sum_of_moduli(i64 n, const T* x) {
    constexpr i64 chains = 8;
    double sums[chains] = {}, sum = 0.0;
    i64 i = 0;
    for (; i + chains <= n; i += chains)
        for (i64 k = 0; k < chains; ++k) sums[k] += length_of(x[i + k]);
    for (; i < n; ++i) sum += length_of(x[i]);
    for (const double part : sums) sum += part;
    return sum;
}

/// Of a general, triangular or band matrix. With `diag` U, for a triangle, its diagonal counts as ones.
/// `row_sums`: a.a.rows elements, for I alone.
template <class T> double matrix_norm(char norm, const Columns<const T>& a, char diag, double* row_sums) {
    const bool unit = diag == 'U';
    const i64 ones = unit ? a.a.steps() : 0;
    const Columns<const T> stored = unit ? a.off_diagonal() : a;
    const auto each_column = [&](const auto& body) {
        for (i64 j = 0; j < stored.a.columns; ++j) body(j, stored.count(j), stored.start(j));
    };
    Largest largest;
    SumOfSquares squares;
    switch (norm) {
    case 'F':
    case 'E':
        squares.add_ones(ones);
        each_column([&](i64, i64 count, const T* x) { squares.add(count, x); });
        return squares.root();
    case 'M':
        if (ones > 0) largest.take(1.0);
        each_column([&](i64, i64 count, const T* x) {
            for (i64 i = 0; i < count; ++i) largest.take_modulus(x[i]);
        });
        return largest.value();
    case 'I':
        for (i64 i = 0; i < stored.a.rows; ++i) row_sums[i] = i < ones ? 1.0 : 0.0;
        each_column([&](i64 j, i64 count, const T* x) {
            for (i64 i = 0; i < count; ++i) row_sums[stored.first(j) + i] += length_of(x[i]);
        });
        for (i64 i = 0; i < stored.a.rows && stored.a.columns > 0; ++i) largest.take(row_sums[i]);
        return largest.value();
    default:
        each_column(
            [&](i64 j, i64 count, const T* x) { largest.take((j < ones ? 1.0 : 0.0) + sum_of_moduli(count, x)); });
        return largest.value();
    }
}
template <class T> double largest_modulus(const Matrix<const T>& a) {
    return matrix_norm('M', all_of(a), 'N', nullptr);
}

/// Of a symmetric or Hermitian matrix, full or of a band, of which `triangle` is stored. Of a Hermitian diagonal the
/// real part counts. `sums`: as many elements as the order, for 1, O and I, which are the same.
template <class T>
double symmetric_norm(char norm, const Columns<const T>& triangle, bool hermitian, double* sums) {
    const Columns<const T> off = triangle.off_diagonal();
    const i64 n = off.a.rows;
    const auto diagonal = [&](i64 j) { return hermitian ? std::fabs(std::real(off.a(j, j))) : length_of(off.a(j, j)); };
    if (norm == 'F' || norm == 'E') {
        SumOfSquares squares;
        for (i64 j = 0; j < n; ++j) squares.add(off.count(j), off.start(j));
        squares.count_twice();
        for (i64 j = 0; j < n; ++j) squares.add(diagonal(j));
        return squares.root();
    }
    Largest largest;
    if (norm == 'M') {
        largest.take(matrix_norm('M', off, 'N', nullptr));
        for (i64 j = 0; j < n; ++j) largest.take(diagonal(j));
        return largest.value();
    }
    std::fill_n(sums, n, 0.0);
    for (i64 j = 0; j < n; ++j) {
        const T* const x = off.start(j);
        double own = diagonal(j);
        for (i64 i = 0; i < off.count(j); ++i) {
            const double size = length_of(x[i]);
            own += size;
            sums[off.first(j) + i] += size;
        }
        sums[j] += own;
    }
    for (i64 j = 0; j < n; ++j) largest.take(sums[j]);
    return largest.value();
}

} // namespace nxl
