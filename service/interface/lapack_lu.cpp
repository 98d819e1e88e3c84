// LAPACK, LU factorisation and the auxiliaries around it: entries.
#include "lapack/kernel/source/common/lacgv.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/lu/laswp.hpp"
#include "lapack/kernel/source/lu/xgetrf_omp.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include <algorithm>
#include <cstdlib>

using namespace nxl;

extern "C" {

NXL_EXPORT void dgetrf(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, std::min(*m, *n), Transfer::out);
    if (!pivots.data()) return refuse_for_memory("DGETRF", info64.value);
    nxl_lapack_dgetrf(*m, *n, a, *lda, pivots.data(), info64.value);
}

NXL_EXPORT void zgetrf(const int* m, const int* n, nxl_z* a, const int* lda, int* ipiv, int* info) noexcept {
    OutInt info64(info);
    const WideInts pivots(ipiv, std::min(*m, *n), Transfer::out);
    if (!pivots.data()) return refuse_for_memory("ZGETRF", info64.value);
    nxl_lapack_zgetrf(*m, *n, a, *lda, pivots.data(), info64.value);
}

NXL_EXPORT void DLASWP(const int* n, double* a, const int* lda, const int* k1, const int* k2, const int* ipiv,
                       const int* incx) noexcept {
    const WideInts pivots(ipiv, std::abs(i64{*incx}) * *k2);
    if (!pivots.data()) return report_no_memory("DLASWP");
    nxl_lapack_dlaswp(*n, a, *lda, *k1, *k2, pivots.data(), *incx);
}

NXL_EXPORT void ZLASWP(const int* n, nxl_z* a, const int* lda, const int* k1, const int* k2, const int* ipiv,
                       const int* incx) noexcept {
    const WideInts pivots(ipiv, std::abs(i64{*incx}) * *k2);
    if (!pivots.data()) return report_no_memory("ZLASWP");
    nxl_lapack_zlaswp(*n, a, *lda, *k1, *k2, pivots.data(), *incx);
}

NXL_EXPORT void ZLACGV(const int* n, nxl_z* x, const int* incx) noexcept { nxl_lapack_zlacgv(*n, x, *incx); }

} // extern "C"
