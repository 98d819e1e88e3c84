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

    /// The reflector of bulge b at column k; `beta`: what is left of the column, where there is one.
    SmallReflector<T> reflector_at(i64 b, i64 k, T& beta) const {
        const i64 count = elements_at(k);
        T v[3];
        if (k < first_) start_bulge<T>(s_.h.from(first_, first_), count, shifts_[b], v);
        else std::copy_n(s_.h.at(k + 1, k), count, v);
        const auto reflector = SmallReflector<T>::of(v, count);
        beta = v[0];
        return reflector;
    }
    i64 elements_at(i64 k) const { return std::min(i64{3}, end_ - 1 - k); }
    void clear_column(i64 k, const T& beta) const {
        if (k < first_) return;
        s_.h(k + 1, k) = beta;
        std::fill_n(s_.h.at(k + 2, k), elements_at(k) - 1, T{});
    }

    /// Rows of U, in the columns of a bulge at k, that are not zero: from where the bulge was first, to where the
    /// others have been.
    i64 first_row_of(const Window& window, i64 b) const { return column_of(b, window.since) + 1 - window.start; }
    i64 end_of_rows(const Window& window, i64 b, i64 k) const { return k + 4 + 2 * b - window.start; }

    /// The lowest bulge b at column k, which the end of the matrix keeps from having as many rows below it as others.
    void move_last(i64 b, i64 k, const SmallReflector<T>& reflector, const T& beta, const Window& window,
                   const Matrix<T>& u) const {
        const Matrix<T>& h = s_.h;
        const i64 row = k + 1, elements = elements_at(k), top = std::max(i64{0}, first_row_of(window, b));
        reflector.turn_rows(elements, h.at(row, row), window.next - row, h.ld);
        clear_column(k, beta);
        reflector.turn_columns(elements, h.at(window.start, row), end_ - window.start, h.ld);
        const i64 below = std::min(u.rows, end_of_rows(window, b, k));
        reflector.turn_columns(elements, u.at(top, row - window.start), below - top, u.ld);
    }
    /// Bulges b, b - 1 and so on, the first of them at column k: the highest.
    void move_others(i64 count, i64 b, i64 k, const SmallReflector<T>* reflectors, const T* betas, const Window& window,
                     const Matrix<T>& u) const {
        constexpr auto& turn_rows = slot_of<T, &KernelTable::dreflect_rows, &KernelTable::zreflect_rows>();
        constexpr auto& turn_columns = slot_of<T, &KernelTable::dreflect_columns, &KernelTable::zreflect_columns>();
        const Matrix<T>& h = s_.h;
        const T* const numbers = &reflectors->tau;
        const i64 row = k + 1;
        turn_rows(count, numbers, window.next - row, h.at(row, row), h.ld);
        for (i64 r = 0; r < count; ++r) clear_column(k + 3 * r, betas[r]);
        turn_columns(count, numbers, k + 5 - window.start, 3, h.at(window.start, row), h.ld, 3 * h.ld);
        i64 top = first_row_of(window, b), below = end_of_rows(window, b, k), down = 3, growth = 1;
        if (top < 0) top = down = 0;
        if (below + count > u.rows) below = u.rows, growth = 0;
        turn_columns(count, numbers, below - top, growth - down, u.at(top, row - window.start), u.ld, 3 * u.ld + down);
    }
    /// All bulges go to the next column. Their reflectors concern different rows and columns, and none of them the
    /// column that another one is made of.
    void take_step(i64 step, const Window& window, const Matrix<T>& u) const {
        const i64 highest = std::min(bulges_ - 1, step / 3), last_column = end_ - 3;
        const i64 lowest = std::max(i64{0}, (column_of(0, step) - last_column + 2) / 3);
        if (highest < lowest) return;
        SmallReflector<T> reflectors[longest_chain];
        T betas[longest_chain];
        for (i64 b = lowest; b <= highest; ++b)
            reflectors[highest - b] = reflector_at(b, column_of(b, step), betas[highest - b]);
        i64 count = highest - lowest + 1;
        if (const i64 k = column_of(lowest, step); k + 5 > end_) {
            --count;
            move_last(lowest, k, reflectors[count], betas[count], window, u);
        }
        if (count > 0) move_others(count, highest, column_of(highest, step), reflectors, betas, window, u);
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
        const i64 steps = end_ - 1 - first_ + 3 * (bulges_ - 1), at_once = chain_window(bulges_) - 3 * bulges_ + 1;
        for (i64 since = 0; since < steps; since += at_once) {
            const i64 count = std::min(at_once, steps - since);
            const Window window = window_of(since, count);
            const i64 order = window.next - window.start;
            const Matrix<T> u{memory_, order, order, order};
            std::fill_n(u.data, order * order, T{});
            for (i64 i = 0; i < order; ++i) u(i, i) = T(1.0);
            for (i64 step = since; step < since + count; ++step) take_step(step, window, u);
            // As above: a bulge goes at_once columns on, and two more rows are filled by each that has been there
            // before.
            products.apply(first_, end_, window.start, u, {2 * bulges_, at_once + 1});
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
