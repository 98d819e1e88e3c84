// dgetrf_leaf, zgetrf_leaf: unblocked LU with partial pivoting in Crout's order.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/lapack/scalars.hpp"

namespace nxl::NXL_TARGET {
namespace {

template <class T> void leaf(i64 m, i64 n, T* a, i64 lda, i64* ipiv, i64& info) {
    info = 0;
    const i64 steps = smaller(m, n);
    for (i64 j = 0; j < steps; ++j) {
        T* const column = a + j * lda;
        i64 pivot = j;
        for (i64 i = j + 1; i < m; ++i)
            if (abs1(column[i]) > abs1(column[pivot])) pivot = i;
        ipiv[j] = pivot + 1;
        if (abs1(column[pivot]) == 0.0) {
            if (info == 0) info = j + 1;
        } else {
            if (pivot != j)
                for (i64 k = 0; k < n; ++k) {
                    const T kept = a[j + k * lda];
                    a[j + k * lda] = a[pivot + k * lda];
                    a[pivot + k * lda] = kept;
                }
            const T scale = reciprocal(column[j]);
            for (i64 i = j + 1; i < m; ++i) column[i] = column[i] * scale;
        }
        for (i64 k = j + 1; k < n; ++k)
            for (i64 p = 0; p < j; ++p) a[j + k * lda] = a[j + k * lda] - a[j + p * lda] * a[p + k * lda];
        if (j + 1 < n)
            for (i64 p = 0; p <= j; ++p)
                for (i64 i = j + 1; i < m; ++i)
                    a[i + (j + 1) * lda] = a[i + (j + 1) * lda] - a[i + p * lda] * a[p + (j + 1) * lda];
    }
}

} // namespace

void dgetrf_leaf(const i64& m, const i64& n, double* a, const i64& lda, i64* ipiv, i64& info) {
    leaf(m, n, a, lda, ipiv, info);
}

void zgetrf_leaf(const i64& m, const i64& n, zcomplex* a, const i64& lda, i64* ipiv, i64& info) {
    leaf(m, n, scalars(a), lda, ipiv, info);
}

} // namespace nxl::NXL_TARGET
