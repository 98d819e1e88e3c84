// The sparse level 1 kernels: a compressed vector x with one-based indices against a dense vector y.
// A repeated index counts each time it stands; indices are not checked.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/scalar.hpp"

namespace nxl::NXL_TARGET {
namespace {

// These loops go one element after the other: addresses come out of indx, so that there is nothing to load as a vector
// but the parts of a complex number. Updates have to stay in order, for an index may be repeated.
template <class T> void gather(i64 nz, const T* y, T* x, const i64* indx) {
    constexpr int K = kParts<T>;
    const double* from = parts(y) - K; // indices count from 1
    double* to = parts(x);
    for (i64 i = 0; i < nz; ++i) store<K>(to + i * K, load<K>(from + indx[i] * K));
}

template <class T> void scatter(i64 nz, const T* x, const i64* indx, T* y) {
    constexpr int K = kParts<T>;
    const double* from = parts(x);
    double* to = parts(y) - K;
    for (i64 i = 0; i < nz; ++i) store<K>(to + indx[i] * K, load<K>(from + i * K));
}

/// By scalars: each product takes its two parts of y from a place of its own.
template <bool ConjX> void zdoti(zcomplex& result, i64 nz, const double* x, const i64* indx, const double* y) {
    double re = 0.0, im = 0.0;
    for (i64 i = 0; i < nz; ++i) {
        const double xr = x[2 * i], xi = ConjX ? -x[2 * i + 1] : x[2 * i + 1];
        const double yr = y[2 * (indx[i] - 1)], yi = y[2 * (indx[i] - 1) + 1];
        re += xr * yr - xi * yi;
        im += xr * yi + xi * yr;
    }
    parts(&result)[0] = re;
    parts(&result)[1] = im;
}

} // namespace

void daxpyi(const i64& nz, const double& a, const double* x, const i64* indx, double* y) {
    if (a == 0.0) return;
    const double alpha = a;
    for (i64 i = 0, count = nz; i < count; ++i) y[indx[i] - 1] += alpha * x[i];
}

double ddoti(const i64& nz, const double* x, const i64* indx, const double* y) {
    double even = 0.0, odd = 0.0; // two chains hide the latency of the add
    i64 i = 0;
    for (; i + 2 <= nz; i += 2) {
        even += x[i] * y[indx[i] - 1];
        odd += x[i + 1] * y[indx[i + 1] - 1];
    }
    if (i < nz) even += x[i] * y[indx[i] - 1];
    return even + odd;
}

void zaxpyi(const i64& nz, const zcomplex& a, const zcomplex* x, const i64* indx, zcomplex* y) {
    const double ar = parts(&a)[0], ai = parts(&a)[1];
    if (ar == 0.0 && ai == 0.0) return;
    const Vec<2> re = splat<2>(ar), im = alternate<2>(-ai, ai);
    for (i64 i = 0, count = nz; i < count; ++i) {
        const Vec<2> v = load<2>(parts(x + i));
        double* element = parts(y + (indx[i] - 1));
        store<2>(element, load<2>(element) + re * v + im * swap_parts<2>(v));
    }
}

void zdotci(zcomplex& result, const i64& nz, const zcomplex* x, const i64* indx, const zcomplex* y) {
    zdoti<true>(result, nz, parts(x), indx, parts(y));
}
void zdotui(zcomplex& result, const i64& nz, const zcomplex* x, const i64* indx, const zcomplex* y) {
    zdoti<false>(result, nz, parts(x), indx, parts(y));
}

void dgthr(const i64& nz, const double* y, double* x, const i64* indx) { gather(nz, y, x, indx); }
void zgthr(const i64& nz, const zcomplex* y, zcomplex* x, const i64* indx) { gather(nz, scalars(y), scalars(x), indx); }
void dsctr(const i64& nz, const double* x, const i64* indx, double* y) { scatter(nz, x, indx, y); }
void zsctr(const i64& nz, const zcomplex* x, const i64* indx, zcomplex* y) {
    scatter(nz, scalars(x), indx, scalars(y));
}

} // namespace nxl::NXL_TARGET
