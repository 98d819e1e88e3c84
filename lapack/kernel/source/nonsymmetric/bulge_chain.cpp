// Bulge b of a chain is at column k - 3 b when the first one is at k: its reflector is of rows k + 1 .. k + 3 and makes
// column k Hessenberg again.
//
//     x x x x x x x x      The reflectors of a chain's step concern different rows, and so different columns.
//     x x x x x x x x      What happens in a window of H is done there at once, and gathered in an orthogonal U;
//     b x x x x x x x      the rest of H, and Z, get U by products of level 3.
//     b b x x x x x x
//           x x x x x      Braman, Byers and Mathias, The multishift QR algorithm, part I, SIAM J. Matrix Anal. Appl.
//           b x x x x      23 (2002).
//           b b x x x
#include "lapack/kernel/source/nonsymmetric/bulge_chain.hpp"
#include "lapack/kernel/source/nonsymmetric/small_reflector.hpp"
#include "service/slice.hpp"

namespace nxl {
namespace {

template <class T> class BulgeChain {
    const SchurIteration<T>& s_;
    const i64 first_, end_;
    const Eigenpair* const shifts_;
    const i64 bulges_;
    T* const memory_;

    /// The column of bulge b after so many steps; `first_` - 1 when it is about to be made.
    i64 column_of(i64 b, i64 step) const { return first_ - 1 + step - 3 * b; }

    /// Rows start .. next - 1 in steps `since` and on.
    struct Window {
        i64 start, next, since;
    };
    Window window_of(i64 since, i64 count) const {
        const i64 start = std::max(first_, column_of(bulges_ - 1, since) + 1);
        return {start, std::min(end_, column_of(0, since + count - 1) + 4), since};
    }

    SmallReflector<T> reflector_at(i64 b, i64 k) const {
        const Matrix<T>& h = s_.h;
        const i64 count = std::min(i64{3}, end_ - 1 - k);
        T v[3];
        if (k < first_) {
            start_bulge<T>(h.from(first_, first_), count, shifts_[b], v);
            return SmallReflector<T>::of(v, count);
        }
        std::copy_n(h.at(k + 1, k), count, v);
        const auto reflector = SmallReflector<T>::of(v, count);
        h(k + 1, k) = v[0];
        std::fill_n(h.at(k + 2, k), count - 1, T{});
        return reflector;
    }
    /// Bulge b goes from column k to the next one.
    void move(i64 b, i64 k, const Window& window, const Matrix<T>& u) const {
        const Matrix<T>& h = s_.h;
        const SmallReflector<T> reflector = reflector_at(b, k);
        const i64 row = k + 1;
        reflector.turn_rows(h.at(row, row), window.next - row, h.ld);
        reflector.turn_columns(h.at(window.start, row), std::min(k + 5, end_) - window.start, h.ld);
        // Rows of U that are not zero in these columns: from where the bulge was first, to where the others have been.
        const i64 top = std::max(i64{0}, column_of(b, window.since) + 1 - window.start);
        const i64 below = std::min(u.rows, k + 4 + 2 * b - window.start);
        reflector.turn_columns(u.at(top, row - window.start), below - top, u.ld);
    }

  public:
    BulgeChain(const SchurIteration<T>& s, i64 first, i64 end, const Eigenpair* shifts, i64 bulges, T* memory)
        : s_(s),
          first_(first),
          end_(end),
          shifts_(shifts),
          bulges_(bulges),
          memory_(memory) {}

    void chase(const WindowProducts<T>& products) const {
        const i64 steps = end_ - 1 - first_ + 3 * (bulges_ - 1), at_once = 3 * bulges_;
        for (i64 since = 0; since < steps; since += at_once) {
            const i64 count = std::min(at_once, steps - since);
            const Window window = window_of(since, count);
            const i64 order = window.next - window.start;
            const Matrix<T> u{memory_, order, order, order};
            std::fill_n(u.data, order * order, T{});
            for (i64 i = 0; i < order; ++i) u(i, i) = T(1.0);
            for (i64 step = since; step < since + count; ++step)
                for (i64 b = 0; b < bulges_; ++b)
                    if (const i64 k = column_of(b, step); k >= first_ - 1 && k + 2 < end_) move(b, k, window, u);
            products.apply(first_, end_, window.start, u);
        }
    }
};

} // namespace

template <class T>
void sweep_with_shifts(const SchurIteration<T>& s, i64 first, i64 end, const Eigenpair* shifts, i64 pairs, T* u,
                       const WindowProducts<T>& products) {
    const i64 chains = (pairs + longest_chain - 1) / longest_chain;
    for (i64 c = 0; c < chains; ++c) {
        const Slice mine = balanced_slice(pairs, 1, c, chains);
        BulgeChain<T>(s, first, end, shifts + mine.start, mine.count, u).chase(products);
    }
}

template void sweep_with_shifts(const SchurIteration<double>&, i64, i64, const Eigenpair*, i64, double*,
                                const WindowProducts<double>&);
template void sweep_with_shifts(const SchurIteration<zcomplex>&, i64, i64, const Eigenpair*, i64, zcomplex*,
                                const WindowProducts<zcomplex>&);

} // namespace nxl
