// daxpy, zaxpy: y := y + alpha x.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// No sum waits for another one here: four vectors to a round save branches only. What is left goes by single vectors,
/// then by elements; nothing beyond n is touched.
template <int W> void axpy_unit(i64 n, double alpha, const double* x, double* y) {
    const Vec<W> a = splat<W>(alpha);
    i64 i = 0;
    for (; i + 4 * W <= n; i += 4 * W)
        for (i64 k = i; k < i + 4 * W; k += W) store<W>(y + k, load<W>(y + k) + a * load<W>(x + k));
    for (; i + W <= n; i += W) store<W>(y + i, load<W>(y + i) + a * load<W>(x + i));
    for (; i < n; ++i) y[i] += alpha * x[i];
}

/// In order, for elements of y may coincide when incy is 0.
void axpy_strided(i64 n, double alpha, const double* x, i64 incx, double* y, i64 incy) {
    i64 ix = first_index(n, incx), iy = first_index(n, incy);
    for (i64 i = 0; i < n; ++i, ix += incx, iy += incy) y[iy] += alpha * x[ix];
}

/// (re, im) += (ar, ar) (xr, xi) + (-ai, ai) (xi, xr): one exchange of parts, and the sign stands in the factor.
template <int W> [[gnu::always_inline]] inline void zaxpy_step(Vec<W> ar, Vec<W> ai, const double* x, double* y) {
    const Vec<W> v = load<W>(x);
    store<W>(y, load<W>(y) + ar * v + ai * swap_parts<W>(v));
}

template <int W> void zaxpy_unit(i64 n, double ar, double ai, const double* x, double* y) {
    const Vec<W> wide_re = splat<W>(ar), wide_im = alternate<W>(-ai, ai);
    const i64 count = 2 * n;
    i64 i = 0;
    for (; i + 4 * W <= count; i += 4 * W)
        for (i64 k = i; k < i + 4 * W; k += W) zaxpy_step<W>(wide_re, wide_im, x + k, y + k);
    for (; i + W <= count; i += W) zaxpy_step<W>(wide_re, wide_im, x + i, y + i);
    if constexpr (W > 2)
        for (; i < count; i += 2) zaxpy_step<2>(splat<2>(ar), alternate<2>(-ai, ai), x + i, y + i);
}

} // namespace

void daxpy(const i64& n, const double& alpha, const double* x, const i64& incx, double* y, const i64& incy) {
    if (n < 1 || alpha == 0.0) return;
    if (incx * incy == 1) return axpy_unit<kWidest>(n, alpha, x, y); // both -1 as well: the pairs are the same
    axpy_strided(n, alpha, x, incx, y, incy);
}

void zaxpy(const i64& n, const zcomplex& alpha, const zcomplex* x, const i64& incx, zcomplex* y, const i64& incy) {
    const double ar = parts(&alpha)[0], ai = parts(&alpha)[1];
    if (n < 1 || (ar == 0.0 && ai == 0.0)) return;
    if (incx * incy == 1) return zaxpy_unit<kWidest>(n, ar, ai, parts(x), parts(y));
    const Vec<2> re = splat<2>(ar), im = alternate<2>(-ai, ai);
    i64 ix = first_index(n, incx), iy = first_index(n, incy);
    for (i64 i = 0; i < n; ++i, ix += incx, iy += incy) zaxpy_step<2>(re, im, parts(x + ix), parts(y + iy));
}

} // namespace nxl::NXL_TARGET
