// dgetrf_leaf, zgetrf_leaf: LU with partial pivoting, without further blocks above it. Narrow panels go in Crout's
// order, one pass down the rows for each column; wider ones are halved (Golub and Van Loan, Matrix Computations, 4th
// edition, section 3.4, and Toledo, SIAM Journal on Matrix Analysis 18, 1997).
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/lapack/rounded.hpp"
#include "blas/kernels/level2/products.hpp"

namespace nxl::NXL_TARGET {
namespace {

// A narrow panel, 8 real columns, in Crout's order. Step j passes down the rows once:
//
//     columns  0 .. j - 1    j    j + 1
//                  U         u      u
//                  L         s      x       s: scaled by the reciprocal of the pivot, and L's from now on
//                  L         s      x       x: takes off columns 0 .. j times their multipliers, the u above it,
//                  L         s      x          and shows its largest element on the way
//
// So a step writes two columns and finds the next pivot with them. Right-looking elimination would write all columns
// that follow, in each step. Wider panels are halved until they are narrow:
//
//     left | right     1  factor left                          4  factor that
//                      2  interchanges and L^-1 on right       5  its interchanges on left
//                      3  product with what is below
//
// Step 3 has most of the work. Small matrices round each product by itself, as the published routine does
// (rounded.hpp).
/// Columns of a narrow panel: the multipliers of a pass fill half of the registers.
template <class T> constexpr int kNarrow = 8 / kParts<T>;

/// Columns whose triangle is solved, and whose product is taken, without packing: a product of so few steps of k packs
/// an element for as few multiply-adds.
constexpr i64 kFew = 8;
/// Rows between two looks at the largest magnitude: its value is found on the way, its place only where it won.
constexpr i64 kRowsAtOnce = 64;

/// abs1 of every element, at both of its parts when complex.
template <class T, int W> [[gnu::always_inline]] inline Vec<W> magnitudes(Vec<W> v) {
    const Vec<W> size = __builtin_elementwise_abs(v);
    if constexpr (kParts<T> == 1) return size;
    else return size + swap_parts<W>(size);
}

template <int W> [[gnu::always_inline]] inline Vec<W> larger(Vec<W> candidate, Vec<W> best) {
    return candidate > best ? candidate : best; // a NaN compares false and is passed over
}
template <int W> [[gnu::always_inline]] inline double largest_lane(Vec<W> v) {
    double best = v[0];
    for (int lane = 1; lane < W; ++lane) best = v[lane] > best ? v[lane] : best;
    return best;
}

/// What is left of a vector when products are taken off it, each rounded for itself or, not Rounded, by fused
/// operations where there are any.
template <class T, int W, bool Rounded> struct Rest;
template <class T, int W> struct Rest<T, W, true> {
    struct Scale : RoundedFactor<T, W> {
        [[gnu::always_inline]] Vec<W> times(const double* x) const { return RoundedFactor<T, W>::times(load<W>(x)); }
    };
    using Multiplier = RoundedFactor<T, W>;
    Vec<W> rest;

    [[gnu::always_inline]] void start(const double* y) { rest = load<W>(y); }
    [[gnu::always_inline]] void less(const Multiplier& factor, Vec<W> x) {
#pragma clang fp contract(off)
        const Vec<W> product = factor.times(x);
        rest = rest - product;
    }
    [[gnu::always_inline]] Vec<W> total() const { return rest; }
};
template <class T, int W> struct Rest<T, W, false> {
    struct Scale : Factor<T, W> {
        [[gnu::always_inline]] Vec<W> times(const double* x) const {
            return this->added_to(Vec<W>{}, Operand<T, W>(x));
        }
    };
    struct Multiplier : Coefficient<T, W> {
        [[gnu::always_inline]] void set(T v) { Coefficient<T, W>::set(-v); }
    };
    Combination<T, W> sum;

    [[gnu::always_inline]] void start(const double* y) { sum.start(y); }
    [[gnu::always_inline]] void less(const Multiplier& factor, Vec<W> x) { sum.add(factor, x); }
    [[gnu::always_inline]] Vec<W> total() const { return sum.total(); }
};

/// Rows i .. count - 1, in doubles, of one step: column P - 1 times `scale`, then column P less the P columns before it
/// times their multipliers. Returns the largest magnitude in column P, or `best` when that is larger.
template <class T, int P, int W, bool Rounded>
[[gnu::always_inline]] inline double eliminate(i64 i, i64 count, double* a, i64 stride, const T (&multiplier)[P],
                                               T scale, double best) {
    typename Rest<T, W, Rounded>::Scale by;
    typename Rest<T, W, Rounded>::Multiplier factor[P];
    by.set(scale);
    for (int p = 0; p < P; ++p) factor[p].set(multiplier[p]);
    Vec<W> most = splat<W>(best);
    for (; i + W <= count; i += W) {
        double* const scaled = a + (P - 1) * stride + i;
        double* const updated = a + P * stride + i;
        const Vec<W> last = by.times(scaled);
        store<W>(scaled, last);
        Rest<T, W, Rounded> rest;
        rest.start(updated);
        for (int p = 0; p < P - 1; ++p) rest.less(factor[p], load<W>(a + p * stride + i));
        rest.less(factor[P - 1], last);
        const Vec<W> total = rest.total();
        store<W>(updated, total);
        most = larger<W>(magnitudes<T, W>(total), most);
    }
    best = largest_lane<W>(most);
    if constexpr (W > kParts<T>) return eliminate<T, P, W / 2, Rounded>(i, count, a, stride, multiplier, scale, best);
    else return best;
}

/// The first of rows `first` .. m - 1 with this magnitude; there is one.
template <class T> [[gnu::always_inline]] inline i64 find_magnitude(i64 first, i64 m, const T* column, double wanted) {
    constexpr int W = kWidest, step = 4 * W / kParts<T>;
    for (; first + step <= m; first += step) {
        auto hit = magnitudes<T, W>(load<W>(parts(column + first))) == splat<W>(wanted);
        for (int k = 1; k < 4; ++k) hit |= magnitudes<T, W>(load<W>(parts(column + first) + k * W)) == splat<W>(wanted);
        if (__builtin_reduce_or(hit) != 0) break;
    }
    while (abs1(column[first]) != wanted) ++first;
    return first;
}

/// The first of the largest magnitudes of a column, as its rows are written: body(start, count) writes some of them and
/// returns the largest, or a negative number when all are NaN. A NaN in the first row stays first, as in idamax.
template <class T, class Body>
[[gnu::always_inline]] inline i64 find_pivot(i64 first, i64 m, const T* column, const Body& body) {
    double best = -1.0;
    i64 pivot = first;
    for (i64 start = first; start < m; start += kRowsAtOnce) {
        const double found = body(start, smaller(kRowsAtOnce, m - start));
        if (!(found > best)) continue;
        best = found;
        pivot = start;
    }
    if (best < 0.0 || abs1(column[first]) != abs1(column[first])) return first;
    return find_magnitude(pivot, m, column, best);
}

/// Step j of a narrow panel below its row: scales column j and brings column j + 1 up to date. Returns the row of the
/// next pivot.
template <bool Rounded, int P, class T> i64 eliminate_column(i64 m, T* a, i64 lda, T scale) {
    T multiplier[P];
    for (int p = 0; p < P; ++p) multiplier[p] = a[p + P * lda];
    return find_pivot(P, m, a + P * lda, [&](i64 start, i64 count) {
        return eliminate<T, P, kWidest, Rounded>(0, count * kParts<T>, parts(a + start), lda * kParts<T>, multiplier,
                                                 scale, -1.0);
    });
}
template <bool Rounded, class T, int P = 1> i64 eliminate_column(i64 j, i64 m, T* a, i64 lda, T scale) {
    if (j + 1 == P) return eliminate_column<Rounded, P>(m, a, lda, scale);
    if constexpr (P + 1 < kNarrow<T>) return eliminate_column<Rounded, T, P + 1>(j, m, a, lda, scale);
    return 0;
}

i64 first_pivot(i64 m, const double* column) { return idamax(m, column, 1) - 1; }
i64 first_pivot(i64 m, const Complex* column) { return izamax(m, numbers(column), 1) - 1; }

template <class T> [[gnu::always_inline]] inline void exchange(T& x, T& y) {
    const T kept = x;
    x = y;
    y = kept;
}

/// What the `count` elements below a pivot are still to be multiplied with to become those of L: its reciprocal, or 1
/// when it has none and they have been divided.
template <class T> [[gnu::always_inline]] inline T multiplier_of(i64 count, T* pivot) {
    if (__builtin_expect(has_reciprocal(*pivot), true)) return reciprocal(*pivot);
    for (i64 i = 1; i <= count; ++i) pivot[i] = pivot[i] / *pivot;
    return from_real<T>(1.0);
}

/// At most kNarrow columns. Returns 0, or the first column, from 1, whose pivot is zero.
template <bool Rounded, class T> i64 factor_narrow(i64 m, i64 n, T* a, i64 lda, i64* ipiv) {
    i64 singular = 0, pivot = first_pivot(m, a);
    for (i64 j = 0; j < smaller(m, n); ++j) {
        T* const row = a + j;
        T scale = from_real<T>(1.0);
        ipiv[j] = pivot + 1;
        if (abs1(a[pivot + j * lda]) == 0.0) {
            if (singular == 0) singular = j + 1;
        } else {
            if (pivot != j)
                for (i64 k = 0; k < n; ++k) exchange(row[k * lda], a[pivot + k * lda]);
            scale = multiplier_of(m - j - 1, row + j * lda);
        }
        for (i64 k = j + 1; k < n; ++k)
            for (i64 p = 0; p < j; ++p) row[k * lda] = less_product(row[k * lda], row[p * lda], a[p + k * lda]);
        if (j + 1 < n) pivot = eliminate_column<Rounded>(j, m, a, lda, scale);
        else
            for (i64 i = j + 1; i < m; ++i) a[i + j * lda] = rounded_product(a[i + j * lda], scale);
    }
    return singular;
}

/// Interchanges first .. end - 1 on n columns, a column at a time: that is how they stand in memory.
template <class T> void swap_rows(i64 n, T* a, i64 lda, i64 first, i64 end, const i64* ipiv) {
    for (i64 j = 0; j < n; ++j, a += lda)
        for (i64 i = first; i < end; ++i)
            if (ipiv[i] != i + 1) exchange(a[i], a[ipiv[i] - 1]);
}

/// b := L^-1 b, L unit lower triangular of order k.
void solve(i64 k, i64 n, const double* l, double* b, i64 lda) { dtrsm('L', 'L', 'N', 'U', k, n, 1.0, l, lda, b, lda); }
void solve(i64 k, i64 n, const Complex* l, Complex* b, i64 lda) {
    const Complex one{1.0, 0.0};
    ztrsm('L', 'L', 'N', 'U', k, n, *numbers(&one), numbers(l), lda, numbers(b), lda);
}

void subtract_product(i64 m, i64 n, i64 k, const double* l, const double* u, double* a, i64 lda) {
    xdgemm('N', 'N', m, n, k, -1.0, l, lda, u, lda, 1.0, a, lda);
}
void subtract_product(i64 m, i64 n, i64 k, const Complex* l, const Complex* u, Complex* a, i64 lda) {
    const Complex one{1.0, 0.0}, minus_one{-1.0, 0.0};
    xzgemm('N', 'N', m, n, k, *numbers(&minus_one), numbers(l), lda, numbers(u), lda, *numbers(&one), numbers(a), lda);
}

/// x := L^-1 x, L unit lower triangular of order k, at most kFew.
template <class T> [[gnu::always_inline]] inline void substitute(i64 k, const T* l, T* x, i64 lda) {
    T known[kFew];
    for (i64 i = 0; i < k; ++i) {
        T rest = x[i];
        for (i64 p = 0; p < i; ++p) rest = less_product(rest, l[i + p * lda], known[p]);
        x[i] = known[i] = rest;
    }
}

/// What `left` narrow columns do to those beside them: b := L^-1 b on their rows, then the product with the rows below,
/// by so many rows at a time that they stay in the first cache.
template <class T> void update_beside(i64 m, i64 left, i64 right, const T* a, T* b, i64 lda) {
    constexpr i64 rows_at_once = 256;
    if (left == kFew)
        for (i64 j = 0; j < right; ++j) substitute(kFew, a, b + j * lda, lda);
    else
        for (i64 j = 0; j < right; ++j) substitute(left, a, b + j * lda, lda);
    for (i64 i = left; i < m; i += rows_at_once)
        for (i64 j = 0; j < right; ++j)
            add_product(smaller(rows_at_once, m - i), left, from_real<T>(-1.0), a + i, lda, b + j * lda, 1,
                        b + i + j * lda);
}

/// Rows i .. count - 1, in doubles, of y less C columns times x, one after the other.
template <class T, int C, int W>
[[gnu::always_inline]] inline void subtract_rows(i64 i, i64 count, const double* l, i64 stride, const T* x, double* y) {
    RoundedFactor<T, W> factor[C];
    for (int c = 0; c < C; ++c) factor[c].set(x[c]);
    for (; i + W <= count; i += W) {
        Rest<T, W, true> rest;
        rest.start(y + i);
        for (int c = 0; c < C; ++c) rest.less(factor[c], load<W>(l + c * stride + i));
        store<W>(y + i, rest.total());
    }
    if constexpr (W > kParts<T>) subtract_rows<T, C, W / 2>(i, count, l, stride, x, y);
}
/// Any k columns, as many at a time as have registers for their factors, in ascending order: roundings depend on it.
template <class T, int C = kNarrow<T>>
[[gnu::always_inline]] inline void subtract_columns(i64 m, i64 k, const T* l, i64 lda, const T* x, T* y) {
    i64 p = 0;
    for (; p + C <= k; p += C)
        subtract_rows<T, C, kWidest>(0, m * kParts<T>, parts(l + p * lda), lda * kParts<T>, x + p, parts(y));
    if constexpr (C > 1) subtract_columns<T, C / 2>(m, k - p, l + p * lda, lda, x + p, y);
}

/// update_beside for a small matrix and any k columns, every product rounded.
template <class T> void update_rounded(i64 m, i64 k, i64 n, const T* l, T* b, i64 lda) {
    while (k > 0) {
        const i64 few = smaller(k, kFew);
        for (i64 j = 0; j < n; ++j) {
            T* const column = b + j * lda;
            if (few == kFew) substitute(kFew, l, column, lda);
            else substitute(few, l, column, lda);
            subtract_columns(m - few, few, l + few, lda, column, column + few);
        }
        m -= few, k -= few, l += few * (lda + 1), b += few;
    }
}

/// Any number of columns: the left half, what it does to the right one, and the rest of that.
template <bool Rounded, class T> i64 factor(i64 m, i64 n, T* a, i64 lda, i64* ipiv) {
    if (n <= kNarrow<T>) return factor_narrow<Rounded>(m, n, a, lda, ipiv);
    const i64 steps = smaller(m, n);
    const i64 left = smaller(steps, ((steps + 1) / 2 + kNarrow<T> - 1) / kNarrow<T> * kNarrow<T>), right = n - left;
    T* const beside = a + left * lda;
    i64 singular = factor<Rounded>(m, left, a, lda, ipiv);
    swap_rows(right, beside, lda, 0, left, ipiv);
    if constexpr (Rounded) {
        update_rounded(m, left, right, a, beside, lda);
    } else if (left <= kFew) {
        update_beside(m, left, right, a, beside, lda);
    } else {
        solve(left, right, a, beside, lda);
        subtract_product(m - left, right, left, a + left, beside, beside + left, lda);
    }
    if (m == left) return singular;
    const i64 later = factor<Rounded>(m - left, right, beside + left, lda, ipiv + left);
    if (singular == 0 && later > 0) singular = left + later;
    for (i64 i = left; i < steps; ++i) ipiv[i] += left;
    swap_rows(left, a, lda, left, steps, ipiv);
    return singular;
}

/// Up to lu_rounded_order in both directions all products are rounded: there it has no price.
template <class T> void leaf(i64 m, i64 n, T* a, i64 lda, i64* ipiv, i64& info) {
    constexpr i64 small = lu_rounded_order<T>;
    if (m < 1 || n < 1) info = 0;
    else info = m <= small && n <= small ? factor<true>(m, n, a, lda, ipiv) : factor<false>(m, n, a, lda, ipiv);
}

} // namespace

void dgetrf_update(const i64& m, const i64& k, const i64& n, const double* l, double* b, const i64& lda) {
    update_rounded(m, k, n, l, b, lda);
}

void zgetrf_update(const i64& m, const i64& k, const i64& n, const zcomplex* l, zcomplex* b, const i64& lda) {
    update_rounded(m, k, n, scalars(l), scalars(b), lda);
}

void dgetrf_leaf(const i64& m, const i64& n, double* a, const i64& lda, i64* ipiv, i64& info) {
    leaf(m, n, a, lda, ipiv, info);
}

void zgetrf_leaf(const i64& m, const i64& n, zcomplex* a, const i64& lda, i64* ipiv, i64& info) {
    leaf(m, n, scalars(a), lda, ipiv, info);
}

} // namespace nxl::NXL_TARGET
