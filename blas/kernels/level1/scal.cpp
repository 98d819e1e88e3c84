// dscal, zdscal, zscal. Every element is multiplied, by a zero alpha too: NaN and infinity do not vanish.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// Each element is loaded, multiplied and stored once; four vectors to a round save branches.
template <int W> void scal_unit(i64 count, double alpha, double* x) {
    const Vec<W> a = splat<W>(alpha);
    i64 i = 0;
    for (; i + 4 * W <= count; i += 4 * W)
        for (i64 k = i; k < i + 4 * W; k += W) store<W>(x + k, a * load<W>(x + k));
    for (; i + W <= count; i += W) store<W>(x + i, a * load<W>(x + i));
    for (; i < count; ++i) x[i] *= alpha;
}

/// Elements are K doubles. An increment of 0 multiplies the first element n times.
template <int K> void scal(i64 n, double alpha, double* x, i64 incx) {
    if (n < 1) return;
    if (incx == 1 || incx == -1) return scal_unit<kWidest>(n * K, alpha, x);
    double* element = x + first_index(n, incx) * K;
    for (i64 i = 0; i < n; ++i, element += incx * K) store<K>(element, alpha * load<K>(element));
}

/// (re, im) := (ar, ar) (xr, xi) + (-ai, ai) (xi, xr).
template <int W> [[gnu::always_inline]] inline void zscal_step(Vec<W> ar, Vec<W> ai, double* x) {
    const Vec<W> v = load<W>(x);
    store<W>(x, ar * v + ai * swap_parts<W>(v));
}

/// The two factors are spread over registers once, the imaginary one with alternating sign, so that a vector takes one
/// exchange and no change of sign.
template <int W> void zscal_unit(i64 n, double ar, double ai, double* x) {
    const Vec<W> wide_re = splat<W>(ar), wide_im = alternate<W>(-ai, ai);
    const i64 count = 2 * n;
    i64 i = 0;
    for (; i + 4 * W <= count; i += 4 * W)
        for (i64 k = i; k < i + 4 * W; k += W) zscal_step<W>(wide_re, wide_im, x + k);
    for (; i + W <= count; i += W) zscal_step<W>(wide_re, wide_im, x + i);
    if constexpr (W > 2)
        for (; i < count; i += 2) zscal_step<2>(splat<2>(ar), alternate<2>(-ai, ai), x + i);
}

} // namespace

// A factor of 1 changes nothing but signalling NaNs. Classes differ in whether they skip it.
void dscal(const i64& n, const double& alpha, double* x, const i64& incx) {
    if (kClass != CpuClass::def && alpha == 1.0) return;
    scal<1>(n, alpha, x, incx);
}

void zdscal(const i64& n, const double& alpha, zcomplex* x, const i64& incx) { scal<2>(n, alpha, parts(x), incx); }

void zscal(const i64& n, const zcomplex& alpha, zcomplex* x, const i64& incx) {
    const double ar = parts(&alpha)[0], ai = parts(&alpha)[1];
    if (n < 1) return;
    if ((kClass == CpuClass::mc || kClass == CpuClass::mc3) && ar == 1.0 && ai == 0.0) return;
    if (incx == 1 || incx == -1) return zscal_unit<kWidest>(n, ar, ai, parts(x));
    const Vec<2> re = splat<2>(ar), im = alternate<2>(-ai, ai);
    double* element = parts(x + first_index(n, incx));
    for (i64 i = 0; i < n; ++i, element += 2 * incx) zscal_step<2>(re, im, element);
}

} // namespace nxl::NXL_TARGET
