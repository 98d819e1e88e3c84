// dsymv, zsymv, zhemv: y := alpha A x + beta y, A n by n, of which one triangle is stored. Every element is read once
// and serves its own place and the mirrored one.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/products.hpp"
#include "blas/kernels/level2/rows.hpp"
#if NXL_TARGET_BITS == 512
#include "blas/kernels/lanes.hpp"
#endif

namespace nxl::NXL_TARGET {
namespace {

// Half of the matrix is stored, and it is read once: an element a(i, j) beside the diagonal adds to y(i), times x(j),
// and that or its conjugate adds to y(j), times x(i). While a panel of columns passes,
//
//     once per column    the coefficient alpha x(j), and a sum for y(j)
//     in cache           x(i) and y(i) of the block of rows, loaded once per panel
//
//     T               T: a panel's own triangle, written out as a square and multiplied plainly
//     R T             R: rectangle beside it, at work in both directions
//     R R T
//
// So the memory delivers half of what gemv needs for a matrix of that order.
/// A block of x and the block of y with the same elements, both contiguous.
template <class T> struct Pair {
    const T* x;
    T* y;

    [[gnu::always_inline]] Pair at(i64 start) const { return {x + start, y + start}; }
};

/// Whole vectors of C columns: y := y + A coefficient, and sum := A^T x, or A^H x when H(ermitian). Returns how many
/// doubles of a column are done.
template <bool H, class T, int C>
[[gnu::always_inline]] inline i64 mirror_vectors(i64 count, const double* a, i64 stride, const T* coefficient,
                                                 const double* x, double* y, T* sum) {
    constexpr int W = kWidest;
    Coefficient<T, W> factor[C];
    InnerProduct<T, W> mirrored[C];
    for (int c = 0; c < C; ++c) factor[c].set(coefficient[c]);
    i64 i = 0;
    for (; i + W <= count; i += W) {
        const Operand<T, W> operand(x + i);
        Combination<T, W> own;
        own.start(y + i);
        for (int c = 0; c < C; ++c) {
            const Vec<W> column = load<W>(a + c * stride + i);
            own.add(factor[c], column);
            mirrored[c].add(column, operand);
        }
        store<W>(y + i, own.total());
    }
    for (int c = 0; c < C; ++c) sum[c] = mirrored[c].template total<H>();
    return i;
}

template <bool H, int C, class T>
void mirror_panel(i64 m, T alpha, const T* a, i64 lda, const Pair<T>& rows, const Pair<T>& columns) {
    T coefficient[C], sum[C];
    for (int c = 0; c < C; ++c) coefficient[c] = alpha * columns.x[c];
    i64 i = mirror_vectors<H, T, C>(m * kParts<T>, parts(a), lda * kParts<T>, coefficient, parts(rows.x), parts(rows.y),
                                    sum) /
            kParts<T>;
    for (; i < m; ++i)
        for (int c = 0; c < C; ++c) {
            const T element = a[i + c * lda];
            rows.y[i] = rows.y[i] + element * coefficient[c];
            sum[c] = sum[c] + conj_if<H>(element) * rows.x[i];
        }
    for (int c = 0; c < C; ++c) columns.y[c] = columns.y[c] + alpha * sum[c];
}

/// A rectangle m by n beside the diagonal, and its mirror image.
template <bool H, class T, int C = kProductPanel<T>>
[[gnu::always_inline]] inline void mirror_rectangle(i64 m, i64 n, T alpha, const T* a, i64 lda, const Pair<T>& rows,
                                                    const Pair<T>& columns) {
    i64 j = 0;
    for (; j + C <= n; j += C) mirror_panel<H, C>(m, alpha, a + j * lda, lda, rows, columns.at(j));
    if constexpr (C > 1) mirror_rectangle<H, T, C / 2>(m, n - j, alpha, a + j * lda, lda, rows, columns.at(j));
}

/// A panel's own triangle of n columns: made whole first, since scalars summed in memory would wait for each other.
template <bool H, bool Upper, class T>
[[gnu::always_inline]] inline void mirror_triangle(i64 n, T alpha, const T* a, i64 lda, const Pair<T>& v) {
    constexpr i64 P = kProductPanel<T>;
    T whole[P * P];
    for (i64 c = 0; c < n; ++c) {
        whole[c * (P + 1)] = diagonal<H>(a[c * (lda + 1)]);
        for (i64 r = c + 1; r < n; ++r) {
            const i64 i = Upper ? c : r, j = Upper ? r : c;
            whole[i + j * P] = a[i + j * lda];
            whole[j + i * P] = conj_if<H>(a[i + j * lda]);
        }
    }
    add_product(n, n, alpha, whole, P, v.x, 1, v.y);
}

#if NXL_TARGET_BITS == 512
/// The sums of eight vectors, a lane for each.
inline Vec<8> sum_each(const Vec<8>* v) {
    Vec<8> pairs[4], fours[2];
    for (int i = 0; i < 4; ++i)
        pairs[i] = __builtin_shufflevector(v[2 * i], v[2 * i + 1], 0, 8, 2, 10, 4, 12, 6, 14) +
                   __builtin_shufflevector(v[2 * i], v[2 * i + 1], 1, 9, 3, 11, 5, 13, 7, 15);
    for (int i = 0; i < 2; ++i)
        fours[i] = __builtin_shufflevector(pairs[2 * i], pairs[2 * i + 1], 0, 1, 8, 9, 4, 5, 12, 13) +
                   __builtin_shufflevector(pairs[2 * i], pairs[2 * i + 1], 2, 3, 10, 11, 6, 7, 14, 15);
    return __builtin_shufflevector(fours[0], fours[1], 0, 1, 2, 3, 8, 9, 10, 11) +
           __builtin_shufflevector(fours[0], fours[1], 4, 5, 6, 7, 12, 13, 14, 15);
}

/// A whole panel whose columns share their lanes with a triangle: that, and the m rows beside it, in one go, so that
/// the mirrored sums leave their registers once. Masks take what is stored of the triangle, and the rows that fill no
/// vector.
template <bool H, bool Upper, class T> class WholePanel {
    static constexpr int P = kProductPanel<T>, K = kParts<T>;

    const T* const a_;
    const i64 lda_;
    Coefficient<T, 8> factor_[P];
    InnerProduct<T, 8> mirrored_[P];

    template <class Rows> [[gnu::always_inline]] void add(const T* a, const Pair<T>& v, const Rows& rows) {
        const Operand<T, 8> operand(rows.load(parts(v.x)));
        Combination<T, 8> own;
        own.start(rows.load(parts(v.y)));
        repeat<P>([&](auto c) __attribute__((always_inline)) {
            const Vec<8> column = rows.load(parts(a + c * lda_));
            own.add(factor_[c], column);
            mirrored_[c].add(column, operand);
        });
        rows.store(parts(v.y), own.total());
    }

    /// Lanes outside the triangle stay as they are: zeros there would make NaN of an infinite x.
    template <class Sums> [[gnu::always_inline]] static void take(Lanes lanes, const Sums& from, Sums& to) {
        if constexpr (K == 1) {
            to.sum = lanes.pick(from.sum, to.sum);
        } else {
            to.straight = lanes.pick(from.straight, to.straight);
            to.crossed = lanes.pick(from.crossed, to.crossed);
        }
    }

    [[gnu::always_inline]] void add_triangle(const T* a, const Pair<T>& v) {
        const Operand<T, 8> operand(parts(v.x));
        Combination<T, 8> own;
        own.start(parts(v.y));
        repeat<P>([&](auto c) __attribute__((always_inline)) {
            constexpr unsigned before = (1U << c.value * K) - 1, upto = (1U << (c.value + 1) * K) - 1;
            constexpr unsigned beside = Upper ? before : 0xffU & ~upto;
            constexpr unsigned diagonal = H ? 1U << c.value * K : upto & ~before;
            const Vec<8> column = Lanes(beside | diagonal).load(parts(a + c * lda_));
            auto more = own;
            more.add(factor_[c], column);
            take(Lanes(beside | diagonal), more, own);
            auto mirror = mirrored_[c];
            mirror.add(column, operand);
            take(Lanes(beside), mirror, mirrored_[c]);
        });
        store<8>(parts(v.y), own.total());
    }

  public:
    WholePanel(T alpha, const T* a, i64 lda, const T* x) : a_(a), lda_(lda) {
        for (int c = 0; c < P; ++c) factor_[c].set(alpha * x[c]);
    }

    /// `triangle`: the row of it, `m` rows from `first` on beside it; `v` and `rows` belong to them.
    [[gnu::always_inline]] void run(i64 triangle, i64 first, i64 m, T alpha, const Pair<T>& v, const Pair<T>& rows) {
        i64 i = 0;
        for (; i + P <= m; i += P) add(a_ + first + i, rows.at(i), AllLanes{});
        if (i < m) add(a_ + first + i, rows.at(i), Lanes::first((m - i) * K));
        add_triangle(a_ + triangle, v);
        if constexpr (K == 1) {
            Vec<8> sums[P];
            for (int c = 0; c < P; ++c) sums[c] = mirrored_[c].sum;
            store<8>(v.y, load<8>(v.y) + splat<8>(alpha) * sum_each(sums));
        } else {
            for (int c = 0; c < P; ++c) v.y[c] = v.y[c] + alpha * mirrored_[c].template total<H>();
        }
    }
};
#endif

/// A block on the diagonal: panels, each a triangle and a rectangle, all with vectors that are contiguous.
template <bool H, class T> void mirror_block(bool upper, i64 n, T alpha, const T* a, i64 lda, const Pair<T>& v) {
    for_panels<kProductPanel<T>>(n, true, [&](i64 j, i64 count) __attribute__((always_inline)) {
#if NXL_TARGET_BITS == 512
        if (count == kProductPanel<T>) {
            const T* const columns = a + j * lda;
            if (upper) WholePanel<H, true, T>(alpha, columns, lda, v.x + j).run(j, 0, j, alpha, v.at(j), v);
            else
                WholePanel<H, false, T>(alpha, columns, lda, v.x + j)
                    .run(j, j + count, n - j - count, alpha, v.at(j), v.at(j + count));
            return;
        }
#endif
        if (upper) mirror_triangle<H, true>(count, alpha, a + j * (lda + 1), lda, v.at(j));
        else mirror_triangle<H, false>(count, alpha, a + j * (lda + 1), lda, v.at(j));
        const i64 row = upper ? 0 : j + count, rows = upper ? j : n - row;
        mirror_rectangle<H>(rows, count, alpha, a + row + j * lda, lda, v.at(row), v.at(j));
    });
}

/// The whole matrix: blocks of columns, in each the block on the diagonal and then the rectangle beside it by blocks of
/// rows. Only two blocks of x and y are in use at a time, gathered where the vectors are strided.
template <bool H, class T>
void mirror_all(bool upper, i64 n, T alpha, const T* a, i64 lda, const T* x, i64 incx, T* y, i64 incy) {
    for_blocks(n, rows_at_once<T>(incx, incy), true, [&](i64 j, i64 width) {
        T x_copy[kRowBlock<T>], y_copy[kRowBlock<T>];
        const Pair<T> columns{gather(x + j * incx, incx, width, x_copy), gather(y + j * incy, incy, width, y_copy)};
        mirror_block<H>(upper, width, alpha, a + j * (lda + 1), lda, columns);
        const i64 first = upper ? 0 : j + width, end = upper ? j : n;
        for_blocks(end - first, rows_at_once<T>(incx, incy), true, [&](i64 start, i64 count) {
            T x_rows[kRowBlock<T>], y_rows[kRowBlock<T>];
            const i64 i = first + start;
            const Pair<T> rows{gather(x + i * incx, incx, count, x_rows), gather(y + i * incy, incy, count, y_rows)};
            mirror_rectangle<H>(count, width, alpha, a + i + j * lda, lda, rows, columns);
            scatter(rows.y, y + i * incy, incy, count);
        });
        scatter(columns.y, y + j * incy, incy, width);
    });
}

template <bool H, class T>
void symv(char uplo, i64 n, T alpha, const T* a, i64 lda, const T* x, i64 incx, T beta, T* y, i64 incy) {
    if (n < 1) return;
    x += first_index(n, incx);
    y += first_index(n, incy);
    scale(n, beta, y, incy);
    if (is_zero(alpha)) return;
    mirror_all<H>(uplo == 'U', n, alpha, a, lda, x, incx, y, incy);
}

} // namespace

void dsymv(const char& uplo, const i64& n, const double& alpha, const double* a, const i64& lda, const double* x,
           const i64& incx, const double& beta, double* y, const i64& incy) {
    symv<false>(uplo, n, alpha, a, lda, x, incx, beta, y, incy);
}

void zsymv(const char& uplo, const i64& n, const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* x,
           const i64& incx, const zcomplex& beta, zcomplex* y, const i64& incy) {
    symv<false>(uplo, n, scalar(alpha), scalars(a), lda, scalars(x), incx, scalar(beta), scalars(y), incy);
}

void zhemv(const char& uplo, const i64& n, const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* x,
           const i64& incx, const zcomplex& beta, zcomplex* y, const i64& incy) {
    symv<true>(uplo, n, scalar(alpha), scalars(a), lda, scalars(x), incx, scalar(beta), scalars(y), incy);
}

} // namespace nxl::NXL_TARGET
