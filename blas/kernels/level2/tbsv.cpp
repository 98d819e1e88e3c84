// dtbsv, ztbsv: x := op(A)^-1 x for a triangle of a band.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/triangular.hpp"
#include "blas/kernels/transpose.hpp"

namespace nxl::NXL_TARGET {
namespace {

// Panels of as many columns as a register has elements. Beside a panel's own triangle T, registers of rows go over all
// of its columns; those of the band's edge take the lanes that a column has:
//
//     upper    E . . .       lower    T . . .
//              E E . .                T T . .
//              E E E .                T T T .
//              R R R R                T T T T
//              R R R R                R R R R
//              T T T T                R R R R
//              . T T T                . E E E
//              . . T T                . . E E
//              . . . T                . . . E
//
// Whatever a register reads there beyond its column lies in the band's array: in a column next to it.
constexpr int W = kWidest;
template <class T> constexpr int kColumns = kElements<T, W>;
using Lanes [[gnu::vector_size(W * sizeof(i64))]] = i64;

/// Of each lane, which element of the register it belongs to.
template <class T> [[gnu::always_inline]] inline Lanes elements() {
    Lanes lanes;
    for (int lane = 0; lane < W; ++lane) lanes[lane] = lane / kParts<T>;
    return lanes;
}

/// Vectors of a Combination or an InnerProduct, lane by lane.
template <class Sum> [[gnu::always_inline]] inline Sum select(Lanes mask, Sum yes, const Sum& no) {
    constexpr int vectors = sizeof(Sum) / sizeof(Vec<W>);
    Vec<W> a[vectors], b[vectors];
    __builtin_memcpy(a, &yes, sizeof yes);
    __builtin_memcpy(b, &no, sizeof no);
    for (int i = 0; i < vectors; ++i) a[i] = mask ? a[i] : b[i];
    __builtin_memcpy(&yes, a, sizeof yes);
    return yes;
}

template <class T, int I> [[gnu::always_inline]] inline T element_of(Vec<W> v) {
    if constexpr (kParts<T> == 1) return v[I];
    else return {v[2 * I], v[2 * I + 1]};
}

/// y - a b, element by element.
template <class T> [[gnu::always_inline]] inline Vec<W> less_product(Vec<W> y, Vec<W> a, Vec<W> b) {
    if constexpr (kParts<T> == 1) return y - a * b;
    else {
        Vec<W> re, im;
        for (int lane = 0; lane < W; lane += 2) {
            re[lane] = re[lane + 1] = a[lane];
            im[lane] = -a[lane + 1];
            im[lane + 1] = a[lane + 1];
        }
        y -= re * b;
        return y - im * swap_parts<W>(b);
    }
}
[[gnu::always_inline]] inline Vec<W> moduli(Vec<W> v) { return v < 0.0 ? -v : v; }

/// 1 / v, element by element, where its square is within the range.
template <class T> [[gnu::always_inline]] inline Vec<W> reciprocals(Vec<W> v) {
    if constexpr (kParts<T> == 1) return 1.0 / v;
    else {
        const Vec<W> squares = v * v;
        return alternate<W>(1.0, -1.0) * v / (squares + swap_parts<W>(squares));
    }
}

/// What an inner product has so far, as products of elements: to be summed over the elements.
template <bool Conjugate> [[gnu::always_inline]] inline Vec<W> products(const InnerProduct<double, W>& sum) {
    return sum.sum;
}
template <bool Conjugate> [[gnu::always_inline]] inline Vec<W> products(const InnerProduct<Complex, W>& sum) {
    const double sign = Conjugate ? -1.0 : 1.0;
    Vec<W> result;
    for (int lane = 0; lane < W; lane += 2) {
        result[lane] = sum.straight[lane] - sign * sum.straight[lane + 1];
        result[lane + 1] = sum.crossed[lane] + sign * sum.crossed[lane + 1];
    }
    return result;
}

template <Form F, class T> class BandSolution {
    static constexpr int P = kColumns<T>;

    const StoredTriangle<F, T> band_;
    const i64 n_, k_;
    T* const x_;

    /// P rows of column j + c, from row j + start on.
    [[gnu::always_inline]] const double* rows(i64 j, i64 start, i64 c) const {
        return parts(band_.a + j * (band_.lda + 1) + start + c * band_.lda);
    }

    /// Calls body(start, done) for registers of rows j + start .. beside the triangle of columns j .. j + P - 1: none
    /// of the lanes is in want of a mask, or some(start, first, end) where rows j + first .. j + end - 1 are new.
    template <class All, class Some>
    [[gnu::always_inline]] void beside(i64 j, const All& all, const Some& some) const {
        if constexpr (F.upper) {
            i64 row = -P;
            for (; row >= P - 1 - k_ && j + row >= 0; row -= P) all(row);
            while (row + P > -k_ && j + row + P > 0) {
                const i64 start = j + row < 0 ? -j : row;
                some(start, start, row + P);
                row = start - P;
            }
        } else {
            i64 row = P;
            for (; row + P <= k_ + 1 && j + row + P <= n_; row += P) all(row);
            while (row < k_ + P && j + row < n_) {
                const i64 start = smaller(row, n_ - P - j);
                some(start, row, start + P);
                row = start + P;
            }
        }
    }
    /// Which of the rows from j + start on column j + c has, among first .. end - 1.
    [[gnu::always_inline]] Lanes mask(i64 start, i64 first, i64 end, i64 c) const {
        const Lanes row = elements<T>() + start;
        const i64 from = F.upper ? c - k_ : first, to = F.upper ? end : c + k_ + 1;
        return (row >= (from > first ? from : first)) & (row < (to < end ? to : end));
    }
    /// The next panel is on its way while this one is dealt with: the processor sees too many streams to follow them.
    [[gnu::always_inline]] void fetch_next(const double* column) const {
        __builtin_prefetch(column + (F.forward() ? P : -P) * band_.lda * kParts<T>);
    }

    /// Rows beside the triangle less the columns' times v, the solution there.
    [[gnu::always_inline]] void give(i64 j, Vec<W> v) const {
        Coefficient<T, W> factor[P];
        repeat<P>([&](auto c) { factor[c].set(from_real<T>(-1.0) * element_of<T, c>(v)); });
        beside(
            j,
            [&](i64 start) {
                Combination<T, W> sum;
                sum.start(parts(x_ + j + start));
                repeat<P>([&](auto c) {
                    fetch_next(rows(j, start, c));
                    sum.add(factor[c], load<W>(rows(j, start, c)));
                });
                store<W>(parts(x_ + j + start), sum.total());
            },
            [&](i64 start, i64 first, i64 end) {
                Combination<T, W> sum;
                sum.start(parts(x_ + j + start));
                repeat<P>([&](auto c) {
                    const Combination<T, W> before = sum;
                    sum.add(factor[c], load<W>(rows(j, start, c)));
                    sum = select(mask(start, first, end, c), sum, before);
                });
                store<W>(parts(x_ + j + start), sum.total());
            });
    }
    /// The inner products of the columns with the rows beside the triangle.
    [[gnu::always_inline]] Vec<W> take(i64 j) const {
        InnerProduct<T, W> sum[P];
        beside(
            j,
            [&](i64 start) {
                const Operand<T, W> x(parts(x_ + j + start));
                repeat<P>([&](auto c) {
                    fetch_next(rows(j, start, c));
                    sum[c].add(load<W>(rows(j, start, c)), x);
                });
            },
            [&](i64 start, i64 first, i64 end) {
                const Operand<T, W> x(parts(x_ + j + start));
                repeat<P>([&](auto c) {
                    const InnerProduct<T, W> before = sum[c];
                    sum[c].add(load<W>(rows(j, start, c)), x);
                    sum[c] = select(mask(start, first, end, c), sum[c], before);
                });
            });
        Vec<W> product[P], total{};
        repeat<P>([&](auto c) { product[c] = products<F.conjugated>(sum[c]); });
        transpose<T, W>(product);
        repeat<P>([&](auto c) { total += product[c]; });
        return total;
    }

    /// The triangle of a panel: element i of v, when it is known but for its pivot, goes to the elements after it. The
    /// chain from one to the next is a multiply-add: what it is multiplied by has been divided by the pivot before.
    /// False where such a quotient may leave the range, with nothing done.
    [[gnu::always_inline]] bool solve_triangle(i64 j, Vec<W>& v) const {
        constexpr double limit = 0x1p500;
        Vec<W> gift[P], pivots{};
        repeat<P>([&](auto c) {
            gift[c] = load<W>(rows(j, 0, c));
            if constexpr (F.conjugated && kParts<T> == 2) gift[c] = gift[c] * alternate<W>(1.0, -1.0);
            pivots = elements<T>() == i64{c} ? gift[c] : pivots;
        });
        if (band_.unit) pivots = alternate<W>(1.0, kParts<T> == 1 ? 1.0 : 0.0);
        if constexpr (F.transposed) transpose<T, W>(gift);
        const Vec<W> inverses = reciprocals<T>(pivots);
        Vec<W> sizes = moduli(pivots) + moduli(inverses);
        repeat<P>([&](auto c) {
            gift[c] = Factor<T, W>(element_of<T, c>(inverses)).times(gift[c]);
            sizes += after(c) ? moduli(gift[c]) : Vec<W>{};
        });
        if (!__builtin_reduce_and(sizes < limit)) return false;
        repeat<P>([&](auto step) {
            constexpr int c = F.forward() ? step : P - 1 - step;
            v = after(c) ? less_product<T>(v, broadcast<c>(v), gift[c]) : v;
        });
        v = less_product<T>(Vec<W>{}, inverses, -v);
        return true;
    }
    /// The elements that element c of a panel is given to.
    [[gnu::always_inline]] Lanes after(i64 c) const {
        const Lanes distance = F.forward() ? elements<T>() - c : c - elements<T>();
        return (distance > 0) & (distance <= k_);
    }
    template <int C> [[gnu::always_inline]] static Vec<W> broadcast(Vec<W> v) {
        return [&]<int... L>(std::integer_sequence<int, L...>) __attribute__((always_inline)) {
            return __builtin_shufflevector(v, v, (C * kParts<T> + L % kParts<T>)...);
        }(std::make_integer_sequence<int, W>{});
    }

    const T* at(i64 row, i64 column) const { return band_.a + row + column * band_.lda; }

    /// The same one by one, for any pivots and for the few columns that have no others beside them.
    [[gnu::noinline]] void solve_some(i64 j, i64 count) const {
        for (i64 step = 0; step < count; ++step) {
            const i64 c = j + (F.forward() ? step : count - 1 - step);
            const i64 first = F.upper ? (c - k_ > j ? c - k_ : j) : c + 1;
            const i64 end = F.upper ? c : smaller(j + count, c + k_ + 1);
            T own = x_[c];
            if constexpr (F.transposed)
                for (i64 r = first; r < end; ++r) own = own - conj_if<F.conjugated>(*at(r, c)) * x_[r];
            if (!band_.unit) own = own / conj_if<F.conjugated>(*at(c, c));
            x_[c] = own;
            if constexpr (!F.transposed)
                for (i64 r = first; r < end; ++r) x_[r] = x_[r] - *at(r, c) * own;
        }
    }

    [[gnu::always_inline]] void solve_panel(i64 j) const {
        double* const own = parts(x_ + j);
        Vec<W> v = load<W>(own);
        if constexpr (F.transposed) v -= take(j);
        if (solve_triangle(j, v)) store<W>(own, v);
        else {
            store<W>(own, v);
            solve_some(j, P);
            v = load<W>(own);
        }
        if constexpr (!F.transposed) give(j, v);
    }

  public:
    BandSolution(i64 n, i64 k, const StoredTriangle<F, T>& band, T* x) : band_(band), n_(n), k_(k), x_(x) {}

    /// Full panels, and the rest at the triangle's narrow end.
    void solve() const {
        const i64 rest = n_ % P, panels = n_ / P, start = F.upper ? rest : 0;
        const i64 narrow_end = F.upper ? 0 : panels * P;
        if (F.forward() == F.upper) solve_some(narrow_end, rest);
        for (i64 p = 0; p < panels; ++p) solve_panel(start + (F.forward() ? p : panels - 1 - p) * P);
        if (F.forward() != F.upper) solve_some(narrow_end, rest);
    }
};

template <class T> void tbsv(char uplo, char trans, char diag, i64 n, i64 k, const T* a, i64 lda, T* x) {
    with_form<T, Task::solution>(
        uplo, trans, [&]<Form F>() { BandSolution<F, T>(n, k, StoredTriangle<F, T>{a, lda, diag == 'U'}, x).solve(); });
}

} // namespace

void dtbsv(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& k, const double* a,
           const i64& lda, double* x) {
    tbsv(uplo, trans, diag, n, k, a, lda, x);
}

void ztbsv(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& k, const zcomplex* a,
           const i64& lda, zcomplex* x) {
    tbsv(uplo, trans, diag, n, k, scalars(a), lda, scalars(x));
}

} // namespace nxl::NXL_TARGET
