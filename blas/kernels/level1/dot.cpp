// ddot, zdotc, zdotu.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

// A single sum would wait for each addition, some 4 cycles, before it takes the next. Two loads in a cycle bring one
// pair of vectors, so that four chains keep up with the loads:
//
//     sum[0]   x0 y0    x4 y4  ...        v = vector i of x and of y
//     sum[1]   x1 y1    x5 y5
//     sum[2]   x2 y2    x6 y6             at the end (sum[0] + sum[1]) + (sum[2] + sum[3]), lanes in ascending order,
//     sum[3]   x3 y3    x7 y7             then the elements of the tail
//
// The order depends on n and the width alone, never on where x and y stand.
template <int W> double dot_unit(i64 n, const double* x, const double* y) {
    Vec<W> sum[4] = {}; // four chains hide the latency of the add
    i64 i = 0;
    for (; i + 4 * W <= n; i += 4 * W)
        for (int chain = 0; chain < 4; ++chain) sum[chain] += load<W>(x + i + chain * W) * load<W>(y + i + chain * W);
    for (; i + W <= n; i += W) sum[0] += load<W>(x + i) * load<W>(y + i);
    double total = sum_lanes<W>((sum[0] + sum[1]) + (sum[2] + sum[3]));
    for (; i < n; ++i) total += x[i] * y[i];
    return total;
}

double dot_strided(i64 n, const double* x, i64 incx, const double* y, i64 incy) {
    double even = 0.0, odd = 0.0;
    x += first_index(n, incx);
    y += first_index(n, incy);
    i64 i = 0;
    for (; i + 2 <= n; i += 2, x += 2 * incx, y += 2 * incy) {
        even += x[0] * y[0];
        odd += x[incx] * y[incy];
    }
    if (i < n) even += x[0] * y[0];
    return even + odd;
}

/// dotc and dotu differ only in signs, which are left to the end: with x = a + b i and y = c + d i,
///
///     straight    a c, b d      re = a c -+ b d
///     crossed     a d, b c      im = a d +- b c       upper sign: dotu, lower: dotc
///
/// The two sums that every complex product needs, lane by lane: x times y, and x times y with its parts exchanged.
template <int W> struct ComplexSums {
    Vec<W> straight{}, crossed{};

    [[gnu::always_inline]] void add(const double* x, const double* y) {
        const Vec<W> u = load<W>(x), v = load<W>(y);
        straight += u * v;
        crossed += u * swap_parts<W>(v);
    }
};

/// A sum of vectors, taken apart into what stands in even and in odd lanes.
struct Parts {
    double even = 0.0, odd = 0.0;

    template <int W> [[gnu::always_inline]] void add(Vec<W> v) {
        for (int lane = 0; lane < W; lane += 2) {
            even += v[lane];
            odd += v[lane + 1];
        }
    }
};

template <bool ConjX> void write_product(zcomplex& result, Parts straight, Parts crossed) {
    double* out = parts(&result);
    out[0] = ConjX ? straight.even + straight.odd : straight.even - straight.odd;
    out[1] = ConjX ? crossed.even - crossed.odd : crossed.even + crossed.odd;
}

template <bool ConjX, int W> void zdot_unit(zcomplex& result, i64 n, const double* x, const double* y) {
    ComplexSums<W> sums[4];
    const i64 count = 2 * n;
    i64 i = 0;
    for (; i + 4 * W <= count; i += 4 * W)
        for (int chain = 0; chain < 4; ++chain) sums[chain].add(x + i + chain * W, y + i + chain * W);
    for (; i + W <= count; i += W) sums[0].add(x + i, y + i);
    ComplexSums<2> tail;
    if constexpr (W > 2)
        for (; i < count; i += 2) tail.add(x + i, y + i);
    Parts straight, crossed;
    straight.add<W>((sums[0].straight + sums[1].straight) + (sums[2].straight + sums[3].straight));
    straight.add<2>(tail.straight);
    crossed.add<W>((sums[0].crossed + sums[1].crossed) + (sums[2].crossed + sums[3].crossed));
    crossed.add<2>(tail.crossed);
    write_product<ConjX>(result, straight, crossed);
}

template <bool ConjX>
void zdot(zcomplex& result, i64 n, const zcomplex* x, i64 incx, const zcomplex* y, i64 incy) {
    if (n >= 1 && incx * incy == 1) return zdot_unit<ConjX, kWidest>(result, n, parts(x), parts(y));
    ComplexSums<2> sums;
    i64 ix = first_index(n, incx), iy = first_index(n, incy);
    for (i64 i = 0; i < n; ++i, ix += incx, iy += incy) sums.add(parts(x + ix), parts(y + iy));
    Parts straight, crossed;
    straight.add<2>(sums.straight);
    crossed.add<2>(sums.crossed);
    write_product<ConjX>(result, straight, crossed);
}

} // namespace

double ddot(const i64& n, const double* x, const i64& incx, const double* y, const i64& incy) {
    if (n < 1) return 0.0;
    if (incx * incy == 1) return dot_unit<kWidest>(n, x, y); // both -1 as well: the pairs are the same
    return dot_strided(n, x, incx, y, incy);
}

void zdotc(zcomplex& result, const i64& n, const zcomplex* x, const i64& incx, const zcomplex* y, const i64& incy) {
    zdot<true>(result, n, x, incx, y, incy);
}

void zdotu(zcomplex& result, const i64& n, const zcomplex* x, const i64& incx, const zcomplex* y, const i64& incy) {
    zdot<false>(result, n, x, incx, y, incy);
}

} // namespace nxl::NXL_TARGET
