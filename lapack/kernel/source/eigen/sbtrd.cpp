// dsbtrd, zhbtrd.
#include "lapack/kernel/source/eigen/sbtrd.hpp"
#include "lapack/kernel/source/common/norms.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/eigen/band_to_tridiagonal.hpp"

namespace nxl {

template <class T> double HermitianBand<T>::largest() const {
    return symmetric_norm<T>('M', triangular_band_of(uplo, ab, ldab, n, kd), true, nullptr);
}

template <class T> void HermitianBand<T>::copy_lower(double scale, const Matrix<T>& to) const {
    for (i64 j = 0; j < n; ++j) {
        to(j, j) = scale * real_part(lower(j, j));
        for (i64 i = j + 1; i < std::min(n, j + kd + 1); ++i) to(i, j) = scale * lower(i, j);
    }
}

template <class T> void tridiagonal_band(const HermitianBand<T>& a, double scale, double* d, double* e, T* q) {
    for (i64 j = 0; j < a.n; ++j) d[j] = scale * real_part(a.lower(j, j));
    q[0] = 1.0;
    for (i64 j = 0; j + 1 < a.n; ++j) {
        const T off = a.kd < 1 ? T{} : scale * a.lower(j + 1, j);
        q[j + 1] = q[j] * (is_complex_scalar<T> ? sign_of(off) : T(1.0));
        e[j] = real_part(conj_if(true, q[j + 1]) * off * q[j]);
    }
}

template <class T>
bool sbtrd(const HermitianBand<T>& a, double scale, double* d, double* e, bool wants_q, const Matrix<T>& q) {
    const i64 n = a.n;
    if (a.width() == 1) {
        const Scratch<T> diagonal(n);
        if (!diagonal.data()) return false;
        tridiagonal_band(a, scale, d, e, diagonal.data());
        for (i64 j = 0; j < n && wants_q; ++j) {
            std::fill(q.at(0, j), q.at(0, j) + n, T{});
            q(j, j) = diagonal.data()[j];
        }
        return true;
    }
    const BandReduction<T> reduction(n, a.width(), wants_q);
    if (!reduction.is_ready()) return false;
    a.copy_lower(scale, reduction.band());
    reduction.reduce(d, e);
    return !wants_q || reduction.form(q);
}

template void tridiagonal_band<double>(const HermitianBand<double>&, double, double*, double*, double*);
template void tridiagonal_band<zcomplex>(const HermitianBand<zcomplex>&, double, double*, double*, zcomplex*);
template struct HermitianBand<double>;
template struct HermitianBand<zcomplex>;
template bool sbtrd<double>(const HermitianBand<double>&, double, double*, double*, bool, const Matrix<double>&);
template bool sbtrd<zcomplex>(const HermitianBand<zcomplex>&, double, double*, double*, bool, const Matrix<zcomplex>&);

} // namespace nxl
