// Double-shift QR steps, one after the other, for matrices and windows that are too small for chains of bulges.
// Francis, Computer J. 4 (1961, 1962); Golub and Van Loan, Matrix Computations, 4th ed., section 7.5. A complex matrix
// takes two shifts at a time as well.
#include "lapack/kernel/source/nonsymmetric/schur.hpp"
#include "lapack/kernel/source/nonsymmetric/small_reflector.hpp"

namespace nxl {

template <class T> bool SchurIteration<T>::is_negligible(i64 k, i64 first, i64 end) const {
    const double tiny = safe_minimum * (static_cast<double>(end - first) / (2.0 * unit_roundoff));
    const double below = abs1(h(k, k - 1));
    if (below <= tiny) return true;
    double diagonal = abs1(h(k - 1, k - 1)) + abs1(h(k, k));
    if (diagonal == 0.0) {
        if (k - 2 >= first) diagonal += abs1(h(k - 1, k - 2));
        if (k + 1 < end) diagonal += abs1(h(k + 1, k));
    }
    if (!(below <= 2.0 * unit_roundoff * diagonal)) return false;
    const double above = abs1(h(k - 1, k)), difference = abs1(h(k - 1, k - 1) - h(k, k)), own = abs1(h(k, k));
    const double larger_off = std::max(below, above), smaller_off = std::min(below, above);
    const double larger = std::max(own, difference), smaller = std::min(own, difference), sum = larger + larger_off;
    return smaller_off * (larger_off / sum) <= std::max(tiny, 2.0 * unit_roundoff * (smaller * (larger / sum)));
}

template <class T> i64 SchurIteration<T>::start_of_block(i64 first, i64 end) const {
    i64 k = end - 1;
    while (k > first && !is_negligible(k, first, end)) --k;
    if (k > first) h(k, k - 1) = T{};
    return k;
}

template <class T> void SchurIteration<T>::finish_two(i64 first) const {
    Block2<T> block{h(first, first), h(first, first + 1), h(first + 1, first), h(first + 1, first + 1)};
    const PlaneTurn<T> turn = make_standard(block);
    const i64 next = first + 2, top = start_of_rows(first);
    h(first, first) = block.a;
    h(first, first + 1) = block.b;
    h(first + 1, first) = block.c;
    h(first + 1, first + 1) = block.d;
    const Eigenpair values = eigenvalues_of_standard(block);
    w[first] = values.first;
    w[first + 1] = values.second;
    if (whole_form) {
        if (next < h.columns) turn.turn_rows(h.columns - next, h.at(first, next), h.ld);
        turn.turn_columns(first - top, h.at(top, first), h.ld);
    }
    if (z.rows > 0) turn.turn_columns(z.rows, z.at(0, first), z.ld);
}

template <class T> void start_bulge(const Operand<T>& h, i64 rows, const Eigenpair& shifts, T* v) {
    const zcomplex near = h(0, 0) - shifts.first, other = h(0, 0) - shifts.second;
    const double scale = abs1(near) + abs1(h(1, 0)) + (rows > 2 ? abs1(h(2, 0)) : 0.0);
    v[0] = v[1] = v[2] = T{};
    if (scale == 0.0) return;
    const T low = h(1, 0) / scale;
    v[0] = scalar_of<T>(other * (near / scale)) + h(0, 1) * low;
    v[1] = low * (h(0, 0) + h(1, 1) - scalar_of<T>(shifts.first + shifts.second));
    if (rows > 2) v[2] = low * h(2, 1);
}

namespace {

/// Small rows and columns first .. end - 1 of an active block.
template <class T> class DoubleShift {
    const SchurIteration<T>& s_;
    const i64 first_, end_;

    /// Two real shifts are both taken to be the one that is closer to the last element: it converges faster.
    Eigenpair usual_shifts() const {
        const Matrix<T>& h = s_.h;
        const i64 i = end_ - 1;
        const Eigenpair pair = eigenvalues_of(Block2<T>{h(i - 1, i - 1), h(i - 1, i), h(i, i - 1), h(i, i)});
        if constexpr (is_complex_scalar<T>) return pair;
        else {
            if (pair.first.imag() != 0.0) return pair;
            const zcomplex last = h(i, i), first = pair.first, second = pair.second;
            return abs1(first - last) <= abs1(second - last) ? Eigenpair{first, first} : Eigenpair{second, second};
        }
    }
    /// Shifts that no cycle of the usual ones knows, from the top or the bottom of the block.
    Eigenpair exceptional_shifts(bool at_top) const {
        const Matrix<T>& h = s_.h;
        const i64 i = at_top ? first_ : end_ - 1, k = at_top ? first_ + 1 : end_ - 1, next = at_top ? k + 1 : k - 1;
        const double size = abs1(h(k, k - 1)) + abs1(h(next, next - 1));
        const T centre = h(i, i) + 0.75 * size;
        return eigenvalues_of(Block2<T>{centre, T(-0.4375 * size), T(size), centre});
    }

    /// The last row from which a bulge can start: where two elements below the diagonal are small together.
    i64 find_start(const Eigenpair& shifts, T* v) const {
        const Matrix<T>& h = s_.h;
        for (i64 k = end_ - 3;; --k) {
            start_bulge<T>(h.from(k, k), 3, shifts, v);
            if (k == first_) return k;
            const double size = abs1(v[0]) + abs1(v[1]) + abs1(v[2]);
            if (size == 0.0) continue;
            for (int i = 0; i < 3; ++i) v[i] /= size;
            const double around = abs1(h(k - 1, k - 1)) + abs1(h(k, k)) + abs1(h(k + 1, k + 1));
            if (abs1(h(k, k - 1)) * (abs1(v[1]) + abs1(v[2])) <= 2.0 * unit_roundoff * abs1(v[0]) * around) return k;
        }
    }

  public:
    DoubleShift(const SchurIteration<T>& s, i64 first, i64 end) : s_(s), first_(first), end_(end) {}

    /// At least three rows.
    void step(i64 steps_before) const {
        const bool at_top = steps_before % 20 == 10, at_end = steps_before > 0 && steps_before % 20 == 0;
        const Eigenpair shifts = at_top || at_end ? exceptional_shifts(at_top) : usual_shifts();
        T v[3];
        const i64 start = find_start(shifts, v);
        const Matrix<T>& h = s_.h;
        const i64 right = s_.end_of_columns(end_), top = s_.start_of_rows(first_);
        for (i64 k = start; k + 1 < end_; ++k) {
            const i64 count = std::min(i64{3}, end_ - k);
            if (k > start) std::copy_n(h.at(k, k - 1), count, v);
            const auto reflector = SmallReflector<T>::of(v, count);
            if (k > start) {
                h(k, k - 1) = v[0];
                std::fill_n(h.at(k + 1, k - 1), count - 1, T{});
            } else if (k > first_) h(k, k - 1) *= T(1.0) - conj_if<true>(reflector.tau);
            reflector.turn_rows(count, h.at(k, k), right - k, h.ld);
            reflector.turn_columns(count, h.at(top, k), std::min(k + 4, end_) - top, h.ld);
            if (s_.z.rows > 0) reflector.turn_columns(count, s_.z.at(0, k), s_.z.rows, s_.z.ld);
        }
    }
};

} // namespace

template <class T> i64 iterate_double_shift(const SchurIteration<T>& s, i64 first, i64 end) {
    constexpr i64 steps_for_one = 30, least_order = 10;
    i64 left = steps_for_one * std::max(least_order, end - first), since_split = 0;
    while (end > first) {
        const i64 start = s.start_of_block(first, end), order = end - start;
        if (order <= 2) {
            if (order == 2) s.finish_two(start);
            else s.w[start] = s.h(start, start);
            end = start;
            since_split = 0;
            continue;
        }
        if (left-- == 0) return end;
        DoubleShift<T>(s, start, end).step(since_split++);
    }
    return 0;
}

template struct SchurIteration<double>;
template struct SchurIteration<zcomplex>;
template void start_bulge(const Operand<double>&, i64, const Eigenpair&, double*);
template void start_bulge(const Operand<zcomplex>&, i64, const Eigenpair&, zcomplex*);
template i64 iterate_double_shift(const SchurIteration<double>&, i64, i64);
template i64 iterate_double_shift(const SchurIteration<zcomplex>&, i64, i64);

} // namespace nxl
