// drot, zdrot, zrot, drotm: plane rotations applied to the rows of a 2 by n matrix held as two vectors.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// x := h11 x + h12 y, y := h21 x + h22 y, lane by lane.
struct Matrix2 {
    double h11, h21, h12, h22;
};

template <int W> [[gnu::always_inline]] inline void apply(const Matrix2& h, double* x, double* y) {
    const Vec<W> u = load<W>(x), v = load<W>(y);
    store<W>(x, splat<W>(h.h11) * u + splat<W>(h.h12) * v);
    store<W>(y, splat<W>(h.h21) * u + splat<W>(h.h22) * v);
}

/// Two vectors of x and two of y per round: all four entries of H, spread over registers, stay there.
template <int W> void apply_unit(const Matrix2& matrix, i64 count, double* x, double* y) {
    const Matrix2 h = matrix; // by value, so that stores to x and y cannot change it
    i64 i = 0;
    for (; i + 2 * W <= count; i += 2 * W)
        for (i64 k = i; k < i + 2 * W; k += W) apply<W>(h, x + k, y + k);
    for (; i + W <= count; i += W) apply<W>(h, x + i, y + i);
    for (; i < count; ++i) apply<1>(h, x + i, y + i);
}

/// Elements are K doubles.
template <int K> void apply_all(const Matrix2& matrix, i64 n, double* x, i64 incx, double* y, i64 incy) {
    if (n < 1) return;
    if (incx == 1 && incy == 1) return apply_unit<kWidest>(matrix, n * K, x, y);
    const Matrix2 h = matrix;
    i64 ix = first_index(n, incx) * K, iy = first_index(n, incy) * K;
    for (i64 i = 0; i < n; ++i, ix += incx * K, iy += incy * K) apply<K>(h, x + ix, y + iy);
}

/// x := c x + s y, y := c y - conj(s) x for W/2 complex elements.
/// The products with s and conj(s) share the vectors of its parts, with the sign in those of the imaginary one.
template <int W> [[gnu::always_inline]] inline void zrot_step(double c, double sr, double si, double* x, double* y) {
    const Vec<W> u = load<W>(x), v = load<W>(y), cosine = splat<W>(c), re = splat<W>(sr), im = alternate<W>(-si, si);
    store<W>(x, cosine * u + (re * v + im * swap_parts<W>(v)));
    store<W>(y, cosine * v - (re * u - im * swap_parts<W>(u)));
}

/// The matrix that drotm's parameters stand for; entries that the flag implies are not read.
Matrix2 modified_givens(const double* param) {
    const double flag = param[0];
    if (flag < 0.0) return {param[1], param[2], param[3], param[4]};
    if (flag > 0.0) return {param[1], -1.0, 1.0, param[4]};
    return {1.0, param[2], param[3], 1.0};
}

} // namespace

// Plane rotations are H with h11 = h22 = c and h12 = -h21 = s; a complex vector under a real rotation is two real ones.
void drot(const i64& n, double* x, const i64& incx, double* y, const i64& incy, const double& c, const double& s) {
    apply_all<1>({c, -s, s, c}, n, x, incx, y, incy);
}

void zdrot(const i64& n, zcomplex* x, const i64& incx, zcomplex* y, const i64& incy, const double& c, const double& s) {
    apply_all<2>({c, -s, s, c}, n, parts(x), incx, parts(y), incy);
}

void drotm(const i64& n, double* x, const i64& incx, double* y, const i64& incy, const double* param) {
    if (n < 1 || param[0] == -2.0) return;
    apply_all<1>(modified_givens(param), n, x, incx, y, incy);
}

void zrot(const i64& n, zcomplex* x, const i64& incx, zcomplex* y, const i64& incy, const double& c,
          const zcomplex& s) {
    const double cosine = c, sr = parts(&s)[0], si = parts(&s)[1];
    i64 i = 0;
    if (incx == 1 && incy == 1)
        for (; 2 * i + kWidest <= 2 * n; i += kWidest / 2)
            zrot_step<kWidest>(cosine, sr, si, parts(x + i), parts(y + i));
    i64 ix = first_index(n, incx) + i * incx, iy = first_index(n, incy) + i * incy;
    for (; i < n; ++i, ix += incx, iy += incy) zrot_step<2>(cosine, sr, si, parts(x + ix), parts(y + iy));
}

} // namespace nxl::NXL_TARGET
