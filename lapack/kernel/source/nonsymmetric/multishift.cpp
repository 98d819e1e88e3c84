// Multishift QR: look for converged eigenvalues in a window at the end, and unless there were many, sweep with those
// that have not converged for shifts. Braman, Byers and Mathias, The multishift QR algorithm, parts I and II, SIAM J.
// Matrix Anal. Appl. 23 (2002).
#include "lapack/kernel/source/nonsymmetric/bulge_chain.hpp"
#include "lapack/kernel/source/nonsymmetric/deflation_window.hpp"
#include "lapack/kernel/source/tuning/eigen_tuning.hpp"
#include "service/scratch.hpp"
#include "service/workspace.hpp"

namespace nxl {
namespace {

/// Memory for windows of up to `most` rows of a matrix of order n.
template <class T> class IterationSpace {
    const Scratch<T> elements_;
    const Scratch<zcomplex> values_;

    static i64 product_size(const SchurIteration<T>& s, i64 most) {
        return WindowProducts<T>::buffer_size(s, std::max(most, largest_chain_window));
    }

  public:
    T* products;
    T* u;
    DeflationSpace<T> window;

    IterationSpace(const SchurIteration<T>& s, i64 most)
        : elements_(product_size(s, most) + largest_chain_window * largest_chain_window + 2 * most * (most + 1)),
          values_(3 * most),
          products(elements_.data()),
          u(products + product_size(s, most)),
          window{} {
        Sections<T> sections(u + largest_chain_window * largest_chain_window);
        window.t = sections.take(most * most);
        window.v = sections.take(most * most);
        window.vectors = sections.take(2 * most);
        window.values = values_.data();
        window.shifts = reinterpret_cast<Eigenpair*>(values_.data() + most);
    }
    bool has_memory() const { return elements_.data() && values_.data(); }
};

/// Rows first .. end - 1, which shrink as eigenvalues converge.
template <class T> class Multishift {
    const SchurIteration<T>& s_;
    const i64 first_;
    const IterationSpace<T>& space_;
    const WindowProducts<T> products_;
    i64 without_deflation_ = 0;

    static constexpr i64 patience = 5; // sweeps without deflation after which windows and shifts are changed

    i64 window_order(i64 start, i64 end, i64 most) const {
        const i64 order = end - start;
        i64 window = std::min(MultishiftSizes::window(order), most);
        if (without_deflation_ >= patience) window = std::min(2 * window, most);
        if (window >= order - 1) return std::min(order, most);
        // A window is better cut where the subdiagonal is small.
        const i64 at = end - window;
        if (window < most && abs1(s_.h(at, at - 1)) > abs1(s_.h(at - 1, at - 2))) ++window;
        return window;
    }

    /// Shifts for a matrix that the usual ones do not bring on.
    i64 exceptional_shifts(i64 start, i64 end, i64 pairs) const {
        const Matrix<T>& h = s_.h;
        i64 found = 0;
        for (i64 i = end - 1; i > start + 1 && found < pairs; i -= 2) {
            const double size = abs1(h(i, i - 1)) + abs1(h(i - 1, i - 2));
            const T centre = h(i, i) + 0.75 * size;
            space_.window.shifts[found++] = eigenvalues_of(Block2<T>{centre, T(-0.4375 * size), T(size), centre});
        }
        return found;
    }

    /// One window, and one sweep where it is called for. Answers the end of what is left.
    i64 step(i64 start, i64 end, i64 most) {
        const i64 order = window_order(start, end, most);
        const Deflation found = deflate_window(s_, start, end, order, space_.window, products_);
        without_deflation_ = found.deflated > 0 ? 0 : without_deflation_ + 1;
        end -= found.deflated;
        const bool many = 100 * found.deflated > order * MultishiftSizes::nibble;
        if (many || end - start < MultishiftSizes::least_order) return end;
        i64 pairs = std::min(MultishiftSizes::shifts(end - start) / 2, most);
        const bool stuck = without_deflation_ > 0 && without_deflation_ % (patience + 1) == 0;
        pairs = stuck || found.pairs == 0 ? exceptional_shifts(start, end, pairs) : std::min(pairs, found.pairs);
        sweep_with_shifts(s_, start, end, space_.window.shifts, pairs, space_.u, products_);
        return end;
    }

  public:
    Multishift(const SchurIteration<T>& s, i64 first, const IterationSpace<T>& space)
        : s_(s),
          first_(first),
          space_(space),
          products_(s, space.products) {}

    i64 run(i64 end, i64 most) {
        constexpr i64 steps_for_one = 30, least_order = 10;
        for (i64 left = steps_for_one * std::max(least_order, end - first_); end > first_; --left) {
            const i64 start = s_.start_of_block(first_, end);
            if (end - start < MultishiftSizes::least_order) {
                if (const i64 failed = iterate_double_shift(s_, start, end); failed != 0) return failed;
                end = start;
            } else if (left <= 0) return end;
            else end = step(start, end, most);
        }
        return 0;
    }
};

} // namespace

template <class T> i64 iterate_multishift(const SchurIteration<T>& s, i64 first, i64 end) {
    const i64 most = std::min(2 * MultishiftSizes::window(end - first), (end - first - 1) / 3);
    const IterationSpace<T> space(s, most);
    if (!space.has_memory()) return iterate_double_shift(s, first, end);
    return Multishift<T>(s, first, space).run(end, most);
}

template <class T> i64 iterate_to_schur(const SchurIteration<T>& s, i64 first, i64 end) {
    return end - first < MultishiftSizes::least_order ? iterate_double_shift(s, first, end)
                                                      : iterate_multishift(s, first, end);
}

template i64 iterate_multishift(const SchurIteration<double>&, i64, i64);
template i64 iterate_multishift(const SchurIteration<zcomplex>&, i64, i64);
template i64 iterate_to_schur(const SchurIteration<double>&, i64, i64);
template i64 iterate_to_schur(const SchurIteration<zcomplex>&, i64, i64);

} // namespace nxl
