// LAPACK, orthogonal factorisations, Q formed and applied: entries.
#include "lapack/kernel/source/orthogonal/geqrf.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dgeqrf(const int* m, const int* n, double* a, const int* lda, double* tau, double* work,
                       const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_dgeqrf(*m, *n, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void zgeqrf(const int* m, const int* n, nxl_z* a, const int* lda, nxl_z* tau, nxl_z* work, const int* lwork,
                       int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_zgeqrf(*m, *n, a, *lda, tau, work, *lwork, info64.value);
}

} // extern "C"
