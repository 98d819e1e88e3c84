// xdpotf2_u, xdpotf2_l, xzpotf2_u, xzpotf2_l: unblocked Cholesky factorisation of one triangle.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/lapack/scalars.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// Element (i, j), i >= j, of the lower triangle, or of the conjugate transpose of the upper one.
template <bool Upper, class T> T read(const T* a, i64 lda, i64 i, i64 j) {
    return Upper ? conj(a[j + i * lda]) : a[i + j * lda];
}
template <bool Upper, class T> void write(T* a, i64 lda, i64 i, i64 j, T value) {
    if (Upper) a[j + i * lda] = conj(value);
    else a[i + j * lda] = value;
}

template <bool Upper, class T> void potf2(i64 n, T* a, i64 lda, i64& info) {
    info = 0;
    for (i64 j = 0; j < n; ++j) {
        double pivot = real_part(read<Upper>(a, lda, j, j));
        for (i64 p = 0; p < j; ++p) {
            const T v = read<Upper>(a, lda, j, p);
            pivot -= real_part(v * conj(v));
        }
        write<Upper>(a, lda, j, j, from_real<T>(pivot));
        if (!(pivot > 0.0)) { // in this form NaN stops here too
            info = j + 1;
            return;
        }
        const double root = __builtin_sqrt(pivot);
        write<Upper>(a, lda, j, j, from_real<T>(root));
        for (i64 i = j + 1; i < n; ++i) {
            T v = read<Upper>(a, lda, i, j);
            for (i64 p = 0; p < j; ++p) v = v - read<Upper>(a, lda, i, p) * conj(read<Upper>(a, lda, j, p));
            write<Upper>(a, lda, i, j, v * from_real<T>(1.0 / root));
        }
    }
}

} // namespace

void xdpotf2_u(const i64& n, double* a, const i64& lda, i64& info) { potf2<true>(n, a, lda, info); }
void xdpotf2_l(const i64& n, double* a, const i64& lda, i64& info) { potf2<false>(n, a, lda, info); }
void xzpotf2_u(const i64& n, zcomplex* a, const i64& lda, i64& info) { potf2<true>(n, scalars(a), lda, info); }
void xzpotf2_l(const i64& n, zcomplex* a, const i64& lda, i64& info) { potf2<false>(n, scalars(a), lda, info); }

} // namespace nxl::NXL_TARGET
