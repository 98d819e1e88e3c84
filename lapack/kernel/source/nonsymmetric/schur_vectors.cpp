// Right eigenvectors by back substitution, many at a time, recursive over halves of the rows of T: each vector has its
// own equations on the diagonal, T - lambda I, and all have the product with what is above in common.
//
//     t t t x x      X := what solves the second half of the rows for each lambda, starting from its own row
//       t t x x      first half := first half - T X
//         t x x
//           x x      A pair of conjugate eigenvalues has the real and imaginary parts of its vector in two columns.
//             x
//
// Left vectors are the right ones of T^H with its rows and columns in reverse, which is upper triangular again.
// Golub and Van Loan, Matrix Computations, 4th ed., section 7.6.
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/nonsymmetric/reorder.hpp"
#include "lapack/kernel/source/nonsymmetric/shifted_rows.hpp"
#include "lapack/kernel/source/nonsymmetric/small_sylvester.hpp"
#include "lapack/kernel/source/nonsymmetric/standard_block.hpp"
#include "lapack/kernel/source/nonsymmetric/trevc.hpp"
#include "service/scratch.hpp"
#include "service/workspace.hpp"
#include <algorithm>

namespace nxl {
namespace {

constexpr i64 at_once = 96; // vectors of a batch; one more where that would cut a pair

/// The eigenvalue of the block of order `size` at row k, as a block [wr wi; -wi wr] for which T x = x block.
template <class T> struct WantedVector {
    i64 k, size, column;
    T value[4];
    double least; // pivot

    WantedVector() = default;
    WantedVector(const Matrix<const T>& t, i64 row, i64 order, i64 place, double sign)
        : k(row),
          size(order),
          column(place),
          value{t(row, row)} {
        double imaginary = 0.0;
        if (size == 2) {
            const Eigenpair both =
                eigenvalues_of_standard(Block2<T>{t(k, k), t(k, k + 1), t(k + 1, k), t(k + 1, k + 1)});
            imaginary = sign * both.first.imag();
            value[1] = -imaginary;
            value[2] = imaginary;
            value[3] = value[0];
        }
        const double tiny = safe_minimum * (static_cast<double>(t.rows) / (2.0 * unit_roundoff));
        least = std::max(2.0 * unit_roundoff * (abs1(value[0]) + std::fabs(imaginary)), tiny);
    }
    Matrix<const T> block() const { return {value, size, size, size}; }
    double imaginary() const { return size == 2 ? std::real(value[2]) : std::imag(value[0]); }
};

/// The rows that a batch is of, whose end is `end`.
template <class T> i64 start_of_rows(const Matrix<const T>& t, i64 end) {
    const i64 start = std::max(end - at_once, i64{0});
    return continues_block(t, start) ? start - 1 : start;
}

static_assert(at_once < Lanes::most);

template <class T> class VectorBatch {
    const Matrix<const T>& t_;
    const double room_; // for elements, so that products with T do not overflow
    const Matrix<T> x_;
    const i64 first_; // row of a wanted eigenvalue
    WantedVector<T> wanted_[at_once + 1];
    Shifts shifts_;
    i64 count_ = 0, columns_ = 0;

    T* column(const WantedVector<T>& v) const { return x_.at(0, v.column); }
    void scale(const WantedVector<T>& v, double factor) const {
        for (i64 j = 0; j < v.size; ++j) scal(v.k + v.size, factor, column(v) + j * x_.ld, 1);
    }
    /// Rows first .. i - 1 of the vector, less the product with its rows i .. i + size - 1.
    void take_off(const WantedVector<T>& v, i64 first, i64 i, i64 size) const {
        for (i64 j = 0; j < v.size; ++j) {
            T* const x = column(v) + j * x_.ld;
            for (i64 k = i; k < i + size; ++k) {
                const T factor = x[k];
                const T* const of_t = t_.at(0, k);
                for (i64 row = first; row < i; ++row) x[row] -= of_t[row] * factor;
            }
        }
    }
    void start(const WantedVector<T>& v) const {
        T* const x = column(v) + v.k;
        x[0] = T(1.0);
        if (v.size == 1) return;
        const T above = t_(v.k, v.k + 1), below = t_(v.k + 1, v.k);
        T* const imaginary = x + x_.ld;
        if (abs1(above) >= abs1(below)) imaginary[1] = v.imaginary() / above;
        else {
            x[0] = T{};
            x[1] = T(1.0);
            imaginary[0] = v.imaginary() / below;
        }
    }
    void solve_block(const WantedVector<T>& v, i64 i, i64 size) const {
        T right[4];
        T* const x = column(v) + i;
        for (i64 j = 0; j < v.size; ++j) std::copy_n(x + j * x_.ld, size, right + j * size);
        const auto found =
            solve_small_sylvester<T>(false, false, -1.0, t_.block(i, i, size, size), v.block(), right, v.least);
        const double largest = largest_abs1(size * v.size, found.x);
        const double factor = largest > room_ ? room_ / largest : 1.0;
        if (found.scale * factor != 1.0) scale(v, found.scale * factor);
        for (i64 j = 0; j < v.size; ++j)
            for (i64 l = 0; l < size; ++l) x[l + j * x_.ld] = found.x[l + j * size] * factor;
    }
    /// Block by block, with the vector scaled wherever it would overflow.
    void solve_carefully(const WantedVector<T>& v, i64 first, i64 end) const {
        i64 i = end;
        if (v.k < end) {
            i = v.k;
            start(v);
            take_off(v, first, i, v.size);
        }
        while (i > first) {
            const i64 size = order_of_block_before(t_, i);
            i -= size;
            solve_block(v, i, size);
            take_off(v, first, i, size);
        }
    }

    Parts element(const WantedVector<T>& v, i64 i) const {
        const T* const x = column(v) + i;
        return {std::real(x[0]), v.size == 2 ? std::real(x[x_.ld]) : std::imag(x[0])};
    }
    void set_element(const WantedVector<T>& v, i64 i, const Parts& value) const {
        T* const x = column(v) + i;
        if constexpr (is_complex_scalar<T>) *x = {value.re, value.im};
        else {
            *x = value.re;
            if (v.size == 2) x[x_.ld] = value.im;
        }
    }
    void solve_few_rows(i64 first, i64 end) const {
        ShiftedRows<T> rows(t_.block(first, first, end - first, end - first), shifts_);
        for (i64 v = 0; v < count_; ++v)
            for (i64 i = first; i < end; ++i) rows[i - first].set(v, element(wanted_[v], i));
        rows.solve([&](i64 row, i64 size) {
            for (i64 v = 0; v < count_ && first + row >= first_; ++v) {
                if (wanted_[v].k != first + row) continue;
                start(wanted_[v]);
                for (i64 i = row; i < row + size; ++i) rows[i].set(v, element(wanted_[v], first + i));
            }
        });
        for (i64 v = 0; v < count_; ++v)
            if (!(rows.size(v) <= room_)) solve_carefully(wanted_[v], first, end);
            else
                for (i64 i = first; i < end; ++i) set_element(wanted_[v], i, rows[i - first][v]);
    }
    void solve_rows(i64 first, i64 end) const {
        if (end - first <= ShiftedRows<T>::usual_rows + 1) return solve_few_rows(first, end);
        constexpr i64 few = ShiftedRows<T>::usual_rows;
        const i64 half = first + std::max(round_down((end - first) / 2, few), few);
        const i64 middle = continues_block(t_, half) ? half + 1 : half;
        solve_rows(middle, end);
        gemm('N', 'N', -1.0, t_.block(first, middle, middle - first, end - middle),
             x_.block(middle, 0, end - middle, columns_), 1.0, x_.block(first, 0, middle - first, columns_));
        solve_rows(first, middle);
    }

  public:
    VectorBatch(const Matrix<const T>& t, double room, const Matrix<T>& x, i64 first)
        : t_(t),
          room_(room),
          x_(x),
          first_(first) {}

    void add(i64 k, i64 size, double sign) {
        wanted_[count_++] = WantedVector<T>(t_, k, size, columns_, sign);
        columns_ += size;
        const WantedVector<T>& added = wanted_[count_ - 1];
        shifts_.add({std::real(added.value[0]), added.imaginary()}, added.least);
    }
    i64 columns() const { return columns_; }
    bool is_pair(i64 place) const {
        for (i64 i = 0; i < count_; ++i)
            if (wanted_[i].column == place) return wanted_[i].size == 2;
        return false;
    }

    /// Rows 0 .. end - 1 of the vectors.
    void solve(i64 end) const {
        for (i64 j = 0; j < columns_; ++j) std::fill_n(x_.at(0, j), x_.rows, T{});
        solve_rows(0, end);
    }
};

/// Columns of `to`, two of them one vector of a pair, with a largest element of 1.
template <class T> void copy_with_largest_one(const Operand<T>& from, const Matrix<T>& to) {
    double largest = 0.0;
    for (i64 i = 0; i < from.rows; ++i)
        largest = std::max(largest, abs1(from(i, 0)) + (from.columns == 2 ? abs1(from(i, 1)) : 0.0));
    const double factor = largest >= safe_minimum ? 1.0 / largest : 1.0;
    for (i64 j = 0; j < from.columns; ++j)
        std::transform(from.at(0, j), from.at(0, j) + from.rows, to.at(0, j), [&](const T& x) { return x * factor; });
}

template <class T> void copy_reversed_adjoint(const Matrix<const T>& t, const Matrix<T>& to) {
    const i64 n = t.rows;
    for (i64 j = 0; j < n; ++j)
        for (i64 i = 0; i < std::min(j + 2, n); ++i) to(i, j) = conj_if<true>(t(n - 1 - j, n - 1 - i));
}

/// Batch by batch, into the columns that are still free at the end of v (right vectors), or at its start.
template <class T> class VectorSearch {
    const bool left_, transform_;
    const i64* const select_;
    const Matrix<const T> t_;
    const Matrix<T>& v_;
    T *const x_, *const product_;
    i64 free_; // the first column behind, or before which, all are done

    double room() const {
        double size = 1.0;
        for (i64 j = 0; j < t_.columns; ++j) size = std::max(size, largest_abs1(rows_of_column(t_, j), t_.at(0, j)));
        return 1.0 / safe_minimum / (8.0 * static_cast<double>(t_.rows)) / size;
    }
    bool is_wanted(i64 k, i64 size) const {
        const i64 own = left_ ? t_.rows - k - size : k;
        return !select_ || select_[own] != 0 || select_[own + size - 1] != 0;
    }
    void fill(VectorBatch<T>& batch, i64 first, i64 end) const {
        i64 k = left_ ? end : first;
        while (left_ ? k > first : k < end) {
            const i64 size = left_ ? order_of_block_before(t_, k) : order_of_block(t_, k);
            if (left_) k -= size;
            if (is_wanted(k, size)) batch.add(k, size, left_ ? -1.0 : 1.0);
            if (!left_) k += size;
        }
    }
    /// Columns of v for the vectors in x, whose rows from `end` on are zero.
    void deliver(const VectorBatch<T>& batch, const Matrix<T>& x, i64 end) {
        const i64 n = t_.rows, columns = batch.columns(), at = left_ ? free_ : free_ - columns;
        for (i64 j = 0; j < columns && left_; ++j) std::reverse(x.at(0, j), x.at(0, j) + n);
        const Matrix<T> made{transform_ ? product_ : x.data, n, columns, n};
        const i64 start = left_ ? n - end : 0;
        if (transform_) gemm('N', 'N', 1.0, v_.columns_from(start, end), x.block(start, 0, end, columns), 0.0, made);
        for (i64 j = 0, size = 0; j < columns; j += size) {
            size = batch.is_pair(j) ? 2 : 1;
            copy_with_largest_one(made.columns_from(j, size), v_.columns_from(at + j, size));
        }
        free_ = left_ ? free_ + columns : at;
    }

  public:
    VectorSearch(bool left, bool transform, const i64* select, const Matrix<const T>& t, const Matrix<T>& v, T* memory)
        : left_(left),
          transform_(transform),
          select_(select),
          t_(t),
          v_(v),
          x_(memory),
          product_(memory + t.rows * (at_once + 1)),
          free_(left ? 0 : v.columns) {}

    void run() {
        const double limit = room();
        const Matrix<T> x{x_, t_.rows, at_once + 1, t_.rows};
        for (i64 end = t_.rows, first = 0; end > 0; end = first) {
            first = start_of_rows(t_, end);
            VectorBatch<T> batch(t_, limit, x, first);
            fill(batch, first, end);
            if (batch.columns() == 0) continue;
            batch.solve(end);
            deliver(batch, x, end);
        }
    }
};

} // namespace

template <class T>
bool find_schur_vectors(bool left, const Matrix<const T>& t, const i64* select, bool transform, const Matrix<T>& v) {
    const i64 n = t.rows;
    const Scratch<T> memory(n * (2 * (at_once + 1) + (left ? n : 0)));
    if (!memory.data()) return false;
    Matrix<const T> form = t;
    if (left) {
        const Matrix<T> reversed{memory.data() + 2 * n * (at_once + 1), n, n, n};
        copy_reversed_adjoint(t, reversed);
        form = reversed;
    }
    VectorSearch<T>(left, transform, select, form, v, memory.data()).run();
    return true;
}
template bool find_schur_vectors(bool, const Matrix<const double>&, const i64*, bool, const Matrix<double>&);
template bool find_schur_vectors(bool, const Matrix<const zcomplex>&, const i64*, bool, const Matrix<zcomplex>&);

} // namespace nxl
