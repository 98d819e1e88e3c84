// Right eigenvectors by back substitution, many at a time, recursive over halves of the rows of T: each vector has its
// own equations on the diagonal, T - lambda I, and all have the product with what is above in common.
//
//     t t t x x      X := what solves the second half of the rows for each lambda, starting from its own row
//       t t x x      first half := first half - T X
//         t x x
//           x x      A pair of conjugate eigenvalues has the real and imaginary parts of its vector.
//             x
//
// X is kept by rows, so that a few rows are solved for all vectors at once, side by side in the lanes of a kernel. That
// does not look out for overflow: a vector that has left its room is solved once more in these rows, with scaling.
// Left vectors are the right ones of T^H with its rows and columns in reverse, which is upper triangular again.
// Golub and Van Loan, Matrix Computations, 4th ed., section 7.6.
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/nonsymmetric/reorder.hpp"
#include "lapack/kernel/source/nonsymmetric/small_sylvester.hpp"
#include "lapack/kernel/source/nonsymmetric/standard_block.hpp"
#include "lapack/kernel/source/nonsymmetric/trevc.hpp"
#include "service/kernel_slot.hpp"
#include "service/scratch.hpp"
#include "service/slice.hpp"
#include "service/workspace.hpp"
#include <algorithm>

namespace nxl {
namespace {

constexpr i64 at_once = 96; // vectors of a batch; one more where that would cut a pair
constexpr i64 row_length = round_up(at_once + 1, 8);

/// The eigenvalue of the block of order `size` at row k, as a block [wr wi; -wi wr] for which T x = x block.
template <class T> struct WantedVector {
    i64 k, size, place; // among those of the batch that are delivered
    i64 lane;           // in X; the one of the imaginary part comes as many behind it as there are pairs
    T value[4];
    double least; // pivot

    WantedVector() = default;
    WantedVector(const Matrix<const T>& t, i64 row, i64 order, i64 at, i64 row_of_x, double sign)
        : k(row),
          size(order),
          place(at),
          lane(row_of_x),
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

/// A column of X has what is in one row of T: the real parts of pairs, their imaginary parts, and the vectors of one
/// number each.
template <class T> class VectorBatch {
    const Matrix<const T>& t_;
    const double room_; // for elements, so that products with T do not overflow
    const Matrix<T> x_;
    WantedVector<T> wanted_[at_once + 1]; // pairs first
    double re_[at_once + 1], im_[at_once + 1], least_[at_once + 1], start_[at_once + 1], sizes_[at_once + 1];
    i64 count_ = 0, pairs_ = 0;

    /// The vector's part j, 0 or 1, from row i on: elements are x_.ld apart.
    T* part(const WantedVector<T>& v, i64 j, i64 i) const { return x_.at(v.lane + j * pairs_, i); }
    void scale(const WantedVector<T>& v, double factor) const {
        for (i64 j = 0; j < v.size; ++j) scal(v.k + v.size, factor, part(v, j, 0), x_.ld);
    }
    /// Rows first .. i - 1 of the vector, less the product with its rows i .. i + size - 1.
    void take_off(const WantedVector<T>& v, i64 first, i64 i, i64 size) const {
        for (i64 j = 0; j < v.size; ++j)
            for (i64 k = i; k < i + size; ++k)
                axpy(i - first, -*part(v, j, k), t_.at(first, k), 1, part(v, j, first), x_.ld);
    }
    void start(const WantedVector<T>& v) const {
        *part(v, 0, v.k) = T(1.0);
        if (v.size == 1) return;
        const T above = t_(v.k, v.k + 1), below = t_(v.k + 1, v.k);
        if (abs1(above) >= abs1(below)) *part(v, 1, v.k + 1) = v.imaginary() / above;
        else {
            *part(v, 0, v.k) = T{};
            *part(v, 0, v.k + 1) = T(1.0);
            *part(v, 1, v.k) = v.imaginary() / below;
        }
    }
    void solve_block(const WantedVector<T>& v, i64 i, i64 size) const {
        T right[4];
        for (i64 j = 0; j < v.size; ++j)
            for (i64 l = 0; l < size; ++l) right[l + j * size] = *part(v, j, i + l);
        const auto found =
            solve_small_sylvester<T>(false, false, -1.0, t_.block(i, i, size, size), v.block(), right, v.least);
        const double largest = largest_abs1(size * v.size, found.x);
        const double factor = largest > room_ ? room_ / largest : 1.0;
        if (found.scale * factor != 1.0) scale(v, found.scale * factor);
        for (i64 j = 0; j < v.size; ++j)
            for (i64 l = 0; l < size; ++l) *part(v, j, i + l) = found.x[l + j * size] * factor;
    }
    /// Block by block, with the vector scaled wherever it would overflow.
    void solve_carefully(const WantedVector<T>& v, i64 first, i64 end) const {
        i64 i = end;
        if (v.k < end) {
            i = v.k;
            start(v);
            if (i > first) take_off(v, first, i, v.size);
        }
        while (i > first) {
            const i64 size = order_of_block_before(t_, i);
            i -= size;
            solve_block(v, i, size);
            take_off(v, first, i, size);
        }
    }

    /// The vectors from `from` on, in rows that are not cut any more. `real`: with their shifts, too.
    void solve_lanes(i64 first, i64 end, i64 from, i64 count, bool real) {
        if (count == 0) return;
        const ShiftedLanes lanes{count,         re_ + from,    real ? nullptr : im_ + from,
                                 least_ + from, start_ + from, sizes_ + from};
        T* const x = part(wanted_[from], 0, first);
        if (slot_of<T, &KernelTable::dshifted_rows, &KernelTable::zshifted_rows>()(
                end - first, t_.at(first, first), t_.ld, first, lanes, room_, x, x_.ld))
            return;
        for (i64 v = from; v < from + count; ++v)
            if (!(sizes_[v] <= room_)) solve_carefully(wanted_[v], first, end);
    }
    void solve_rows(i64 first, i64 end) {
        if (end - first <= shifted_rows + 1) {
            solve_lanes(first, end, 0, pairs_, false);
            solve_lanes(first, end, pairs_, count_ - pairs_, !is_complex_scalar<T>);
            return;
        }
        const i64 half = first + std::max(round_down((end - first) / 2, shifted_rows), shifted_rows);
        const i64 middle = continues_block(t_, half) ? half + 1 : half;
        solve_rows(middle, end);
        gemm('N', 'T', -1.0, x_.block(0, middle, columns(), end - middle),
             t_.block(first, middle, middle - first, end - middle), 1.0, x_.block(0, first, columns(), middle - first));
        solve_rows(first, middle);
    }

  public:
    VectorBatch(const Matrix<const T>& t, double room, const Matrix<T>& x) : t_(t), room_(room), x_(x) {}

    /// Pairs come before all others.
    void add(i64 k, i64 size, i64 place, double sign) {
        const WantedVector<T> added(t_, k, size, place, size == 2 ? count_ : count_ + pairs_, sign);
        wanted_[count_] = added;
        re_[count_] = std::real(added.value[0]);
        im_[count_] = added.imaginary();
        least_[count_] = added.least;
        start_[count_] = static_cast<double>(k);
        count_ += 1;
        if (size == 2) pairs_ += 1;
    }
    i64 columns() const { return count_ + pairs_; }

    /// Rows 0 .. end - 1 of the vectors.
    void solve(i64 end) {
        std::fill_n(x_.data, x_.ld * x_.columns, T{});
        for (i64 v = 0; v < count_; ++v) start(wanted_[v]);
        solve_rows(0, end);
    }
    /// take(vector, place), of the columns of X^T, or of a product with it.
    template <class Take> void for_each_vector(const Matrix<T>& columns_of_x, const Take& take) const {
        for (i64 v = 0; v < count_; ++v) {
            T* const first = columns_of_x.at(0, wanted_[v].lane);
            take(Matrix<const T>{first, columns_of_x.rows, wanted_[v].size, pairs_ * columns_of_x.ld},
                 wanted_[v].place);
        }
    }
};

/// Columns of `to`, two of them one vector of a pair, with a largest element of 1.
template <class T> void copy_with_largest_one(const Operand<T>& from, const Matrix<T>& to) {
    constexpr i64 chains = 8; // so that one comparison need not wait for another
    double sizes[chains] = {};
    const auto look_at = [&](i64 i, i64 count) {
        for (i64 c = 0; c < count; ++c) {
            const double size = abs1(from(i + c, 0)) + (from.columns == 2 ? abs1(from(i + c, 1)) : 0.0);
            sizes[c] = size > sizes[c] ? size : sizes[c];
        }
    };
    const i64 whole = round_down(from.rows, chains);
    for (i64 i = 0; i < whole; i += chains) look_at(i, chains);
    look_at(whole, from.rows - whole);
    const double largest = *std::max_element(sizes, sizes + chains);
    const double factor = largest >= safe_minimum ? 1.0 / largest : 1.0;
    for (i64 j = 0; j < from.columns; ++j)
        std::transform(from.at(0, j), from.at(0, j) + from.rows, to.at(0, j), [&](const T& x) { return x * factor; });
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
        for (const i64 order : {2, 1}) {
            i64 place = 0;
            for (i64 k = left_ ? end : first; left_ ? k > first : k < end;) {
                const i64 size = left_ ? order_of_block_before(t_, k) : order_of_block(t_, k);
                if (left_) k -= size;
                const bool wanted = is_wanted(k, size);
                if (wanted && size == order) batch.add(k, size, place, left_ ? -1.0 : 1.0);
                if (wanted) place += size;
                if (!left_) k += size;
            }
        }
    }
    /// Columns of v for the vectors in x, whose elements from `end` on are zero.
    void deliver(const VectorBatch<T>& batch, const Matrix<T>& x, i64 end) {
        const i64 n = t_.rows, columns = batch.columns(), at = left_ ? free_ : free_ - columns;
        for (i64 i = 0; i < n / 2 && left_; ++i) std::swap_ranges(x.at(0, i), x.at(columns, i), x.at(0, n - 1 - i));
        const Matrix<T> made{product_, n, columns, n};
        const i64 start = left_ ? n - end : 0;
        if (transform_) gemm('N', 'T', 1.0, v_.columns_from(start, end), x.block(0, start, columns, end), 0.0, made);
        else
            for (i64 j = 0; j < columns; ++j)
                for (i64 i = 0; i < n; ++i) made(i, j) = x(j, i);
        batch.for_each_vector(made, [&](const Operand<T>& vector, i64 place) {
            copy_with_largest_one(vector, v_.columns_from(at + place, vector.columns));
        });
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
          product_(memory + t.rows * row_length),
          free_(left ? 0 : v.columns) {}

    void run() {
        const double limit = room();
        const Matrix<T> x{x_, row_length, t_.rows, row_length};
        for (i64 end = t_.rows, first = 0; end > 0; end = first) {
            first = start_of_rows(t_, end);
            VectorBatch<T> batch(t_, limit, x);
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
    const Scratch<T> memory(n * (row_length + at_once + 1 + (left ? n : 0)));
    if (!memory.data()) return false;
    Matrix<const T> form = t;
    if (left) {
        const Matrix<T> reversed{memory.data() + n * (row_length + at_once + 1), n, n, n};
        copy_reversed_adjoint(t, reversed);
        form = reversed;
    }
    VectorSearch<T>(left, transform, select, form, v, memory.data()).run();
    return true;
}
template bool find_schur_vectors(bool, const Matrix<const double>&, const i64*, bool, const Matrix<double>&);
template bool find_schur_vectors(bool, const Matrix<const zcomplex>&, const i64*, bool, const Matrix<zcomplex>&);

} // namespace nxl
