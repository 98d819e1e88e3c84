// One reflector: made safely, applied by a product with a vector and an update of rank 1.
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/length.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include <cmath>
#include <complex>

namespace nxl {
namespace {

/// The norm of (alpha; x), with the sign that makes the difference from alpha the larger one.
double opposite_norm(double alpha, double norm_of_x) { return -std::copysign(length_of(alpha, norm_of_x), alpha); }
double opposite_norm(const zcomplex& alpha, double norm_of_x) {
    return -std::copysign(length_of(length_of(alpha), norm_of_x), alpha.real());
}

double tau_of(double alpha, double beta) { return (beta - alpha) / beta; }
zcomplex tau_of(const zcomplex& alpha, double beta) { return {(beta - alpha.real()) / beta, -alpha.imag() / beta}; }

bool has_imaginary_part(double) { return false; }
bool has_imaginary_part(const zcomplex& x) { return x.imag() != 0.0; }

/// What brings a norm well into the range: 1 where it lies there, or is no number.
double scale_into_range(double norm) {
    constexpr double tiny = safe_minimum / unit_roundoff, huge = 0x1p1020;
    if (norm < tiny) return 0x1p900;
    return norm > huge ? 0x1p-100 : 1.0;
}

} // namespace

template <class T> ReflectorScalars<T> reflector_scalars(T& alpha, double norm_of_x) {
    const double beta = opposite_norm(alpha, norm_of_x);
    const ReflectorScalars<T> result{tau_of(alpha, beta), T(1.0) / (alpha - beta)};
    alpha = beta;
    return result;
}

template <class T> bool may_scale_later(const T& alpha, double norm_of_x, i64 n, const T* products) {
    if (!(norm_of_x > 0x1p-100 && norm_of_x < 0x1p100) || abs1(alpha) > 0x1p100) return false;
    double sum = 0.0;
    for (i64 i = 0; i < n; ++i) sum += abs1(products[i]);
    return std::isfinite(sum);
}

template <class T> T make_reflector(i64 n, T& alpha, T* x, i64 incx) {
    double norm = n > 0 ? nrm2(n, x, incx) : 0.0;
    if (norm == 0.0 && !has_imaginary_part(alpha)) return {};
    const double scale = scale_into_range(std::fabs(opposite_norm(alpha, norm)));
    if (scale != 1.0) {
        alpha *= scale;
        scal(n, scale, x, incx);
        norm = n > 0 ? nrm2(n, x, incx) : 0.0;
    }
    const ReflectorScalars<T> reflector = reflector_scalars(alpha, norm);
    scal(n, reflector.scale, x, incx);
    alpha /= scale;
    return reflector.tau;
}

template <class T>
void apply_reflector(char side, const T* w, i64 incw, const T& factor, const Matrix<T>& c, T* work) {
    if (factor == T{} || c.rows == 0 || c.columns == 0) return;
    if (side == 'L') { // work := (w^H C)^H, C := C - factor w work^H
        gemv('C', c.rows, c.columns, 1.0, c.data, c.ld, w, incw, 0.0, work, 1);
        slot_of<T, &KernelTable::dger, &KernelTable::zgerc>()(c.rows, c.columns, -factor, w, incw, work, 1, c.data,
                                                              c.ld);
    } else {
        gemv('N', c.rows, c.columns, 1.0, c.data, c.ld, w, incw, 0.0, work, 1);
        slot_of<T, &KernelTable::dger, &KernelTable::zgerc>()(c.rows, c.columns, -factor, work, 1, w, incw, c.data,
                                                              c.ld);
    }
}

template ReflectorScalars<double> reflector_scalars(double&, double);
template bool may_scale_later(const double&, double, i64, const double*);
template double make_reflector(i64, double&, double*, i64);
template void apply_reflector(char, const double*, i64, const double&, const Matrix<double>&, double*);
template ReflectorScalars<zcomplex> reflector_scalars(zcomplex&, double);
template bool may_scale_later(const zcomplex&, double, i64, const zcomplex*);
template zcomplex make_reflector(i64, zcomplex&, zcomplex*, i64);
template void apply_reflector(char, const zcomplex*, i64, const zcomplex&, const Matrix<zcomplex>&, zcomplex*);

} // namespace nxl
