// The window at the end is brought to Schur form by V, as if the element before it, the root, were zero. Beside the
// form there stands the root times the first row of V: the spike.
//
//     x  x x x x
//     s  t t t t
//     s    t t t
//     s      t t
//     s        t
//
// An eigenvalue whose element of the spike is negligible has converged, long before the subdiagonal itself tells. The
// others are moved up; what is left of the spike is reflected onto its first element, and the window made Hessenberg
// again. Braman, Byers and Mathias, The multishift QR algorithm, part II: aggressive early deflation, SIAM J. Matrix
// Anal. Appl. 23 (2002).
#include "lapack/kernel/source/nonsymmetric/deflation_window.hpp"
#include "lapack/kernel/source/nonsymmetric/gehrd.hpp"
#include "lapack/kernel/source/nonsymmetric/reorder.hpp"
#include "lapack/kernel/source/orthogonal/apply_q.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"

namespace nxl {
namespace {

template <class T> class DeflationWindow {
    const SchurIteration<T>& s_;
    const i64 first_, end_, order_, at_;
    const Matrix<T> t_, v_;
    const DeflationSpace<T>& space_;
    T root_;

    void copy_in() const {
        for (i64 j = 0; j < order_; ++j) {
            const i64 count = std::min(j + 2, order_);
            std::copy_n(s_.h.at(at_, at_ + j), count, t_.at(0, j));
            std::fill_n(t_.at(0, j) + count, order_ - count, T{});
            std::fill_n(v_.at(0, j), order_, T{});
            v_(j, j) = T(1.0);
        }
    }

    bool has_converged(i64 k, i64 size) const {
        const double tiny = safe_minimum * (static_cast<double>(s_.h.rows) / (2.0 * unit_roundoff));
        double spike = abs1(root_ * v_(0, k)), diagonal = abs1(t_(k, k));
        if (size == 2) {
            spike = std::max(spike, abs1(root_ * v_(0, k + 1)));
            diagonal += std::sqrt(abs1(t_(k + 1, k))) * std::sqrt(abs1(t_(k, k + 1)));
        }
        if (diagonal == 0.0) diagonal = abs1(root_);
        return spike <= std::max(tiny, 2.0 * unit_roundoff * diagonal);
    }
    /// Answers how many rows are left, the eigenvalues of which have not converged; rows before `top` are no
    /// candidates.
    i64 find_converged(i64 top) const {
        i64 left = order_;
        while (top < left) {
            const i64 size = left - top > 1 ? order_of_block_before(t_, left) : 1, k = left - size;
            if (has_converged(k, size)) left = k;
            else top = move_block_up(t_, v_, k, top) + size;
        }
        return left;
    }

    /// The eigenvalues of rows k .. end - 1 of T, to `values`.
    void note_values(i64 k, i64 end, zcomplex* values) const {
        for (i64 size = 0; k < end; k += size) {
            size = order_of_block(t_, k);
            if (size == 1) {
                *values++ = t_(k, k);
                continue;
            }
            const Eigenpair both =
                eigenvalues_of_standard(Block2<T>{t_(k, k), t_(k, k + 1), t_(k + 1, k), t_(k + 1, k + 1)});
            *values++ = both.first;
            *values++ = both.second;
        }
    }
    /// From the values of rows top .. left - 1, those nearest to the end first: they are the ones that are about to
    /// converge.
    i64 pair_shifts(i64 top, i64 left) const {
        note_values(top, left, space_.values);
        const zcomplex* lone = nullptr;
        i64 pairs = 0;
        for (const zcomplex* value = space_.values + (left - top); value-- > space_.values;) {
            if (!is_complex_scalar<T> && value->imag() != 0.0) {
                space_.shifts[pairs++] = {value[-1], value[0]};
                --value;
            } else if (lone) {
                space_.shifts[pairs++] = {*lone, *value};
                lone = nullptr;
            } else lone = value;
        }
        if (lone && pairs == 0) space_.shifts[pairs++] = {*lone, *lone};
        return pairs;
    }

    /// The spike, of `left` elements, becomes its first one, and T Hessenberg there.
    void make_hessenberg(i64 left) const {
        T *const w = space_.vectors, *const work = w + order_;
        for (i64 i = 0; i < left; ++i) w[i] = conj_if<true>(v_(0, i));
        const T tau = make_reflector(left - 1, w[0], w + 1, 1);
        w[0] = T(1.0);
        apply_reflector('L', w, 1, conj_if<true>(tau), t_.rows_from(0, left), work);
        apply_reflector('R', w, 1, tau, t_.block(0, 0, left, left), work);
        apply_reflector('R', w, 1, tau, v_.columns_from(0, left), work);
    }
    bool reduce(i64 left) const {
        if (left < 2) return true;
        T* const tau = space_.vectors;
        if (!reduce_to_hessenberg(t_, 0, left, tau)) return false;
        const Reflectors<T> q{t_.block(1, 0, left - 1, left - 1), Order::forward, Storage::columns};
        return apply_reflectors('R', false, q, tau, v_.block(0, 1, order_, left - 1));
    }
    void copy_back() const {
        for (i64 j = 0; j < order_; ++j) std::copy_n(t_.at(0, j), std::min(j + 2, order_), s_.h.at(at_, at_ + j));
    }

  public:
    DeflationWindow(const SchurIteration<T>& s, i64 first, i64 end, i64 order, const DeflationSpace<T>& space)
        : s_(s),
          first_(first),
          end_(end),
          order_(order),
          at_(end - order),
          t_{space.t, order, order, order},
          v_{space.v, order, order, order},
          space_(space),
          root_(at_ == first ? T{} : s.h(at_, at_ - 1)) {}

    Deflation run(const WindowProducts<T>& products) {
        copy_in();
        const i64 unfinished = iterate_to_schur(SchurIteration<T>{t_, v_, true, space_.values}, 0, order_);
        const i64 left = find_converged(unfinished);
        const i64 pairs = pair_shifts(unfinished, left);
        if (left == order_ && root_ != T{}) return {0, pairs};
        note_values(left, order_, s_.w + at_ + left);
        if (left == 0) root_ = T{};
        if (root_ != T{}) {
            if (left > 1) make_hessenberg(left);
            if (!reduce(left)) return {0, pairs};
        }
        if (at_ > first_) s_.h(at_, at_ - 1) = root_ * conj_if<true>(v_(0, 0));
        copy_back();
        products.apply(first_, end_, at_, v_, {order_, order_});
        return {order_ - left, pairs};
    }
};

} // namespace

template <class T>
Deflation deflate_window(const SchurIteration<T>& s, i64 first, i64 end, i64 order, const DeflationSpace<T>& space,
                         const WindowProducts<T>& products) {
    return DeflationWindow<T>(s, first, end, order, space).run(products);
}

template Deflation deflate_window(const SchurIteration<double>&, i64, i64, i64, const DeflationSpace<double>&,
                                  const WindowProducts<double>&);
template Deflation deflate_window(const SchurIteration<zcomplex>&, i64, i64, i64, const DeflationSpace<zcomplex>&,
                                  const WindowProducts<zcomplex>&);

} // namespace nxl
