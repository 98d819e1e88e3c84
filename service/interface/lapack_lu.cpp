// LAPACK, LU factorisation and the auxiliaries around it: entries.
#include "lapack/kernel/source/lacgv.hpp"
#include "lapack/kernel/source/lu.hpp"
#include "lapack/kernel/source/reports.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/arguments.hpp"
#include <algorithm>
#include <cstdlib>

using namespace nxl;

extern "C" {

NXL_EXPORT void dgetrf(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info) noexcept {
    OutInt info64(info);
    const i64 m64 = *m, n64 = *n, lda64 = *lda;
    const WideInts pivots(ipiv, std::min(m64, n64), Transfer::out);
    if (!pivots.data()) return refuse_for_memory("DGETRF", &info64.value);
    nxl_lapack_dgetrf(&m64, &n64, a, &lda64, pivots.data(), &info64.value);
}

NXL_EXPORT void zgetrf(const int* m, const int* n, nxl_z* a, const int* lda, int* ipiv, int* info) noexcept {
    OutInt info64(info);
    const i64 m64 = *m, n64 = *n, lda64 = *lda;
    const WideInts pivots(ipiv, std::min(m64, n64), Transfer::out);
    if (!pivots.data()) return refuse_for_memory("ZGETRF", &info64.value);
    nxl_lapack_zgetrf(&m64, &n64, a, &lda64, pivots.data(), &info64.value);
}

NXL_EXPORT void DLASWP(const int* n, double* a, const int* lda, const int* k1, const int* k2, const int* ipiv,
                       const int* incx) noexcept {
    const i64 n64 = *n, lda64 = *lda, k164 = *k1, k264 = *k2, incx64 = *incx;
    const WideInts pivots(ipiv, std::abs(incx64) * k264);
    if (!pivots.data()) return report_no_memory("DLASWP");
    nxl_lapack_dlaswp(&n64, a, &lda64, &k164, &k264, pivots.data(), &incx64);
}

NXL_EXPORT void ZLASWP(const int* n, nxl_z* a, const int* lda, const int* k1, const int* k2, const int* ipiv,
                       const int* incx) noexcept {
    const i64 n64 = *n, lda64 = *lda, k164 = *k1, k264 = *k2, incx64 = *incx;
    const WideInts pivots(ipiv, std::abs(incx64) * k264);
    if (!pivots.data()) return report_no_memory("ZLASWP");
    nxl_lapack_zlaswp(&n64, a, &lda64, &k164, &k264, pivots.data(), &incx64);
}

NXL_EXPORT void ZLACGV(const int* n, nxl_z* x, const int* incx) noexcept {
    const i64 n64 = *n, incx64 = *incx;
    nxl_lapack_zlacgv(&n64, x, &incx64);
}

} // extern "C"
